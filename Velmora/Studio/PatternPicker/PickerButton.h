#pragma once

#include "Velmora/Studio/PatternPicker/MenuOpener.h"
#include "Velmora/Theme/PaintedButton.h"

namespace velmora {

/// A closed menu: a symbol, the name of what is chosen and a chevron.
class PickerButton final : public PaintedButton {
 public:
  PickerButton(const QString& label, MenuOpener::Fill fill, QWidget* parent);

  struct Choice {
    QString symbol{};  ///< empty for none
    QString text{};
    QString spoken{};  ///< what a screen reader hears

    bool operator==(const Choice&) const = default;
  };
  void setChoice(const Choice& choice);
  const Choice& choice() const { return choice_; }

  /// A long name is elided.
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void paintContent(QPainter& painter, QRectF rest) const;

  Choice choice_;
  MenuOpener opener_;
};

}  // namespace velmora
