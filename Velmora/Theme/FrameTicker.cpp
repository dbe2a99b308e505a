#include "Velmora/Theme/FrameTicker.h"

#include <QTimer>
#include <algorithm>
#include <utility>
#include <vector>

namespace velmora {
namespace {

constexpr int framesPerSecond = 60;

/// The one timer that all tickers share; it rests while none is active.
class Frames {
 public:
  Frames() {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setInterval(1000 / framesPerSecond);
    timer_.callOnTimeout([this] { tick(); });
  }

  void add(const FrameTicker& ticker) {
    active_.push_back(&ticker);
    timer_.start();
  }
  void remove(const FrameTicker& ticker) {
    std::erase(active_, &ticker);
    if (active_.empty()) timer_.stop();
  }

 private:
  /// A ticker may start or stop others.
  void tick() const {
    const std::vector<const FrameTicker*> now = active_;
    for (const FrameTicker* const ticker : now)
      if (std::ranges::count(active_, ticker) > 0) ticker->tick();
  }

  QTimer timer_;
  std::vector<const FrameTicker*> active_;
};

Frames& frames() {
  static auto* const shared = new Frames;  // for ever, as tickers may outlive any order of destruction
  return *shared;
}

}  // namespace

void FrameTicker::start() {
  if (!std::exchange(isActive_, true)) frames().add(*this);
}

void FrameTicker::stop() {
  if (std::exchange(isActive_, false)) frames().remove(*this);
}

}  // namespace velmora
