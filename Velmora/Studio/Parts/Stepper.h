#pragma once

#include <QString>
#include <QWidget>
#include <functional>

namespace velmora {

class IconButton;

/// A number in words between two buttons that lower and raise it by one; with the focus the arrow keys do so,
/// too. It shows what its owner sets and never changes itself: `onChange` asks.
class Stepper final : public QWidget {
 public:
  struct Range {
    double lowest = 0;
    double highest = 127;
  };
  Stepper(const QString& label, Range range, QWidget* parent = nullptr);

  std::function<void(double value)> onChange = [](double) {};

  /// Grows with the text and stays so.
  void show(double value, const QString& text);
  void reserveRoomFor(const QString& text);  ///< for one that may be shown later
  const QString& text() const { return text_; }

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent*) override { update(); }
  void focusOutEvent(QFocusEvent*) override { update(); }

 private:
  IconButton* makeButton(const QString& symbol, const QString& label, int by);
  void ask(double value);

  const Range range_;
  double value_ = 0;
  int textWidth_ = 0;
  QString text_;
  IconButton* lower_ = nullptr;
  IconButton* raise_ = nullptr;
};

}  // namespace velmora
