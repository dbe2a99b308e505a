#include "Platform/Audio/FeedbackDelayNetwork.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "Platform/Audio/Samples.h"
#include "Platform/Audio/VectorClones.h"

namespace platform {
namespace {

/// The rate up to which neighbouring samples serve as the loss filter's taps. Above it they stand further
/// apart, so that the decay up to 20 kHz is the same at every rate.
constexpr double tapRate = 48000;
constexpr int maximumTapDistance = (DelayLine::tailFrames - DelayLine::chunkFrames) / 2;

/// The 16-row Hadamard matrix is orthogonal once divided by this.
constexpr double matrixScale = 4;

/// The gain that takes 60 dB in `seconds` out of a sound that goes round every `delaySeconds`.
double roundTripGain(double delaySeconds, double seconds) {
  return std::pow(10.0, -3 * delaySeconds / seconds);
}

constexpr int rowStride = DelayLine::chunkFrames;
constexpr int groupStride = 4 * rowStride;

/// The output of a line through its loss filter, a symmetric one round `distance` frames after `samples`.
struct LossyTap {
  const float* samples;
  int distance;
  float centre, side;

  float operator()(int n) const noexcept {
    return centre * samples[n + distance] + side * (samples[n] + samples[n + 2 * distance]);
  }
};

// The two halves of the Hadamard matrix, each a matrix of four rows along time. Their outputs never overlap
// anything else, which the compiler must know in order to use vectors.

PLATFORM_VECTOR_CLONES void mixHeard(const std::array<LossyTap, 4>& taps, float* __restrict rows,
                                     float* __restrict left, float* __restrict right,
                                     int frameCount) noexcept {
  const auto [tapA, tapB, tapC, tapD] = taps;
  for (int n = 0; n < frameCount; ++n) {
    const float a = tapA(n), b = tapB(n), c = tapC(n), d = tapD(n);
    const float evenSum = a + c, evenDifference = a - c;
    const float oddSum = b + d, oddDifference = b - d;
    left[n] += evenSum;
    right[n] += oddSum;
    rows[n] = evenSum + oddSum;
    rows[n + rowStride] = evenSum - oddSum;
    rows[n + 2 * rowStride] = evenDifference + oddDifference;
    rows[n + 3 * rowStride] = evenDifference - oddDifference;
  }
}

PLATFORM_VECTOR_CLONES void mixFed(const float* __restrict rows, const float* __restrict in,
                                   float* __restrict line0, float* __restrict line1, float* __restrict line2,
                                   float* __restrict line3, int frameCount) noexcept {
  for (int n = 0; n < frameCount; ++n) {
    const float a = rows[n], b = rows[n + groupStride], c = rows[n + 2 * groupStride];
    const float d =
        rows[n + 3 * groupStride] + in[n];  // here the input meets the four lines with different signs
    const float evenSum = a + c, evenDifference = a - c;
    const float oddSum = b + d, oddDifference = b - d;
    line0[n] = evenSum + oddSum;
    line1[n] = evenSum - oddSum;
    line2[n] = evenDifference + oddDifference;
    line3[n] = evenDifference - oddDifference;
  }
}

}  // namespace

void FeedbackDelayNetwork::prepare(std::span<const int, lineCount> delays, const RoomDecay& decay,
                                   double sampleRate) {
  tapDistance_ = std::clamp(static_cast<int>(std::lround(sampleRate / tapRate)), 1, maximumTapDistance);
  const double w = 2 * std::numbers::pi * decay.highFrequency / sampleRate * tapDistance_;
  double meanSquare = 0;
  for (std::size_t i = 0; i < lineCount; ++i) {
    const double seconds = delays[i] / sampleRate;
    const double low = roundTripGain(seconds, decay.lowSeconds);
    const double high = roundTripGain(seconds, decay.highSeconds);
    const double side = (low - high) / (2 * (1 - std::cos(w)));  // low at 0 Hz, high at w
    lines_[i].delay = delays[i];
    lines_[i].centreTap = static_cast<float>((low - 2 * side) / matrixScale);
    lines_[i].sideTap = static_cast<float>(side / matrixScale);
    lines_[i].line.prepare(delays[i] + tapDistance_);
    meanSquare += low * low / lineCount;
  }
  // Noise of power 1 makes power p in each line, p = 1 + meanSquare * p; half of the lines are heard on a
  // side.
  energy_ = 0.5 * lineCount * (meanSquare / (matrixScale * matrixScale)) / (1 - meanSquare);
}

void FeedbackDelayNetwork::clear() noexcept {
  for (auto& line : lines_) line.line.clear();
}

bool FeedbackDelayNetwork::process(const float* inLeft, const float* inRight, float* left, float* right,
                                   int frameCount) noexcept {
  for (std::size_t group = 0; group < groupCount; ++group) listen(group, left, right, frameCount);
  for (std::size_t member = 0; member < groupSize; ++member) {
    feed(member, member % 2 == 0 ? inLeft : inRight, frameCount);
  }
  const bool isInputSilent =
      std::ranges::all_of(lines_, [&](Line& line) { return isSilent(line.line.head(), frameCount); });
  for (auto& line : lines_) line.line.advance(frameCount);
  return isInputSilent;
}

/// Reads four neighbouring lines through their loss filters, hears them, and mixes them among themselves.
void FeedbackDelayNetwork::listen(std::size_t group, float* left, float* right, int frameCount) noexcept {
  const auto tap = [&](std::size_t member) {
    const Line& line = lines_[group * groupSize + member];
    return LossyTap{line.line.read(line.delay + tapDistance_), tapDistance_, line.centreTap, line.sideTap};
  };
  mixHeard({tap(0), tap(1), tap(2), tap(3)}, mixed_[group * groupSize].data(), left, right, frameCount);
}

/// Mixes the same member of every group, which completes the matrix, and feeds four lines. Their order is
/// turned, since the matrix alone is symmetric and would let half of the network's resonances pile up at 0
/// Hz.
void FeedbackDelayNetwork::feed(std::size_t member, const float* in, int frameCount) noexcept {
  const auto head = [&](std::size_t row) {
    const std::size_t group = (row + member + 2) % groupCount;
    return lines_[group * groupSize + member].line.head();
  };
  mixFed(mixed_[member].data(), in, head(0), head(1), head(2), head(3), frameCount);
}

}  // namespace platform
