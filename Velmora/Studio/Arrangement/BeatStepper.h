#pragma once

#include <QLabel>
#include <QWidget>
#include <functional>

#include "Velmora/Theme/IconButton.h"

namespace velmora {

/// A number of beats in words, with a button to lower and one to raise it by one. It shows what its owner
/// sets: `onChange` asks for a new value.
class BeatStepper final : public QWidget {
 public:
  /// The words stand before and after the value.
  explicit BeatStepper(const QString& before, const QString& after = {}, QWidget* parent = nullptr);

  std::function<void(double)> onChange;

  void setValue(double value);
  void setButtonWidth(int width);
  QString text() const { return text_.text(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void step(double by);
  void makeButton(IconButton& button, double by);

  const QString before_;
  const QString after_;
  double value_ = 0;
  QLabel text_;
  IconButton lower_;
  IconButton raise_;
};

}  // namespace velmora
