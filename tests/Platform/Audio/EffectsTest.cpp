#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>

#include "Platform/Audio/Delay.h"
#include "Platform/Audio/Equalizer.h"
#include "Platform/Audio/MixerNode.h"
#include "tests/Platform/Audio/Signals.h"

namespace platform {
namespace {

using signals::gainDB;
using signals::impulse;
using signals::noise;
using signals::Samples;
using Band = Equalizer::Band;

/// The cookbook's biquads, evaluated on the unit circle.
double cookbookDB(Band band, double bandGainDB, double frequency, double sampleRate) {
  const double A = std::pow(10, bandGainDB / 40), turn = 2 * std::numbers::pi / sampleRate;
  const double w0 = turn * (band == Band::low ? 120 : band == Band::mid ? 1000 : 8000);
  const double c = std::cos(w0), bell = std::sin(w0) * std::sinh(std::numbers::ln2 / 2 * w0 / std::sin(w0));
  const double r = 2 * std::sqrt(A) * std::sin(w0) / 2 * std::sqrt((A + 1 / A) * (1 / 1.0 - 1) + 2);
  const double s = band == Band::low ? 1 : -1;  // the high shelf is the low one mirrored
  double b[] = {A * ((A + 1) - s * (A - 1) * c + r), s * 2 * A * ((A - 1) - s * (A + 1) * c),
                A * ((A + 1) - s * (A - 1) * c - r)};
  double a[] = {(A + 1) + s * (A - 1) * c + r, -s * 2 * ((A - 1) + s * (A + 1) * c),
                (A + 1) + s * (A - 1) * c - r};
  if (band == Band::mid) {
    std::ranges::copy(std::initializer_list<double>{1 + bell * A, -2 * c, 1 - bell * A}, b);
    std::ranges::copy(std::initializer_list<double>{1 + bell / A, -2 * c, 1 - bell / A}, a);
  }
  const auto z = std::polar(1.0, -turn * frequency);
  return 20 * std::log10(std::abs((b[0] + z * (b[1] + z * b[2])) / (a[0] + z * (a[1] + z * a[2]))));
}

TEST(Equalizer, hasTheCookbooksResponse) {
  for (const double sampleRate : {44100.0, 48000.0, 96000.0}) {
    for (const auto band : {Band::low, Band::mid, Band::high}) {
      for (const float gain : {-12.0F, 4.5F, 12.0F}) {
        Equalizer equalizer;
        equalizer.prepare(sampleRate);
        equalizer.setGainDB(band, gain);
        auto response = impulse(1 << 16);
        equalizer.process(response.data(), 1 << 16);
        for (const double frequency : {30.0, 120.0, 700.0, 1000.0, 1500.0, 8000.0, 16000.0}) {
          EXPECT_NEAR(gainDB(response, frequency, sampleRate),
                      cookbookDB(band, static_cast<double>(gain), frequency, sampleRate), 0.05)
              << "band " << static_cast<int>(band) << ", " << frequency << " Hz at " << sampleRate;
        }
      }
    }
  }
}

TEST(Equalizer, glidesWithoutAClick) {
  Equalizer equalizer;
  const auto largestStep = [&](float gain) {  // in a 100 Hz sine whose gain begins to move at its first frame
    Samples sine(4800);
    for (std::size_t n = 0; n < sine.size(); ++n) {
      sine[n] = std::sin(2 * std::numbers::pi_v<float> * static_cast<float>(n) / 480 + 1);
    }
    equalizer.setGainDB(Band::low, gain);
    equalizer.process(sine.data(), 4800);
    float largest = 0;
    for (std::size_t n = 1; n < sine.size(); ++n)
      largest = std::max(largest, std::abs(sine[n] - sine[n - 1]));
    return largest;
  };
  largestStep(12);
  const float steady = largestStep(12);
  for (const float gain : {-12.0F, 12.0F, 0.0F, 12.0F}) EXPECT_LT(largestStep(gain), 1.6F * steady) << gain;
}

TEST(Delay, echoesEveryQuarterSecondSofterAndDarker) {
  for (const double sampleRate : {44100.0, 48000.0, 96000.0}) {
    Delay delay;
    delay.prepare(sampleRate);
    delay.setWetDryMix(100);
    const int quarter = static_cast<int>(sampleRate / 4);
    auto out = impulse(4 * quarter);
    delay.process(out.data(), 4 * quarter);
    EXPECT_EQ(std::ranges::count(out.begin(), out.begin() + quarter, 0.0F), quarter);
    for (int echo = 1; echo <= 3; ++echo) {
      const Samples response(out.begin() + echo * quarter, out.begin() + echo * quarter + 1000);
      const double feedbackDB = 20 * std::log10(0.25) * (echo - 1);
      EXPECT_NEAR(gainDB(response, 20, sampleRate), feedbackDB, 0.01);
      EXPECT_NEAR(gainDB(response, 15000, sampleRate), feedbackDB - 3.01 * echo, 0.05);
    }
  }
}

TEST(Delay, mixesLinearly) {
  for (const float percent : {10.0F, 30.0F, 100.0F}) {
    Delay delay(0.01);
    delay.setWetDryMix(percent);
    auto out = impulse(1000);
    delay.process(out.data(), 1000);
    EXPECT_NEAR(out[0], 1 - percent / 100, 1e-6F);
    EXPECT_NEAR(gainDB(Samples(out.begin() + 480, out.begin() + 960), 10, 48000),
                20 * std::log10(static_cast<double>(percent) / 100), 0.01);
  }
  Delay delay;
  delay.setWetDryMix(150);
  EXPECT_EQ(delay.wetDryMix(), 100);
  delay.setWetDryMix(std::nanf(""));
  EXPECT_EQ(delay.wetDryMix(), 100);
}

TEST(MixerNode, pansAsABalance) {
  struct Row {
    float volume, pan, left, right;
  };
  for (const auto& [volume, pan, left, right] :
       {Row{1, 0, 1, 1}, Row{1, 1, 0, 1}, Row{1, -1, 1, 0}, Row{0.5F, 0.5F, 0.35355339F, 0.5F},
        Row{1.5F, -0.5F, 1.5F, 1.0606602F}, Row{2, 3, 0, 2}, Row{-1, 0, 0, 0}}) {
    MixerNode channel;
    channel.setOutputVolume(volume);
    channel.setPan(pan);
    float outLeft = 1, outRight = 1;
    channel.process(&outLeft, &outRight, 1);
    EXPECT_FLOAT_EQ(outLeft, left) << volume << " " << pan;
    EXPECT_FLOAT_EQ(outRight, right) << volume << " " << pan;
  }
}

TEST(MixerNode, glidesForTenMilliseconds) {
  MixerNode channel;
  channel.setOutputVolume(0);
  Samples left(1000, 1.0F), right(1000, 1.0F);
  channel.process(left.data(), right.data(), 100);
  EXPECT_EQ(left[0], 0) << "at once before the first block";
  channel.setOutputVolume(1);
  for (int n = 100; n < 1000; n += 150)
    channel.process(&left[static_cast<std::size_t>(n)], &right[static_cast<std::size_t>(n)], 150);
  for (std::size_t n = 100; n < 580; ++n) ASSERT_NEAR(left[n] - left[n - 1], 1.0F / 480, 1e-6F) << n;
  EXPECT_LT(left[578], 1);
  EXPECT_EQ(left[579], 1) << "480 frames at 48000 Hz";
}

}  // namespace
}  // namespace platform
