#include "Velmora/Theme/Theme.h"

#include <QApplication>
#include <QPalette>
#include <QToolTip>
#include <array>
#include <cmath>

#include "Velmora/Theme/AccessiblePopups.h"
#include "Velmora/Theme/Spoken.h"
#include "Velmora/Theme/StudioStyle.h"
#include "Velmora/Theme/SymbolIconEngine.h"
#include "Velmora/Theme/SymbolPainter.h"

namespace velmora {
namespace {

constexpr std::array trackColors{
    QColor{0x3D, 0x8B, 0xFF},  // blue
    QColor{0xFF, 0x8A, 0x3D},  // orange
    QColor{0xFF, 0x4D, 0x4D},  // red
    QColor{0xFF, 0x5C, 0xA8},  // pink
    QColor{0x4C, 0xD9, 0x64},  // green
    QColor{0xA2, 0x5C, 0xFF},  // purple
    QColor{0x2E, 0xD3, 0xC6},  // teal
    QColor{0xFF, 0xD4, 0x3D},  // yellow
};

enum class Face { rounded, roundedMedium, monospaced };

struct FontRow {
  Theme::Text role;
  Face face;
  int pixels;
  QFont::Weight weight;
  double letterSpacing = 0;
};

constexpr FontRow fontRows[] = {
    {Theme::Text::capitals, Face::rounded, 9, QFont::Bold, 1},
    {Theme::Text::label, Face::rounded, 11, QFont::DemiBold},
    {Theme::Text::digits, Face::monospaced, 10, QFont::Medium},
    {Theme::Text::largeDigits, Face::monospaced, 20, QFont::Medium},
    {Theme::Text::compactReadout, Face::monospaced, 22, QFont::DemiBold},
    {Theme::Text::readout, Face::monospaced, 30, QFont::DemiBold},
    {Theme::Text::body, Face::roundedMedium, 14, QFont::Medium},
    {Theme::Text::caption, Face::roundedMedium, 12, QFont::Medium},
    {Theme::Text::title, Face::rounded, 16, QFont::DemiBold},
    {Theme::Text::control, Face::rounded, 13, QFont::DemiBold},
};

/// Quicksand comes with its medium weight as a family of its own; without one the next name serves.
QStringList families(Face face) {
  switch (face) {
    case Face::rounded:
      return {"Quicksand", "sans-serif"};
    case Face::roundedMedium:
      return {"Quicksand Medium", "Quicksand", "sans-serif"};
    case Face::monospaced:
      return {"JetBrains Mono", "monospace"};
  }
  return {};
}

QFont makeFont(const FontRow& row) {
  QFont font(families(row.face));
  font.setStyleHint(row.face == Face::monospaced ? QFont::Monospace : QFont::SansSerif);
  font.setPixelSize(row.pixels);
  font.setWeight(row.weight);
  if (row.letterSpacing > 0) font.setLetterSpacing(QFont::AbsoluteSpacing, row.letterSpacing);
  return font;
}

struct ColorRow {
  QPalette::ColorRole role;
  QColor color;
};

constexpr ColorRow paletteRows[] = {
    {QPalette::Window, Theme::surface},
    {QPalette::WindowText, Theme::text},
    {QPalette::Base, Theme::deep},
    {QPalette::AlternateBase, Theme::background},
    {QPalette::Text, Theme::text},
    {QPalette::Button, Theme::raised},
    {QPalette::ButtonText, Theme::text},
    {QPalette::BrightText, Theme::text},
    {QPalette::Highlight, Theme::accent},
    {QPalette::HighlightedText, Theme::ink},
    {QPalette::ToolTipBase, Theme::raised},
    {QPalette::ToolTipText, Theme::text},
    {QPalette::PlaceholderText, Theme::secondary},
    {QPalette::Link, Theme::accent},
    {QPalette::LinkVisited, Theme::accent},
    {QPalette::Light, QColor{0x2B, 0x2D, 0x33}},
    {QPalette::Midlight, QColor{0x25, 0x27, 0x2C}},
    {QPalette::Mid, QColor{0x14, 0x15, 0x18}},
    {QPalette::Dark, QColor{0x0A, 0x0B, 0x0E}},
    {QPalette::Shadow, QColor{0, 0, 0}},
};

QPalette studioPalette() {
  QPalette palette;
  for (const ColorRow& row : paletteRows) palette.setColor(row.role, row.color);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, Theme::withOpacity(Theme::text, Theme::disabledOpacity));
  }
  return palette;
}

bool isMotionReduced = false;  // of the main thread, as all of the theme

/// The box of a symbol that goes with text: the next even size, so that its middle falls between two pixels.
double symbolBoxSize(double textSize) { return 2 * std::round(textSize * 0.7); }

}  // namespace

QColor Theme::color(TrackColor color) { return trackColors.at(static_cast<std::size_t>(color)); }

QColor Theme::withOpacity(QColor color, double opacity) {
  color.setAlphaF(color.alphaF() * static_cast<float>(opacity));
  return color;
}

QFont Theme::font(Text role) {
  static const auto fonts = [] {
    std::array<QFont, std::size(fontRows)> made;
    for (const FontRow& row : fontRows) made.at(static_cast<std::size_t>(row.role)) = makeFont(row);
    return made;
  }();
  return fonts.at(static_cast<std::size_t>(role));
}

void Theme::drawSymbol(QPainter& painter, const QRectF& rect, const QString& name, const QColor& color,
                       double size) {
  paintSymbolBox(painter, rect, name, color, symbolBoxSize(size));
}

QIcon Theme::symbolIcon(const QString& name, const QColor& color, double size) {
  return QIcon(new SymbolIconEngine(name, color, size));
}

int Theme::duration(int milliseconds) { return isMotionReduced ? 0 : milliseconds; }

void Theme::setReducesMotion(bool reducesMotion) { isMotionReduced = reducesMotion; }

void Theme::install() {
  QApplication::setStyle(new StudioStyle);
  const QPalette palette = studioPalette();
  QApplication::setPalette(palette);
  QToolTip::setPalette(palette);
  QApplication::setFont(font(Text::body));
  for (const char* const widget : {"QAbstractButton", "QComboBox", "QMenu", "QMenuBar"}) {
    QApplication::setFont(font(Text::control), widget);
  }
  QToolTip::setFont(font(Text::caption));
  Spoken::guardScrollAreas();
  showPopupsToScreenReaders();
}

}  // namespace velmora
