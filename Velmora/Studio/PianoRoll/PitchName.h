#pragma once

#include <QString>

namespace velmora {

/// "C4" for the middle C, 60, and "C♯4" for the black key above it.
QString pitchName(int pitch);

bool isBlackKey(int pitch);

}  // namespace velmora
