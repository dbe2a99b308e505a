#include <gmock/gmock.h>

#include "Platform/Files/FileError.h"
#include "Platform/Files/Folders.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Variable.h"

namespace platform {
namespace {

namespace fs = std::filesystem;
using ::testing::UnorderedElementsAre;
using velmora::testing::put;
using velmora::testing::TemporaryFolder;
using velmora::testing::Variable;

TEST(FoldersTest, CreatesMissingParentsAndTellsWhichItMade) {
  const TemporaryFolder folder;
  const auto made = createFolders(folder / "a" / "b" / "c");
  EXPECT_EQ(made, (std::vector{folder / "a", folder / "a" / "b", folder / "a" / "b" / "c"}));
  EXPECT_TRUE(createFolders(folder / "a" / "b" / "").empty());
  put(folder / "a" / "b" / "kept", "x");
  removeEmptyFolders(made);
  EXPECT_THAT(listFolder(folder / "a" / "b"), UnorderedElementsAre("kept"));
}

TEST(FoldersTest, MakesAllOrNone) {
  const TemporaryFolder folder;
  put(folder / "file", "x");
  fs::create_symlink("nowhere", folder / "dangling");
  const std::string tooLong(300, 'n');
  for (const fs::path& path : {folder / "file" / "a", folder / "dangling" / "a", folder / "new" / tooLong})
    EXPECT_THROW(createFolders(path), FileError) << path;
  EXPECT_THAT(listFolder(folder.path()), UnorderedElementsAre("file", "dangling"));
}

TEST(FoldersTest, RemovesLinksWithoutFollowingThem) {
  const TemporaryFolder folder;
  createFolders(folder / "kept");
  put(folder / "kept" / "file", "x");
  createFolders(folder / "tree" / "deep");
  fs::create_directory_symlink(folder / "kept", folder / "tree" / "deep" / "link");
  removeTree(folder / "tree");
  EXPECT_THAT(listFolder(folder.path()), UnorderedElementsAre("kept"));
  EXPECT_THAT(listFolder(folder / "kept"), UnorderedElementsAre("file"));
  EXPECT_THROW(removeTree(folder / "tree"), FileError);
  EXPECT_THROW(listFolder(folder / "kept" / "file"), FileError);
}

TEST(FoldersTest, FindsTheApplicationSupportFolder) {
  const Variable home("HOME", "/home/user");
  for (const char* value : {"/data", "relative", "", static_cast<const char*>(nullptr)}) {
    const Variable data("XDG_DATA_HOME", value);
    EXPECT_EQ(applicationSupportFolder(), value && *value == '/' ? value : "/home/user/.local/share");
  }
  const Variable noData("XDG_DATA_HOME", nullptr);
  const Variable noHome("HOME", nullptr);
  EXPECT_TRUE(applicationSupportFolder().is_absolute());
}

TEST(FoldersTest, GivesFreshTemporaryPaths) {
  const TemporaryFolder folder;
  const Variable temporary("TMPDIR", folder.path().c_str());
  const fs::path first = temporaryFile("wav");
  EXPECT_EQ(first.parent_path(), folder.path());
  EXPECT_EQ(first.extension(), ".wav");
  EXPECT_NE(first, temporaryFile("wav"));
  EXPECT_FALSE(fs::exists(first));
  const Variable broken("TMPDIR", "/nowhere");
  EXPECT_EQ(temporaryFile("wav").parent_path(), "/tmp");
}

}  // namespace
}  // namespace platform
