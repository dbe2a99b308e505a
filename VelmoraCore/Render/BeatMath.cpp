#include "VelmoraCore/Render/BeatMath.h"

#include <cmath>

namespace velmora {

double BeatMath::beatsPerFrame(double bpm, double sampleRate) noexcept { return bpm / 60 / sampleRate; }

double BeatMath::frames(double forBeats, double bpm, double sampleRate) noexcept {
  return forBeats * 60 / bpm * sampleRate;
}

double BeatMath::beats(double forFrames, double bpm, double sampleRate) noexcept {
  return forFrames * bpm / 60 / sampleRate;
}

int BeatMath::frameOffset(int frameCount, double beatDelta, double beatsPerFrame) noexcept {
  const double offset = beatDelta / beatsPerFrame + 0.000001;
  if (!(offset > 0)) return 0;
  if (offset >= frameCount) return frameCount - 1;
  return static_cast<int>(offset);
}

double BeatMath::wrap(double beat, LoopRange into) noexcept {
  const double length = into.endBeat - into.startBeat;
  if (!(length > 0) || !std::isfinite(beat)) return into.startBeat;
  const double distance = beat - into.startBeat;
  // Within one length of the range a remainder is exact subtraction; only far beats need the division.
  double rest = distance >= 0 && distance < length ? distance : std::fmod(distance, length);
  if (rest < 0) rest += length;
  if (rest >= length) rest -= length;
  return into.startBeat + rest;
}

}  // namespace velmora
