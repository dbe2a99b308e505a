#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "Velmora/Studio/Arrangement/LaneData.h"
#include "Velmora/Studio/Arrangement/LaneDataMaker.h"
#include "Velmora/Studio/Arrangement/LaneIndex.h"
#include "tests/support/Songs.h"

namespace velmora {
namespace {

using testing::uuid;

TEST(LaneDataTest, NamesClipsByWhatTheyPlay) {
  Song song = testing::sampleSong();
  const std::string asset = song.audioAssets.front().name.value_or(song.audioAssets.front().fileName);
  song.clips.write().push_back({uuid(33), uuid(3), ClipSource::audio(uuid(99)), 0, 1});
  song.clips.write().push_back({uuid(34), uuid(1), ClipSource::pattern(uuid(99)), 0, 1});
  LaneDataMaker maker;
  const LaneData& data = maker.make(song);
  const auto box = [&](int id) { return data.clip(*data.find(uuid(static_cast<std::uint8_t>(id)))); };
  EXPECT_EQ(box(31).name.toStdString(), song.pattern(uuid(11))->name);
  EXPECT_EQ(box(31).tileLength, song.pattern(uuid(11))->lengthBeats);
  EXPECT_EQ(box(32).name.toStdString(), asset);
  EXPECT_EQ(box(32).tileLength, std::nullopt);
  EXPECT_EQ(box(33).name, "Audio");
  EXPECT_EQ(box(34).name, "Pattern");
  EXPECT_EQ(box(34).tileLength, std::nullopt);
  for (int number = 0; number < data.clipCount(); ++number)
    EXPECT_EQ(data.numberOf(*data.placeOf(number)), number);
  EXPECT_FALSE(data.placeOf(data.clipCount()));
}

TEST(LaneDataTest, HitsTheClipThatLiesOnTop) {
  const LaneData data{{{uuid(1), TrackColor::blue, {{uuid(31), 0, 4}, {uuid(32), 2, 4}, {uuid(33), 2, 1}}}}};
  const auto idAt = [&](double beat) { return data.clipAt(0, beat) ? data.clipAt(0, beat)->id : UUID(); };
  EXPECT_EQ(idAt(0), uuid(31));
  EXPECT_EQ(idAt(2), uuid(33));
  EXPECT_EQ(idAt(3), uuid(32));
  EXPECT_EQ(idAt(6), UUID());
}

RC_GTEST_PROP(LaneDataMakerTest, buildsAfterAnyEditWhatAFreshOneBuilds, ()) {
  Song song = *testing::validSongs();
  LaneDataMaker maker;
  for (int edit = 0; edit < 6; ++edit) {
    testing::applyRandomEdit(song);
    RC_ASSERT(maker.make(song) == LaneDataMaker().make(song));
  }
}

TEST(LaneDataMakerTest, SharesTheLanesThatAnEditLeavesAlone) {
  Song song = testing::sampleSong();
  LaneDataMaker maker;
  const LaneData before = maker.make(song);
  song.tracks.write()[1].volume = 0.1F;
  song.patterns.write()[0].notes = {};
  EXPECT_TRUE(maker.make(song).lanes.sharesStorage(before.lanes));
  song.editClip(uuid(31), {.startBeat = 7});
  const LaneData after = maker.make(song);
  EXPECT_NE(after, before);
  EXPECT_TRUE(after.lane(2).clips.sharesStorage(before.lane(2).clips));
}

RC_GTEST_PROP(LaneIndexTest, findsWhatALookAtAllClipsFinds, ()) {
  std::vector<ClipBox> clips(*rc::gen::inRange<std::size_t>(0, 40));
  for (ClipBox& clip : clips) {
    clip.startBeat = *rc::gen::inRange(0, 50);
    clip.lengthBeats = *rc::gen::inRange(1, 30);
  }
  const double start = *rc::gen::inRange(-5, 60);
  const double end = start + *rc::gen::inRange(0, 20);
  std::vector<int> expected;
  for (std::size_t index = 0; index < clips.size(); ++index) {
    if (clips[index].startBeat < end && clips[index].endBeat() > start)
      expected.push_back(static_cast<int>(index));
  }
  RC_ASSERT(LaneIndex(SharedList(clips)).overlapping(start, end) == expected);
}

}  // namespace
}  // namespace velmora
