#include <QCoreApplication>
#include <algorithm>
#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

#include "Platform/Tasks/Cancelled.h"
#include "Platform/Tasks/ResultOf.h"
#include "Velmora/Audio/OfflineExporter.h"
#include "Velmora/Audio/OfflineRender.h"
#include "tests/support/TemporaryFolder.h"

namespace velmora {
namespace {

struct Mix {
  std::vector<float> left, right;
  std::vector<std::size_t> blocks;
};

Mix mixed(const Song& song, std::optional<double> maximumSeconds = {}, int threads = 1,
          const AudioSamples& samples = {}) {
  OfflineRender render({song, samples, maximumSeconds, threads});
  Mix mix;
  render.run([&mix](auto left, auto right) {
    mix.left.insert(mix.left.end(), left.begin(), left.end());
    mix.right.insert(mix.right.end(), right.begin(), right.end());
    mix.blocks.push_back(left.size());
  });
  return mix;
}

float peak(const std::vector<float>& samples, std::size_t from, std::size_t to) {
  float result = 0;
  for (std::size_t i = from; i < std::min(to, samples.size()); ++i)
    result = std::max(result, std::abs(samples[i]));
  return result;
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
      {120, 120, INFINITY, 882000},   {120, 120, NAN, 882000},
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
  const Mix mix = mixed(Song::demo());
  ASSERT_EQ(mix.left.size(), 463050U);
  // A boundary on the song's end: 80 whole blocks, the rest of the song, then the tail.
  EXPECT_EQ(mix.blocks[80], 330750U - 80 * 4096);
  EXPECT_EQ(mix.blocks[81], 4096U);
  for (int beat = 0; beat < 16; ++beat) {
    const auto frame = static_cast<std::size_t>(beat * 60 / 128.0 * 44100);
    EXPECT_GT(peak(mix.left, frame, frame + 500), 0.4F) << "the kick of beat " << beat;
  }
  EXPECT_GT(peak(mix.left, 330750, 340000), 0.05F) << "the pad releases";
  EXPECT_EQ(peak(mix.left, 400000, 463050), 0);
  EXPECT_EQ(mix.left, mix.right);
}

Song fullSong() {
  Song song = Song::demo();
  for (const SynthPreset preset : allSynthPresets()) {
    Track track = song.addTrack(TrackKind::synth(preset));
    track.fx = {3, -2, 2, 0.3F, 0.3F};
    track.pan = 0.3F;
    song.update(track);
    Pattern pattern = song.patternsForTrack(track.id)[0];
    pattern.insertNote(50, 100, 1, 2, 0.25);
    song.update(pattern);
    song.placePattern(pattern.id, 2);
  }
  return song;
}

TEST(OfflineRenderTest, AnyNumberOfThreadsGivesTheSameSamples) {
  const Song song = fullSong();
  const Mix one = mixed(song, 4, 1);
  for (const int threads : {2, 3, 0}) {
    const Mix many = mixed(song, 4, threads);
    EXPECT_EQ(many.left, one.left);
    EXPECT_EQ(many.right, one.right);
  }
}

TEST(OfflineRenderTest, TheMixIsAsStored) {
  const Song song = Song::demo();
  const float full = peak(mixed(song, 1).left, 0, 3000);
  const auto peaksWith = [&song](auto change) {
    Song changed = song;
    Track track = song.tracks[0];
    change(changed, track);
    changed.update(track);
    const Mix mix = mixed(changed, 1);
    return std::pair(peak(mix.left, 0, 3000), peak(mix.right, 0, 3000));
  };
  const auto [loudLeft, loudRight] = peaksWith([](Song&, Track& t) { t.volume = 1.6F; });
  EXPECT_NEAR(loudLeft, 2 * full, 0.1F) << "a volume above 1 isn't clamped";
  const auto [pannedLeft, pannedRight] = peaksWith([](Song&, Track& t) { t.pan = -1; });
  EXPECT_GT(pannedLeft, 0.5F);
  EXPECT_LT(pannedRight, 0.2F);
  EXPECT_LT(peaksWith([](Song&, Track& t) { t.isMuted = true; }).first, 0.2F);
  EXPECT_LT(peaksWith([](Song& s, Track&) {
              Track chords = s.tracks[1];
              chords.isSoloed = true;
              s.update(chords);
            }).first,
            0.2F);
  EXPECT_EQ(peaksWith([](Song& s, Track&) { s.masterVolume = 0; }).first, 0);
}

TEST(OfflineRenderTest, TheSongsOwnLoopPlaysNoPart) {
  Song song = Song::demo();
  const Mix plain = mixed(song, 2);
  song.setLoop(1, 2);
  EXPECT_EQ(mixed(song, 2).left, plain.left);
}

std::string contentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(OfflineExporterTest, WritesAFileWhileTheEventLoopRuns) {
  int argc = 0;
  const QCoreApplication application(argc, nullptr);
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

  std::stop_source stop;
  stop.request_stop();
  options.stop = stop.get_token();
  EXPECT_THROW(platform::resultOf(exporter.render({Song::demo(), {}, {}, 1}, folder / "c.wav", options)),
               platform::Cancelled);
  EXPECT_THROW(platform::resultOf(exporter.render({songUntil(3604, 120), {}, {}, 1}, folder / "d.wav", {})),
               ExportError);
}

}  // namespace
}  // namespace velmora
