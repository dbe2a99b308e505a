#include <QCoreApplication>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <sndfile.h>
#include <string>
#include <vector>

#include "Platform/Files/FileError.h"
#include "Platform/Tasks/Cancelled.h"
#include "Platform/Tasks/ResultOf.h"
#include "Velmora/Audio/AudioFileLoader.h"
#include "tests/support/TemporaryFolder.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;
using testing::TemporaryFolder;

/// A sound file to be made: interleaved frames in one of libsndfile's formats.
struct Sound {
  int channelCount = 1;
  int sampleRate = 44100;
  int format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
};

void make(const fs::path& path, const Sound& sound, const std::vector<float>& samples) {
  SF_INFO info{};
  info.channels = sound.channelCount;
  info.samplerate = sound.sampleRate;
  info.format = sound.format;
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  ASSERT_NE(file, nullptr) << sf_strerror(nullptr);
  ASSERT_EQ(sf_write_float(file, samples.data(), static_cast<sf_count_t>(samples.size())),
            static_cast<sf_count_t>(samples.size()));
  sf_close(file);
}

/// A mono WAV file of 8 bits whose frames take no room on the disk.
void makeSparse(const fs::path& path, std::uint32_t sampleRate, std::uint32_t frameCount) {
  std::string header = "RIFF????WAVEfmt \x10";
  header.append(3, '\0').append("\1\0\1\0", 4);
  const auto append = [&header](std::uint32_t number) {
    for (int shift = 0; shift < 32; shift += 8) header += static_cast<char>(number >> shift);
  };
  append(sampleRate);
  append(sampleRate);
  header.append("\1\0\10\0data", 8);
  append(frameCount);
  std::ofstream(path, std::ios::binary) << header;
  fs::resize_file(path, header.size() + frameCount);
}

enum class Outcome { loaded, unsupported, fileError };

Outcome outcomeOf(const fs::path& path) {
  try {
    const LoadedAudio audio = AudioFileLoader::decode(path);
    EXPECT_FALSE(audio.sample->samples.empty());
    return Outcome::loaded;
  } catch (const AudioFileError&) {
    return Outcome::unsupported;
  } catch (const platform::FileError&) {
    return Outcome::fileError;
  }
}

TEST(AudioFileLoaderTest, KeepsTheLimitsToTheirLastFrame) {
  const TemporaryFolder folder;
  const struct {
    std::uint32_t sampleRate;
    std::uint32_t frameCount;
    Outcome outcome;
  } rows[] = {{7999, 100, Outcome::unsupported},       {8000, 100, Outcome::loaded},
              {192000, 100, Outcome::loaded},          {192001, 100, Outcome::unsupported},
              {44100, 0, Outcome::unsupported},        {44100, 1, Outcome::loaded},
              {8000, 4800000, Outcome::loaded},        {8000, 4800001, Outcome::unsupported},
              {44100, 26460000, Outcome::loaded},      {44100, 26460001, Outcome::unsupported},
              {192000, 30000001, Outcome::unsupported}};
  for (const auto& row : rows) {
    makeSparse(folder / "a.wav", row.sampleRate, row.frameCount);
    EXPECT_EQ(outcomeOf(folder / "a.wav"), row.outcome)
        << row.sampleRate << " Hz, " << row.frameCount << " frames";
  }
}

TEST(AudioFileLoaderTest, TakesOneOrTwoChannels) {
  const TemporaryFolder folder;
  const std::vector<float> samples(12, 0.5F);
  for (const int channelCount : {1, 2, 3, 6}) {
    make(folder / "a.wav", {.channelCount = channelCount}, samples);
    EXPECT_EQ(outcomeOf(folder / "a.wav"), channelCount <= 2 ? Outcome::loaded : Outcome::unsupported);
  }
  EXPECT_STREQ(AudioFileError().what(), "Choose a mono or stereo audio file up to 10 minutes long.");
}

TEST(AudioFileLoaderTest, MixesDownAndReplacesWhatIsNoSample) {
  const TemporaryFolder folder;
  constexpr float nan = std::numeric_limits<float>::quiet_NaN();
  constexpr float infinity = std::numeric_limits<float>::infinity();
  make(folder / "stereo.wav", {.channelCount = 2, .sampleRate = 48000},
       {0.5F, 0.25F, nan, 0.5F, 0.5F, infinity, 3.0F, 1.0F, -9.0F, 1.0F, infinity, -infinity, 3e38F, 3e38F});
  const LoadedAudio stereo = AudioFileLoader::decode(folder / "stereo.wav");
  EXPECT_EQ(stereo.sample->samples, (std::vector<float>{0.375F, 0, 0, 1, -1, 0, 0}));
  EXPECT_EQ(stereo.sample->sampleRate, 48000);
  EXPECT_EQ(stereo.channelCount, 2);
  make(folder / "mono.wav", {}, {0.1F, nan, -infinity, 1.5F, -1.5F, -0.1F});
  const LoadedAudio mono = AudioFileLoader::decode(folder / "mono.wav");
  EXPECT_EQ(mono.sample->samples, (std::vector<float>{0.1F, 0, 0, 1, -1, -0.1F}));
  EXPECT_EQ(mono.channelCount, 1);
}

TEST(AudioFileLoaderTest, ReadsTheUsualFormatsWhateverTheNameSays) {
  const TemporaryFolder folder;
  std::vector<float> tone(20001);
  for (std::size_t i = 0; i < tone.size(); ++i) tone[i] = 0.5F * std::sin(0.05F * static_cast<float>(i));
  const struct {
    int format;
    float tolerance;
  } rows[] = {{SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1e-4F},
              {SF_FORMAT_AIFF | SF_FORMAT_PCM_24, 1e-6F},
              {SF_FORMAT_CAF | SF_FORMAT_FLOAT, 0.0F},
              {SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 1e-4F},
              {SF_FORMAT_OGG | SF_FORMAT_VORBIS, 0.05F}};
  for (const auto& row : rows) {
    make(folder / "sound.txt", {.format = row.format}, tone);
    const LoadedAudio audio = AudioFileLoader::decode(folder / "sound.txt");
    ASSERT_EQ(audio.sample->samples.size(), tone.size()) << std::hex << row.format;
    for (std::size_t i = 0; i < tone.size(); ++i)
      ASSERT_NEAR(audio.sample->samples[i], tone[i], row.tolerance) << std::hex << row.format;
  }
}

TEST(AudioFileLoaderTest, TakesWhatADamagedFileStillHolds) {
  const TemporaryFolder folder;
  for (const int format : {SF_FORMAT_WAV | SF_FORMAT_PCM_16, SF_FORMAT_FLAC | SF_FORMAT_PCM_16}) {
    make(folder / "a", {.format = format}, std::vector<float>(100000, 0.25F));
    for (const std::uintmax_t size :
         {fs::file_size(folder / "a") / 2, std::uintmax_t{30}, std::uintmax_t{0}}) {
      fs::resize_file(folder / "a", size);
      try {
        const LoadedAudio audio = AudioFileLoader::decode(folder / "a");
        EXPECT_LE(audio.sample->samples.size(), 100000U);
      } catch (const AudioFileError&) {
      } catch (const platform::FileError& error) {
        EXPECT_TRUE(std::string(error.what()).starts_with("a: ")) << error.what();
      }
    }
    EXPECT_EQ(outcomeOf(folder / "a"), Outcome::fileError);
  }
}

TEST(AudioFileLoaderTest, PaysOnlyForTheFramesThatAHugePromiseHolds) {
  const TemporaryFolder folder;
  make(folder / "a.flac", {.format = SF_FORMAT_FLAC | SF_FORMAT_PCM_16}, std::vector<float>(1000, 0.25F));
  std::fstream file(folder / "a.flac", std::ios::in | std::ios::out | std::ios::binary);
  file.seekp(22).write("\x01\x90\xA0\x00", 4);  // the low half of the frame count: 26255360
  file.close();
  const LoadedAudio audio = AudioFileLoader::decode(folder / "a.flac");
  EXPECT_EQ(audio.sample->samples.size(), 1000U);
  EXPECT_LE(audio.sample->samples.capacity(), 2000U);
}

TEST(AudioFileLoaderTest, StopsWhenItIsAskedTo) {
  const TemporaryFolder folder;
  makeSparse(folder / "a.wav", 8000, 100000);
  std::stop_source stop;
  stop.request_stop();
  EXPECT_THROW(AudioFileLoader::decode(folder / "a.wav", stop.get_token()), platform::Cancelled);
}

TEST(AudioFileLoaderTest, LoadsOnAWorker) {
  int count = 1;
  char name[] = "test";
  char* arguments[] = {name, nullptr};
  const QCoreApplication application(count, arguments);
  const TemporaryFolder folder;
  makeSparse(folder / "a.wav", 8000, 1000);
  AudioFileLoader loader;
  EXPECT_EQ(platform::resultOf(loader.load(folder / "a.wav")).sample->samples.size(), 1000U);
  EXPECT_THROW(platform::resultOf(loader.load(folder / "none.wav")), platform::FileError);
}

}  // namespace
}  // namespace velmora
