#include "Platform/Audio/ControlThread.h"

namespace platform {

ControlThread::ControlThread() : thread_([state = state_] { serve(*state); }) {}

ControlThread::~ControlThread() {
  std::unique_lock lock(state_->mutex);
  state_->isEnding = true;
  state_->changed.notify_all();
  const bool hasEnded = state_->changed.wait_for(lock, patienceAtEnd, [this] { return state_->hasEnded; });
  lock.unlock();
  if (hasEnded) {
    thread_.join();
  } else {
    thread_.detach();
  }
}

void ControlThread::add(std::packaged_task<void()> job) {
  const std::lock_guard lock(state_->mutex);
  state_->jobs.push_back(std::move(job));
  state_->changed.notify_all();
}

void ControlThread::serve(State& state) {
  std::unique_lock lock(state.mutex);
  for (;;) {
    state.changed.wait(lock, [&state] { return state.isEnding || !state.jobs.empty(); });
    if (state.jobs.empty()) break;
    auto job = std::move(state.jobs.front());
    state.jobs.pop_front();
    lock.unlock();
    job();
    job = {};  // what it owned ends here, too
    lock.lock();
  }
  state.hasEnded = true;
  state.changed.notify_all();
}

}  // namespace platform
