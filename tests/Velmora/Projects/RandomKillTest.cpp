#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <sys/mman.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "Velmora/Projects/ProjectFiles.h"
#include "tests/support/TemporaryFolder.h"

namespace velmora {
namespace {

/// What the killed process had done, in memory that outlives it.
struct Journal {
  std::atomic<int> begun{0};  // the number of the last edit whose save was begun
  std::atomic<int> saved{0};  // and of the last whose save had returned
};

/// Edits and saves until killed; each document's name is the number of its edit.
[[noreturn]] void editAndSave(const ProjectFiles& files, Song song, int firstEdit, Journal& journal) {
  for (int edit = firstEdit;; ++edit) {
    song.name = std::to_string(edit);
    Pattern pattern = song.patterns[0];
    pattern.toggleStep(DrumSound::perc, edit % 16, 100);
    song.update(pattern);
    journal.begun = edit;
    files.save(song);
    journal.saved = edit;
  }
}

TEST(RandomKillTest, TwoHundredKillsLoseNoSavedEdit) {
  const testing::TemporaryFolder folder;
  const ProjectFiles files(folder / "Projects");
  const Song song = Song::demo();
  void* shared = ::mmap(nullptr, sizeof(Journal), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  auto& journal = *new (shared) Journal;
  std::mt19937 random(11);
  const auto start = std::chrono::steady_clock::now();
  files.save(song);
  const auto oneSave = std::chrono::steady_clock::now() - start;
  for (int kill = 0; kill < 200; ++kill) {
    const int firstEdit = journal.begun + 1;
    const pid_t child = ::fork();
    if (child == 0) editAndSave(files, song, firstEdit, journal);
    const int lastEdit = firstEdit + static_cast<int>(random() % 4);
    while (journal.begun < lastEdit) std::this_thread::yield();
    std::this_thread::sleep_for(oneSave * (random() % 1000) / 1000);  // to any moment of its save
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    if (journal.saved == 0) continue;  // not even the child's first save had ended
    const int edit = std::stoi(files.load(song.id).name);
    ASSERT_GE(edit, journal.saved);
    ASSERT_LE(edit, journal.begun);
  }
  EXPECT_GT(journal.saved, 50) << "too few saves to tell anything";
  files.save(song);
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(files.root() / song.id.text())) {
    EXPECT_EQ(entry.path().filename(), "song.json");
    ++count;
  }
  EXPECT_EQ(count, 1) << "nothing stays behind for good";
  ::munmap(shared, sizeof(Journal));
}

}  // namespace
}  // namespace velmora
