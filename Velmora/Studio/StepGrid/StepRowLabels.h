#pragma once

#include <QColor>
#include <QWidget>

namespace velmora {

/// The names of the rows, to the left of the cells. They scroll up and down only.
class StepRowLabels final : public QWidget {
 public:
  static constexpr int labelWidth = 100;

  using QWidget::QWidget;

  void setColor(const QColor& color);
  void setOffset(int offset);  ///< points that are scrolled away at the top

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor color_;
  int offset_ = 0;
};

}  // namespace velmora
