#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace velmora {

/// The events of the coming block in the order of their frames; equal frames keep their order of arrival.
///
/// The storage is allocated once; nothing here allocates later. [audio thread]
class InstrumentEventQueue {
 public:
  struct Event {
    std::int64_t frame = 0;
    std::uint8_t pitch = 0;
    std::uint8_t velocity = 0;
    bool isOn = false;
  };

  static constexpr std::int64_t standardCapacity = 256;

  explicit InstrumentEventQueue(std::int64_t capacity = standardCapacity)
      : storage_(static_cast<std::size_t>(capacity)) {}

  std::int64_t capacity() const noexcept { return static_cast<std::int64_t>(storage_.size()); }
  bool isEmpty() const noexcept { return head_ == count_; }

  /// Whether the event was stored; false when the queue is full.
  bool enqueue(std::int64_t frame, std::uint8_t pitch, std::uint8_t velocity, bool isOn) noexcept;

  void clear() noexcept { count_ = head_ = 0; }

  /// Runs a block: `apply(event)` for every event on its frame, `renderFrames(from, to)` for the samples
  /// between. What lies at or past the block's end is applied after the last sample, so that the queue is
  /// empty between blocks.
  template <class Apply, class RenderFrames>
  void runBlock(int frameCount, Apply apply, RenderFrames renderFrames) noexcept {
    if (frameCount < 1) return;
    int position = 0;
    while (position < frameCount) {
      int next = frameCount;
      while (head_ < count_) {
        const Event& event = storage_[static_cast<std::size_t>(head_)];
        if (position < event.frame) {
          next = static_cast<int>(std::min<std::int64_t>(event.frame, frameCount));
          break;
        }
        apply(take());
      }
      if (next != position) renderFrames(position, next);
      position = next;
    }
    while (head_ < count_) apply(take());
  }

 private:
  Event take() noexcept {
    const Event event = storage_[static_cast<std::size_t>(head_++)];
    if (head_ >= count_) clear();
    return event;
  }

  std::vector<Event> storage_;
  std::int64_t count_ = 0;  // one past the last live event
  std::int64_t head_ = 0;   // the next event to take
};

}  // namespace velmora
