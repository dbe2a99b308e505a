#include "Velmora/Studio/PianoRoll/PianoRollPainter.h"

#include <algorithm>
#include <cmath>

#include "Velmora/Studio/PianoRoll/PitchName.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr QColor blackKeyRow = Theme::surface;
constexpr QColor whiteKeyRow = Theme::raised;
constexpr QColor betweenBeats{255, 255, 255, 15};
constexpr double hairline = 0.5;
constexpr int stepsPerBeat = 4;

constexpr double nameInset = 5;
constexpr double gripAndGap = 8;  // at a note's right end, where its name doesn't reach
constexpr double overhang = 2;    // of a selected note's outline, and a pixel for rounding

}  // namespace

PianoRollPainter::PianoRollPainter(QPainter& painter, const PianoRollGeometry& roll,
                                   const PianoRollScene& scene, NoteStamps& stamps, const QRectF& dirty)
    : painter_(painter),
      roll_(roll),
      scene_(scene),
      stamps_(stamps),
      dirty_(dirty),
      scale_(painter.device()->devicePixelRatioF()) {}

void PianoRollPainter::paint() {
  painter_.setFont(Theme::font(Theme::Text::label));
  paintRows(dirty_.left(), dirty_.right());
  paintGrid();
  paintPastEnd();
  paintNotes();
  paintCursor();
  paintKeys();
}

/// A line thinner than a pixel is a pixel wide and fainter.
void PianoRollPainter::paintLine(QRectF line, const QColor& color) {
  const double thickness = std::min(line.width(), line.height());
  const double share = std::min(thickness * scale_, 1.0);
  line.setSize(line.size().expandedTo({1 / scale_, 1 / scale_}));
  line.moveTopLeft({stamps_.onPixel(line.left()), stamps_.onPixel(line.top())});
  painter_.fillRect(line, Theme::withOpacity(color, share));
}

// Rows and grid

void PianoRollPainter::paintRow(int pitch, const QRectF& row) {
  painter_.fillRect(row, isBlackKey(pitch) ? blackKeyRow : whiteKeyRow);
  paintLine({row.left(), row.bottom() - hairline, row.width(), hairline}, Theme::lineWeak);
}

void PianoRollPainter::paintRows(double left, double right) {
  for (int pitch = roll_.lowerPitch; pitch <= roll_.upperPitch; ++pitch) {
    const QRectF row(left, roll_.y(pitch), right - left, roll_.rowHeight);
    if (row.intersects(dirty_)) paintRow(pitch, row);
  }
  const double end = roll_.rowHeight * roll_.rowCount();
  if (dirty_.bottom() > end) {
    painter_.fillRect(QRectF(left, end, right - left, dirty_.bottom() - end), Theme::background);
  }
}

void PianoRollPainter::paintGrid() {
  const double perStep = roll_.pointsPerBeat * stepLengthBeats;
  const auto stepAt = [&](double x) { return static_cast<int>((x - roll_.keyWidth) / perStep); };
  const int last = std::min(scene_.pattern.stepCount(), stepAt(dirty_.right()) + 1);
  const double height = roll_.rowHeight * roll_.rowCount();
  for (int i = std::max(stepAt(dirty_.left()) - 1, 0); i <= last; ++i) {
    const bool isOnBeat = i % stepsPerBeat == 0;
    paintLine({roll_.x(i * stepLengthBeats), 0, isOnBeat ? 1 : hairline, height},
              isOnBeat ? Theme::line : betweenBeats);
  }
}

void PianoRollPainter::paintPastEnd() {
  const double end = stamps_.onPixel(roll_.x(scene_.pattern.lengthBeats)) + 1;
  const QRectF past(end, 0, dirty_.right() - end, roll_.rowHeight * roll_.rowCount());
  if (past.width() > 0) painter_.fillRect(past, Theme::withOpacity(Theme::background, 0.6));
}

// Notes

void PianoRollPainter::paintNotes() {
  const QRectF near = dirty_.adjusted(-overhang, -overhang, overhang, overhang);
  const double firstBeat = roll_.beat(near.left());
  const double lastBeat = roll_.beat(near.right());
  for (const Note& note : scene_.pattern.notes) {
    if (scene_.drag && scene_.drag->noteID == note.id) {
      paintNote(scene_.drag->rect(note, roll_), note, scene_.drag->pitch(note, roll_));
    } else if (note.startBeat < lastBeat && note.startBeat + note.durationBeats > firstBeat &&
               roll_.shows(note.pitch)) {
      const QRectF rect = roll_.noteRect(note);
      if (rect.intersects(near)) paintNote(rect, note, note.pitch);
    }
  }
}

void PianoRollPainter::paintNote(const QRectF& rect, const Note& note, int pitch) {
  const NoteStamps::Body& body = stamps_.body(note.velocity);
  const double left = stamps_.onPixel(rect.left() + 1);
  const double right = std::max(stamps_.onPixel(rect.right() - 1), left + 1);
  const QRectF frame(left, stamps_.onPixel(rect.top() + 2), right - left, stamps_.height());
  paintBody(frame, body);
  if (scene_.selectedNoteID == note.id) paintOutline(frame);
  const QPixmap& name = stamps_.name(pitch, body.ink);
  const QPointF place(stamps_.onPixel(rect.left() + nameInset), frame.top());
  if (place.x() + name.deviceIndependentSize().width() > rect.right() - gripAndGap) return;
  painter_.drawPixmap(place, name);
}

void PianoRollPainter::paintBody(const QRectF& frame, const NoteStamps::Body& body) {
  const double untilRight = frame.width() - NoteStamps::rightWidth;
  if (untilRight < NoteStamps::cornerRadius) return paintShortBody(frame, body);
  const double left = std::min(untilRight, NoteStamps::leftWidth);
  painter_.drawPixmap(frame.topLeft(), body.left,
                      QRectF({}, QSizeF(left, stamps_.height()) * body.left.devicePixelRatio()));
  if (left < untilRight) painter_.fillRect(frame.adjusted(left, 0, -NoteStamps::rightWidth, 0), body.fill);
  painter_.drawPixmap(frame.topLeft() + QPointF(untilRight, 0), body.right);
}

/// There is no room for a grip: all of the note is one.
void PianoRollPainter::paintShortBody(const QRectF& frame, const NoteStamps::Body& body) {
  const double radius = std::min(NoteStamps::cornerRadius, frame.width() / 2);
  painter_.setRenderHint(QPainter::Antialiasing);
  painter_.setPen(Qt::NoPen);
  painter_.setBrush(body.fill);
  painter_.drawRoundedRect(frame, radius, radius);
  painter_.setRenderHint(QPainter::Antialiasing, false);
}

void PianoRollPainter::paintOutline(const QRectF& frame) {
  const double radius = std::min(NoteStamps::cornerRadius, frame.width() / 2);
  painter_.setRenderHint(QPainter::Antialiasing);
  painter_.setPen(QPen(Qt::white, 2));
  painter_.setBrush(Qt::NoBrush);
  painter_.drawRoundedRect(frame, radius, radius);
  painter_.setRenderHint(QPainter::Antialiasing, false);
}

// What lies over the notes

void PianoRollPainter::paintCursor() {
  if (!scene_.cursor) return;
  painter_.setRenderHint(QPainter::Antialiasing);
  painter_.setPen(QPen(Theme::accent, 2));
  painter_.setBrush(Theme::withOpacity(Theme::accent, 0.15));
  painter_.drawRoundedRect(roll_.cellRect(*scene_.cursor).adjusted(1, 1, -1, -1), NoteStamps::cornerRadius,
                           NoteStamps::cornerRadius);
  painter_.setRenderHint(QPainter::Antialiasing, false);
}

void PianoRollPainter::paintKeys() {
  const QRectF column(scene_.keysLeft, 0, roll_.keyWidth, roll_.rowHeight * roll_.rowCount());
  if (!column.intersects(dirty_)) return;
  if (scene_.keysLeft > 0) paintRows(column.left(), column.right());
  paintLine({column.right(), 0, 1, column.height()}, Theme::line);
  painter_.setPen(Theme::secondary);
  for (int pitch = roll_.lowerPitch; pitch <= roll_.upperPitch; ++pitch) {
    const QRectF row(column.left(), roll_.y(pitch), column.width(), roll_.rowHeight);
    const QRectF name = row.adjusted(nameInset, 0, 0, 0);
    if (row.intersects(dirty_)) painter_.drawText(name, Qt::AlignLeft | Qt::AlignVCenter, pitchName(pitch));
  }
}

}  // namespace velmora
