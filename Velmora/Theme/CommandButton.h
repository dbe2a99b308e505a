#pragma once

#include <cstdint>

#include "Velmora/Theme/PaintedButton.h"
#include "Velmora/Theme/Theme.h"

class QMenu;

namespace velmora {

/// A quiet button of symbol and text, 44 high to press, without a ground until it is pointed at or filled.
/// One that stays down is lit while it is. A text that doesn't fit is elided.
class CommandButton : public PaintedButton {
 public:
  enum class Fill : std::uint8_t { none, raised, accent, danger };
  struct Look {
    Fill fill = Fill::none;
    Theme::Text font = Theme::Text::control;
    QColor color = Theme::text;
    int groundHeight = 32;
  };

  /// `symbol` by the interface's names; empty for none.
  CommandButton(const QString& text, QString symbol, const Look& look, QWidget* parent = nullptr);
  explicit CommandButton(const QString& text, QString symbol = {}, QWidget* parent = nullptr);

  /// The text is the accessible name, too.
  void setContent(const QString& text, const QString& symbol = {});

  /// A hidden text is still the name and the tip.
  enum class Label : std::uint8_t { shown, hidden };
  void setLabelShown(Label label);

  /// From now on a press opens the returned menu.
  QMenu& addMenu();

  int widthWith(Label label) const;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString shownText() const { return label_ == Label::shown ? text() : QString(); }
  int textWidth(const QString& text) const;
  int contentWidth(int ofText) const;
  QColor contentColor() const;
  void paintGround(QPainter& painter) const;
  void paintContent(QPainter& painter) const;

  QString symbol_;
  const Look look_;
  Label label_ = Label::shown;
  QMenu* menu_ = nullptr;
};

}  // namespace velmora
