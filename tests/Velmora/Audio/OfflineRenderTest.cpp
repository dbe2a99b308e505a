#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

#include "Platform/Tasks/ResultOf.h"
#include "Velmora/Audio/OfflineExporter.h"
#include "Velmora/Audio/OfflineRender.h"
#include "tests/support/EventLoopTest.h"
#include "tests/support/Files.h"
#include "tests/support/HandDrivenOutput.h"
#include "tests/support/TemporaryFolder.h"

namespace velmora {
namespace {

using testing::contentOf;
using Mix = testing::HandDrivenOutput::Block;

Mix mixed(const Song& song, std::optional<double> maximumSeconds = {}) {
  OfflineRender render({song, {}, maximumSeconds, 1});
  Mix mix;
  render.run([&mix](auto left, auto right) {
    mix += {{left.begin(), left.end()}, {right.begin(), right.end()}};
  });
  return mix;
}

float peak(const std::vector<float>& samples, std::size_t from, std::size_t to) {
  return Mix{{samples.begin() + static_cast<std::ptrdiff_t>(from),
              samples.begin() + static_cast<std::ptrdiff_t>(to)},
             {}}
      .peak();
}

/// An empty song that ends at the beat; clips of audio that isn't there are silent.
Song songUntil(double beat, double bpm) {
  Song song;
  song.bpm = bpm;
  const Track track = song.addTrack(TrackKind::audio());
  song.update(Clip{UUID::random(), track.id, ClipSource::audio(UUID::random()), beat - 1, 1});
  return song;
}

TEST(OfflineRenderTest, CountsFrames) {
  struct Row {
    double beats, bpm;
    std::optional<double> maximumSeconds;
    std::int64_t frames;
  };
  const Row rows[] = {
      {16, 128, {}, 330750 + 132300}, {16, 192, {}, 220500 + 132300},  // 5 seconds
      {16, 192, 20, 220500 + 132300},                                  // a limit past the tail
      {120, 120, 20, 882000},                                          // a preview of a minute
      {120, 120, 0.05, 4410},         {120, 120, -3, 4410},
      {120, 120, HUGE_VAL, 882000},   {120, 120, std::nan(""), 882000},
      {120, 120, 0.5, 22050},         {3600, 120, 9999, 79380000 + 132300},  // exactly 1800 seconds
      {16, 127, {}, 333355 + 132300},                                        // rounded up
  };
  for (const Row& row : rows) {
    const OfflineRender render({songUntil(row.beats, row.bpm), {}, row.maximumSeconds, 1});
    EXPECT_EQ(render.totalFrames(), row.frames) << row.beats << " beats at " << row.bpm;
  }
  EXPECT_THROW(OfflineRender({songUntil(3604, 120), {}, {}, 1}), ExportError);
  EXPECT_THROW(OfflineRender({songUntil(16, 0), {}, {}, 1}), ExportError);
}

TEST(OfflineRenderTest, TheDemoBeatsEveryBeatAndRingsOut) {
  Song song = Song::demo();
  const Mix mix = mixed(song);
  ASSERT_EQ(mix.left.size(), 463050U);
  for (int beat = 0; beat < 16; ++beat) {
    const auto frame = static_cast<std::size_t>(beat * 60 / 128.0 * 44100);
    EXPECT_GT(peak(mix.left, frame, frame + 500), 0.4F) << "the kick of beat " << beat;
  }
  EXPECT_LT(peak(mix.left, 330750, 331250), 0.4F) << "no kick begins the song anew";
  EXPECT_GT(peak(mix.left, 330750, 340000), 0.05F) << "the pad releases";
  EXPECT_EQ(peak(mix.left, 400000, 463050), 0);
  EXPECT_EQ(mix.left, mix.right);
  song.setLoop(1, 2);
  EXPECT_EQ(mixed(song), mix) << "the song's own loop plays no part";
}

TEST(OfflineRenderTest, VolumesAreAsStored) {
  Song song = Song::demo();
  const float full = peak(mixed(song, 1).left, 0, 3000);
  song.tracks.write()[0].volume = 1.6F;
  EXPECT_NEAR(peak(mixed(song, 1).left, 0, 3000), 2 * full, 0.1F) << "a volume above 1 isn't clamped";
  song.masterVolume = 0;
  EXPECT_EQ(mixed(song, 1).peak(), 0);
}

class OfflineExporterTest : public testing::EventLoopTest {};

TEST_F(OfflineExporterTest, TellsItsProgressAndWritesTheSamePreview) {
  const testing::TemporaryFolder folder;
  OfflineExporter exporter;
  std::vector<double> fractions;
  OfflineExporter::Options options;
  options.onProgress = [&fractions](double fraction) { fractions.push_back(fraction); };
  platform::resultOf(exporter.render({Song::demo(), {}, 3, 0}, folder / "a.wav", options));
  QCoreApplication::processEvents();
  EXPECT_EQ(std::filesystem::file_size(folder / "a.wav"), 44U + 132300 * 4);
  ASSERT_FALSE(fractions.empty());
  EXPECT_EQ(fractions.back(), 1);
  EXPECT_TRUE(std::is_sorted(fractions.begin(), fractions.end()));

  platform::resultOf(exporter.renderPreview(Song::demo(), {}, folder / "b.wav", 3));
  EXPECT_EQ(contentOf(folder / "b.wav"), contentOf(folder / "a.wav"));
}

}  // namespace
}  // namespace velmora
