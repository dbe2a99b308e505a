#include <gtest/gtest.h>

#include "Velmora/Theme/Symbols.h"

namespace velmora {
namespace {

const QString names =
    "arrow.down.circle.fill arrow.left.to.line arrow.right.to.line backward.end.fill checkmark "
    "checkmark.circle.fill chevron.down chevron.left chevron.right circle.grid.3x3.fill ellipsis.circle "
    "exclamationmark.triangle.fill folder info.circle mic.fill minus.magnifyingglass music.note.list "
    "pause.fill pencil person.2 person.crop.circle pianokeys play.circle play.fill plus "
    "plus.magnifyingglass plus.rectangle plus.square.on.square record.circle record.circle.fill "
    "rectangle.bottomthird.inset.filled rectangle.portrait.and.arrow.right rectangle.split.3x1 repeat "
    "slider.horizontal.3 speaker.wave.2.fill square.and.arrow.down square.and.arrow.down.on.square "
    "square.and.arrow.up square.grid.4x3.fill stop.circle.fill stop.fill trash waveform xmark "
    "xmark.circle xmark.circle.fill";

TEST(SymbolsTest, DrawsEveryNameInsideTheBoxWithTheIconFontAndWithout) {
  const QRectF box(0, 0, Symbols::box, Symbols::box);
  for (const char* const family : {"Material Icons", "No Such Family"}) {
    Symbols symbols(family);
    for (const QString& name : names.split(' ')) {
      const QPainterPath& outline = symbols.outline(name);
      EXPECT_FALSE(outline.isEmpty()) << family << ": " << name.toStdString();
      EXPECT_TRUE(box.contains(outline.boundingRect())) << family << ": " << name.toStdString();
    }
    EXPECT_TRUE(symbols.outline("no.such.symbol").isEmpty());
  }
}

TEST(SymbolsTest, MirrorsTheArrowThatShortens) {
  Symbols symbols;
  const QRectF left = symbols.outline("arrow.left.to.line").boundingRect();
  const QRectF right = symbols.outline("arrow.right.to.line").boundingRect();
  EXPECT_NEAR(left.left(), Symbols::box - right.right(), 1e-6);
  EXPECT_NEAR(left.width(), right.width(), 1e-6);
}

}  // namespace
}  // namespace velmora
