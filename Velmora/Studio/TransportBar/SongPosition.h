#pragma once

#include <QString>
#include <cstdint>

namespace velmora {

/// A playhead in the numbers that people count: bars of 4 beats, beats of 4 steps, all from 1.
struct SongPosition {
  std::int64_t bar = 1;
  int beat = 1;
  int step = 1;

  /// A beat before the start or not a number counts as the start.
  static SongPosition at(double playheadBeat);

  QString text() const;    ///< "001.1.1"
  QString spoken() const;  ///< "Bar 1, beat 1, step 1"

  bool operator==(const SongPosition&) const = default;
};

}  // namespace velmora
