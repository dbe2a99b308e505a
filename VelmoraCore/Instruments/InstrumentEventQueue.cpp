#include "VelmoraCore/Instruments/InstrumentEventQueue.h"

namespace velmora {

bool InstrumentEventQueue::enqueue(std::int64_t frame, std::uint8_t pitch, std::uint8_t velocity,
                                   bool isOn) noexcept {
  if (count_ >= capacity()) return false;
  auto place = static_cast<std::size_t>(count_);
  while (place > static_cast<std::size_t>(head_) && storage_[place - 1].frame > frame) {
    storage_[place] = storage_[place - 1];
    --place;
  }
  storage_[place] = {frame, pitch, velocity, isOn};
  ++count_;
  return true;
}

}  // namespace velmora
