#include "Velmora/Studio/TransportBar/BPMReadout.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <iterator>
#include <utility>

#include "Velmora/Studio/TransportBar/BPMEditor.h"
#include "Velmora/Studio/TransportBar/TempoText.h"
#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Spoken.h"

namespace velmora {
namespace {

/// What a key of the focused readout adds to the tempo.
struct KeyRow {
  int key;
  double bpm;
};

constexpr KeyRow keyRows[] = {
    {Qt::Key_Up, 1},    {Qt::Key_Right, 1},   {Qt::Key_Down, -1},
    {Qt::Key_Left, -1}, {Qt::Key_PageUp, 10}, {Qt::Key_PageDown, -10},
};

}  // namespace

BPMReadout::BPMReadout(AppModel& model, QWidget* parent)
    : PaintedButton("Tempo", parent), model_(model), listener_([this] { showTempo(); }, model.song) {
  const QString help = QStringLiteral("Drag up or down to change, tap to type a value");
  setObjectName("transport.tempo");
  setAccessibleDescription(help);
  setToolTip(help);
  setWhatsThis(help);
  setCursor(Qt::SizeVerCursor);
  setAttribute(Qt::WA_OpaquePaintEvent);
  Spoken::attach(*this, {.role = QAccessible::SpinBox,
                         .value = [this] { return face_.number + " BPM"; },
                         .press = [this] { openEditor(); },
                         .adjustment = Spoken::Adjustment{.value = [this] { return model_.song().bpm; },
                                                          .set = [this](double bpm) { model_.setBPM(bpm); },
                                                          .minimum = 40,
                                                          .maximum = 300}});
  connect(this, &QAbstractButton::clicked, this, [this] { openEditor(); });
  showTempo();
}

void BPMReadout::setSizeClass(SizeClass sizeClass) {
  face_.sizeClass = sizeClass;
  update();
}

void BPMReadout::showTempo() {
  const QString shown = TempoText::shown(model_.song().bpm);
  if (std::exchange(face_.number, shown) == shown) return;
  update();
  Spoken::tellValue(*this);
}

void BPMReadout::openEditor() {
  if (!showsEditor()) editor_ = &BPMEditor::open(model_, *this);
}

void BPMReadout::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  face_.paint(painter, size());
  if (hasKeyboardFocus(*this)) paintFocusRing(painter, rect(), 8);
}

void BPMReadout::keyPressEvent(QKeyEvent* event) {
  const auto* const row = std::ranges::find(keyRows, event->key(), &KeyRow::key);
  if (row == std::end(keyRows)) {
    PaintedButton::keyPressEvent(event);
  } else {
    model_.setBPM(model_.song().bpm + row->bpm);
  }
}

void BPMReadout::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) drag_.emplace(event->position());
}

void BPMReadout::mouseMoveEvent(QMouseEvent* event) {
  if (!drag_) return;
  if (const auto bpm = drag_->moved(event->position(), model_.song().bpm)) model_.setBPM(*bpm);
}

void BPMReadout::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !drag_) return;
  const bool isTap = !drag_->isDragging();
  drag_.reset();
  if (isTap) click();
}

}  // namespace velmora
