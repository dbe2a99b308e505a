#include "VelmoraCore/Render/NoteEvent.h"

#include <bit>

namespace velmora {

namespace {

/// One round of a multiply-xorshift mixer.
std::uint64_t mixed(std::uint64_t state, std::uint64_t value) noexcept {
  state = (state ^ value) * 0x9E3779B97F4A7C15U;
  return state ^ (state >> 29);
}

}  // namespace

bool operator<(const NoteEvent& a, const NoteEvent& b) noexcept {
  if (a.beat != b.beat) return a.beat < b.beat;
  if (a.isOn != b.isOn) return !a.isOn;
  if (a.pitch != b.pitch) return a.pitch < b.pitch;
  return a.velocity < b.velocity;
}

std::int64_t fingerprint(std::span<const NoteEvent> events) noexcept {
  std::uint64_t state = mixed(0x243F6A8885A308D3U, events.size());
  for (const NoteEvent& event : events) {
    state = mixed(state, std::bit_cast<std::uint64_t>(event.beat + 0.0));  // -0 becomes 0
    state = mixed(state, static_cast<std::uint64_t>(event.pitch) << 16 |
                             static_cast<std::uint64_t>(event.velocity) << 8 |
                             static_cast<std::uint64_t>(event.isOn));
  }
  return static_cast<std::int64_t>(state);
}

}  // namespace velmora
