#pragma once

#include <cstdint>

#include "VelmoraCore/Song/UUID.h"

namespace velmora {

/// What a clip plays: a pattern or an audio asset, by id.
struct ClipSource {
  enum class Kind : std::uint8_t { pattern, audio };

  Kind kind = Kind::pattern;
  UUID id;

  static ClipSource pattern(const UUID& id) { return {Kind::pattern, id}; }
  static ClipSource audio(const UUID& id) { return {Kind::audio, id}; }
  bool isPattern() const { return kind == Kind::pattern; }
  bool isAudio() const { return kind == Kind::audio; }

  bool operator==(const ClipSource&) const = default;
};

/// A placement on the timeline, in beats. A clip longer than its pattern tiles it, a shorter one cuts it.
struct Clip {
  UUID id;
  UUID trackID;
  ClipSource source;
  double startBeat = 0;
  double lengthBeats = 0;

  bool operator==(const Clip&) const = default;
};

}  // namespace velmora
