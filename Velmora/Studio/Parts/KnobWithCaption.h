#pragma once

#include "Controls/SmallKnob.h"

namespace velmora {

/// A knob of 38 by 38 over its caption, 44 wide at least. The captions are short and in capitals.
class KnobWithCaption final : public controls::SmallKnob {
 public:
  KnobWithCaption(const QString& caption, controls::ClosedRange<float> range, const QColor& color,
                  QWidget* parent = nullptr);

  void setColor(const QColor& color);
  void setLabel(const QString& label) { setAccessibleName(label); }

  QSize sizeHint() const override;

 protected:
  QRectF frame() const override;
  void paintEvent(QPaintEvent* event) override;

 private:
  const QString caption_;
};

}  // namespace velmora
