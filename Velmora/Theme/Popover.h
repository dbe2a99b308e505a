#pragma once

#include <QWidget>

namespace velmora {

/// A small rounded panel beside the widget that opened it. It closes on Escape, on a click elsewhere and with
/// `close`, and is destroyed then, its content with it.
class Popover final : public QWidget {
 public:
  /// Takes the content over. `anchor` owns the popover.
  static Popover& open(QWidget& anchor, QWidget* content);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  explicit Popover(QWidget& anchor);
  void moveBeside(const QWidget& anchor);
};

}  // namespace velmora
