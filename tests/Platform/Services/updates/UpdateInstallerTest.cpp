#include <QCryptographicHash>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include "Platform/Files/Folders.h"
#include "Platform/Services/UpdateInstaller.h"
#include "tests/Velmora/Projects/FaultInjection.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Variable.h"

namespace platform {
namespace {

using ::testing::IsSubsetOf;
using ::testing::UnorderedElementsAre;
using velmora::testing::Fault;
using velmora::testing::put;
using velmora::testing::TemporaryFolder;
using velmora::testing::Variable;

const QByteArray oldProgram(5000, 'o');
const QByteArray newProgram(9000, 'n');

QByteArray bytesOf(const std::filesystem::path& path) {
  return QByteArray::fromStdString(velmora::testing::contentOf(path));
}

QByteArray sum(const QByteArray& bytes) {
  return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

void get(UpdateInstaller& installer, const QByteArray& bytes, qint64 size, const QByteArray& hash) {
  installer.begin(size, hash);
  for (qsizetype start = 0; start < bytes.size(); start += 4000) installer.append(bytes.mid(start, 4000));
  installer.complete();
}

class UpdateInstallerTest : public ::testing::Test {
 protected:
  UpdateInstallerTest() { reset(); }

  void reset() {
    for (const std::string& name : names()) std::filesystem::remove(folder_ / name);
    put(program_, oldProgram.toStdString());
    std::filesystem::permissions(program_, std::filesystem::perms(0755));
  }
  std::vector<std::string> names() const { return listFolder(folder_.path()); }
  bool isExecutable() const { return ::access(program_.c_str(), X_OK) == 0; }

  /// Updates in a process of its own, in which the fault strikes; its wait status.
  int updateWith(const Fault& fault) {
    const pid_t child = ::fork();
    if (child == 0) {
      velmora::testing::arm(fault);
      int code = 0;
      try {
        UpdateInstaller installer(program_);
        installer.canInstall();
        get(installer, newProgram, newProgram.size(), sum(newProgram));
        installer.install();
      } catch (const FileError&) {
        code = 1;
      }
      const bool hasStruck = !velmora::testing::failedCall().empty();
      velmora::testing::arm({});
      ::_exit(code + (hasStruck ? 2 : 0));
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return status;
  }

  TemporaryFolder folder_;
  const std::filesystem::path program_ = folder_ / "Program.AppImage";
};

TEST_F(UpdateInstallerTest, ReplacesTheProgramAndKeepsTheOldOne) {
  for (int round = 0; round < 2; ++round) {
    UpdateInstaller installer(program_);
    ASSERT_TRUE(installer.canInstall());
    get(installer, newProgram, newProgram.size(), sum(newProgram));
    EXPECT_EQ(bytesOf(program_), round == 0 ? oldProgram : newProgram) << "not before it is installed";
    installer.install();
    EXPECT_EQ(bytesOf(program_), newProgram);
    EXPECT_EQ(bytesOf(folder_ / "Program.AppImage.old"), round == 0 ? oldProgram : newProgram);
    EXPECT_TRUE(isExecutable());
    EXPECT_EQ(names().size(), 2);
  }
}

TEST_F(UpdateInstallerTest, TakesNothingButWhatWasAnnounced) {
  const QByteArray hash = sum(newProgram);
  struct Row {
    QByteArray bytes;
    qint64 size;
    const char* line;
  };
  const Row rows[] = {
      {newProgram.chopped(1), newProgram.size(), "Program.AppImage: The update didn't arrive whole"},
      {newProgram + 'x', newProgram.size(), "Program.AppImage: The update is larger than announced"},
      {newProgram.chopped(1) + 'x', newProgram.size(),
       "Program.AppImage: The update isn't what was announced"},
      {"", newProgram.size(), "Program.AppImage: The update didn't arrive whole"}};
  for (const auto& [bytes, size, line] : rows) {
    UpdateInstaller installer(program_);
    EXPECT_THAT([&] { get(installer, bytes, size, hash); }, ::testing::ThrowsMessage<FileError>(line));
    installer.install();
    installer.discard();
    EXPECT_EQ(bytesOf(program_), oldProgram);
    EXPECT_THAT(names(), UnorderedElementsAre("Program.AppImage"));
  }
}

TEST_F(UpdateInstallerTest, LeavesAloneWhatIsNotItsOwn) {
  UpdateInstaller installer(program_);
  get(installer, newProgram, newProgram.size(), sum(newProgram));
  std::filesystem::remove(program_);
  put(program_, "newer still");
  EXPECT_THROW(installer.install(), FileError);
  EXPECT_EQ(bytesOf(program_), "newer still");
  EXPECT_FALSE(UpdateInstaller(std::filesystem::path()).canInstall());
  EXPECT_FALSE(UpdateInstaller(folder_ / "nothing").canInstall());
  EXPECT_FALSE(UpdateInstaller(folder_.path()).canInstall());
  EXPECT_FALSE(UpdateInstaller("/proc/self/status").canInstall()) << "nothing can be made beside it";
}

TEST_F(UpdateInstallerTest, AKillAtAnyStepLeavesAWholeProgram) {
  int kills = 0;
  int newPrograms = 0;
  for (;; ++kills) {
    reset();
    const int status = updateWith({Fault::Kind::kill, 0, kills + 1});
    const QByteArray content = bytesOf(program_);
    ASSERT_TRUE(content == oldProgram || content == newProgram) << "call " << kills + 1;
    ASSERT_TRUE(isExecutable()) << "call " << kills + 1;
    newPrograms += content == newProgram;
    EXPECT_TRUE(UpdateInstaller(program_).canInstall()) << "the next start";
    EXPECT_THAT(names(), IsSubsetOf({"Program.AppImage", "Program.AppImage.old"})) << "call " << kills + 1;
    if (WIFEXITED(status)) break;
    ASSERT_EQ(WTERMSIG(status), SIGKILL);
  }
  EXPECT_GT(kills, 12) << "create, lock, write, sync, rename and more";
  EXPECT_GE(newPrograms, 2) << "some kills came after the replacement";
}

TEST_F(UpdateInstallerTest, AFailureAtAnyStepKeepsTheOldProgram) {
  for (int number = 1;; ++number) {
    reset();
    const int status = updateWith({Fault::Kind::once, EIO, number});
    ASSERT_TRUE(WIFEXITED(status));
    const bool hasThrown = WEXITSTATUS(status) & 1;
    ASSERT_EQ(bytesOf(program_), hasThrown ? oldProgram : newProgram) << "call " << number;
    ASSERT_TRUE(isExecutable());
    if (!(WEXITSTATUS(status) & 2)) break;
    ASSERT_LT(number, 100);
  }
}

TEST_F(UpdateInstallerTest, StartsTheNewProgramInItsPlace) {
  const QByteArray script = "#!/bin/sh\necho \"$0\" > \"$0.ran\"\n";
  for (const bool relaunches : {false, true}) {
    reset();
    const pid_t child = ::fork();
    if (child == 0) {
      UpdateInstaller installer(program_);
      get(installer, script, script.size(), sum(script));
      installer.setRelaunches(relaunches);
      installer.finish();
      ::_exit(7);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(bytesOf(program_), script);
    EXPECT_EQ(WEXITSTATUS(status), relaunches ? 0 : 7);
    EXPECT_EQ(bytesOf(program_.string() + ".ran"), relaunches ? program_.c_str() + QByteArray("\n") : "");
  }
}

TEST_F(UpdateInstallerTest, KnowsWhetherTheProgramIsAnImage) {
  const auto here = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  const std::filesystem::path link = folder_ / "link";
  std::filesystem::create_symlink(program_, link);
  struct Row {
    const char* image;
    const char* mounted;
    std::filesystem::path expected;
  };
  const Row rows[] = {{program_.c_str(), here.c_str(), program_},
                      {link.c_str(), here.c_str(), program_},
                      {program_.c_str(), folder_.path().c_str(), ""},  // started from another image
                      {program_.c_str(), nullptr, ""},
                      {nullptr, here.c_str(), ""},
                      {"Program.AppImage", here.c_str(), ""}};
  for (const Row& row : rows) {
    const Variable image("APPIMAGE", row.image);
    const Variable mounted("APPDIR", row.mounted);
    EXPECT_EQ(UpdateInstaller::runningImage(), row.expected);
  }
}

}  // namespace
}  // namespace platform
