#pragma once

#include <QString>
#include <cmath>
#include <cstdlib>

namespace velmora {

/// A volume from 0 to 1 as it is read aloud.
inline QString spokenVolume(float volume) {
  return QStringLiteral("%1 percent").arg(std::lround(volume * 100));
}

/// A position from -1, left, to 1, right, as it is read aloud.
inline QString spokenPan(float pan) {
  const long percent = std::lround(pan * 100);
  if (percent == 0) return QStringLiteral("centre");
  return QStringLiteral("%1 percent %2").arg(std::labs(percent)).arg(percent < 0 ? "left" : "right");
}

}  // namespace velmora
