#include <QCoreApplication>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <optional>

#include "Platform/Files/FileError.h"
#include "Platform/Tasks/ResultOf.h"
#include "Velmora/Projects/ProjectStore.h"
#include "tests/support/TemporaryFolder.h"

namespace velmora {
namespace {

class ProjectStoreTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { application_ = std::make_unique<QCoreApplication>(count_, arguments_); }
  static void TearDownTestSuite() { application_.reset(); }

  testing::TemporaryFolder folder_;
  std::optional<ProjectStore> store_{folder_.path()};

 private:
  static inline int count_ = 1;
  static inline char name_[] = "test";
  static inline char* arguments_[] = {name_, nullptr};
  static inline std::unique_ptr<QCoreApplication> application_;
};

QCoro::Task<std::vector<ProjectSummary>> useEverything(ProjectStore& store, Song song,
                                                       std::filesystem::path sound) {
  co_await store.save(song);
  co_await store.setCurrentProject(song.id);
  const std::optional<UUID> current = co_await store.currentProjectID();
  EXPECT_EQ(current, song.id);
  const Song loaded = co_await store.load(song.id);
  EXPECT_EQ(loaded, song);
  const std::filesystem::path folder = co_await store.audioFolder(song.id);
  const std::filesystem::path copy = co_await store.importAudioFile(sound, song.id);
  EXPECT_EQ(copy.parent_path(), folder);
  const auto rows = co_await store.listProjects();
  co_await store.deleteProject(song.id);
  const auto none = co_await store.listProjects();
  EXPECT_TRUE(none.empty());
  co_return rows;
}

TEST_F(ProjectStoreTest, OffersAllOperationsToCoroutines) {
  const testing::TemporaryFolder elsewhere;
  std::ofstream(elsewhere / "a.wav") << "sound";
  const Song song = Song::demo();
  const auto rows = platform::resultOf(useEverything(*store_, song, elsewhere / "a.wav"));
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].name, song.name);
}

TEST_F(ProjectStoreTest, WritesInTheOrderOfTheCallsEvenWhenItIsDestroyed) {
  Song song = Song::demo();
  for (int i = 0; i < 20; ++i) {
    song.name = "Take " + std::to_string(i);
    store_->save(song);
  }
  store_.reset();
  EXPECT_EQ(ProjectFiles(folder_.path()).load(song.id).name, "Take 19");
}

TEST_F(ProjectStoreTest, HandsErrorsToTheCaller) {
  Song bad = Song::demo();
  bad.bpm = 39.9;
  EXPECT_THROW(platform::resultOf(store_->save(bad)), ProjectStore::StoreError);
  EXPECT_THROW(platform::resultOf(store_->load(bad.id)), platform::FileError);
}

}  // namespace
}  // namespace velmora
