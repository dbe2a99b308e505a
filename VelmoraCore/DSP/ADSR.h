#pragma once

#include <cstdint>

namespace velmora {

/// An envelope of three one-pole segments, each aimed past its end so that it arrives in the stated time.
///
/// Stepped once a sample, in single precision and the stated order. [audio thread]
class ADSR {
 public:
  enum class Stage : std::int32_t { idle, attack, decay, sustain, release };

  /// A recursion: level = base + level * coefficient.
  struct Segment {
    float coefficient = 0;
    float base = 0;
  };

  /// The share of the way to the sustain level that each sample of the sustain stage takes.
  static constexpr float sustainGlide = 0.002F;

  ADSR() : ADSR(0.01F, 0.1F, 1, 0.1F, 44100) {}

  /// Times in seconds, `sampleRate` in frames per second (at least 1).
  ADSR(float attack, float decay, float sustain, float release, float sampleRate) noexcept;

  void noteOn() noexcept { stage_ = Stage::attack; }  ///< rises from the present level
  void noteOff() noexcept {
    if (isActive()) stage_ = Stage::release;
  }
  void reset() noexcept;

  float next() noexcept;
  float nextSample() noexcept { return next(); }

  bool isActive() const noexcept { return stage_ != Stage::idle; }
  Stage stage() const noexcept { return stage_; }
  float level() const noexcept { return level_; }

  void setSampleRate(float sampleRate) noexcept;
  void setAttack(float seconds) noexcept;
  void setDecay(float seconds) noexcept;
  void setSustain(float level) noexcept;
  void setRelease(float seconds) noexcept;

  float attack() const noexcept { return attack_; }
  float decay() const noexcept { return decay_; }
  float sustain() const noexcept { return sustain_; }
  float release() const noexcept { return release_; }
  float sampleRate() const noexcept { return sampleRate_; }
  float sustainLevel() const noexcept { return sustainLevel_; }
  const Segment& attackSegment() const noexcept { return attackSegment_; }
  const Segment& decaySegment() const noexcept { return decaySegment_; }
  const Segment& releaseSegment() const noexcept { return releaseSegment_; }

 private:
  void designAttack() noexcept;
  void designDecay() noexcept;
  void designRelease() noexcept;

  float attack_;
  float decay_;
  float sustain_;  // as asked for, not clamped
  float release_;
  float sampleRate_;
  Stage stage_ = Stage::idle;
  float level_ = 0;
  float sustainLevel_ = 0;
  Segment attackSegment_;
  Segment decaySegment_;
  Segment releaseSegment_;
};

}  // namespace velmora
