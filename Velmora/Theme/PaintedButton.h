#pragma once

#include <QAbstractButton>
#include <QString>

namespace velmora {

/// A button that paints itself: it takes the focus by Tab only, and then Return presses it as Space does.
class PaintedButton : public QAbstractButton {
 public:
  /// Shown as the tool tip and read as the name.
  void setLabel(const QString& label);

 protected:
  explicit PaintedButton(const QString& label, QWidget* parent = nullptr);
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace velmora
