#pragma once

#include "Velmora/Theme/PaintedButton.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

/// A quiet button of symbol and text. A text that doesn't fit is elided.
class ShellButton : public PaintedButton {
 public:
  enum class Fill { none, raised, accent, danger };
  struct Look {
    Fill fill = Fill::none;
    Theme::Text font = Theme::Text::control;
    QColor color = Theme::text;
  };

  /// `symbol` by the interface's names; empty for none.
  ShellButton(const QString& text, QString symbol, const Look& look, QWidget* parent = nullptr);
  explicit ShellButton(const QString& text, QString symbol = {}, QWidget* parent = nullptr);

  /// The text is the accessible name, too.
  void setContent(const QString& text, const QString& symbol = {});

  /// A hidden text is still the name and the tip.
  enum class Label { shown, hidden };
  void setLabelShown(Label label);

  /// With its text, shown or not.
  int wholeWidth() const { return widthWith(text()); }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString shownText() const { return label_ == Label::shown ? text() : QString(); }
  int textWidth(const QString& text) const;
  int contentWidth(int ofText) const;
  int widthWith(const QString& text) const;
  QColor fillColor() const;
  QColor contentColor() const;
  void paintContent(QPainter& painter) const;

  QString symbol_;
  const Look look_;
  Label label_ = Label::shown;
};

}  // namespace velmora
