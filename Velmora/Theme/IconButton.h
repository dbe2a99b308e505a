#pragma once

#include <QColor>

#include "Velmora/Theme/PaintedButton.h"
#include "Velmora/Theme/PressFeedback.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

/// A lone symbol in a square to press, 44 wide and high unless resized.
class IconButton : public PaintedButton {
 public:
  IconButton(QString symbol, const QString& label, QWidget* parent = nullptr);

  void setSymbol(const QString& symbol);
  void setTint(const QColor& tint);
  void setSymbolSize(double size);

  QSize sizeHint() const override { return {44, 44}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString symbol_;
  QColor tint_ = Theme::text;
  double symbolSize_ = 17;
  PressFeedback press_{*this};
};

}  // namespace velmora
