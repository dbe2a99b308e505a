#include "Velmora/Studio/TransportBar/TempoText.h"

#include <QLocale>
#include <cmath>

namespace velmora {

QString TempoText::shown(double bpm) { return QString::number(bpm, 'f', 0); }

std::optional<double> TempoText::parsed(QString text) {
  const QString number = text.replace(',', '.').trimmed();
  bool isNumber = false;
  const double bpm = QLocale::c().toDouble(number, &isNumber);
  return isNumber && std::isfinite(bpm) ? std::optional(bpm) : std::nullopt;
}

}  // namespace velmora
