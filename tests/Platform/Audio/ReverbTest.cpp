#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <numeric>

#include "Platform/Audio/Delay.h"
#include "Platform/Audio/FlushDenormals.h"
#include "Platform/Audio/Reverb.h"
#include "tests/Platform/Audio/RoomMeasures.h"
#include "tests/Platform/Audio/Signals.h"

namespace platform {
namespace {

using signals::impulse;
using signals::noise;
using signals::Samples;

struct Stereo {
  Samples left, right;
};

Stereo process(Reverb& reverb, const Samples& mono) {
  const FlushDenormals guard;
  Stereo out{Samples(mono.size()), Samples(mono.size())};
  reverb.process(mono.data(), out.left.data(), out.right.data(), static_cast<int>(mono.size()));
  return out;
}

class Room : public testing::TestWithParam<double> {
 protected:
  void SetUp() override {
    reverb_.prepare(rate_);
    reverb_.setWetDryMix(100);
    room_ = process(reverb_, impulse(static_cast<int>(2.7 * rate_)));
  }
  const double rate_ = GetParam();
  Reverb reverb_;
  Stereo room_;
};

#if defined(VELMORA_SANITIZED)  // the transforms of the measures are slow there
INSTANTIATE_TEST_SUITE_P(Rates, Room, testing::Values(48000));
#else
INSTANTIATE_TEST_SUITE_P(Rates, Room, testing::Values(44100, 48000, 96000));
#endif

TEST_P(Room, decaysEvenlyAndSoonerTowardsTheHighs) {
  struct Row {
    double frequency, shortest, longest;
  };
  for (const auto& side : {room_.left, room_.right}) {
    for (const auto& [frequency, shortest, longest] :
         {Row{125, 1.6, 2.1}, Row{250, 1.65, 2.05}, Row{500, 1.7, 1.95}, Row{1000, 1.7, 1.9},
          Row{2000, 1.6, 1.8}, Row{4000, 1.35, 1.65}, Row{8000, 0.9, 1.2}, Row{16000, 0.3, 0.7}}) {
      const auto [seconds, lateSeconds] = measures::decayTime(side, frequency, rate_);
      EXPECT_GT(seconds, shortest) << frequency;
      EXPECT_LT(seconds, longest) << frequency;
      EXPECT_LT(lateSeconds, seconds * 1.2) << "a slow rest at " << frequency;
    }
  }
}

TEST_P(Room, isDenseSmoothAndWide) {
  for (const auto& side : {room_.left, room_.right}) {
    const auto density = [&](double from, double to) {
      double sum = 0;
      for (int i = 0; i < 8; ++i) sum += measures::echoDensity(side, from + (to - from) / 8 * i, rate_) / 8;
      return sum;
    };
    EXPECT_GT(density(0.08, 0.12), 0.93);
    EXPECT_NEAR(density(0.2, 0.5), 1, 0.07);
    // Noise would show 12 dB; a ring that outlives the rest shows more, and more the later one looks.
    EXPECT_LT(measures::strongestLine(side, 0.5, rate_), 22);
    EXPECT_LT(measures::strongestLine(side, 1.5, rate_), 22);
  }
  EXPECT_NEAR(measures::correlation(room_.left, room_.right, 0.1, rate_), 0, 0.1);
  EXPECT_NEAR(measures::correlation(room_.left, room_.right, 0.5, rate_), 0, 0.2);
}

TEST_P(Room, isAsLoudAsTheDrySoundAndStartsAfterAPreDelay) {
  for (const auto& side : {room_.left, room_.right}) {
    EXPECT_NEAR(10 * std::log10(measures::energy(side, 0, rate_)), 0, 2);
    EXPECT_NEAR(std::accumulate(side.begin(), side.end(), 0.0), 0, 1.5) << "no build-up at 0 Hz";
    const auto start = std::ranges::find_if(side, [](float x) { return x != 0; }) - side.begin();
    EXPECT_NEAR(static_cast<double>(start) / rate_, 0.012, 0.001);
  }
}

TEST_P(Room, staysStableAndEndsInSilence) {
  for (int second = 0; second < 20; ++second) {
    const auto loud = process(reverb_, Samples(static_cast<std::size_t>(rate_), 1.0F));
    ASSERT_LT(std::ranges::max(loud.left), 3.0F);
  }
  int seconds = 0;
  for (; !reverb_.isQuiet() && seconds < 60; ++seconds)
    process(reverb_, Samples(static_cast<std::size_t>(rate_)));
  EXPECT_LT(seconds, 30) << "until the last line holds only zeros";
  EXPECT_THAT(process(reverb_, Samples(1000)).left, testing::Each(0.0F));
}

TEST(Reverb, mixesLinearly) {
  const auto dry = noise(20000);
  Reverb wetRoom, mixedRoom;
  wetRoom.setWetDryMix(100);
  mixedRoom.setWetDryMix(30);
  const auto wet = process(wetRoom, dry), mixed = process(mixedRoom, dry);
  for (std::size_t n = 0; n < dry.size(); ++n) {
    ASSERT_NEAR(mixed.left[n], 0.7F * dry[n] + 0.3F * wet.left[n], 1e-6F);
    ASSERT_NEAR(mixed.right[n], 0.7F * dry[n] + 0.3F * wet.right[n], 1e-6F);
  }
}

Stereo process(Delay& delay, Samples mono) {
  delay.process(mono.data(), static_cast<int>(mono.size()));
  return {mono, mono};
}

template <class Effect>
struct WetEffect : testing::Test {};
using WetEffects = testing::Types<Delay, Reverb>;
TYPED_TEST_SUITE(WetEffect, WetEffects);

TYPED_TEST(WetEffect, forgetsWhatItHeardWhenTurnedDown) {
  TypeParam effect;
  effect.setWetDryMix(50);
  process(effect, noise(20000));
  effect.setWetDryMix(0);
  const auto sound = noise(1000, 2);
  const auto out = process(effect, sound);
  EXPECT_TRUE(std::equal(sound.begin() + 480, sound.end(), out.left.begin() + 480)) << "the glide has ended";
  EXPECT_TRUE(std::equal(sound.begin() + 480, sound.end(), out.right.begin() + 480));
  effect.setWetDryMix(100);
  EXPECT_THAT(process(effect, Samples(20000)).left, testing::Each(0.0F));
}

}  // namespace
}  // namespace platform
