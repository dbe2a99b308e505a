#pragma once

#include <cstdint>

#include "Velmora/Theme/PaintedButton.h"

class QMenu;

namespace velmora {

/// A quiet button of symbol and text; one that stays down is lit while it is.
class ToolbarButton : public PaintedButton {
 public:
  enum class Label : std::uint8_t { shown, hidden };

  /// `symbol` by the interface's names; empty for none.
  ToolbarButton(const char* objectName, const QString& text, QString symbol, QWidget* parent = nullptr);

  /// A hidden text is still the name and the tip.
  void setLabelShown(Label label);

  /// From now on a press opens the returned menu.
  QMenu& addMenu();

  int widthWith(Label label) const;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString shownText() const { return label_ == Label::shown ? text() : QString(); }
  int contentWidth(const QString& shown) const;
  void paintGround(QPainter& painter) const;
  void paintContent(QPainter& painter) const;

  const QString symbol_;
  Label label_ = Label::shown;
  QMenu* menu_ = nullptr;
};

}  // namespace velmora
