#include "Velmora/Studio/Mixer/KnobRow.h"

#include <QHBoxLayout>
#include <cmath>

namespace velmora {

QLayout* knobRow(std::initializer_list<KnobWithCaption*> knobs) {
  auto* row = new QHBoxLayout;
  row->setSpacing(0);
  for (KnobWithCaption* knob : knobs) {
    row->addStretch();
    row->addWidget(knob);
  }
  row->addStretch();
  return row;
}

QString plainNumber(float value) {
  return QString::number(std::round(static_cast<double>(value) * 100) / 100);
}
QString spokenPercent(float value) { return QString::number(std::lround(value * 100)) + " percent"; }
QString spokenDecibels(float value) { return plainNumber(value) + " decibels"; }

}  // namespace velmora
