#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

#include "Platform/Audio/AudioFile.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

namespace platform {
namespace {

using velmora::testing::contentOf;
using velmora::testing::TemporaryFolder;
using SampleFormat = AudioFileWriter::SampleFormat;

TEST(AudioFileWriterTest, WritesAPlainHeaderBeforeInterleavedIntegers) {
  using namespace std::string_literals;
  const TemporaryFolder folder;
  const float left[] = {0.0F, 0.5F, -1.0F};
  const float right[] = {0.25F, 1.0F, -0.25F};
  AudioFileWriter writer(folder / "a.wav", 44100, SampleFormat::int16);
  writer.write(left, right);
  writer.close();
  // Plain PCM of 2 channels at 44100 Hz: 176400 bytes a second, 4 a frame, 16 bits; then 12 bytes of data.
  EXPECT_EQ(contentOf(folder / "a.wav"),
            "RIFF\x30\0\0\0WAVEfmt \x10\0\0\0\1\0\2\0\x44\xAC\0\0\x10\xB1\2\0\4\0\x10\0"s
            "data\x0C\0\0\0\0\0\0\x20\0\x40\xFF\x7F\0\x80\0\xE0"s);
}

TEST(AudioFileWriterTest, RoundsToTheNearestIntegerAndClamps) {
  constexpr float infinity = std::numeric_limits<float>::infinity();
  std::vector<float> values = {infinity, -infinity, 1e30F, -1e30F, 0.99999F, -1.00001F, std::nanf("")};
  std::vector<int> expected = {32767, -32768, 32767, -32768, 32767, -32768, 0};
  for (int i = -32768; i < 32768; i += 13)
    for (const float offset : {-0.49F, 0.0F, 0.49F}) {
      values.push_back((static_cast<float>(i) + offset) / 32768.0F);
      expected.push_back(i);
    }
  const TemporaryFolder folder;
  AudioFileWriter writer(folder / "a.wav", 44100, SampleFormat::int16);
  writer.write(values, values);
  writer.close();
  const std::string bytes = contentOf(folder / "a.wav");
  for (std::size_t i = 0; i < values.size(); ++i) {
    std::int16_t written = 0;
    std::memcpy(&written, &bytes[44 + 4 * i], sizeof written);
    ASSERT_EQ(written, expected[i]) << values[i];
  }
}

TEST(AudioFileWriterTest, KeepsFloatsAndMakesTheSameFileTwice) {
  const TemporaryFolder folder;
  std::vector<float> left(5000);
  for (std::size_t i = 0; i < left.size(); ++i) left[i] = 2.0F * std::sin(0.01F * static_cast<float>(i));
  const std::vector<float> right(left.size(), -0.125F);
  for (const char* name : {"a.wav", "b.wav"}) {
    AudioFileWriter writer(folder / name, 48000, SampleFormat::float32);
    writer.write(std::span(left).first(1234), std::span(right).first(1234));
    writer.write(std::span(left).subspan(1234), std::span(right).subspan(1234));
    writer.close();
  }
  EXPECT_EQ(contentOf(folder / "a.wav"), contentOf(folder / "b.wav"));
  AudioFileReader reader(folder / "a.wav");
  EXPECT_EQ(reader.sampleRate(), 48000);
  EXPECT_EQ(reader.channelCount(), 2);
  EXPECT_EQ(reader.frameCount(), 5000);
  EXPECT_EQ(reader.byteCount(), static_cast<std::int64_t>(contentOf(folder / "a.wav").size()));
  std::vector<float> frames(2 * 6000);
  ASSERT_EQ(reader.read(frames), 5000U);
  for (std::size_t i = 0; i < left.size(); ++i) ASSERT_EQ(frames[2 * i], left[i]);
  EXPECT_EQ(frames[9999], -0.125F);
  EXPECT_EQ(reader.read(frames), 0U);
}

}  // namespace
}  // namespace platform
