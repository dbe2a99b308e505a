#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "VelmoraCore/DSP/ADSR.h"
#include "VelmoraCore/DSP/Biquad.h"
#include "VelmoraCore/DSP/ExactMath.h"
#include "VelmoraCore/DSP/Oscillator.h"
#include "VelmoraCore/Instruments/Instrument.h"
#include "VelmoraCore/Instruments/InstrumentEventQueue.h"
#include "VelmoraCore/Instruments/SynthParameters.h"

namespace velmora::testing {

/// The synthesizer as its formulas stand: one voice after the other, one sample after the other, branches and
/// all. What the lane code has to match, bit for bit, and what its speed is compared to.
class ReferencePolySynth final : public Instrument {
 public:
  explicit ReferencePolySynth(SynthPreset preset) : parameters_(SynthParameters::standard(preset)) {
    prepare(44100, 0);
  }

  void setPreset(SynthPreset preset) {
    parameters_ = SynthParameters::standard(preset);
    applyParameters();
  }

  void prepare(double sampleRate, int) override {
    sampleRate_ = static_cast<float>(sampleRate);
    events_.clear();
    voices_ = {};
    applyParameters();
  }

  void noteOn(std::uint8_t pitch, std::uint8_t velocity, std::int64_t atFrame) noexcept override {
    if (velocity == 0) return noteOff(pitch, atFrame);
    if (!events_.enqueue(std::max<std::int64_t>(atFrame, 0), pitch, velocity, true))
      startNote(pitch, velocity);
  }
  void noteOff(std::uint8_t pitch, std::int64_t atFrame) noexcept override {
    if (!events_.enqueue(std::max<std::int64_t>(atFrame, 0), pitch, 0, false)) endNote(pitch);
  }
  void allNotesOff() noexcept override {
    events_.clear();
    for (Voice& voice : voices_) {
      if (!voice.isActive) continue;
      voice.isHeld = false;
      voice.ampEnv.noteOff();
      voice.filterEnv.noteOff();
    }
  }

  void render(float* into, int frameCount) noexcept override {
    events_.runBlock(
        frameCount,
        [this](const InstrumentEventQueue::Event& e) {
          e.isOn ? startNote(e.pitch, e.velocity) : endNote(e.pitch);
        },
        [this, into](int from, int to) {
          for (int i = from; i < to; ++i) into[i] += step();
        });
  }

 private:
  struct Voice {
    std::uint8_t pitch = 0;
    bool isActive = false;
    bool isHeld = false;
    std::uint64_t order = 0;
    float velocityGain = 0;
    float cutoffScale = 1;
    Oscillator osc1{Waveform::saw};
    Oscillator osc2{Waveform::square};
    Biquad filter;
    ADSR ampEnv;
    ADSR filterEnv;
    int controlCounter = 0;
    bool isFading = false;
    float fadeGain = 1;
    float fadeStep = 0;
    std::uint8_t pendingPitch = 0;
    std::uint8_t pendingVelocity = 0;

    std::uint8_t current() const { return isFading ? pendingPitch : pitch; }
  };

  float rate() const { return std::max(sampleRate_, 1.0F); }

  void applyParameters() {
    const SynthParameters& p = parameters_;
    for (Voice& voice : voices_) {
      const auto shape = [&](ADSR& env, float attack, float decay, float sustain, float release) {
        env.setSampleRate(rate());
        env.setAttack(attack);
        env.setDecay(decay);
        env.setSustain(sustain);
        env.setRelease(release);
      };
      voice.osc1.waveform = p.osc1Waveform;
      voice.osc2.waveform = p.osc2Waveform;
      shape(voice.ampEnv, p.ampAttack, p.ampDecay, p.ampSustain, p.ampRelease);
      shape(voice.filterEnv, p.filterAttack, p.filterDecay, p.filterSustain, p.filterRelease);
      voice.fadeStep = 1 / std::max(rate() * 0.005F, 1.0F);
      if (voice.isActive) retune(voice);
    }
  }

  void retune(Voice& voice) const {
    const float f = exact::exp2((static_cast<float>(voice.pitch) + -69) / 12) * 440;
    const float d1 = exact::exp2(parameters_.osc1DetuneCents / 1200);
    const float d2 =
        exact::exp2(parameters_.osc2DetuneCents / 1200 + static_cast<float>(parameters_.osc2Octave));
    voice.osc1.setFrequency(d1 * f, rate());
    voice.osc2.setFrequency(d2 * f, rate());
  }

  static void setVelocity(Voice& voice, std::uint8_t velocity) {
    const float v = static_cast<float>(std::min<int>(velocity, 127)) / 127;
    voice.velocityGain = 0.8F * v + 0.2F;
    voice.cutoffScale = 0.4F * v + 0.6F;
  }

  void updateFilter(Voice& voice, float e) const {
    float c = parameters_.cutoffHz + (e * parameters_.filterEnvelopeHz) * voice.cutoffScale;
    c = std::min(std::max(c, 20.0F), rate() * 0.5F * 0.45F);
    voice.filter.setLowPass(c, parameters_.resonance, rate());
  }

  void begin(Voice& voice, std::uint8_t pitch, std::uint8_t velocity) const {
    voice.pitch = pitch;
    voice.isActive = voice.isHeld = true;
    voice.isFading = false;
    voice.fadeGain = 1;
    setVelocity(voice, velocity);
    retune(voice);
    voice.osc1.phase = voice.osc2.phase = 0;
    voice.filter.reset();
    voice.ampEnv.reset();
    voice.filterEnv.reset();
    voice.ampEnv.noteOn();
    voice.filterEnv.noteOn();
    voice.controlCounter = 0;
    updateFilter(voice, 0);
  }

  void startNote(std::uint8_t pitch, std::uint8_t velocity) {
    ++voiceOrder_;
    for (Voice& voice : voices_) {
      if (!voice.isActive || voice.current() != pitch) continue;
      voice.order = voiceOrder_;
      voice.isHeld = true;
      if (voice.isFading) {
        voice.pendingVelocity = velocity;
      } else {
        setVelocity(voice, velocity);
        voice.ampEnv.noteOn();
        voice.filterEnv.noteOn();
      }
      return;
    }
    for (Voice& voice : voices_) {
      if (voice.isActive) continue;
      begin(voice, pitch, velocity);
      voice.order = voiceOrder_;
      return;
    }
    const bool areAllHeld =
        std::all_of(voices_.begin(), voices_.end(), [](const Voice& v) { return v.isHeld; });
    Voice* victim = nullptr;
    for (Voice& voice : voices_) {
      if (voice.isHeld && !areAllHeld) continue;
      if (!victim || voice.order < victim->order) victim = &voice;
    }
    if (!victim->isFading) victim->fadeGain = 1;
    victim->isFading = true;
    victim->pendingPitch = pitch;
    victim->pendingVelocity = velocity;
    victim->order = voiceOrder_;
    victim->isHeld = true;
  }

  void endNote(std::uint8_t pitch) {
    for (Voice& voice : voices_) {
      if (!voice.isActive || voice.current() != pitch) continue;
      voice.isHeld = false;
      if (voice.isFading) continue;
      voice.ampEnv.noteOff();
      voice.filterEnv.noteOff();
    }
  }

  float step() {
    float sum = 0;
    for (Voice& voice : voices_) {
      if (voice.isActive) stepVoice(voice, sum);
    }
    return exact::tanh(parameters_.level * 0.33F * sum);
  }

  void stepVoice(Voice& voice, float& sum) const {
    bool isFading = false;
    if (voice.isFading) {
      voice.fadeGain = voice.fadeGain - voice.fadeStep;
      if (voice.fadeGain > 0) {
        isFading = true;
      } else if (voice.isHeld) {
        begin(voice, voice.pendingPitch, voice.pendingVelocity);
      } else {
        voice.isFading = voice.isActive = false;
        return;
      }
    }
    const float a = voice.ampEnv.next();
    const float e = voice.filterEnv.next();
    if (voice.controlCounter == 0) updateFilter(voice, e);
    voice.controlCounter = (voice.controlCounter + 1) % 8;
    const float s1 = voice.osc1.nextSample();
    const float s2 = voice.osc2.nextSample();
    const float y = voice.filter.process(s1 * parameters_.osc1Level + s2 * parameters_.osc2Level);
    float out = (a * y) * voice.velocityGain;
    if (isFading) {
      out = out * voice.fadeGain;
    } else if (!voice.ampEnv.isActive()) {
      voice.isActive = false;
    }
    sum += out;
  }

  SynthParameters parameters_;
  std::array<Voice, 8> voices_;
  InstrumentEventQueue events_;
  float sampleRate_ = 44100;
  std::uint64_t voiceOrder_ = 0;
};

}  // namespace velmora::testing
