#include <fstream>
#include <gtest/gtest.h>
#include <vector>

#include "Platform/Audio/AudioFile.h"
#include "Velmora/Audio/OfflineExporter.h"
#include "tests/support/ModelBench.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;
using testing::spinUntil;

/// Import, recording and export against real files.
class OutsideSoundTest : public ::testing::Test {
 protected:
  void SetUp() override {
    bench_.open();
    model_.transport().seek(3.4);
    bench_.device->pull(64);
  }
  fs::path sound(const std::string& name, double seconds) {
    const fs::path path = files_ / name;
    platform::AudioFileWriter writer(path, 8000, platform::AudioFileWriter::SampleFormat::int16);
    const std::vector<float> tone(static_cast<std::size_t>(seconds * 8000), 0.5F);
    writer.write(tone, tone);
    writer.close();
    return path;
  }
  bool import(const fs::path& path, AppModel::ImportTarget target = {}) {
    auto importing = model_.importAudio(path, std::move(target));
    bool result = false;
    auto waiting = [](QCoro::Task<bool> task, bool& answer) -> QCoro::Task<> { answer = co_await task; }(
                                                                std::move(importing), result);
    spinUntil([&] { return waiting.isReady(); });
    return result;
  }
  const Song& song() const { return model_.song(); }
  Song onDisk() { return ProjectFiles(bench_.folder.path()).load(song().id); }
  void spoil() {
    fs::rename(bench_.folder / song().id.text(), files_ / "aside");
    std::ofstream(bench_.folder / song().id.text()) << "in the way";
  }
  void repair() {
    fs::remove(bench_.folder / song().id.text());
    fs::rename(files_ / "aside", bench_.folder / song().id.text());
  }
  /// A take that the microphone has written.
  void record(bool endsClean) {
    model_.startRecording();
    fs::copy(sound("take.wav", 1), bench_.microphone->file);
    endsClean ? model_.stop() : bench_.microphone->end(false);
    spinUntil([&] { return !model_.isAudioBusy(); });
  }

  testing::TemporaryFolder files_;
  testing::ModelBench bench_;
  AppModel& model_ = *bench_.model;
};

TEST_F(OutsideSoundTest, ImportsToANewTrackAtTheNearestBeat) {
  ASSERT_TRUE(import(sound("Rain.loud.wav", 2)));
  const Clip& clip = song().clips.back();
  EXPECT_EQ(model_.selectedClipID(), clip.id);
  EXPECT_EQ(clip.startBeat, 3);
  EXPECT_NEAR(clip.lengthBeats, 2 * 128 / 60.0, 1e-9);
  EXPECT_TRUE(song().tracks.back().kind.isAudio());
  const AudioAsset& asset = song().audioAssets.back();
  EXPECT_EQ(asset.name, "Rain.loud");
  EXPECT_EQ(asset.channelCount, 2);
  EXPECT_TRUE(model_.audioSamples().contains(asset.id));
  EXPECT_EQ(onDisk(), song());

  ASSERT_TRUE(import(sound("short.wav", 0.05), {song().tracks.back().id, 16383.7, "Tick"}));
  EXPECT_EQ(song().clips.back().startBeat, 16383);
  EXPECT_EQ(song().clips.back().lengthBeats, 0.25);
  EXPECT_EQ(song().audioAssets.back().name, "Tick");
  EXPECT_EQ(song().tracks.size(), 3U);

  const Song left = song();
  bench_.start();  // the next process hears the same
  bench_.open();
  EXPECT_EQ(bench_.model->song(), left);
  EXPECT_EQ(bench_.model->audioSamples().size(), 2U);
}

TEST_F(OutsideSoundTest, AFailedImportLeavesTheSongAsItWas) {
  const Song before = song();
  std::ofstream(files_ / "text.wav") << "no sound";
  EXPECT_FALSE(import(files_ / "text.wav"));
  EXPECT_TRUE(bench_.error().starts_with("Could not import audio: ")) << bench_.error();
  const fs::path good = sound("good.wav", 1);
  spoil();
  EXPECT_FALSE(import(good));
  EXPECT_EQ(song(), before);
  EXPECT_EQ(bench_.telemetry.count(TelemetryEvent::audioImportFailed), 2);
  EXPECT_FALSE(model_.isAudioBusy());
}

TEST_F(OutsideSoundTest, ATakeLandsWhereItBegan) {
  model_.startRecording();
  EXPECT_TRUE(model_.isRecording() && model_.isPlaying());
  const UUID drums = song().tracks[0].id, recorded = song().tracks.back().id;
  EXPECT_EQ(model_.transport().state().loop, (LoopRange{0, 16384}));
  model_.seek(9);
  model_.setMode(PlaybackMode::pattern);
  model_.setBPM(90);
  model_.setLoop(0, 4);
  model_.clearLoop();
  model_.deleteTrack(recorded);
  model_.returnToStart();
  EXPECT_EQ(song().bpm, 128);
  EXPECT_EQ(song().tracks.size(), 3U);
  EXPECT_EQ(model_.mode(), PlaybackMode::song);
  fs::copy(sound("take.wav", 1), bench_.microphone->file);
  model_.stop();
  bench_.microphone->end(true);  // the recorder's own word comes late
  ASSERT_TRUE(spinUntil([&] { return !model_.isAudioBusy() && !model_.pendingTake(); }));
  EXPECT_EQ(song().clips.back().trackID, recorded);
  EXPECT_NEAR(song().clips.back().startBeat, 3.4, 0.01);
  EXPECT_EQ(song().audioAssets.back().name, "Recording");
  EXPECT_NE(recorded, drums);
  EXPECT_FALSE(fs::exists(bench_.microphone->file));
  EXPECT_FALSE(model_.transport().state().loop);
  EXPECT_EQ(bench_.microphone->stops, 1);
}

TEST_F(OutsideSoundTest, ATakeIsKeptUntilItIsSaved) {
  record(false);
  EXPECT_EQ(bench_.error(),
            "The microphone stopped unexpectedly. The take is kept so you can try saving it.");
  ASSERT_TRUE(model_.pendingTake());
  model_.startRecording();  // not before this one is dealt with
  EXPECT_FALSE(model_.isRecording());

  fs::create_directories(bench_.folder / song().id.text() / "audio");
  fs::rename(bench_.document(song().id), files_ / "song.json");
  fs::create_directories(bench_.document(song().id));  // the copy works, the save doesn't
  auto saving = model_.saveTake();
  spinUntil([&] { return saving.isReady(); });
  ASSERT_TRUE(model_.pendingTake() && model_.pendingTake()->importedClipID);
  const std::size_t clips = song().clips.size();
  auto again = model_.saveTake();
  spinUntil([&] { return again.isReady(); });
  EXPECT_TRUE(bench_.error().starts_with("Could not save the recorded take: ")) << bench_.error();
  EXPECT_TRUE(fs::exists(bench_.microphone->file));

  fs::remove(bench_.document(song().id));
  auto last = model_.saveTake();
  spinUntil([&] { return last.isReady(); });
  EXPECT_EQ(song().clips.size(), clips);  // not imported twice
  EXPECT_FALSE(model_.pendingTake() || fs::exists(bench_.microphone->file));
  EXPECT_EQ(onDisk(), song());
}

TEST_F(OutsideSoundTest, TellsWhyATakeCannotBeginAndDiscardsOnDemand) {
  bench_.microphone->onStart = [] { throw platform::DeviceError("gone"); };
  model_.startRecording();
  EXPECT_EQ(bench_.error(), "Recording could not start. Check that a microphone is connected.");
  bench_.microphone->onStart = [] { throw platform::AccessDenied("no"); };
  model_.startRecording();
  EXPECT_EQ(bench_.error(), "Allow microphone access for Velmora in System Settings to record.");
  EXPECT_FALSE(model_.isRecording() || model_.isAudioBusy());
  bench_.microphone->onStart = {};
  record(false);
  model_.discardPendingTake();
  EXPECT_FALSE(model_.pendingTake() || fs::exists(bench_.microphone->file));
}

TEST_F(OutsideSoundTest, ExportsToATemporaryFileAndCancels) {
  auto exporting = model_.exportWAV();
  ASSERT_TRUE(model_.exportTask());
  spinUntil([&] { return exporting.isReady(); });
  ASSERT_TRUE(model_.showsExport() && model_.exportURL());
  EXPECT_EQ(model_.exportProgress(), 1);
  const fs::path first = *model_.exportURL();
  const fs::path reference = files_ / "reference.wav";
  OfflineExporter::renderFile({song(), {}, {}}, reference, {});
  std::ifstream a(first, std::ios::binary), b(reference, std::ios::binary);
  EXPECT_TRUE(std::equal(std::istreambuf_iterator<char>(a), {}, std::istreambuf_iterator<char>(b)));

  auto cancelled = model_.exportWAV();
  EXPECT_FALSE(fs::exists(first));
  model_.exportTask()->cancel();
  spinUntil([&] { return cancelled.isReady(); });
  EXPECT_FALSE(model_.exportTask() || model_.exportURL());
  EXPECT_EQ(bench_.error(), "");

  model_.changeClip(song().clips[0].id, {.startBeat = 16000});
  auto failing = model_.exportWAV();
  spinUntil([&] { return failing.isReady(); });
  EXPECT_EQ(bench_.error(), "Export failed: WAV export supports arrangements up to 30 minutes.");
}

TEST_F(OutsideSoundTest, RefusesToExportWithoutItsAudio) {
  ASSERT_TRUE(import(sound("a.wav", 1)));
  fs::remove(bench_.folder / song().id.text() / "audio" / song().audioAssets[0].fileName);
  bench_.start();
  bench_.open();
  EXPECT_TRUE(bench_.error().starts_with("Some audio could not be loaded: ")) << bench_.error();
  bench_.model->exportWAV();
  EXPECT_EQ(bench_.error(), "Reload the missing audio files before exporting.");
}

TEST_F(OutsideSoundTest, ClosingEndsTheTakeAndTheExport) {
  model_.startRecording();
  fs::copy(sound("take.wav", 1), bench_.microphone->file);
  auto closing = model_.prepareForClose();
  spinUntil([&] { return closing.isReady(); });
  EXPECT_EQ(onDisk().audioAssets.size(), 1U);
  model_.exportWAV();
  auto again = model_.prepareForClose();
  spinUntil([&] { return again.isReady(); });
  EXPECT_FALSE(model_.exportTask() || model_.exportURL());
}

}  // namespace
}  // namespace velmora
