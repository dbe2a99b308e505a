#pragma once

#include <algorithm>
#include <bit>
#include <cstring>
#include <type_traits>

#include "VelmoraCore/DSP/BiquadDesign.h"
#include "VelmoraCore/DSP/Lanes.h"
#include "VelmoraCore/DSP/WaveformShapes.h"
#include "VelmoraCore/Instruments/VoiceKernel.h"

namespace velmora {

/// The text of the voice kernels, for native vectors of `width` bytes; included by one file an instruction
/// set.
///
/// Each stage of the sound is a short loop with one lane a voice. Within any window of eight samples each
/// voice's filter is updated exactly once, so the designs of all voices, wherever they fall, are one
/// computation a window. Stages that wait for themselves, sample after sample, stand beside others that
/// don't: envelopes beside designs, one oscillator beside the other, filters beside sums.
template <int width>
struct VoiceKernelText {
  using Floats = Lanes<float, width>;
  using Doubles = Lanes<double, width>;
  using Mask = typename Floats::Mask;
  static constexpr int window = 8;
  static constexpr int windowsInChunk = 8;
  static constexpr int chunk = window * windowsInChunk;

  static Floats load(const VoiceFloats& source) noexcept { return Floats::load(source.data()); }
  static void store(VoiceFloats& target, const Floats& value) noexcept { value.store(target.data()); }
  static int smaller(int a, int b) noexcept { return a < b ? a : b; }

  static void step(VoiceLanes& voices, int frameCount, float* sums) noexcept {
    for (int start = 0; start < frameCount; start += chunk) {
      stepChunk(voices, smaller(chunk, frameCount - start), sums + start);
    }
  }

  static void stepChunk(VoiceLanes& voices, int frames, float* sums) noexcept {
    const DueFrames due(voices, frames);
    Floats amp[chunk];
    Coefficients updates[windowsInChunk];
    for (int start = 0; start < frames; start += window) {
      const int count = smaller(window, frames - start);
      Floats brightness[window];
      stepEnvelopes(voices, count, amp + start, brightness);
      design(voices, due, brightness, count, updates[start / window]);
    }
    Floats signal[chunk];
    const SynthParameters& sound = *voices.parameters;
    withWaveform(sound.osc1Waveform, [&](auto first) {
      withWaveform(sound.osc2Waveform,
                   [&](auto second) { mixOscillators<first(), second()>(voices, frames, signal); });
    });
    for (int start = 0; start < frames; start += window) {
      const int count = smaller(window, frames - start);
      filter(voices, due, updates[start / window], amp + start, count, signal + start);
      fade(voices, count, signal + start);
      sumVoices(signal + start, count, sums + start);
    }
  }

  /// The stages of an envelope's eight lanes, for as long as none ends.
  struct Recursion {
    Floats sustainLevel, base, coefficient, upperBound, lowerBound;
    Mask isSustaining;

    explicit Recursion(const EnvelopeLanes& envelope) noexcept
        : sustainLevel(envelope.shape.sustainLevel()),
          base(load(envelope.base)),
          coefficient(load(envelope.coefficient)),
          upperBound(load(envelope.upperBound)),
          lowerBound(load(envelope.lowerBound)),
          isSustaining(Mask::load(envelope.isSustaining.data())) {}

    /// Whether a step changes no level, as in a sustain that has arrived and in an idle voice.
    bool areHolding(const Floats& level) const noexcept {
      const Floats stepped = next(level);
      return !any(hasCrossed(stepped) | ((stepped == level) == Mask(0)));
    }
    Floats next(const Floats& level) const noexcept {
      const Floats glided = level + (sustainLevel - level) * ADSR::sustainGlide;
      return select(isSustaining, glided, base + level * coefficient);
    }
    Mask hasCrossed(const Floats& level) const noexcept {
      return (level >= upperBound) | (level <= lowerBound);
    }
  };

  /// Both envelopes by up to a window: nothing to step while all voices hold their levels, and together as
  /// long as no stage ends.
  static void stepEnvelopes(VoiceLanes& voices, int frames, Floats* amp, Floats* brightness) noexcept {
    const Recursion ampStages(voices.ampEnv);
    const Recursion filterStages(voices.filterEnv);
    Floats ampLevel = load(voices.ampEnv.level);
    Floats filterLevel = load(voices.filterEnv.level);
    if (ampStages.areHolding(ampLevel) && filterStages.areHolding(filterLevel)) {
      std::fill_n(amp, frames, ampLevel);
      std::fill_n(brightness, frames, filterLevel);
      return;
    }
    for (int frame = 0; frame < frames; ++frame) {
      amp[frame] = ampLevel = ampStages.next(ampLevel);
      brightness[frame] = filterLevel = filterStages.next(filterLevel);
    }
    finishWindow(voices.ampEnv, ampStages, frames, amp);
    finishWindow(voices.filterEnv, filterStages, frames, brightness);
  }

  /// Keeps the level reached, unless a stage has ended on the way: then the window is run again. As a stage
  /// only rises or only falls, a bound that it passes is passed in the first sample or still in the last.
  static void finishWindow(EnvelopeLanes& envelope, const Recursion& stages, int frames,
                           Floats* levels) noexcept {
    const Floats reached = levels[frames - 1];
    if (any(stages.hasCrossed(levels[0]) | stages.hasCrossed(reached))) {
      runToBounds(envelope, frames, levels);
    } else {
      store(envelope.level, reached);
    }
  }

  /// One envelope with the rare samples on which stages end, voice by voice.
  static void runToBounds(EnvelopeLanes& envelope, int frames, Floats* levels) noexcept {
    for (int frame = 0; frame < frames; ++frame) {
      const Recursion recursion(envelope);
      const Floats level = recursion.next(load(envelope.level));
      std::int32_t hasCrossed[voiceCount];
      recursion.hasCrossed(level).store(hasCrossed);
      store(envelope.level, level);
      for (int voice = 0; voice < voiceCount; ++voice) {
        if (hasCrossed[voice]) envelope.crossBound(voice);
      }
      levels[frame] = load(envelope.level);
    }
  }

  /// Calls `body` with the waveform as a constant.
  template <class Body>
  static void withWaveform(Waveform waveform, const Body& body) noexcept {
    switch (waveform) {
      case Waveform::sine:
        return body(std::integral_constant<Waveform, Waveform::sine>());
      case Waveform::triangle:
        return body(std::integral_constant<Waveform, Waveform::triangle>());
      case Waveform::saw:
        return body(std::integral_constant<Waveform, Waveform::saw>());
      case Waveform::square:
        return body(std::integral_constant<Waveform, Waveform::square>());
    }
  }

  template <Waveform first, Waveform second>
  static void mixOscillators(VoiceLanes& voices, int frames, Floats* mixed) noexcept {
    const Floats level1 = voices.parameters->osc1Level, level2 = voices.parameters->osc2Level;
    Oscillators<first> one(voices.osc1);
    Oscillators<second> two(voices.osc2);
    for (int frame = 0; frame < frames; ++frame) {
      one.step(frame);
      two.step(frame);
    }
    one.roundSteps();
    two.roundSteps();
    for (int frame = 0; frame < frames; ++frame) {
      mixed[frame] = one.output[frame] * level1 + two.output[frame] * level2;
    }
    store(voices.osc1.phase, one.phase);
    store(voices.osc2.phase, two.phase);
  }

  /// One oscillator of all voices. Few samples are near a step of the waveform, so that all are made plain
  /// first and those few shaped in full afterwards.
  template <Waveform waveform>
  struct Oscillators {
    Floats increment, phase;
    Floats phases[chunk];
    Floats output[chunk];
    std::uint64_t nearSteps = 0;  // a bit a sample
    static_assert(chunk <= 64);

    explicit Oscillators(const OscillatorLanes& lanes) noexcept
        : increment(load(lanes.increment)), phase(load(lanes.phase)) {}

    VELMORA_INLINE void step(int frame) noexcept {
      phases[frame] = phase;
      output[frame] = shapes::plain<waveform>(phase);
      if constexpr (shapes::hasSteps<waveform>) {
        nearSteps |= std::uint64_t{any(shapes::isNearStep<waveform>(phase, increment))} << frame;
      }
      phase = shapes::advanced(phase, increment);
    }
    void roundSteps() noexcept {
      for (; nearSteps != 0; nearSteps &= nearSteps - 1) {
        const int frame = std::countr_zero(nearSteps);
        output[frame] = shapes::shape<waveform>(phases[frame], increment);
      }
    }
  };

  /// In which sample of every window each voice's filter is updated.
  struct DueFrames {
    std::int32_t of[voiceCount];
    bool isAny[window] = {};

    DueFrames(VoiceLanes& voices, int frames) noexcept {
      for (int voice = 0; voice < voiceCount; ++voice) {
        int& counter = voices.controlCounter[static_cast<std::size_t>(voice)];
        of[voice] = (window - counter) % window;
        isAny[of[voice]] = true;
        counter = (counter + frames) % window;
      }
    }
  };

  /// The coefficients that the voices take over within a window.
  struct Coefficients {
    Floats b0, b1, a1, a2;
    bool areNew = false;
  };

  static void design(VoiceLanes& voices, const DueFrames& due, const Floats* brightness, int frames,
                     Coefficients& result) noexcept {
    const SynthParameters& sound = *voices.parameters;
    const Mask dueFrame = Mask::load(due.of);
    const Floats envelope = brightnessWhenDue(due, dueFrame, brightness, frames);
    const Floats limit = voices.sampleRate * 0.5F * 0.45F;
    const Floats open = Floats(sound.cutoffHz) + envelope * sound.filterEnvelopeHz * load(voices.cutoffScale);
    const Floats raised = select(open > 20.0F, open, Floats(20.0F));
    const Floats cutoff = select(raised < limit, raised, limit);

    const Floats designed = load(voices.filter.designedCutoff);
    const Mask isInWindow = dueFrame < Mask(frames);
    if (!any(isInWindow & ((cutoff == designed) == Mask(0)))) return;  // the coefficients would be the same
    store(voices.filter.designedCutoff, select(isInWindow, cutoff, designed));

    const double rate = static_cast<double>(voices.sampleRate);
    const Doubles highest = rate * 0.499;
    const Doubles wide = widened(select(cutoff > 1.0F, cutoff, Floats(1.0F)));
    const double q = static_cast<double>(sound.resonance > 0.05F ? sound.resonance : 0.05F);
    const BiquadDesign<Doubles> form(select(wide < highest, wide, highest), q, rate);
    result = {form.lowPassB0(), form.lowPassB1(), form.a1(), form.a2(), true};
  }

  static Floats brightnessWhenDue(const DueFrames& due, const Mask& dueFrame, const Floats* brightness,
                                  int frames) noexcept {
    Floats result = brightness[0];
    for (int frame = 1; frame < frames; ++frame) {
      if (due.isAny[frame]) result = select(dueFrame == Mask(frame), brightness[frame], result);
    }
    return result;
  }

  /// The filters and, on their output, the envelopes and gains of the voices.
  static void filter(VoiceLanes& voices, const DueFrames& due, const Coefficients& update, const Floats* amp,
                     int frames, Floats* signal) noexcept {
    FilterLanes& state = voices.filter;
    const Floats velocityGain = load(voices.velocityGain);
    Floats b0 = load(state.b0), b1 = load(state.b1), a1 = load(state.a1), a2 = load(state.a2);
    Floats z1 = load(state.z1), z2 = load(state.z2);
    for (int frame = 0; frame < frames; ++frame) {
      if (update.areNew && due.isAny[frame]) {
        const Mask isTaking = Mask::load(due.of) == Mask(frame);
        b0 = select(isTaking, update.b0, b0);
        b1 = select(isTaking, update.b1, b1);
        a1 = select(isTaking, update.a1, a1);
        a2 = select(isTaking, update.a2, a2);
      }
      const Floats x = signal[frame];
      const Floats y = x * b0 + z1;
      z1 = z2 + (x * b1 - y * a1);
      z2 = x * b0 - y * a2;
      signal[frame] = amp[frame] * y * velocityGain;
    }
    store(state.b0, b0), store(state.b1, b1), store(state.a1, a1), store(state.a2, a2);
    store(state.z1, z1), store(state.z2, z2);
  }

  static void fade(VoiceLanes& voices, int frames, Floats* signal) noexcept {
    const Floats fadeStep = load(voices.fadeStep);
    if (!any(fadeStep > 0.0F)) return;
    Floats fadeGain = load(voices.fadeGain);
    for (int frame = 0; frame < frames; ++frame) {
      fadeGain = fadeGain - fadeStep;
      signal[frame] = signal[frame] * fadeGain;
    }
    store(voices.fadeGain, fadeGain);
  }

  static void sumVoices(const Floats* signal, int frames, float* sums) noexcept {
    int frame = 0;
    for (; frame + 4 <= frames; frame += 4) sumFourFrames(signal + frame, sums + frame);
    for (; frame < frames; ++frame) {
      float voices[voiceCount];
      signal[frame].store(voices);
      float sum = 0;
      for (const float voice : voices) sum += voice;
      sums[frame] = sum;
    }
  }

  typedef float Four __attribute__((vector_size(16)));

  /// The same sums in the same order, side by side.
  static void sumFourFrames(const Floats* signal, float* sums) noexcept {
    Four sum{};
    for (std::size_t firstVoice = 0; firstVoice < voiceCount; firstVoice += 4) {
      Four rows[4];
      for (int frame = 0; frame < 4; ++frame) {
        const auto* const voices = reinterpret_cast<const char*>(signal + frame);
        std::memcpy(&rows[frame], voices + firstVoice * sizeof(float), sizeof(Four));
      }
      riffle(rows);
      riffle(rows);
      for (const Four& voice : rows) sum = sum + voice;
    }
    std::memcpy(sums, &sum, sizeof(sum));
  }

  /// Lays the upper two rows between the lower two, like cards. Twice that exchanges rows and columns.
  static void riffle(Four (&rows)[4]) noexcept {
    const auto [a, b, c, d] = rows;
    rows[0] = __builtin_shufflevector(a, c, 0, 4, 1, 5);
    rows[1] = __builtin_shufflevector(a, c, 2, 6, 3, 7);
    rows[2] = __builtin_shufflevector(b, d, 0, 4, 1, 5);
    rows[3] = __builtin_shufflevector(b, d, 2, 6, 3, 7);
  }

  static void addClipped(float* into, const float* sums, float drive, int frameCount) noexcept {
    constexpr int lanes = Floats::count;
    int frame = 0;
    for (; frame + lanes <= frameCount; frame += lanes) addClippedLanes(into + frame, sums + frame, drive);
    if (frame == frameCount) return;
    float lastSums[lanes] = {};
    float last[lanes] = {};
    const auto rest = static_cast<std::size_t>(frameCount - frame) * sizeof(float);
    std::memcpy(lastSums, sums + frame, rest);
    std::memcpy(last, into + frame, rest);
    addClippedLanes(last, lastSums, drive);
    std::memcpy(into + frame, last, rest);
  }

  VELMORA_INLINE static void addClippedLanes(float* into, const float* sums, float drive) noexcept {
    const Floats clipped = exact::tanhSingle(Floats(drive) * Floats::load(sums));
    (Floats::load(into) + clipped).store(into);
  }
};

}  // namespace velmora
