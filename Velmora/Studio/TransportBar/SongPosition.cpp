#include "Velmora/Studio/TransportBar/SongPosition.h"

#include <algorithm>
#include <cmath>

namespace velmora {

SongPosition SongPosition::at(double playheadBeat) {
  constexpr double furthest = 1e15;  // beyond it quarters of a beat don't exist
  const double beat = std::isfinite(playheadBeat) ? std::clamp(playheadBeat, 0.0, furthest) : 0;
  const double bars = std::trunc(beat / 4);
  return {.bar = static_cast<std::int64_t>(bars) + 1,
          .beat = static_cast<int>(beat - 4 * bars) + 1,
          .step = static_cast<int>((beat - std::trunc(beat)) * 4) + 1};
}

QString SongPosition::text() const {
  return QStringLiteral("%1.%2.%3").arg(bar, 3, 10, QLatin1Char('0')).arg(beat).arg(step);
}

QString SongPosition::spoken() const {
  return QStringLiteral("Bar %1, beat %2, step %3").arg(bar).arg(beat).arg(step);
}

}  // namespace velmora
