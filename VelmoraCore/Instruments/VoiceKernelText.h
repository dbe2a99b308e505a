#pragma once

#include <algorithm>
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
/// computation a window. The designs of a chunk are made ahead, as none waits for another; oscillators and
/// filters alternate by window, so that the processor runs the next oscillators while the filters wait for
/// themselves.
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
    Floats amp[chunk];
    Floats brightness[chunk];
    for (int start = 0; start < frames; start += window) {
      stepEnvelopes(voices, smaller(window, frames - start), amp + start, brightness + start);
    }
    const DueFrames due(voices, frames);
    Coefficients updates[windowsInChunk];
    for (int start = 0; start < frames; start += window) {
      design(voices, due, brightness + start, smaller(window, frames - start), updates[start / window]);
    }
    const SynthParameters& sound = *voices.parameters;
    withWaveform(sound.osc1Waveform, [&](auto first) {
      withWaveform(sound.osc2Waveform, [&](auto second) {
        for (int start = 0; start < frames; start += window) {
          const int count = smaller(window, frames - start);
          Floats signal[window];
          mixOscillators<first(), second()>(voices, count, signal);
          filter(voices, due, updates[start / window], amp + start, count, signal);
          fade(voices, count, signal);
          sumVoices(signal, count, sums + start);
        }
      });
    });
  }

  /// Both envelopes by up to a window: together as long as no stage ends, else sample by sample.
  static void stepEnvelopes(VoiceLanes& voices, int frames, Floats* amp, Floats* brightness) noexcept {
    const Recursion ampStages(voices.ampEnv);
    const Recursion filterStages(voices.filterEnv);
    Floats ampLevel = load(voices.ampEnv.level);
    Floats filterLevel = load(voices.filterEnv.level);
    if (ampStages.areAllSustaining() && filterStages.areAllSustaining()) {
      for (int frame = 0; frame < frames; ++frame) {
        amp[frame] = ampLevel = ampStages.glided(ampLevel);
        brightness[frame] = filterLevel = filterStages.glided(filterLevel);
      }
      store(voices.ampEnv.level, ampLevel);
      store(voices.filterEnv.level, filterLevel);
      return;
    }
    Mask ampCrossed(0);
    Mask filterCrossed(0);
    for (int frame = 0; frame < frames; ++frame) {
      amp[frame] = ampLevel = ampStages.next(ampLevel);
      brightness[frame] = filterLevel = filterStages.next(filterLevel);
      ampCrossed = ampCrossed | ampStages.hasCrossed(ampLevel);
      filterCrossed = filterCrossed | filterStages.hasCrossed(filterLevel);
    }
    finishWindow(voices.ampEnv, any(ampCrossed), ampLevel, frames, amp);
    finishWindow(voices.filterEnv, any(filterCrossed), filterLevel, frames, brightness);
  }

  /// Keeps the level reached, unless a stage has ended on the way: then the window is run again.
  static void finishWindow(EnvelopeLanes& envelope, bool hasCrossed, const Floats& level, int frames,
                           Floats* levels) noexcept {
    if (hasCrossed) {
      runToBounds(envelope, frames, levels);
    } else {
      store(envelope.level, level);
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

    bool areAllSustaining() const noexcept { return !any(isSustaining == Mask(0)); }
    Floats glided(const Floats& level) const noexcept {
      return level + (sustainLevel - level) * ADSR::sustainGlide;
    }
    Floats next(const Floats& level) const noexcept {
      return select(isSustaining, glided(level), base + level * coefficient);
    }
    Mask hasCrossed(const Floats& level) const noexcept {
      return (level >= upperBound) | (level <= lowerBound);
    }
  };

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
    const Floats increment1 = load(voices.osc1.increment), increment2 = load(voices.osc2.increment);
    Floats phase1 = load(voices.osc1.phase), phase2 = load(voices.osc2.phase);
    const bool areLow = !any((increment1 >= shapes::lowIncrement) | (increment2 >= shapes::lowIncrement));
    const auto run = [&](auto range) {
      for (int frame = 0; frame < frames; ++frame) {
        mixed[frame] = shapes::shape<first, range()>(phase1, increment1) * level1 +
                       shapes::shape<second, range()>(phase2, increment2) * level2;
        phase1 = shapes::advanced(phase1, increment1);
        phase2 = shapes::advanced(phase2, increment2);
      }
    };
    if (areLow) {
      run(std::integral_constant<shapes::Range, shapes::Range::low>());
    } else {
      run(std::integral_constant<shapes::Range, shapes::Range::any>());
    }
    store(voices.osc1.phase, phase1);
    store(voices.osc2.phase, phase2);
  }

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
    for (int frame = 0; frame < frames; ++frame) {
      float voices[voiceCount];
      signal[frame].store(voices);
      float sum = 0;
      for (const float voice : voices) sum += voice;
      sums[frame] = sum;
    }
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

  static void addClippedLanes(float* into, const float* sums, float drive) noexcept {
    const Floats clipped = exact::tanhSingle(Floats(drive) * Floats::load(sums));
    (Floats::load(into) + clipped).store(into);
  }
};

}  // namespace velmora
