#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <vector>

#include "Platform/Files/FileDescriptor.h"
#include "Platform/Files/FileError.h"
#include "Platform/Files/Files.h"
#include "Platform/Files/Folders.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

namespace platform {
namespace {

namespace fs = std::filesystem;
using velmora::testing::contentOf;
using velmora::testing::put;
using velmora::testing::TemporaryFolder;
using Names = std::vector<std::string>;

/// What a failing operation says; empty if it doesn't fail.
template <class Operation>
std::string failureOf(Operation operation) {
  try {
    operation();
  } catch (const FileError& error) {
    return error.what();
  }
  return {};
}

const std::string random36 = "0F8FAD5B-D9CB-469F-A165-70867728950E";

TEST(FileErrorTest, NamesTheLastComponentAndTheReasonInOneLine) {
  const std::pair<const char*, std::string> rows[] = {{"/home/user/song.json", "song.json"},
                                                      {"song.json", "song.json"},
                                                      {"/home/user/Projects/", "Projects"},
                                                      {"/", "/"},
                                                      {"/tmp/two\nlines", "two?lines"}};
  for (const auto& [path, name] : rows)
    EXPECT_EQ(FileError(path, ENOSPC).what(), name + ": No space left on device");
  EXPECT_EQ(FileError("a", ENOSPC).code(), ENOSPC);
}

TEST(AtomicWriteTest, ReplacesTheContentOrTheLinkAndKeepsTheModeAndNothingElse) {
  const TemporaryFolder folder;
  const fs::path target = folder / "song.json";
  put(folder / "elsewhere", "kept");
  fs::create_symlink(folder / "elsewhere", target);
  atomicWrite(target, "old");
  EXPECT_EQ(contentOf(folder / "elsewhere"), "kept");
  EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(target)));
  fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write);
  for (const std::string& bytes : {std::string(), std::string(3000000, 'x'), std::string("n\0w", 3)}) {
    atomicWrite(target, bytes);
    EXPECT_EQ(contentOf(target), bytes);
  }
  EXPECT_EQ(fs::status(target).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(listFolder(folder.path()).size(), 2U);
}

TEST(AtomicWriteTest, LeavesWhatItCannotReplace) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "song.json");
  EXPECT_EQ(failureOf([&] { atomicWrite(folder / "song.json", "x"); }), "song.json: Is a directory");
  EXPECT_EQ(failureOf([&] { atomicWrite(folder / "no" / "a", "x"); }), "a: No such file or directory");
  EXPECT_EQ(listFolder(folder.path()), Names{"song.json"});
}

TEST(AtomicWriteTest, SweepsItsOwnLeftoversThatNobodyHolds) {
  const TemporaryFolder folder;
  const fs::path abandoned = folder / (".song.json." + random36 + ".tmp");
  const fs::path held = folder / (".song.json." + std::string(36, 'A') + ".tmp");
  const fs::path others = folder / (".current.txt." + random36 + ".tmp");
  const fs::path foreign = folder / ".song.json.swp.tmp";
  for (const fs::path& path : {abandoned, held, others, foreign}) put(path, "half");
  const FileDescriptor holder = openForReading(held);
  ASSERT_EQ(::flock(holder.number(), LOCK_EX), 0);
  atomicWrite(folder / "song.json", "new");
  EXPECT_FALSE(fileExists(abandoned));
  for (const fs::path& path : {held, others, foreign}) EXPECT_TRUE(fileExists(path)) << path;
}

TEST(ReadFileTest, ReadsNoMoreThanOneByteOverTheLimit) {
  const TemporaryFolder folder;
  for (const std::size_t size : {0, 1, 99999, 100000, 100001, 200000}) {
    const std::string bytes(size, 'x');
    put(folder / "a", bytes);
    EXPECT_TRUE(readFile(folder / "a", 100000) == bytes.substr(0, 100001)) << size;
    EXPECT_EQ(fileSize(folder / "a"), size);
  }
}

TEST(ReadFileTest, RefusesWhatIsNoRegularFileWithoutBlocking) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  fs::create_directory(folder / "folder");
  fs::create_symlink("nowhere", folder / "dangling");
  fs::create_symlink("loop", folder / "loop");
  const std::pair<std::string, std::string> rows[] = {{"pipe", "Not a regular file"},
                                                      {"folder", "Is a directory"},
                                                      {"dangling", "No such file or directory"},
                                                      {"loop", "Too many levels of symbolic links"}};
  for (const auto& [name, reason] : rows) {
    EXPECT_EQ(failureOf([&] { readFile(folder / name, 100); }), name + ": " + reason);
    EXPECT_EQ(failureOf([&] { copyFile(folder / name, folder / "copy"); }), name + ": " + reason);
  }
  EXPECT_FALSE(fileExists(folder / "copy"));
}

TEST(CopyFileTest, CopiesWholeAndSweepsTheLeftoversOfEarlierCopies) {
  const TemporaryFolder folder;
  const std::string bytes(1000000, 'x');
  put(folder / "source", bytes);
  put(folder / (".copy." + random36 + ".tmp"), "half");
  copyFile(folder / "source", folder / "target");
  EXPECT_EQ(contentOf(folder / "target"), bytes);
  EXPECT_EQ(listFolder(folder.path()).size(), 2U);
}

TEST(ModificationDateTest, TellsMicrosecondsAndSurvivesAbsurdDates) {
  const TemporaryFolder folder;
  put(folder / "a", "x");
  const auto dated = [&](std::int64_t seconds, std::int64_t nanoseconds) {
    const timespec times[2] = {{0, UTIME_OMIT}, {seconds, nanoseconds}};
    ::utimensat(AT_FDCWD, (folder / "a").c_str(), times, 0);
    return modificationDate(folder / "a").time_since_epoch().count();
  };
  EXPECT_EQ(dated(1700000000, 123456789), 1700000000123456);
  EXPECT_GT(dated(INT64_MAX, 999999999), 1700000000123456);
  EXPECT_LT(dated(INT64_MIN, 0), 0);
}

}  // namespace
}  // namespace platform
