#pragma once

#include <QProxyStyle>

namespace velmora {

/// The look of the standard widgets: calm, dark, one accent. What isn't drawn here is Fusion's, in the
/// palette's colours.
class StudioStyle final : public QProxyStyle {
 public:
  StudioStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

  using QProxyStyle::polish;
  /// Menus get round corners; buttons and closed lists take the focus by Tab only, so that a click on one
  /// leaves the plain keys to the transport.
  void polish(QWidget* widget) override;

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override;

  QRect subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                       const QWidget* widget) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                         const QWidget* widget) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returnData) const override;
};

}  // namespace velmora
