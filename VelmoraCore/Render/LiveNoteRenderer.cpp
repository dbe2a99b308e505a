#include "VelmoraCore/Render/LiveNoteRenderer.h"

#include <mutex>
#include <utility>

namespace velmora {

LiveNoteRenderer::LiveNoteRenderer(std::unique_ptr<Instrument> instrument)
    : instrument_(std::move(instrument)) {}

void LiveNoteRenderer::prepare(double sampleRate, int maxFrames) {
  instrument_->prepare(sampleRate, maxFrames);
  active_.reset();
}

void LiveNoteRenderer::setKey(int pitch, bool isOn) noexcept {
  if (pitch < 0 || pitch >= static_cast<int>(desired_.size())) return;
  const std::lock_guard guard(desiredLock_);
  desired_[static_cast<std::size_t>(pitch)] = isOn;
}

void LiveNoteRenderer::releaseAll() noexcept {
  const std::lock_guard guard(desiredLock_);
  desired_.reset();
}

void LiveNoteRenderer::render(std::span<float> into) noexcept {
  Keys wanted = active_;
  if (desiredLock_.tryLock()) {
    wanted = desired_;
    desiredLock_.unlock();
  }
  if (wanted != active_) {
    for (std::size_t index = 0; index < wanted.size(); ++index) {
      const auto pitch = static_cast<std::uint8_t>(index);
      if (wanted[index] && !active_[index]) instrument_->noteOn(pitch, velocity, 0);
      if (!wanted[index] && active_[index]) instrument_->noteOff(pitch, 0);
    }
    active_ = wanted;
  }
  instrument_->render(into.data(), static_cast<int>(into.size()));
}

}  // namespace velmora
