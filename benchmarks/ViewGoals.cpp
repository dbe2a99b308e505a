#include <QEventLoop>
#include <QMouseEvent>
#include <QTimer>
#include <QWheelEvent>
#include <memory>
#include <vector>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Studio/Arrangement/ArrangementView.h"
#include "Velmora/Studio/Mixer/MixerView.h"
#include "Velmora/Studio/PianoRoll/PianoEditorView.h"
#include "Velmora/Studio/PianoRoll/PianoRollCanvasView.h"
#include "Velmora/Studio/StepGrid/StepGridView.h"
#include "benchmarks/Goals.h"
#include "benchmarks/Views.h"
#include "benchmarks/support/LargeSongs.h"
#include "benchmarks/support/Measure.h"
#include "tests/support/HandDrivenOutput.h"

namespace velmora::benchmarks {

namespace {

constexpr int frames = 200;

/// A song opened as the window opens it, with an output that is pulled by hand.
struct Studio {
  explicit Studio(Song song) : Studio(std::move(song), std::make_unique<testing::HandDrivenOutput>()) {}
  Studio(Song song, std::unique_ptr<testing::HandDrivenOutput> made)
      : output(*made), model(std::move(song), nullptr, {std::move(made), nullptr}, telemetry) {
    model.configure();
  }

  SilentTelemetry telemetry;
  testing::HandDrivenOutput& output;
  AppModel model;
};

/// The median of what one step takes until all that it changed is painted.
template <class Step>
Amount stepTime(const Step& step) {
  return Amount::seconds(median(stepTimes(frames, step)));
}

Amount paintTime(QWidget& canvas) {
  return stepTime([&](int) { canvas.repaint(); });
}

/// To and fro by a point a step.
void dragStep(QWidget& canvas, QPointF start, int frame) {
  const QPointF to = start + QPointF(20 + frame % 100, 0);
  QMouseEvent event(QEvent::MouseMove, to, canvas.mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
  QCoreApplication::sendEvent(&canvas, &event);
}

void press(QWidget& canvas, QPointF point) {
  QMouseEvent event(QEvent::MouseButtonPress, point, canvas.mapToGlobal(point), Qt::LeftButton,
                    Qt::LeftButton, {});
  QCoreApplication::sendEvent(&canvas, &event);
}

void turnWheel(QWidget& view, QPoint angle, Qt::KeyboardModifiers modifiers = {}) {
  const QPointF middle = view.rect().center();
  QWheelEvent event(middle, view.mapToGlobal(middle), {}, angle, Qt::NoButton, modifiers, Qt::NoScrollPhase,
                    false);
  QCoreApplication::sendEvent(&view, &event);
}

// The views

void measureGrid(Report& report) {
  Studio studio(Song::demo());
  const UUID patternID = *studio.model.song().tracks[0].selectedPatternID;
  for (const DrumSound sound : stepSounds)
    for (int step = 0; step < 16; ++step)
      studio.model.setDrumStepVelocity(patternID, sound, step, 1 + 7 * step);
  StepGridView view(studio.model, patternID);
  open(view, {1280, 800});
  addFigure(report, "paint a full page of steps", paintTime(view.canvas()), 0.002);
}

/// Two octaves, full from the first beat to the last.
std::vector<Note> denseNotes(int count, double lengthBeats) {
  std::vector<Note> notes;
  for (int index = 0; index < count; ++index) {
    const double startBeat = 0.25 * (index % static_cast<int>(4 * lengthBeats));
    notes.push_back({UUID::random(), static_cast<std::uint8_t>(48 + index % 24), startBeat, 0.25,
                     static_cast<std::uint8_t>(1 + index % 127)});
  }
  return notes;
}

void measurePianoRoll(Report& report) {
  Song song = Song::empty("Dense");
  const UUID trackID = song.addTrack(TrackKind::synth(SynthPreset::keys)).id;
  Pattern pattern = song.addPattern(trackID);
  pattern.lengthBeats = 8;
  pattern.notes = SharedList<Note>(denseNotes(2000, pattern.lengthBeats));
  song.update(pattern);
  Studio studio(std::move(song));
  PianoEditorView view(studio.model, pattern.id, trackID);
  open(view, {1280, 800});
  addFigure(report, "paint a piano roll of 2000 notes", paintTime(*view.findChild<QWidget*>("piano.canvas")),
            0.004);
}

void measureNoteDrag(Report& report, Studio& studio) {
  const Track& track = studio.model.song().tracks[64];
  const Pattern& pattern = *studio.model.song().pattern(*track.selectedPatternID);
  PianoEditorView view(studio.model, pattern.id, track.id);
  open(view, {1280, 800});
  auto& canvas = *static_cast<PianoRollCanvasView*>(view.findChild<QWidget*>("piano.canvas"));
  const QPointF start = canvas.roll().noteRect(pattern.notes[0]).center() - QPointF(8, 0);
  press(canvas, start);
  addFigure(report, "drag a note among a million events",
            stepTime([&](int frame) { dragStep(canvas, start, frame); }), frameAtSixty);
}

void measureArrangement(Report& report, Studio& studio) {
  ArrangementView view(studio.model);
  open(view, {1920, 1080});
  auto& canvas = *view.findChild<QWidget*>("arrangement.canvas");
  for (int notch = 0; notch < 8; ++notch) turnWheel(view, {0, -120}, Qt::ControlModifier);
  addFigure(report, "paint 128 lanes of 16384 clips, smallest", paintTime(canvas), 0.008);
  addFigure(report, "scroll them, a step", stepTime([&](int frame) {
              turnWheel(view, frame % 100 < 50 ? QPoint(-60, -60) : QPoint(60, 60));
            }),
            frameAtSixty);
  addFigure(report, "zoom them, a step", stepTime([&](int frame) {
              turnWheel(view, {0, frame % 20 < 10 ? 60 : -60}, Qt::ControlModifier);
            }),
            frameAtSixty);
  const QPointF start(8, 90);
  press(canvas, start);
  addFigure(report, "drag one of the clips, a step",
            stepTime([&](int frame) { dragStep(canvas, start, frame); }), frameAtSixty);
}

/// All strips in view, their sound rendered outside the measured time.
void measureMeters(Report& report) {
  constexpr int seconds = 4;
  constexpr int pulls = 50;  // a second
  Song song = Song::demo();
  while (song.tracks.size() < 32) song.addTrack(TrackKind::drums());
  for (const Track& track : song.tracks)
    if (track.selectedPatternID) song.placePattern(*track.selectedPatternID, 0);
  Studio studio(std::move(song));
  MixerView view(studio.model);
  open(view, {8192, 640});
  studio.model.play();
  double worked = 0;
  for (int pull = 0; pull < seconds * pulls; ++pull) {
    studio.output.pull(48000 / pulls);
    worked += elapsed(CLOCK_THREAD_CPUTIME_ID, [] {
      QEventLoop until;
      QTimer::singleShot(1000 / pulls, &until, &QEventLoop::quit);
      until.exec();
    });
  }
  addFigure(report, "a second of 32 strips' meters", Amount::seconds(worked / seconds), 0.05);
}

}  // namespace

void measureViews(Report& report) {
  offscreenApplication();
  measureGrid(report);
  measurePianoRoll(report);
  Studio full(songWithMillionEvents());
  measureNoteDrag(report, full);
  measureArrangement(report, full);
  measureMeters(report);
}

}  // namespace velmora::benchmarks
