#pragma once

#include <QString>

#include "Velmora/Studio/Parts/Stepper.h"
#include "VelmoraCore/Song/Limits.h"

namespace velmora {

/// A number of beats, whole or not, as short as it is exact.
inline QString beatText(double beats) { return QString::number(beats, 'g', 12); }

/// The beats that a stepper of the timeline can show.
inline constexpr Stepper::Range timelineRange{0, limits::longestTimelineBeats};

}  // namespace velmora
