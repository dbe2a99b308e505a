#pragma once

#include <QLayout>
#include <initializer_list>

#include "Velmora/Studio/Parts/KnobWithCaption.h"

namespace velmora {

/// A row of knobs, spread evenly.
QLayout* knobRow(std::initializer_list<KnobWithCaption*> knobs);

/// How knobs speak: a share of 1 as whole percent, a gain in decibels.
QString spokenPercent(float value);
QString spokenDecibels(float value);
/// The number itself, as short as it can be told.
QString plainNumber(float value);

}  // namespace velmora
