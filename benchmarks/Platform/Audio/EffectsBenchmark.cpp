#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <vector>

#include "Platform/Audio/AudioGraph.h"

namespace {

using namespace platform;

constexpr double sampleRate = 48000;
constexpr int blockFrames = 512;

/// A decaying, never silent tone: what a track plays.
std::vector<float> sound() {
  std::vector<float> samples(blockFrames);
  for (int n = 0; n < blockFrames; ++n)
    samples[static_cast<std::size_t>(n)] = 0.3F * std::sin(0.05F * static_cast<float>(n));
  return samples;
}

void reportNanosecondsPerFrame(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * blockFrames);
  state.counters["ns/frame"] = benchmark::Counter(
      blockFrames * 1e-9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// Runs `process(mono, left, right)` on fresh blocks of sound.
template <typename Process>
void measureUnit(benchmark::State& state, const Process& process) {
  const auto input = sound();
  std::vector<float> mono(blockFrames), left(blockFrames), right(blockFrames);
  for (auto _ : state) {
    std::ranges::copy(input, mono.begin());
    process(mono.data(), left.data(), right.data());
    benchmark::DoNotOptimize(left.data());
    benchmark::ClobberMemory();
  }
  reportNanosecondsPerFrame(state);
}

void setAll(Equalizer& equalizer, float gainDB) {
  for (const auto band : {Equalizer::Band::low, Equalizer::Band::mid, Equalizer::Band::high}) {
    equalizer.setGainDB(band, gainDB);
  }
}

void equalizer(benchmark::State& state) {
  Equalizer unit;
  setAll(unit, 6);
  measureUnit(state, [&](float* mono, float*, float*) { unit.process(mono, blockFrames); });
}

void equalizerGliding(benchmark::State& state) {
  Equalizer unit;
  float gainDB = 6;
  measureUnit(state, [&](float* mono, float*, float*) {
    setAll(unit, gainDB = -gainDB);
    unit.process(mono, blockFrames);
  });
}

void delay(benchmark::State& state) {
  Delay unit;
  unit.setWetDryMix(30);
  measureUnit(state, [&](float* mono, float*, float*) { unit.process(mono, blockFrames); });
}

void reverb(benchmark::State& state) {
  Reverb unit;
  unit.setWetDryMix(30);
  measureUnit(state,
              [&](float* mono, float* left, float* right) { unit.process(mono, left, right, blockFrames); });
}

void channel(benchmark::State& state) {
  MixerNode unit;
  unit.setOutputVolume(0.8F);
  unit.setPan(0.3F);
  measureUnit(state, [&](float* mono, float*, float* right) { unit.process(mono, right, blockFrames); });
}

struct Loop : SourceNode {
  explicit Loop(std::vector<float> block) : samples(std::move(block)) {}
  void render(double, int, std::span<float> buffer) noexcept override {
    std::ranges::copy(samples, buffer.begin());
  }
  std::vector<float> samples;
};

enum class Effects { flat, all };

/// A graph of one strip, pulled in blocks.
void measureStrip(benchmark::State& state, Effects effects, std::vector<float> block) {
  Loop source(std::move(block));
  Equalizer eq;
  Delay echo;
  Reverb room;
  MixerNode mixer;
  mixer.setOutputVolume(0.8F);
  mixer.setPan(0.3F);
  if (effects == Effects::all) {
    setAll(eq, 6);
    echo.setWetDryMix(30);
    room.setWetDryMix(30);
  }
  AudioGraph graph(sampleRate);
  graph.setStrips({{&source, &eq, &echo, &room, &mixer}});
  std::vector<float> left(blockFrames), right(blockFrames);
  for (auto _ : state) {
    graph.render(0, blockFrames, left.data(), right.data());
    benchmark::DoNotOptimize(left.data());
    benchmark::ClobberMemory();
  }
  reportNanosecondsPerFrame(state);
}

void stripWithAllEffects(benchmark::State& state) { measureStrip(state, Effects::all, sound()); }
void stripWithoutEffects(benchmark::State& state) { measureStrip(state, Effects::flat, sound()); }
void silentStrip(benchmark::State& state) {
  measureStrip(state, Effects::all, std::vector<float>(blockFrames));
}

BENCHMARK(equalizer);
BENCHMARK(equalizerGliding);
BENCHMARK(delay);
BENCHMARK(reverb);
BENCHMARK(channel);
BENCHMARK(stripWithAllEffects);
BENCHMARK(stripWithoutEffects);
BENCHMARK(silentStrip);

}  // namespace
