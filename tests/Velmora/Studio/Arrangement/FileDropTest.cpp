#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <gtest/gtest.h>
#include <vector>

#include "Platform/Audio/AudioFile.h"
#include "Velmora/Studio/Arrangement/ArrangementView.h"
#include "tests/Velmora/Studio/Arrangement/ArrangementBench.h"

namespace velmora::testing {
namespace {

QUrl soundFile(const TemporaryFolder& folder) {
  platform::AudioFileWriter writer(folder / "Hit.wav", 8000, platform::AudioFileWriter::SampleFormat::int16);
  const std::vector<float> tone(4000, 0.5F);
  writer.write(tone, tone);
  writer.close();
  return QUrl::fromLocalFile(QString::fromStdString(folder / "Hit.wav"));
}

template <class Event>
bool send(ArrangementView& view, const QPoint& at, const QList<QUrl>& urls) {
  QMimeData data;
  data.setUrls(urls);
  Event event(at, Qt::CopyAction, &data, Qt::LeftButton, {});
  event.ignore();
  QApplication::sendEvent(&view, &event);
  return event.isAccepted();
}

TEST(FileDropTest, ImportsAtTheBeatAndTheTrackUnderThePointer) {
  ArrangementBench bench;
  bench.open();
  const QUrl file = soundFile(bench.folder);
  bench.model->selectTrack({});
  const UUID song = bench.model->song().id;
  for (const TrackKind kind : {TrackKind::audio(), TrackKind::audio()}) bench.model->addTrack(kind);
  bench.model->seek(7.6);
  bench.settle();
  const int voice = static_cast<int>(bench.model->song().tracks.size()) - 2;
  auto& mark = bench.part("arrangement.dropMark");
  // Where it is dropped, and the beat and the row that it gets: on a drum track and beside the lanes a new
  // one.
  const QPoint headers(20, bench.canvas->y() + 20);
  const auto inLanes = [&](double beat, int row) {
    return bench.canvas->mapTo(&*bench.view, bench.at(beat, row));
  };
  const struct {
    QPoint at;
    QRect mark;
    double beat;
    int row;
  } rows[] = {{inLanes(5.9, voice), {5 * 48 + 2, voice * 64 + 6, 45, 52}, 5, voice},
              {inLanes(2, 0), {2 * 48 + 2, (voice + 2) * 64 + 6, 45, 52}, 2, voice + 2},
              {headers, {}, 8, voice + 3}};
  for (const auto& row : rows) {
    EXPECT_TRUE(send<QDragEnterEvent>(*bench.view, row.at, {file}));
    EXPECT_EQ(mark.isHidden() ? QRect() : mark.geometry(), row.mark);
    EXPECT_TRUE(send<QDropEvent>(*bench.view, row.at, {file}));
    EXPECT_TRUE(mark.isHidden());
    EXPECT_FALSE(send<QDragEnterEvent>(*bench.view, row.at, {file}));  // one at a time
    ASSERT_TRUE(spinUntil([&] { return !bench.model->isAudioBusy(); }));
    const Clip* const clip = bench.model->song().clip(bench.model->selectedClipID().value_or(song));
    ASSERT_TRUE(clip) << bench.error();
    EXPECT_EQ(clip->startBeat, row.beat);
    EXPECT_EQ(clip->trackID, bench.track(static_cast<std::size_t>(row.row)).id);
    bench.settle();
  }
  for (const QList<QUrl>& urls : {QList<QUrl>{}, {file, file}, {QUrl("https://example.org/hit.wav")}}) {
    EXPECT_FALSE(send<QDragEnterEvent>(*bench.view, rows[0].at, urls));
    EXPECT_FALSE(send<QDropEvent>(*bench.view, rows[0].at, urls));
  }
}

}  // namespace
}  // namespace velmora::testing
