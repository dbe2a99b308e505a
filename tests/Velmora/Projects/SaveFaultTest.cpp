#include <array>
#include <cerrno>
#include <cstdio>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "Platform/Files/Files.h"
#include "Platform/Files/Folders.h"
#include "Velmora/Projects/ProjectFiles.h"
#include "VelmoraCore/Song/Limits.h"
#include "tests/Velmora/Projects/FaultInjection.h"
#include "tests/support/TemporaryFolder.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;
using testing::Fault;

/// How a save in a child process ended.
struct Outcome {
  enum class End { saved, refused, killed };
  End end = End::killed;
  std::array<char, 200> message{};
  std::array<char, 20> failedCall{};
};

/// Saves in a child process in which one file call goes wrong.
Outcome saveWithFault(const ProjectFiles& files, const Song& song, const Fault& fault) {
  void* shared = ::mmap(nullptr, sizeof(Outcome), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  auto& outcome = *new (shared) Outcome;
  const pid_t child = ::fork();
  if (child == 0) {
    testing::arm(fault);
    try {
      files.save(song);
      outcome.end = Outcome::End::saved;
    } catch (const std::exception& error) {
      std::snprintf(outcome.message.data(), outcome.message.size(), "%s", error.what());
      outcome.end = Outcome::End::refused;
    }
    std::snprintf(outcome.failedCall.data(), outcome.failedCall.size(), "%s", testing::failedCall().c_str());
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status) ? WTERMSIG(status) == SIGKILL : WEXITSTATUS(status) == 0);
  const Outcome result = outcome;
  ::munmap(shared, sizeof(Outcome));
  return result;
}

class SaveFaultTest : public ::testing::Test {
 protected:
  std::string content() const {
    return platform::fileExists(document_) ? platform::readFile(document_, limits::longestDocumentBytes) : "";
  }

  /// Everything below the test's folder but what a save may leave.
  std::set<std::string> strays() const {
    std::set<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(folder_.path()))
      if (!entry.is_directory() && entry.path() != document_) names.insert(entry.path().filename());
    return names;
  }

  /// Puts the disk into the state before the save: the old document, or nothing at all.
  void restore(bool hasOld) {
    fs::remove_all(folder_ / "data");
    if (hasOld) files_.save(old_);
  }

  /// Whether it names the document, or a folder that was to be made for it or to take such a folder in.
  void expectMessage(const Outcome& outcome, const std::string& reason, bool hasOld) const {
    std::vector<std::string> messages = {"song.json: " + reason};
    if (!hasOld)
      for (fs::path made = document_.parent_path(); made != folder_.path().parent_path();
           made = made.parent_path())
        messages.push_back(made.filename().string() + ": " + reason);
    EXPECT_THAT(messages, ::testing::Contains(outcome.message.data()));
  }

  void expectNextSaveIsClean() {
    files_.save(new_);
    EXPECT_EQ(content(), newContent_);
    EXPECT_TRUE(strays().empty()) << *strays().begin();
  }

  /// The calls whose failure made a save fail, and those whose failure a save got over.
  struct Verdict {
    std::set<std::string> refused;
    std::set<std::string> harmless;
  };

  /// Lets the first, the second, ... call go wrong until a save gets by without.
  template <class Check>
  Verdict failEachCall(Fault fault, bool hasOld, Check check) {
    Verdict verdict;
    for (fault.number = 1; fault.number < 100; ++fault.number) {
      SCOPED_TRACE("call " + std::to_string(fault.number) +
                   (hasOld ? " over an old document" : " into nothing"));
      restore(hasOld);
      const Outcome outcome = saveWithFault(files_, new_, fault);
      const std::string failedCall = outcome.failedCall.data();
      if (outcome.end == Outcome::End::saved && failedCall.empty()) return verdict;
      SCOPED_TRACE(failedCall);
      (outcome.end == Outcome::End::refused ? verdict.refused : verdict.harmless).insert(failedCall);
      check(outcome);
      expectNextSaveIsClean();
    }
    ADD_FAILURE() << "the save never ended";
    return verdict;
  }

  testing::TemporaryFolder folder_;
  ProjectFiles files_{folder_ / "data" / "Projects"};
  Song old_ = Song::demo();
  Song new_ = [this] {
    Song song = old_;
    song.name = "New";
    return song;
  }();
  fs::path document_ = files_.root() / old_.id.text() / "song.json";
  std::string oldContent_ = (files_.save(old_), content());
  std::string newContent_ = (files_.save(new_), content());
};

TEST_F(SaveFaultTest, OneFailureLeavesTheOldDocumentOrDoesNotMatter) {
  for (const auto& [error, reason] :
       {std::pair(ENOSPC, "No space left on device"), {EIO, "Input/output error"}}) {
    for (const bool hasOld : {true, false}) {
      const Verdict verdict =
          failEachCall({Fault::Kind::once, error, 0}, hasOld, [&](const Outcome& outcome) {
            const bool isSaved = outcome.end == Outcome::End::saved;
            EXPECT_EQ(content(), isSaved ? newContent_ : hasOld ? oldContent_ : "");
            EXPECT_EQ(fs::exists(folder_ / "data"), hasOld || isSaved);
            if (!isSaved) expectMessage(outcome, reason, hasOld);
          });
      std::set<std::string> refused = {"close", "create", "fsync", "open", "rename", "write"};
      // Closing a folder and looking for leftovers may fail; everything else of these names may not.
      std::set<std::string> harmless = {"close", "flock", "open"};
      if (hasOld) harmless.merge(std::set<std::string>{"fchmod", "unlink"});
      if (!hasOld) refused.insert("mkdir");
      EXPECT_EQ(verdict.refused, refused);
      EXPECT_EQ(verdict.harmless, harmless);
    }
  }
}

TEST_F(SaveFaultTest, AFileSystemThatCanNeitherExchangeNorSyncStillSaves) {
  const Verdict verdict = failEachCall({Fault::Kind::once, EINVAL, 0}, true, [&](const Outcome& outcome) {
    EXPECT_EQ(content(), outcome.end == Outcome::End::saved ? newContent_ : oldContent_);
  });
  EXPECT_TRUE(verdict.harmless.contains("rename"));
  EXPECT_FALSE(verdict.refused.contains("fsync"));
}

TEST_F(SaveFaultTest, ADiskThatStaysBrokenLeavesOneDocumentWhole) {
  for (const int error : {ENOSPC, EIO})
    failEachCall({Fault::Kind::fromThenOn, error, 0}, true,
                 [&](const Outcome&) { EXPECT_TRUE(content() == oldContent_ || content() == newContent_); });
}

TEST_F(SaveFaultTest, ADeathAtAnyCallLeavesTheProjectAsBeforeOrAsAfter) {
  std::set<std::string> seen;
  for (const bool hasOld : {true, false})
    failEachCall({Fault::Kind::kill, 0, 0}, hasOld, [&](const Outcome& outcome) {
      EXPECT_EQ(outcome.end, Outcome::End::killed);
      if (!platform::fileExists(document_)) {
        seen.insert("nothing");
        EXPECT_FALSE(hasOld);
        return;
      }
      const Song loaded = files_.load(old_.id);
      seen.insert(loaded.name);
      EXPECT_TRUE((hasOld && loaded == old_) || loaded == new_);
    });
  EXPECT_EQ(seen, (std::set<std::string>{"nothing", old_.name, "New"}));
}

}  // namespace
}  // namespace velmora
