#include <fstream>
#include <gtest/gtest.h>
#include <vector>

#include "Platform/Audio/CAFWriter.h"
#include "Platform/Tasks/ResultOf.h"
#include "Velmora/Model/CloseError.h"
#include "tests/support/ModelBench.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;
using testing::spinUntil;

/// What becomes of a take, whatever fails or dies on its way.
class TakeTest : public ::testing::Test {
 protected:
  void SetUp() override { open(); }

  /// A new process on the same disk; the one before dies where it stands.
  void open() {
    bench_.start();
    bench_.open();
  }
  AppModel& model() { return *bench_.model; }
  const Song& song() { return model().song(); }
  void selectAudioTrack() {
    model().addTrack(TrackKind::audio());
    model().selectTrack(song().tracks.back().id);
  }
  /// A second of sound, from beat 3.4 on.
  RecordingContext record() {
    model().transport().seek(3.4);
    bench_.device->pull(64);
    model().startRecording();
    write(bench_.microphone->file);
    return model().recordingContext().value_or(RecordingContext());
  }
  static void write(const fs::path& path) {
    platform::CAFWriter file(path, 44100);
    file.append(std::vector<float>(44100, 0.25F));
    file.sync();
  }
  void save() {
    auto saving = model().saveTake();
    spinUntil([&] { return saving.isReady(); });
  }
  void settle() {
    spinUntil([&] { return !model().isAudioBusy(); });
  }
  std::size_t filesLeft() {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(bench_.takes.path()), {}));
  }

  testing::ModelBench bench_;
};

TEST_F(TakeTest, AProcessThatDiedLeavesItsTakeToTheNext) {
  selectAudioTrack();
  ASSERT_TRUE(bench_.awaitStatus("Saved"));
  const RecordingContext take = record();
  open();
  EXPECT_EQ(model().pendingTake(), take);
  EXPECT_EQ(take.trackID, song().tracks.back().id);
  EXPECT_EQ(model().selectedTrackID(), take.trackID);  // in whose editor it can be saved
  EXPECT_EQ(bench_.error(), "Your recorded take is waiting to be saved.");

  model().startRecording();  // not before this one is dealt with
  EXPECT_FALSE(model().isRecording());
  {
    testing::ModelBench other;  // with projects of its own
    other.open();
    EXPECT_FALSE(other.model->pendingTake());
  }
  save();
  EXPECT_FALSE(model().pendingTake());
  EXPECT_EQ(filesLeft(), 0U);
  ASSERT_EQ(song().audioAssets.size(), 1U);
  EXPECT_EQ(song().clips.back().trackID, take.trackID);
  EXPECT_EQ(song().clips.back().startBeat, take.beat);
  open();
  EXPECT_FALSE(model().pendingTake());
}

TEST_F(TakeTest, ATakeThatTheSavedProjectHasIsNotOfferedAgain) {
  const RecordingContext take = record();
  model().stop();
  settle();
  const RecordingContext imported{take.url, take.trackID, take.beat, song().clips.back().id};
  write(take.url);
  TakeFolder(bench_.folder.path()).note(imported);
  open();  // died between the save and the removal
  EXPECT_FALSE(model().pendingTake());
  EXPECT_EQ(filesLeft(), 0U);

  write(take.url);
  TakeFolder(bench_.folder.path()).note({take.url, take.trackID, take.beat, UUID::random()});
  open();  // died before the save
  ASSERT_TRUE(model().pendingTake());
  EXPECT_FALSE(model().pendingTake()->importedClipID);

  std::ofstream(fs::path(take.url).replace_extension(".take")) << "{";
  open();  // nothing is known but the sound
  ASSERT_TRUE(model().pendingTake());
  save();
  EXPECT_EQ(song().clips.back().startBeat, 0);
  EXPECT_EQ(song().audioAssets.size(), 2U);
}

TEST_F(TakeTest, KeepsATakeThatCannotBeImportedAndStaysOpenForIt) {
  const RecordingContext take = record();
  std::ofstream(take.url, std::ios::trunc) << "no sound";
  model().stop();
  settle();
  EXPECT_TRUE(bench_.error().starts_with("Could not import audio: ")) << bench_.error();
  ASSERT_TRUE(model().pendingTake());
  auto closing = model().prepareForClose();
  spinUntil([&] { return closing.isReady(); });
  EXPECT_THROW(platform::resultOf(std::move(closing)), CloseError);
  EXPECT_TRUE(fs::exists(take.url));

  fs::remove(take.url);
  fs::create_directories(take.url / "in the way");
  model().discardPendingTake();
  EXPECT_TRUE(bench_.error().starts_with("Could not discard take: ")) << bench_.error();
  EXPECT_TRUE(model().pendingTake());
}

TEST_F(TakeTest, DiscardTakesBackTheClip) {
  record();
  bench_.microphone->end(false);
  fs::remove_all(bench_.folder / song().id.text() / "song.json");
  fs::create_directories(bench_.document(song().id));  // the import works, its save doesn't
  save();
  ASSERT_TRUE(model().pendingTake() && model().pendingTake()->importedClipID);
  EXPECT_EQ(model().selectedClipID(), model().pendingTake()->importedClipID);
  const std::size_t clips = song().clips.size();
  model().discardPendingTake();
  EXPECT_EQ(song().clips.size(), clips - 1);
  EXPECT_FALSE(model().selectedClipID() || model().pendingTake());
  EXPECT_EQ(filesLeft(), 0U);
}

TEST_F(TakeTest, EndsByItselfAfterTheLongestTimeAndLeavesNothingWhenItCannotBegin) {
  const std::optional<UUID> drums = model().selectedTrackID();
  record();
  EXPECT_NE(model().recordingContext()->trackID, drums);
  EXPECT_EQ(song().track(*drums)->kind, Song::demo().tracks[0].kind);
  bench_.microphone->end(true);
  settle();
  EXPECT_EQ(song().audioAssets.size(), 1U);
  EXPECT_FALSE(model().isPlaying() || model().pendingTake());

  bench_.microphone->onStart = [] { throw platform::FileError("take.caf", ENOSPC); };
  model().startRecording();
  EXPECT_EQ(bench_.error(), "take.caf: No space left on device");
  EXPECT_EQ(bench_.telemetry.count(TelemetryEvent::recordingFailed), 1);
  EXPECT_EQ(filesLeft(), 0U);
}

TEST_F(TakeTest, TellsWhenTheDiskDidNotTakeTheEnd) {
  record();
  bench_.microphone->isWhole = false;
  model().stopRecording(true);
  EXPECT_EQ(bench_.error(),
            "The microphone stopped unexpectedly. The take is kept so you can try saving it.");
  EXPECT_TRUE(model().pendingTake());
}

TEST_F(TakeTest, KeepsTheComputerAwakeDuringATakeAndAnExport) {
  auto input = std::make_unique<testing::HandFedInput>();
  std::vector<std::string> reasons;
  std::weak_ptr<int> held;
  const auto isHeld = [&] { return !held.expired(); };
  AppModel model(Song::demo(), nullptr,
                 {std::make_unique<testing::HandDrivenOutput>(), std::move(input),
                  [&](const char* reason) {
                    reasons.emplace_back(reason);
                    auto inhibitor = std::make_shared<int>();
                    held = inhibitor;
                    return inhibitor;
                  }},
                 bench_.telemetry);
  model.startRecording();
  EXPECT_TRUE(spinUntil(isHeld));
  model.stopRecording(false);
  EXPECT_TRUE(spinUntil([&] { return !isHeld(); }));
  auto exporting = model.exportWAV();
  EXPECT_TRUE(spinUntil(isHeld));
  EXPECT_TRUE(spinUntil([&] { return exporting.isReady() && !isHeld(); }));
  EXPECT_EQ(reasons, (std::vector<std::string>{"Recording", "Exporting"}));
}

}  // namespace
}  // namespace velmora
