#include "Velmora/Studio/PianoRoll/NoteStamps.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "Velmora/Studio/PianoRoll/PitchName.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr double shapeWidth = 2 * NoteStamps::leftWidth;
constexpr double gapAboveAndBelow = 2;
constexpr double gripWidth = 2;
constexpr double gripFromEnd = 5;  // of the painted body, which ends a point before the note
constexpr double gripShortening = 14;

double linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

/// The relative luminance of an opaque colour, 0 to 1.
double luminance(const QColor& color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(double luminanceA, double luminanceB) {
  const auto [darker, lighter] = std::minmax(luminanceA, luminanceB);
  return (lighter + 0.05) / (darker + 0.05);
}

QColor over(const QColor& top, const QColor& ground) {
  const float alpha = top.alphaF();
  const auto mixed = [alpha](float a, float b) { return a * alpha + b * (1 - alpha); };
  return QColor::fromRgbF(mixed(top.redF(), ground.redF()), mixed(top.greenF(), ground.greenF()),
                          mixed(top.blueF(), ground.blueF()));
}

/// The text colour that reads better on a note.
NoteStamps::Ink inkOn(const QColor& fill) {
  const double shown = luminance(over(fill, Theme::raised));
  const bool isLightBetter = contrast(shown, luminance(Theme::text)) > contrast(shown, luminance(Theme::ink));
  return isLightBetter ? NoteStamps::Ink::light : NoteStamps::Ink::dark;
}

}  // namespace

NoteStamps::NoteStamps(const QColor& trackColor, double rowHeight, double scale)
    : trackColor_(trackColor),
      rowHeight_(rowHeight),
      scale_(scale),
      height_(std::round((rowHeight - 2 * gapAboveAndBelow) * scale) / scale) {}

double NoteStamps::onPixel(double place) const { return std::round(place * scale_) / scale_; }

QColor NoteStamps::color(Ink ink) { return ink == Ink::dark ? Theme::ink : Theme::text; }

const NoteStamps::Body& NoteStamps::body(int velocity) {
  auto& body = bodies_.at(static_cast<std::size_t>(std::clamp(velocity, 1, 127)));
  if (!body) body = makeBody(velocity);
  return *body;
}

const QPixmap& NoteStamps::name(int pitch, Ink ink) {
  QPixmap& name = names_.at(static_cast<std::size_t>(ink)).at(static_cast<std::size_t>(pitch));
  if (name.isNull()) name = makeName(pitch, ink);
  return name;
}

QPixmap NoteStamps::blank(double width) const {
  QPixmap pixmap(QSizeF(std::round(width * scale_), std::round(height_ * scale_)).toSize());
  pixmap.setDevicePixelRatio(scale_);
  pixmap.fill(Qt::transparent);
  return pixmap;
}

NoteStamps::Body NoteStamps::makeBody(int velocity) const {
  Body body;
  body.fill = Theme::withOpacity(trackColor_, velocity / 254.0 + 0.5);
  body.ink = inkOn(body.fill);
  body.left = makeEnd(body, leftWidth, 0);
  body.right = makeEnd(body, rightWidth, rightWidth - shapeWidth);
  addGrip(body);
  return body;
}

/// A piece of a long rounded rectangle that starts at `shapeLeft`.
QPixmap NoteStamps::makeEnd(const Body& body, double width, double shapeLeft) const {
  QPixmap pixmap = blank(width);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(body.fill);
  painter.drawRoundedRect(QRectF(shapeLeft, 0, shapeWidth, height_), cornerRadius, cornerRadius);
  return pixmap;
}

void NoteStamps::addGrip(Body& body) const {
  const double height = rowHeight_ - gripShortening;
  QPainter painter(&body.right);
  painter.fillRect(QRectF(rightWidth - gripFromEnd, (height_ - height) / 2, gripWidth, height),
                   Theme::withOpacity(color(body.ink), 0.6));
}

QPixmap NoteStamps::makeName(int pitch, Ink ink) const {
  const QFont font = Theme::font(Theme::Text::label);
  const QString text = pitchName(pitch);
  QPixmap pixmap = blank(std::ceil(QFontMetricsF(font).horizontalAdvance(text)));
  QPainter painter(&pixmap);
  painter.setFont(font);
  painter.setPen(color(ink));
  painter.drawText(QRectF({}, pixmap.deviceIndependentSize()),
                   Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, text);
  return pixmap;
}

}  // namespace velmora
