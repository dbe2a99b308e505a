#include <cmath>
#include <csignal>
#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <vector>

#include "Platform/Audio/AudioFile.h"
#include "Platform/Files/FileError.h"
#include "tests/support/TemporaryFolder.h"

namespace platform {
namespace {

using velmora::testing::TemporaryFolder;
using SampleFormat = AudioFileWriter::SampleFormat;

std::string bytesOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

template <class Number>
Number at(const std::string& bytes, std::size_t offset) {
  Number number{};
  std::memcpy(&number, bytes.data() + offset, sizeof number);
  return number;
}

TEST(AudioFileWriterTest, WritesAPlainHeaderBeforeInterleavedIntegers) {
  const TemporaryFolder folder;
  const float left[] = {0.0F, 0.5F, -1.0F};
  const float right[] = {0.25F, 1.0F, -0.25F};
  AudioFileWriter writer(folder / "a.wav", 44100, SampleFormat::int16);
  writer.write(left, right);
  writer.close();
  const std::string bytes = bytesOf(folder / "a.wav");
  ASSERT_EQ(bytes.size(), 44U + 12U);
  EXPECT_EQ(bytes.substr(0, 4) + bytes.substr(8, 8) + bytes.substr(36, 4), "RIFFWAVEfmt data");
  EXPECT_EQ(at<std::uint32_t>(bytes, 4), bytes.size() - 8);
  EXPECT_EQ(at<std::uint32_t>(bytes, 16), 16U);  // size of the format
  EXPECT_EQ(at<std::uint16_t>(bytes, 20), 1U);   // plain PCM
  EXPECT_EQ(at<std::uint16_t>(bytes, 22), 2U);
  EXPECT_EQ(at<std::uint32_t>(bytes, 24), 44100U);
  EXPECT_EQ(at<std::uint32_t>(bytes, 28), 176400U);
  EXPECT_EQ(at<std::uint16_t>(bytes, 32), 4U);
  EXPECT_EQ(at<std::uint16_t>(bytes, 34), 16U);
  EXPECT_EQ(at<std::uint32_t>(bytes, 40), 12U);
  const std::int16_t expected[] = {0, 8192, 16384, 32767, -32768, -8192};
  for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(at<std::int16_t>(bytes, 44 + 2 * i), expected[i]);
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
  const std::string bytes = bytesOf(folder / "a.wav");
  for (std::size_t i = 0; i < values.size(); ++i)
    ASSERT_EQ(at<std::int16_t>(bytes, 44 + 4 * i), expected[i]) << values[i];
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
  EXPECT_EQ(bytesOf(folder / "a.wav"), bytesOf(folder / "b.wav"));
  AudioFileReader reader(folder / "a.wav");
  EXPECT_EQ(reader.sampleRate(), 48000);
  EXPECT_EQ(reader.channelCount(), 2);
  EXPECT_EQ(reader.frameCount(), 5000);
  EXPECT_EQ(reader.byteCount(), static_cast<std::int64_t>(bytesOf(folder / "a.wav").size()));
  std::vector<float> frames(2 * 6000);
  ASSERT_EQ(reader.read(frames), 5000U);
  for (std::size_t i = 0; i < left.size(); ++i) ASSERT_EQ(frames[2 * i], left[i]);
  EXPECT_EQ(frames[9999], -0.125F);
  EXPECT_EQ(reader.read(frames), 0U);
}

/// Lets files of this process grow to so many bytes only.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : oldHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &old_);
    const rlimit limit{bytes, old_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &old_);
    std::signal(SIGXFSZ, oldHandler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  void (*oldHandler_)(int);
  rlimit old_{};
};

TEST(AudioFileWriterTest, TellsWhenTheFileCannotGrow) {
  const TemporaryFolder folder;
  const std::vector<float> frames(4096, 0.5F);
  for (const SampleFormat format : {SampleFormat::int16, SampleFormat::float32}) {
    AudioFileWriter writer(folder / "a.wav", 44100, format);
    const FileSizeLimit limit(40000);
    try {
      for (int i = 0; i < 4; ++i) writer.write(frames, frames);
      writer.close();
      ADD_FAILURE() << "nothing thrown";
    } catch (const FileError& error) {
      EXPECT_STREQ(error.what(), "a.wav: File too large");
    }
  }
  EXPECT_THROW(AudioFileWriter(folder / "none" / "a.wav", 44100, SampleFormat::int16), FileError);
}

TEST(AudioFileReaderTest, RefusesWhatIsNoSound) {
  const TemporaryFolder folder;
  std::ofstream(folder / "empty.wav").flush();
  std::ofstream(folder / "text.wav") << "This is no sound at all, whatever the name says.";
  std::ofstream(folder / "header.wav") << "RIFF";
  std::filesystem::create_directory(folder / "folder.wav");
  ASSERT_EQ(::mkfifo((folder / "pipe.wav").c_str(), 0600), 0);
  for (const char* name : {"empty.wav", "text.wav", "header.wav", "folder.wav", "pipe.wav", "none.wav"}) {
    try {
      const AudioFileReader reader(folder / name);
      ADD_FAILURE() << name;
    } catch (const FileError& error) {
      const std::string line = error.what();
      EXPECT_TRUE(line.starts_with(std::string(name) + ": ")) << line;
      EXPECT_EQ(line.find_first_of("\n/"), std::string::npos) << line;
      RecordProperty(name, line);
    }
  }
}

}  // namespace
}  // namespace platform
