#pragma once

#include <cstdint>
#include <span>

namespace velmora {

/// A note that begins or ends: absolute on the timeline in song mode, within the pattern in pattern mode.
struct NoteEvent {
  double beat = 0;
  std::uint8_t pitch = 0;
  std::uint8_t velocity = 0;  ///< 1 to 127; an off event carries its note's
  bool isOn = false;

  bool operator==(const NoteEvent&) const = default;
};

/// By beat; at one beat every off before every on, so that a note ends before the next begins; then by pitch
/// and velocity.
bool operator<(const NoteEvent& a, const NoteEvent& b) noexcept;

/// A hash of the count and of every field in order; negative zero counts as zero.
std::int64_t fingerprint(std::span<const NoteEvent> events) noexcept;

}  // namespace velmora
