#include <cmath>
#include <cstdint>
#include <fstream>
#include <gmock/gmock.h>
#include <limits>
#include <sndfile.h>
#include <string>
#include <vector>

#include "Platform/Files/FileError.h"
#include "Platform/Tasks/Cancelled.h"
#include "Platform/Tasks/ResultOf.h"
#include "Velmora/Audio/AudioFileLoader.h"
#include "fuzz/AudioFileFuzzCase.h"
#include "tests/support/EventLoopTest.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

// libvorbis' header state leaks when libsndfile gives up on a damaged Ogg file: about 6 kB a file, which is
// theirs.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:vorbis_info_init\n"; }

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

bool loads(const fs::path& path) {
  try {
    return !AudioFileLoader::decode(path).sample->samples.empty();
  } catch (const AudioFileError& error) {
    EXPECT_STREQ(error.what(), "Choose a mono or stereo audio file up to 10 minutes long.");
    return false;
  }
}

TEST(AudioFileLoaderTest, KeepsTheLimitsToTheirLastFrame) {
  const TemporaryFolder folder;
  const struct {
    std::uint32_t sampleRate, frameCount;
    bool loads;
  } rows[] = {{7999, 100, false},       {8000, 100, true},        {192000, 100, true},
              {192001, 100, false},     {44100, 0, false},        {44100, 1, true},
              {8000, 4800000, true},    {8000, 4800001, false},   {44100, 26460000, true},
              {44100, 26460001, false}, {192000, 30000001, false}};
  for (const auto& row : rows) {
    makeSparse(folder / "a.wav", row.sampleRate, row.frameCount);
    EXPECT_EQ(loads(folder / "a.wav"), row.loads) << row.sampleRate << " Hz, " << row.frameCount << " frames";
  }
  for (const int channelCount : {1, 2, 3, 6}) {
    make(folder / "a.wav", {.channelCount = channelCount}, std::vector<float>(12, 0.5F));
    EXPECT_EQ(loads(folder / "a.wav"), channelCount <= 2) << channelCount;
  }
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
  const std::pair<int, float> rows[] = {{SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1e-4F},
                                        {SF_FORMAT_AIFF | SF_FORMAT_PCM_24, 1e-6F},
                                        {SF_FORMAT_CAF | SF_FORMAT_FLOAT, 0.0F},
                                        {SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 1e-4F},
                                        {SF_FORMAT_OGG | SF_FORMAT_VORBIS, 0.05F}};
  for (const auto& [format, tolerance] : rows) {
    make(folder / "sound.txt", {.format = format}, tone);
    EXPECT_THAT(AudioFileLoader::decode(folder / "sound.txt").sample->samples,
                ::testing::Pointwise(::testing::FloatNear(tolerance), tone))
        << std::hex << format;
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

TEST(AudioCorpusTest, EveryFileLoadsAndSurvivesBeingCutAndBent) {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(VELMORA_AUDIO_CORPUS)) {
    const std::string whole = testing::contentOf(entry.path());
    EXPECT_EQ(audioFileFuzzCase(whole), AudioFileFuzzOutcome::loaded) << entry.path().filename();
    for (std::size_t length = 0; length < whole.size(); length += 1 + whole.size() / 40) {
      audioFileFuzzCase(whole.substr(0, length));
      std::string bent = whole;
      bent[length] = static_cast<char>(~bent[length]);
      audioFileFuzzCase(bent);
    }
    ++count;
  }
  EXPECT_GE(count, 10);
}

class LoaderTest : public testing::EventLoopTest {};

TEST_F(LoaderTest, LoadsOnAWorkerUntilItIsStopped) {
  const TemporaryFolder folder;
  makeSparse(folder / "a.wav", 8000, 1000);
  AudioFileLoader loader;
  EXPECT_EQ(platform::resultOf(loader.load(folder / "a.wav")).sample->samples.size(), 1000U);
  EXPECT_THROW(platform::resultOf(loader.load(folder / "none.wav")), platform::FileError);
  std::stop_source stop;
  stop.request_stop();
  EXPECT_THROW(platform::resultOf(loader.load(folder / "a.wav", stop.get_token())), platform::Cancelled);
}

}  // namespace
}  // namespace velmora
