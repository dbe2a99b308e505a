#pragma once

#include "Velmora/Theme/PaintedButton.h"

namespace velmora {

/// A quiet button of the picker: a symbol and words, without a ground until it is pointed at.
class CommandButton final : public PaintedButton {
 public:
  CommandButton(const QString& text, QString symbol, QWidget* parent);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const QString symbol_;
};

}  // namespace velmora
