#include <algorithm>
#include <chrono>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <vector>

#include "Platform/Files/FileError.h"
#include "Platform/Files/Files.h"
#include "Platform/Files/Folders.h"
#include "Velmora/Projects/ProjectFiles.h"
#include "Velmora/Projects/ProjectStore.h"
#include "VelmoraCore/Song/Limits.h"
#include "VelmoraCore/Song/SongJSON.h"
#include "VelmoraCore/Song/SongValidation.h"
#include "tests/Velmora/Projects/FaultInjection.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;
using platform::FileError;
using testing::contentOf;
using testing::put;

Song named(std::string name) { return Song::empty(std::move(name)); }

class ProjectFilesTest : public ::testing::Test {
 protected:
  fs::path folderOf(const Song& song) const { return root_ / song.id.text(); }
  fs::path documentOf(const Song& song) const { return folderOf(song) / "song.json"; }

  /// "name/tracks" of the listing, in order.
  std::vector<std::string> listing() const {
    std::vector<std::string> rows;
    for (const ProjectSummary& row : files_.listProjects())
      rows.push_back(row.name + "/" + std::to_string(row.trackCount));
    return rows;
  }

  testing::TemporaryFolder folder_;
  fs::path root_ = folder_ / "data" / "Velmora" / "Projects";
  ProjectFiles files_{root_};
};

TEST_F(ProjectFilesTest, ReadsNothingFromNothingAndCreatesNothing) {
  EXPECT_TRUE(files_.listProjects().empty());
  EXPECT_EQ(files_.currentProjectID(), std::nullopt);
  EXPECT_THROW(files_.load(UUID::random()), FileError);
  EXPECT_THROW(files_.deleteProject(UUID::random()), FileError);
  EXPECT_FALSE(fs::exists(folder_ / "data"));
  fs::create_directories(root_);
  EXPECT_TRUE(files_.listProjects().empty());
}

TEST_F(ProjectFilesTest, GivesBackWhatItSaved) {
  Song song = Song::demo();
  for (const char* name : {"First thoughts", "Second thoughts"}) {
    song.name = name;
    files_.save(song);
    EXPECT_EQ(files_.load(song.id), song);
    EXPECT_EQ(contentOf(documentOf(song)), encodeSong(song));
    EXPECT_EQ(platform::listFolder(folderOf(song)), std::vector<std::string>{"song.json"});
  }
}

TEST_F(ProjectFilesTest, AStoreWritesInTheOrderOfTheCallsEvenWhenItIsDestroyed) {
  Song song = named("");
  {
    ProjectStore store(root_);
    for (int i = 0; i < 20; ++i) {
      song.name = "Take " + std::to_string(i);
      store.save(song);
    }
  }
  EXPECT_EQ(files_.load(song.id).name, "Take 19");
}

TEST_F(ProjectFilesTest, RefusesABadSongAndOneOfAByteTooMuchAndLeavesTheDiskAsItWas) {
  Song song = named("");
  Song invalid = song;
  while (invalid.tracks.size() < limits::mostTracks + 1) invalid.addTrack(TrackKind::audio());
  song.name = std::string(limits::longestDocumentBytes - encodeSong(song).size(), 'n');
  Song tooLong = song;
  tooLong.name += 'n';
  for (const bool hasOld : {false, true}) {
    EXPECT_THROW(files_.save(invalid), InvalidProject);
    EXPECT_THROW(files_.save(tooLong), InvalidProject);
    EXPECT_EQ(fs::exists(folder_ / "data"), hasOld);
    files_.save(song);
    EXPECT_EQ(files_.load(song.id), song);
  }
  std::ofstream(documentOf(song), std::ios::app) << '\n';
  for (const bool areHidden : {false, true}) {
    testing::hideSizes(areHidden);
    EXPECT_THROW(files_.load(song.id), InvalidProject) << areHidden;
  }
  testing::hideSizes(false);
}

TEST_F(ProjectFilesTest, LoadsOnlyWhatBelongsToTheFolderAndIsValid) {
  const Song song = named("Mine");
  files_.save(song);
  const UUID other = UUID::random();
  fs::copy(folderOf(song), root_ / other.text());
  EXPECT_THROW(files_.load(other), InvalidProject);
  EXPECT_EQ(listing(), (std::vector<std::string>{"Mine/1", "Unreadable project/0"}));

  Song linked = song;
  linked.audioAssets.write().push_back({{}, UUID::random(), "../a.wav", 44100, 1, 1});
  put(documentOf(song), encodeSong(linked));
  EXPECT_THROW(files_.load(song.id), InvalidProject);
  put(documentOf(song), "{ \"id\": ");
  EXPECT_THROW(files_.load(song.id), DecodingError);
}

TEST_F(ProjectFilesTest, RemembersTheCurrentProjectAndForgivesGarbage) {
  const UUID id = UUID::random();
  files_.setCurrentProject(id);
  EXPECT_EQ(contentOf(root_ / "current.txt"), id.text());
  EXPECT_EQ(files_.currentProjectID(), id);
  for (const std::string& garbage :
       {std::string(), std::string("\xFF\xFE"), id.text() + "\n", std::string(5000000, '0')}) {
    put(root_ / "current.txt", garbage);
    EXPECT_EQ(files_.currentProjectID(), std::nullopt);
  }
  fs::remove(root_ / "current.txt");
  fs::create_directory(root_ / "current.txt");
  EXPECT_THROW(files_.currentProjectID(), FileError);
}

TEST_F(ProjectFilesTest, ListsNewestFirstThenAsTheFolderDoesAndUnreadableLast) {
  const Song recent = named("Recent");
  files_.save(recent);
  const auto date = fs::file_time_type::clock::now() - std::chrono::hours(1);
  for (int i = 0; i < 20; ++i) {
    const Song old = named("Old");
    files_.save(old);
    fs::last_write_time(documentOf(old), date);
  }
  std::vector<std::string> expected = platform::listFolder(root_), seen;
  std::ranges::stable_partition(expected, [&](const auto& id) { return id == recent.id.text(); });
  expected.push_back(UUID::random().text());
  fs::create_directory(root_ / expected.back());
  const auto rows = files_.listProjects();
  for (const ProjectSummary& row : rows) seen.push_back(row.id.text());
  EXPECT_EQ(seen, expected);
  EXPECT_EQ(rows.front().modified, platform::modificationDate(documentOf(recent)));
  EXPECT_EQ(rows.back().modified, ProjectSummary::distantPast);
}

TEST_F(ProjectFilesTest, SurvivesWhateverLiesInTheRoot) {
  files_.save(named("Sound"));
  const auto odd = [&] { return root_ / UUID::random().text(); };
  put(odd(), "a file");
  put(root_ / "notes.txt", "no project");
  fs::create_symlink("nowhere", odd());
  const fs::path self = odd();
  fs::create_symlink(self, self);
  ASSERT_EQ(::mkfifo(odd().c_str(), 0600), 0);
  const fs::path withPipe = odd();
  const fs::path withFolder = odd();
  const fs::path closed = odd();
  for (const fs::path& path : {withPipe, withFolder / "song.json", closed}) fs::create_directories(path);
  ASSERT_EQ(::mkfifo((withPipe / "song.json").c_str(), 0600), 0);
  fs::permissions(closed, fs::perms::none);
  EXPECT_THAT(listing(), ::testing::SizeIs(8));
  EXPECT_EQ(listing().front(), "Sound/1");
  fs::permissions(closed, fs::perms::owner_all);
  for (const ProjectSummary& row : files_.listProjects()) files_.deleteProject(row.id);
  EXPECT_EQ(platform::listFolder(root_), std::vector<std::string>{"notes.txt"});
}

TEST_F(ProjectFilesTest, DeletesAProjectWithAllItsFiles) {
  const Song song = named("Gone");
  files_.save(song);
  files_.setCurrentProject(song.id);
  put(files_.audioFolder(song.id) / "a.wav", "sound");
  files_.deleteProject(song.id);
  EXPECT_EQ(platform::listFolder(root_), std::vector<std::string>{"current.txt"});
  EXPECT_EQ(files_.currentProjectID(), song.id);
}

TEST_F(ProjectFilesTest, ImportsUnderAFreshNameWithAPlainExtension) {
  const UUID project = UUID::random();
  const std::pair<std::string, std::string> rows[] = {
      {"beat.AIFF", ".aiff"},
      {"a.b.wav", ".wav"},
      {"none", ".caf"},
      {"a.w-v", ".caf"},
      {"a.", ".caf"},
      {".wav", ".caf"},
      {"a.abcdefghij", ".abcdefghij"},
      {"a.\xFF", ".caf"},
      {"a.abcdefghijk", ".caf"},
      {"a.\xC3\x84IFF", ".\xC3\xA4iff"},
  };
  for (const auto& [source, extension] : rows) {
    put(folder_ / source, source);
    const fs::path copy = files_.importAudioFile(folder_ / source, project);
    EXPECT_EQ(copy.parent_path(), root_ / project.text() / "audio");
    EXPECT_EQ(copy.extension(), extension) << source;
    EXPECT_EQ(UUID::parse(copy.stem().string())->text(), copy.stem());
    EXPECT_EQ(contentOf(copy), source);
  }
  const std::size_t count = platform::listFolder(root_ / project.text() / "audio").size();
  EXPECT_EQ(count, std::size(rows));
  EXPECT_THROW(files_.importAudioFile(folder_ / "missing.wav", project), FileError);
  EXPECT_EQ(platform::listFolder(root_ / project.text() / "audio").size(), count);
}

}  // namespace
}  // namespace velmora
