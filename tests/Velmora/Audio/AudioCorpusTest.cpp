#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

#include "fuzz/AudioFileFuzzCase.h"

// libvorbis' header state leaks when libsndfile gives up on a damaged Ogg file: about 6 kB a file, which is
// theirs.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:vorbis_info_init\n"; }

namespace velmora {
namespace {

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(AudioCorpusTest, EveryFileLoadsAndSurvivesBeingCutAndBent) {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(VELMORA_AUDIO_CORPUS)) {
    const std::string whole = contentOf(entry.path());
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

}  // namespace
}  // namespace velmora
