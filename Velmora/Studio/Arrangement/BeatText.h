#pragma once

#include <QString>

namespace velmora {

/// A number of beats, whole or not, as short as it is exact.
inline QString beatText(double beats) { return QString::number(beats, 'g', 12); }

}  // namespace velmora
