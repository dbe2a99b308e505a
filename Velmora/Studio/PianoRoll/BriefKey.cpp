#include "Velmora/Studio/PianoRoll/BriefKey.h"

#include <chrono>
#include <utility>

namespace velmora {

namespace {

using namespace std::chrono_literals;
constexpr auto length = 200ms;

}  // namespace

BriefKey::BriefKey(AppModel& model, UUID trackID) : model_(model), trackID_(trackID) {
  end_.setSingleShot(true);
  end_.setInterval(length);
  end_.callOnTimeout([this] { release(); });
}

void BriefKey::play(int pitch) {
  release();
  pitch_ = pitch;
  model_.engine().setAuditionKey(pitch, true, trackID_);
  end_.start();
}

void BriefKey::release() {
  if (pitch_) model_.engine().setAuditionKey(*std::exchange(pitch_, std::nullopt), false, trackID_);
}

}  // namespace velmora
