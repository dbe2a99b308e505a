#include "Platform/Audio/Reverb.h"

#include <algorithm>
#include <cmath>

#include "Platform/Audio/Samples.h"
#include "Platform/Audio/VectorClones.h"

namespace platform {
namespace {

// The room. All lengths become primes at the sample rate, so that no two lines' echoes ever fall into step.
// The network's lines grow by the same ratio from each to the next, which spreads their resonances; together
// they are a good second long, so that at 1.8 s of decay the resonances lie about as close as they are wide.
// The allpasses are shorter than the shortest line and fill the gaps between the first echoes; their lengths
// grow by about a third, which keeps their own echoes apart.
constexpr double preDelaySeconds = 0.012;
constexpr double diffuserSeconds[] = {0.0031, 0.0041, 0.0067, 0.0085, 0.0103};
constexpr double leftDiffuserSeconds = 0.0151;
constexpr double rightDiffuserSeconds = 0.0164;
constexpr float diffusion = 0.62F;
constexpr double shortestLineSeconds = 0.031;
constexpr double longestLineSeconds = 0.113;
constexpr RoomDecay decay{.lowSeconds = 1.82, .highSeconds = 0.95, .highFrequency = 8000};

/// The share of the room's energy that comes straight from the allpasses.
constexpr double earlyShare = 0.2;

/// The highs die sooner and hold less energy than the network's formula tells for the lows. With this the wet
/// sound of white noise lies 1.6 dB below the dry, that of a low drum 1 dB above it.
constexpr double loudness = 1.2;

bool isPrime(int number) {
  for (int divisor = 2; divisor * divisor <= number; ++divisor) {
    if (number % divisor == 0) return false;
  }
  return number > 1;
}

/// The first prime number of frames from `seconds` on that is longer than a chunk.
int primeFrames(double seconds, double sampleRate) {
  int frames = std::max(static_cast<int>(std::lround(seconds * sampleRate)), DelayLine::tailFrames);
  while (!isPrime(frames)) ++frames;
  return frames;
}

std::array<int, FeedbackDelayNetwork::lineCount> lineLengths(double sampleRate) {
  std::array<int, FeedbackDelayNetwork::lineCount> lengths{};
  for (std::size_t i = 0; i < lengths.size(); ++i) {
    const double position = static_cast<double>(i) / (FeedbackDelayNetwork::lineCount - 1);
    lengths[i] = primeFrames(
        shortestLineSeconds * std::pow(longestLineSeconds / shortestLineSeconds, position), sampleRate);
  }
  return lengths;
}

PLATFORM_VECTOR_CLONES
void addGained(float* __restrict early, float earlyGain, const float* __restrict late, float lateGain,
               int frameCount) noexcept {
  for (int n = 0; n < frameCount; ++n) early[n] = earlyGain * early[n] + lateGain * late[n];
}

PLATFORM_VECTOR_CLONES
void mixDryAndWet(const float* __restrict mono, const float* __restrict wet, const float* __restrict percent,
                  float* __restrict mixed, int frameCount) noexcept {
  for (int n = 0; n < frameCount; ++n) {
    const float mix = percent[n] * 0.01F;
    mixed[n] = mono[n] * (1 - mix) + wet[n] * mix;
  }
}

}  // namespace

void Reverb::prepare(double sampleRate) {
  preDelayFrames_ = primeFrames(preDelaySeconds, sampleRate);
  preDelay_.prepare(preDelayFrames_);
  for (std::size_t i = 0; i < diffusers_.size(); ++i) {
    diffusers_[i].prepare(primeFrames(diffuserSeconds[i], sampleRate), diffusion);
  }
  leftDiffuser_.prepare(primeFrames(leftDiffuserSeconds, sampleRate), diffusion);
  rightDiffuser_.prepare(primeFrames(rightDiffuserSeconds, sampleRate), diffusion);
  const auto lengths = lineLengths(sampleRate);
  network_.prepare(lengths, decay, sampleRate);
  lateGain_ = static_cast<float>(loudness * std::sqrt((1 - earlyShare) / network_.energy()));
  memoryFrames_ = std::ranges::max(lengths) + 2 * DelayLine::tailFrames;
  mixPercent_.prepare(sampleRate);
  silentFrames_ = memoryFrames_;
}

void Reverb::reset() noexcept {
  mixPercent_.reset();
  clear();
}

void Reverb::clear() noexcept {
  if (isQuiet()) return;
  preDelay_.clear();
  for (auto& diffuser : diffusers_) diffuser.clear();
  leftDiffuser_.clear();
  rightDiffuser_.clear();
  network_.clear();
  silentFrames_ = memoryFrames_;
}

void Reverb::setWetDryMix(float percent) noexcept { mixPercent_.set(std::clamp(percent, 0.0F, 100.0F)); }

void Reverb::skip(int frameCount) noexcept {
  mixPercent_.beginBlock();
  mixPercent_.skip(frameCount);
}

void Reverb::process(const float* mono, float* left, float* right, int frameCount) noexcept {
  mixPercent_.beginBlock();
  int n = 0;
  for (; n < frameCount && !mixPercent_.isResting(0); n += DelayLine::chunkFrames) {
    processChunk(mono + n, left + n, right + n, std::min(DelayLine::chunkFrames, frameCount - n));
  }
  if (!mixPercent_.isResting(0)) return;
  clear();
  for (; n < frameCount; ++n) left[n] = right[n] = mono[n];
}

void Reverb::processChunk(const float* mono, float* left, float* right, int frameCount) noexcept {
  Chunk wetLeft, wetRight, percent;
  renderRoom(mono, wetLeft, wetRight, frameCount);
  mixPercent_.fill(percent.data(), frameCount);
  mixDryAndWet(mono, wetLeft.data(), percent.data(), left, frameCount);
  mixDryAndWet(mono, wetRight.data(), percent.data(), right, frameCount);
}

void Reverb::renderRoom(const float* mono, Chunk& wetLeft, Chunk& wetRight, int frameCount) noexcept {
  Chunk lateLeft{}, lateRight{};
  const float* const delayed = preDelay_.read(preDelayFrames_);
  std::copy(delayed, delayed + frameCount, wetLeft.data());
  std::copy(mono, mono + frameCount, preDelay_.head());
  preDelay_.advance(frameCount);

  bool isSilent = platform::isSilent(mono, frameCount);
  for (auto& diffuser : diffusers_) isSilent &= diffuser.process(wetLeft.data(), frameCount);
  std::copy(wetLeft.data(), wetLeft.data() + frameCount, wetRight.data());
  isSilent &= leftDiffuser_.process(wetLeft.data(), frameCount);
  isSilent &= rightDiffuser_.process(wetRight.data(), frameCount);
  isSilent &=
      network_.process(wetLeft.data(), wetRight.data(), lateLeft.data(), lateRight.data(), frameCount);
  silentFrames_ = isSilent ? std::min(silentFrames_ + frameCount, memoryFrames_) : 0;

  const float earlyGain = static_cast<float>(loudness * std::sqrt(earlyShare));
  addGained(wetLeft.data(), earlyGain, lateLeft.data(), lateGain_, frameCount);
  addGained(wetRight.data(), earlyGain, lateRight.data(), lateGain_, frameCount);
}

}  // namespace platform
