#pragma once

#include "Tonic/BitSetAdapter.h"
#include "Tonic/Pitch.h"

namespace tonic {

using PitchSet = BitSetAdapter<Pitch>;

}  // namespace tonic
