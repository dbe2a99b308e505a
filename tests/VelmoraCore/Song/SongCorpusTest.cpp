#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

#include "fuzz/SongFuzzCase.h"

namespace velmora {
namespace {

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// A file's name tells how far its document comes.
TEST(SongCorpus, EveryFileComesAsFarAsItsNameTells) {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(VELMORA_SONG_CORPUS)) {
    const std::string name = entry.path().filename().string();
    const SongFuzzOutcome expected = name.starts_with("valid-")     ? SongFuzzOutcome::valid
                                     : name.starts_with("invalid-") ? SongFuzzOutcome::invalid
                                                                    : SongFuzzOutcome::undecodable;
    EXPECT_EQ(songFuzzCase(contentOf(entry.path())), expected) << name;
    EXPECT_LT(entry.file_size(), 4096U) << name;
    ++count;
  }
  EXPECT_GE(count, 10);
}

}  // namespace
}  // namespace velmora
