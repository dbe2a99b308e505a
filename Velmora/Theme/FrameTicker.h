#pragma once

#include <functional>
#include <utility>

namespace velmora {

/// Calls back about 60 times a second while it is started. All tickers tick together, so that whatever moves
/// is painted in one go. Main thread.
class FrameTicker {
 public:
  explicit FrameTicker(std::function<void()> onFrame) : onFrame_(std::move(onFrame)) {}
  ~FrameTicker() { stop(); }
  FrameTicker(const FrameTicker&) = delete;
  FrameTicker& operator=(const FrameTicker&) = delete;

  void start();
  void stop();
  void tick() const { onFrame_(); }

 private:
  const std::function<void()> onFrame_;
  bool isActive_ = false;
};

}  // namespace velmora
