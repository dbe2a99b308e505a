#include <fstream>
#include <gtest/gtest.h>

#include "Velmora/Model/ApplicationLifecycle.h"
#include "tests/support/ModelBench.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;

class ProjectsTest : public ::testing::Test {
 protected:
  const Song& song() const { return bench_.model->song(); }
  Song onDisk(const UUID& id) { return ProjectFiles(bench_.folder.path()).load(id); }
  template <class Task>
  void finish(Task task) {
    spinUntil([&] { return task.isReady(); });
    ASSERT_TRUE(task.isReady());
  }
  /// A file stands where the project's folder belongs: every save fails.
  void spoil(const UUID& id) {
    fs::remove_all(bench_.folder / id.text());
    std::ofstream(bench_.folder / id.text()) << "in the way";
  }
  static bool spinUntil(const std::function<bool()>& condition) { return testing::spinUntil(condition); }

  testing::ModelBench bench_;
};

TEST_F(ProjectsTest, StartsWithTheDemoAndGoesOnWhereItEnded) {
  bench_.model->toggleMute(song().tracks[0].id);  // before the start: nothing to save yet
  EXPECT_EQ(bench_.model->saveStatus(), "Not saved");
  bench_.open();
  ASSERT_TRUE(bench_.awaitStatus("Saved"));
  ASSERT_EQ(bench_.model->projects().size(), 1U);
  EXPECT_EQ(bench_.model->projects()[0].name, "Demo");
  EXPECT_TRUE(bench_.model->isEngineRunning());

  std::vector<std::string> statuses;
  const auto notifier =
      bench_.model->saveStatus.addNotifier([&] { statuses.push_back(bench_.model->saveStatus()); });
  for (int n = 0; n < 10; ++n) bench_.model->setTrackVolume(song().tracks[0].id, static_cast<float>(n) / 10);
  EXPECT_NE(onDisk(song().id), song());
  ASSERT_TRUE(bench_.awaitStatus("Saved"));
  EXPECT_EQ(statuses, (std::vector<std::string>{"Saving…", "Saved"}));
  EXPECT_EQ(onDisk(song().id), song());

  const Song left = song();
  bench_.start();
  bench_.open();
  EXPECT_EQ(song(), left);
}

TEST_F(ProjectsTest, TellsOfALastProjectThatIsGoneAndKeepsTheDemo) {
  std::ofstream(bench_.folder / "current.txt") << UUID::random().text();
  finish(bench_.model->loadInitialProject());
  EXPECT_EQ(bench_.model->saveStatus(), "Not saved");
  EXPECT_TRUE(bench_.telemetry.count(TelemetryEvent::projectLoadFailed));
  bench_.open();
  EXPECT_TRUE(bench_.error().starts_with("Could not open the last project: ")) << bench_.error();
  ASSERT_TRUE(bench_.awaitStatus("Saved"));
  EXPECT_EQ(onDisk(song().id), song());
}

TEST_F(ProjectsTest, OpensCreatesAndDeletes) {
  bench_.open();
  const Song demo = song();
  bench_.model->toggleSolo(demo.tracks[0].id);
  finish(bench_.model->createProject());  // writes what it leaves
  EXPECT_EQ(song().name, "Untitled Beat");
  EXPECT_EQ(onDisk(demo.id).tracks[0].isSoloed, true);
  EXPECT_EQ(bench_.model->projects().size(), 2U);
  EXPECT_EQ(bench_.model->selectedTrackID(), song().tracks[0].id);

  const UUID untitled = song().id;
  bench_.model->renameProject(" " + std::string(150, 'x') + "\n");
  bench_.model->renameProject(" \t");
  EXPECT_EQ(song().name, std::string(100, 'x'));
  auto opening = bench_.model->openProject(demo.id);
  bench_.model->openProject(untitled);  // one at a time
  finish(std::move(opening));
  EXPECT_EQ(song().id, demo.id);
  EXPECT_EQ(onDisk(untitled).name, std::string(100, 'x'));

  finish(bench_.model->deleteProject(demo.id));  // the open one
  EXPECT_TRUE(fs::exists(bench_.document(demo.id)));
  finish(bench_.model->deleteProject(untitled));
  EXPECT_FALSE(fs::exists(bench_.document(untitled)));
  EXPECT_EQ(bench_.model->projects().size(), 1U);
  EXPECT_EQ(bench_.error(), "");
}

TEST_F(ProjectsTest, ReportsEachFailureAndKeepsTheSong) {
  bench_.open();
  const Song before = song();
  finish(bench_.model->openProject(UUID::random()));
  EXPECT_TRUE(bench_.error().starts_with("Could not open project: ")) << bench_.error();
  EXPECT_EQ(song(), before);
  spoil(song().id);
  struct Row {
    const char* prefix;
    std::function<void()> command;
  };
  AppModel& model = *bench_.model;
  const Row rows[] = {
      {"Could not save: ",
       [&] {
         model.toggleMute(song().tracks[0].id);
         bench_.awaitStatus("Save failed");
       }},
      {"Could not create project: ", [&] { finish(model.createProject()); }},
      {"Could not open project: ", [&] { finish(model.openProject(song().id)); }},
      {"Could not delete project: ", [&] { finish(model.deleteProject(UUID::random())); }},
      {"", [&] { finish(model.saveNow()); }},
  };
  for (const Row& row : rows) {
    model.lastError.set({});
    row.command();
    EXPECT_TRUE(bench_.error().starts_with(row.prefix)) << row.prefix << bench_.error();
    EXPECT_GT(bench_.error().size(), std::string_view(row.prefix).size());
    EXPECT_FALSE(model.isProjectBusy());
  }
  EXPECT_EQ(song().id, before.id);
  fs::remove(bench_.folder / song().id.text());
  model.toggleMute(song().tracks[0].id);  // the next edit tries again
  EXPECT_TRUE(bench_.awaitStatus("Saved"));
}

TEST_F(ProjectsTest, ASaveThatEndsAfterTheNextProjectOpenedLeavesTheStatusAlone) {
  bench_.open();
  const UUID demo = song().id;
  finish(bench_.model->createProject());
  bench_.model->toggleMute(song().tracks[0].id);
  auto opening = bench_.model->openProject(demo);
  bench_.model->toggleMute(song().tracks[0].id);  // while the project is being left
  finish(std::move(opening));
  EXPECT_EQ(song().id, demo);
  std::vector<std::string> statuses;
  const auto notifier =
      bench_.model->saveStatus.addNotifier([&] { statuses.push_back(bench_.model->saveStatus()); });
  QDeadlineTimer wait(700);
  spinUntil([&] { return wait.hasExpired(); });
  EXPECT_TRUE(statuses.empty());
}

TEST_F(ProjectsTest, OutlivesItsModelWhileItSaves) {
  bench_.open();
  const UUID id = song().id;
  bench_.model->renameProject("Last words");
  bench_.model->saveNow();
  bench_.model.reset();
  spinUntil([&] { return onDisk(id).name == "Last words"; });
  EXPECT_EQ(onDisk(id).name, "Last words");
}

class LifecycleTest : public ProjectsTest {
 protected:
  using Answer = ApplicationLifecycle::Answer;
  bool awaitReply() {
    return spinUntil([&] { return !replies_.empty(); });
  }

  std::vector<bool> replies_;
  ApplicationLifecycle lifecycle_{[this](bool mayTerminate) { replies_.push_back(mayTerminate); }};
};

TEST_F(LifecycleTest, EndsOnlyAfterTheSave) {
  EXPECT_EQ(lifecycle_.applicationShouldTerminate(), Answer::now);
  bench_.open();
  lifecycle_.setModel(bench_.model.get());
  bench_.model->renameProject("Night Drive");
  EXPECT_EQ(lifecycle_.applicationShouldTerminate(), Answer::later);
  EXPECT_EQ(lifecycle_.applicationShouldTerminate(), Answer::later);
  EXPECT_TRUE(replies_.empty());
  ASSERT_TRUE(awaitReply());
  EXPECT_EQ(replies_, std::vector<bool>{true});
  EXPECT_EQ(onDisk(song().id).name, "Night Drive");
  EXPECT_FALSE(bench_.model->isEngineRunning() || bench_.device->isPlaying());
}

TEST_F(LifecycleTest, StaysOpenWithTheReason) {
  bench_.open();
  lifecycle_.setModel(bench_.model.get());
  bench_.model->createProject();
  lifecycle_.applicationShouldTerminate();
  ASSERT_TRUE(awaitReply());
  EXPECT_EQ(replies_, std::vector<bool>{false});
  EXPECT_EQ(bench_.error(), "Wait for the current audio or project operation to finish, then quit again.");
  EXPECT_FALSE(lifecycle_.isClosing());

  ASSERT_TRUE(spinUntil([&] { return !bench_.model->isProjectBusy(); }));
  spoil(song().id);
  replies_.clear();
  lifecycle_.applicationShouldTerminate();
  ASSERT_TRUE(awaitReply());
  EXPECT_EQ(replies_, std::vector<bool>{false});
  EXPECT_TRUE(bench_.model->isEngineRunning());
}

class EngineErrorsTest : public ProjectsTest {};

TEST_F(EngineErrorsTest, TellThemselvesAndTakeThemselvesBack) {
  bench_.device->remove();
  bench_.open();
  EXPECT_EQ(bench_.error(), "Audio engine failed to start: No sound output was found.");
  EXPECT_FALSE(bench_.model->isEngineRunning());
  EXPECT_EQ(bench_.telemetry.count(TelemetryEvent::audioEngineFailed), 1);
  bench_.device->comeBack(44100);
  EXPECT_TRUE(bench_.model->isEngineRunning());
  EXPECT_EQ(bench_.error(), "");

  bench_.model->play();
  bench_.device->lose();
  EXPECT_EQ(bench_.error(), "Audio engine could not restart: No sound output was found.");
  EXPECT_FALSE(bench_.model->isEngineRunning());
  bench_.model->reportError("Something else.");
  bench_.device->comeBack(48000);
  EXPECT_TRUE(bench_.model->isEngineRunning() && bench_.model->isPlaying());
  EXPECT_EQ(bench_.error(), "Something else.");
}

}  // namespace
}  // namespace velmora
