#include "Velmora/Model/ApplicationLifecycle.h"

#include <utility>

namespace velmora {

ApplicationLifecycle::ApplicationLifecycle(std::function<void(bool)> reply) : reply_(std::move(reply)) {}

ApplicationLifecycle::Answer ApplicationLifecycle::applicationShouldTerminate() {
  if (!model_) return Answer::now;
  if (!std::exchange(isClosing_, true)) close();
  return Answer::later;
}

/// The lifecycle lives as long as the process; the model may go while it waits.
QCoro::Task<> ApplicationLifecycle::close() {
  try {
    auto preparing = model_->prepareForClose();
    co_await preparing;
    reply_(true);
  } catch (const std::exception& error) {
    if (model_) model_->reportError(error.what());
    isClosing_ = false;
    reply_(false);
  }
}

}  // namespace velmora
