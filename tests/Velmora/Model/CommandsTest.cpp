#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "Velmora/Model/ChangeListener.h"
#include "tests/support/ModelBench.h"

namespace velmora {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

class CommandsTest : public ::testing::Test {
 protected:
  const Song& song() const { return model_.song(); }
  const Track& drums() const { return song().tracks[0]; }
  const Track& chords() const { return song().tracks[1]; }
  UUID drumPattern() const { return *drums().selectedPatternID; }
  UUID chordPattern() const { return *chords().selectedPatternID; }

  /// Whether the command left the document as it was.
  template <class Command>
  bool changesNothing(const Command& command) {
    const Song before = song();
    command();
    return song() == before;
  }

  testing::ModelBench bench_;
  AppModel& model_ = *bench_.model;
};

TEST_F(CommandsTest, RoundAndClampTheTempo) {
  for (const auto& [asked, stored] : {std::pair{39.6, 40.0},
                                      {300.5, 300.0},
                                      {20.0, 40.0},
                                      {120.5, 121.0},
                                      {120.4, 120.0},
                                      {1e300, 300.0}}) {
    model_.setBPM(asked);
    EXPECT_EQ(song().bpm, stored) << asked;
    EXPECT_EQ(model_.transport().state().bpm, stored);
  }
  EXPECT_TRUE(changesNothing([&] { model_.setBPM(nan); }));
}

TEST_F(CommandsTest, MoveTheTransport) {
  const auto revision = [&] { return model_.playheadRevision(); };
  bench_.open();
  model_.pause();
  EXPECT_EQ(revision(), 0);
  model_.play();
  model_.play();
  EXPECT_EQ(bench_.telemetry.count(TelemetryEvent::playbackStarted), 1);
  bench_.device->pull(4096);
  model_.stop();
  EXPECT_GT(model_.transport().state().anchorBeat, 0);
  model_.stop();
  EXPECT_EQ(model_.transport().state().anchorBeat, 0);
  EXPECT_EQ(revision(), 2);
  model_.seek(-3);
  model_.seek(nan);
  EXPECT_EQ(revision(), 3);

  model_.setLoop(8, 8);
  EXPECT_EQ(song().loop, (LoopRange{8, 9}));
  model_.setLoop(16384, 16384);
  EXPECT_EQ(song().loop, (LoopRange{16383, 16384}));
  model_.setLoop(4, 8);
  model_.returnToStart();
  EXPECT_EQ(model_.transport().state().anchorBeat, 4);
  model_.setMode(PlaybackMode::pattern);
  model_.seek(3);
  model_.returnToStart();
  EXPECT_EQ(model_.transport().state().anchorBeat, 0);
  model_.clearLoop();
  EXPECT_FALSE(song().loop || model_.transport().state().loop);
}

TEST_F(CommandsTest, ClampTheMix) {
  const UUID id = drums().id;
  model_.setTrackVolume(id, 7);
  model_.setTrackPan(id, -7);
  model_.setTrackEffect(&FXSettings::lowGainDB, id, 20);
  model_.setTrackEffect(&FXSettings::reverbMix, id, -1);
  model_.setTrackEffect(&FXSettings::delayMix, id, 1.5F);
  model_.setMasterVolume(2);
  model_.toggleMute(id);
  model_.toggleSolo(id);
  EXPECT_EQ(drums().volume, 1);
  EXPECT_EQ(drums().pan, -1);
  EXPECT_EQ(drums().fx, (FXSettings{.lowGainDB = 12, .delayMix = 1}));
  EXPECT_EQ(song().masterVolume, 1);
  EXPECT_TRUE(drums().isMuted && drums().isSoloed);
  const auto bad = static_cast<float>(nan);
  EXPECT_TRUE(changesNothing([&] {
    model_.setTrackVolume(id, bad);
    model_.setTrackPan(id, bad);
    model_.setTrackEffect(&FXSettings::midGainDB, id, bad);
    model_.setMasterVolume(bad);
    model_.setTrackVolume(UUID::random(), 0);
    model_.toggleMute(UUID::random());
    model_.setSynthPreset(SynthPreset::pad, id);  // a drum track
  }));
}

TEST_F(CommandsTest, AddAndDeleteTracks) {
  bench_.open();
  model_.addTrack(TrackKind::synth(SynthPreset::lead));
  const UUID added = song().tracks.back().id;
  EXPECT_EQ(model_.selectedTrackID(), added);
  EXPECT_NE(model_.engine().meter(added), nullptr);
  model_.setSynthPreset(SynthPreset::keys, added);
  EXPECT_EQ(song().tracks.back().kind, TrackKind::synth(SynthPreset::keys));
  model_.deleteTrack(added);
  EXPECT_EQ(model_.selectedTrackID(), drums().id);
  EXPECT_EQ(model_.engine().meter(added), nullptr);
  model_.deleteTrack(drums().id);
  model_.deleteTrack(song().tracks[0].id);
  EXPECT_FALSE(model_.selectedTrackID());
  EXPECT_EQ(model_.selectedTrack(), nullptr);
}

TEST_F(CommandsTest, EditPatternsOfTheRightFamilyOnly) {
  const std::size_t notes = model_.song().pattern(chordPattern())->notes.size();
  model_.addMelodicNote(chordPattern(), 60, 1.3, 0.25, 0.25);
  ASSERT_EQ(song().pattern(chordPattern())->notes.size(), notes + 1);
  EXPECT_EQ(song().pattern(chordPattern())->notes.back().startBeat, 1.25);
  EXPECT_EQ(model_.selectedNoteID(), song().pattern(chordPattern())->notes.back().id);
  model_.selectTrack(chords().id);  // clears the note
  EXPECT_FALSE(model_.selectedNoteID());
  model_.selectNote(song().pattern(chordPattern())->notes.back().id);
  model_.deleteSelection();
  EXPECT_EQ(song().pattern(chordPattern())->notes.size(), notes);

  model_.toggleDrumStep(drumPattern(), DrumSound::clap, 3);
  model_.setDrumStepVelocity(drumPattern(), DrumSound::clap, 3, 133);
  EXPECT_EQ(song().pattern(drumPattern())->stepVelocity(DrumSound::clap, 3), 127);
  EXPECT_TRUE(changesNothing([&] {
    model_.addMelodicNote(drumPattern(), 60, 0, 1, 0.25);
    model_.editMelodicPattern(drumPattern(), [](Pattern& pattern) { pattern.lengthBeats = 1; });
    model_.toggleDrumStep(chordPattern(), DrumSound::kick, 0);
    model_.setDrumStepVelocity(UUID::random(), DrumSound::kick, 0, 1);
    model_.newPattern(UUID::random());
    model_.duplicatePattern(UUID::random());
    model_.renamePattern(drumPattern(), " \n");
    model_.deleteSelectedClip();
  }));

  model_.selectTrack(drums().id);
  model_.newPattern(drums().id);
  EXPECT_EQ(model_.selectedPattern()->name, "Pattern 2");
  model_.renamePattern(drumPattern(), "Fill");
  model_.selectTrack(drums().id);
  model_.newPattern(drums().id);
  EXPECT_EQ(model_.song().pattern(drumPattern())->name, "Pattern 2");
}

TEST_F(CommandsTest, PlaceAndChangeClips) {
  for (const auto& [asked, start, most] :
       {std::tuple{3.9, 3.0, 4.0}, {-2.0, 0.0, 4.0}, {20000.0, 16383.0, 1.0}}) {
    model_.placePattern({}, asked);
    const Clip* clip = song().clip(*model_.selectedClipID());
    ASSERT_TRUE(clip);
    EXPECT_EQ(clip->startBeat, start);
    EXPECT_LE(clip->lengthBeats, most);
  }
  const UUID last = *model_.selectedClipID();
  model_.selectTrack(chords().id);
  EXPECT_FALSE(model_.selectedClipID());
  model_.selectClip(last);
  EXPECT_EQ(model_.selectedTrackID(), drums().id);
  EXPECT_EQ(model_.selectedClipID(), last);
  model_.selectNote(UUID::random());
  EXPECT_FALSE(model_.selectedClipID());
  model_.changeClip(last, {.startBeat = 7.6});
  EXPECT_EQ(song().clip(last)->startBeat, 8);
  EXPECT_FALSE(model_.selectedNoteID());
  model_.deleteSelection();
  EXPECT_EQ(song().clip(last), nullptr);
  model_.placePattern({}, nan);
  EXPECT_FALSE(model_.selectedClipID());
}

TEST_F(CommandsTest, TellAListenerOnceForABurstAndNothingForEqualValues) {
  int heard = 0;
  ChangeListener listener([&] { ++heard; }, model_.song, model_.workspace);
  model_.setWorkspace(Workspace::mixer);
  for (int n = 0; n < 10; ++n) model_.toggleMute(drums().id);
  EXPECT_EQ(heard, 0);
  QCoreApplication::processEvents();
  EXPECT_EQ(heard, 1);
  model_.setWorkspace(Workspace::mixer);
  model_.setMasterVolume(song().masterVolume);
  QCoreApplication::processEvents();
  EXPECT_EQ(heard, 1);
  EXPECT_EQ(bench_.telemetry.count(TelemetryEvent::mixerOpened), 1);
}

}  // namespace
}  // namespace velmora
