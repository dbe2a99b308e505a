#pragma once

#include <QAccessible>
#include <QApplication>
#include <QPaintEvent>
#include <QTest>
#include <QWheelEvent>
#include <optional>
#include <string>

#include "Velmora/Studio/Arrangement/ArrangementView.h"
#include "tests/support/ModelBench.h"

namespace velmora::testing {

/// A view of a model with four tracks, drums, two synths and audio, and a clip of 4 beats on each but the
/// last: at beat 0, 4 and 8.
struct ArrangementBench : ModelBench {
  static Song song() {
    Song song = Song::empty("Test");
    song.addTrack(TrackKind::synth(SynthPreset::pad), "Pad");
    song.addTrack(TrackKind::synth(SynthPreset::bass), "Bass");
    song.addTrack(TrackKind::audio(), "Voice");
    for (std::size_t row = 0; row < 3; ++row)
      song.placePattern(*song.tracks[row].selectedPatternID, 4.0 * static_cast<double>(row));
    return song;
  }

  explicit ArrangementBench(QSize size = {1200, 400}, Song song = ArrangementBench::song())
      : ModelBench(std::move(song)) {
    view.emplace(*model);
    view->resize(size);
    view->show();
    view->activateWindow();
    canvas = view->findChild<QWidget*>("arrangement.canvas");
    settle();
  }

  /// Serves the event loop until nothing is to be drawn any more.
  static void settle() { QTest::qWait(30); }

  UUID clipID(std::size_t index) const { return model->song().clips[index].id; }
  const Clip& clip(std::size_t index) const { return model->song().clips[index]; }
  const Track& track(std::size_t row) const { return model->song().tracks[row]; }
  const LaneData& shown() const { return static_cast<ArrangementCanvas*>(canvas)->content().data; }

  template <class Widget = QWidget>
  Widget& part(const char* name) const {
    return *view->findChild<Widget*>(name);
  }
  void press(const char* name) const { part<QAbstractButton>(name).click(); }

  /// The middle of a lane at a beat.
  QPoint at(double beat, int row) const {
    const QPointF offset = view->viewport().scrollOffset;
    return QPointF(beat * view->viewport().pointsPerBeat() - offset.x(), 64 * row + 32 - offset.y())
        .toPoint();
  }
  void click(double beat, int row) const { QTest::mouseClick(canvas, Qt::LeftButton, {}, at(beat, row)); }
  void grab(double beat, int row) const { QTest::mousePress(canvas, Qt::LeftButton, {}, at(beat, row)); }
  void pull(double beat, int row) const { move(at(beat, row)); }
  void move(QPoint to) const {
    QMouseEvent event(QEvent::MouseMove, to, canvas->mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(canvas, &event);
  }
  void drop() const { QTest::mouseRelease(canvas, Qt::LeftButton); }
  void drag(double fromBeat, int fromRow, double toBeat, int toRow) const {
    grab(fromBeat, fromRow);
    pull(toBeat, toRow);
    QTest::mouseRelease(canvas, Qt::LeftButton, {}, at(toBeat, toRow));
  }
  void wheel(QPoint angle, Qt::KeyboardModifiers modifiers = {}, double beat = 4) {
    const QPointF point = canvas->mapTo(&*view, QPoint(at(beat, 0).x(), canvas->height() / 2));
    QWheelEvent event(point, view->mapToGlobal(point), {}, angle, Qt::NoButton, modifiers, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(&*view, &event);
  }
  void key(int key, Qt::KeyboardModifiers modifiers = {}) const {
    QTest::keyClick(canvas, static_cast<Qt::Key>(key), modifiers);
  }

  std::optional<ArrangementView> view;
  QWidget* canvas = nullptr;
};

/// Counts a widget's events of a kind and, of paint events, the pixels.
class EventCounter final : public QObject {
 public:
  explicit EventCounter(QWidget& widget, QEvent::Type type = QEvent::Paint) : type_(type) {
    widget.installEventFilter(this);
  }
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != type_) return false;
    ++count;
    if (type_ != QEvent::Paint) return false;
    for (const QRect& rect : static_cast<QPaintEvent*>(event)->region())
      pixels += rect.width() * rect.height();
    return false;
  }
  int count = 0;
  int pixels = 0;

 private:
  const QEvent::Type type_;
};

}  // namespace velmora::testing
