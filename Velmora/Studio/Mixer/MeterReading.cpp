#include "Velmora/Studio/Mixer/MeterReading.h"

#include <algorithm>
#include <cmath>

namespace velmora {

MeterReading MeterReading::of(float peak, float gain) {
  const float level = peak * gain;
  const float decibels = 20 * std::log10(std::max(level, floor));
  return {.decibels = decibels,
          .fraction = static_cast<double>(std::clamp((decibels + range) / range, 0.0F, 1.0F)),
          .isClipping = peak >= 1,
          .isSilent = !(level >= floor)};
}

QString MeterReading::text() const {
  return isSilent ? QStringLiteral("−∞ dB") : QString::asprintf("%.1f dB", static_cast<double>(decibels));
}

QString MeterReading::spoken() const {
  return QString::asprintf("%lld decibels", static_cast<long long>(std::llround(decibels)));
}

}  // namespace velmora
