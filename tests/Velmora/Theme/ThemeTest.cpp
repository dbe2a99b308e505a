#include <QFontMetricsF>
#include <QIcon>
#include <QImage>
#include <gtest/gtest.h>
#include <set>

#include "Velmora/Theme/Theme.h"

namespace velmora {
namespace {

/// The sum of all coverage that a drawing leaves, and the grades of coverage that occur.
struct Ink {
  double amount = 0;
  std::set<int> grades;

  template <class Draw>
  static Ink of(double scale, Draw draw) {
    QImage image(QSize(400, 60) * scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    draw(painter);
    painter.end();
    Ink ink;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) ink.add(qAlpha(image.pixel(x, y)));
    }
    return ink;
  }
  void add(int alpha) {
    amount += alpha / 255.0;
    grades.insert(alpha);
  }
};

double inkOfText(QFont font) {
  return Ink::of(1,
                 [&](QPainter& painter) {
                   painter.setFont(font);
                   painter.drawText(QPointF(2, 40), "Place Pattern");
                 })
      .amount;
}

TEST(ThemeTest, PrintsEachWeightHeavierThanTheOneBelow) {
  for (const auto role : {Theme::Text::control, Theme::Text::readout}) {
    QFont font = Theme::font(role);
    const double semibold = inkOfText(font);
    font.setWeight(QFont::Normal);
    EXPECT_GT(semibold, 1.15 * inkOfText(font)) << static_cast<int>(role);
  }
  EXPECT_EQ(Theme::font(Theme::Text::capitals).letterSpacing(), 1);
}

TEST(ThemeTest, GivesDigitsOneWidth) {
  for (const auto role :
       {Theme::Text::digits, Theme::Text::largeDigits, Theme::Text::compactReadout, Theme::Text::readout}) {
    const QFontMetricsF metrics(Theme::font(role));
    EXPECT_EQ(metrics.horizontalAdvance("111.1"), metrics.horizontalAdvance("080.8"));
  }
}

TEST(ThemeTest, DrawsSymbolsOnWholePixels) {
  const std::set<int> fullOrNothing{0, 255};
  for (const double scale : {1.0, 2.0, 3.0}) {
    for (const double left : {0.0, 0.3, 0.5}) {
      const Ink ink = Ink::of(scale, [&](QPainter& painter) {
        Theme::drawSymbol(painter, QRectF(left, 3, 44, 44), "stop.fill", Theme::text, 17);
      });
      EXPECT_EQ(ink.grades, fullOrNothing) << "at scale " << scale << " from " << left;
      EXPECT_EQ(ink.amount, 144 * scale * scale);
    }
  }
}

TEST(ThemeTest, DimsTheIconOfADisabledControl) {
  const QIcon icon = Theme::symbolIcon("stop.fill", Theme::danger, 24);
  const auto middle = [&](QIcon::Mode mode) {
    return icon.pixmap(QSize(24, 24), 1.0, mode).toImage().pixelColor(12, 12);
  };
  EXPECT_EQ(middle(QIcon::Normal), Theme::danger);
  EXPECT_NEAR(middle(QIcon::Disabled).alphaF(), Theme::disabledOpacity, 0.01);
}

}  // namespace
}  // namespace velmora
