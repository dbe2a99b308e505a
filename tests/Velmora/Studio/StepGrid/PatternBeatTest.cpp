#include <cmath>
#include <gtest/gtest.h>

#include "Velmora/Studio/StepGrid/PatternBeat.h"
#include "tests/support/Songs.h"

namespace velmora {
namespace {

using testing::uuid;

Clip clipAt(double startBeat, double lengthBeats, std::uint8_t patternID, std::uint8_t trackID) {
  return {UUID::random(), uuid(trackID), ClipSource::pattern(uuid(patternID)), startBeat, lengthBeats};
}

TEST(PatternBeatTest, FollowsTheModeAndTheClips) {
  Song song = testing::sampleSong();
  song.clips = {clipAt(0, 3, 12, 1), clipAt(0, 6, 11, 2), clipAt(8, 6, 11, 1), clipAt(10, 6, 11, 1)};
  const Pattern& pattern = *song.pattern(uuid(11));
  const auto beatAt = [&](PlaybackMode mode, double beat) {
    return patternBeat(song, pattern, {mode, beat, beat});
  };
  const auto inSong = [&](double beat) { return beatAt(PlaybackMode::song, beat); };
  for (const double beat : {0.0, 1.5, 3.99}) EXPECT_EQ(beatAt(PlaybackMode::pattern, beat + 4), beat);
  for (const double beat : {1.0, 7.9, 16.0}) EXPECT_FALSE(inSong(beat)) << beat;
  // The pattern starts with its clip, again four beats on, and with the next clip once the first has ended.
  for (const auto& [playhead, beat] :
       {std::pair{8.0, 0.0}, {11, 3}, {12, 0}, {13.75, 1.75}, {14, 0}, {15.5, 1.5}}) {
    EXPECT_EQ(inSong(playhead), beat) << playhead;
  }
  for (const double length : {0.0, -4.0, HUGE_VAL, std::nan("")}) {
    EXPECT_FALSE(patternBeat({}, Pattern{.lengthBeats = length}, {PlaybackMode::pattern, 0, 1})) << length;
  }
}

}  // namespace
}  // namespace velmora
