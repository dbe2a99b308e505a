#pragma once

#include <array>
#include <atomic>

#include "Platform/Audio/GlidingParameter.h"

namespace platform {

/// Three bands in series: a low shelf at 120 Hz (slope 1), a bell at 1000 Hz (1 octave), a high shelf at 8000
/// Hz (slope 1).
///
/// The responses are those of the audio cookbook (R. Bristow-Johnson). They are computed as state-variable
/// filters with trapezoidal integrators (A. Simper), which have the same response, keep the low shelf precise
/// in single precision at every rate, and may change in every frame without a click: a gain glides, and a
/// flat band leaves the input alone. With all gains at 0 dB the unit is skipped and holds no state.
class Equalizer {
 public:
  enum class Band { low, mid, high };
  static constexpr int bandCount = 3;
  static constexpr float gainLimitDB = 24;

  Equalizer() noexcept { prepare(48000); }

  /// Not while the audio thread runs.
  void prepare(double sampleRate) noexcept;
  void reset() noexcept;

  /// Any thread. Clamped to -24...24 dB.
  void setGainDB(Band band, float gainDB) noexcept;
  float gainDB(Band band) const noexcept { return gains_[static_cast<std::size_t>(band)].target(); }

  /// [audio thread] In place.
  void process(float* samples, int frameCount) noexcept;
  /// [audio thread] True if silence in gives silence out.
  bool isQuiet() const noexcept;
  /// [audio thread] The same as processing silence while quiet.
  void skip(int frameCount) noexcept;

 private:
  /// What the bilinear transform makes of a band's frequency and width at the present rate.
  struct Prototype {
    double warpedFrequency = 0;  // tan(w0 / 2)
    double damping = 0;          // 1 / Q
  };
  struct Coefficients {
    float keep = 0, drive1 = 0, drive2 = 0;  // into the two integrators
    float input = 0, output1 = 0,
          output2 = 0;  // out of them; all zero for a flat band, `output2` but for the low shelf
  };
  struct State {
    float s1 = 0, s2 = 0;
  };
  using BandCoefficients = std::array<Coefficients, bandCount>;
  using BandStates = std::array<State, bandCount>;

  Coefficients design(Band band, float gainDB) const noexcept;
  template <Band band>
  static float tick(float x, const Coefficients& c, State& s) noexcept;
  static float cascade(float x, const BandCoefficients& c, BandStates& s) noexcept;
  void updateCoefficients() noexcept;
  bool isResting() const noexcept;
  void processStretch(float* samples, int frameCount) noexcept;
  void passFrames(int frameCount) noexcept;
  int processGliding(float* samples, int frameCount) noexcept;
  void processSteady(float* samples, int frameCount) noexcept;
  template <Band band>
  void run(float* samples, int frameCount) noexcept;
  void runStaggered(float* samples, int frameCount) noexcept;

  std::array<GlidingParameter, bandCount> gains_{GlidingParameter(0), GlidingParameter(0),
                                                 GlidingParameter(0)};
  std::array<Prototype, bandCount> prototypes_;
  BandCoefficients coefficients_;
  std::array<float, bandCount> designedGains_{};
  BandStates states_;
  int stretchPosition_ = 0;
};

}  // namespace platform
