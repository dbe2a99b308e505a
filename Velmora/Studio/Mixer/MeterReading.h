#pragma once

#include <QString>

namespace velmora {

/// What a level meter shows for one peak.
struct MeterReading {
  static constexpr float floor = 0.00001F;  ///< -100 dB: silence
  static constexpr float range = 60;        ///< decibels from an empty bar to a full one

  float decibels = -100;
  double fraction = 0;      ///< of the bar, linear in decibels
  bool isClipping = false;  ///< the peak itself, before the gain, is at full scale
  bool isSilent = true;

  /// `gain` is what the signal still gets after the meter.
  static MeterReading of(float peak, float gain);

  QString text() const;    ///< "-6.2 dB"
  QString spoken() const;  ///< "-6 decibels"

  bool operator==(const MeterReading&) const = default;
};

}  // namespace velmora
