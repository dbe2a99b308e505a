#pragma once

#include <QCoroTask>
#include <QPointer>
#include <functional>

#include "Velmora/Model/AppModel.h"

namespace velmora {

/// Answers the desktop's wish to end the process: not before the work is safe.
///
/// Whoever is asked to close (a window, the session, a signal) asks here; the reply comes once, later.
class ApplicationLifecycle {
 public:
  enum class Answer { now, later };

  /// `reply(true)` ends the process; `reply(false)` says that it goes on and that `lastError` tells why.
  explicit ApplicationLifecycle(std::function<void(bool mayTerminate)> reply);

  void setModel(AppModel* model) { model_ = model; }
  bool isClosing() const { return isClosing_; }

  /// `now` without a model: nothing is at risk. A second question while the first waits starts nothing.
  Answer applicationShouldTerminate();

 private:
  QCoro::Task<> close();

  std::function<void(bool)> reply_;
  QPointer<AppModel> model_;
  bool isClosing_ = false;
};

}  // namespace velmora
