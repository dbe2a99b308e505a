#pragma once

#include <QString>
#include <QWidget>
#include <functional>

namespace velmora {

class IconButton;

/// A whole number in words between two buttons that lower and raise it; with the focus the arrow keys do so,
/// too. It shows what its owner sets and never changes itself: `onChange` asks.
class Stepper final : public QWidget {
 public:
  struct Range {
    int lowest = 0;
    int highest = 127;
  };
  Stepper(const QString& label, Range range, QWidget* parent = nullptr);

  std::function<void(int value)> onChange = [](int) {};

  void show(int value, const QString& text);
  void setWidestText(const QString& text);  ///< of those that will be shown: it decides the width
  int value() const { return value_; }

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  IconButton* makeButton(const QString& symbol, const QString& label, int by);
  void ask(int value);

  const Range range_;
  int value_ = 0;
  int textWidth_ = 0;
  QString text_;
  IconButton* lower_ = nullptr;
  IconButton* raise_ = nullptr;
};

}  // namespace velmora
