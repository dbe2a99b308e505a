#pragma once

#include <QSizeF>
#include <array>
#include <vector>

#include "Keyboard/KeyRectInfo.h"
#include "Keyboard/PitchRange.h"

namespace keyboard {

/// A share of a white key's width for each letter, C to B.
using LetterRatios = std::array<double, 7>;

/// Places the keys of a piano: white ones side by side, black ones over their upper part, between gaps.
struct PianoSpacer {
  PitchRange pitchRange;
  LetterRatios initialSpacerRatio{0, 0.1875, 0.375, 0, 0.1875, 0.28125, 0.375};
  LetterRatios spacerRatio{0.625, 0.625, 0.625, 0.625, 0.53125, 0.53125, 0.625};
  double relativeBlackKeyWidth = 0.5625;
  double relativeBlackKeyHeight = 0.53;

  /// All keys in an area, in painting order: the white ones rising, then the black ones rising.
  std::vector<KeyRectInfo> keyRectInfos(QSizeF size) const;

  bool operator==(const PianoSpacer&) const = default;
};

}  // namespace keyboard
