#pragma once

#include <functional>

#include "VelmoraCore/Song/UUID.h"

class QWidget;

namespace velmora {

/// Makes the editors that stand under the picker, each with fresh view state and owned by its parent.
struct PatternEditors {
  using Pattern = std::function<QWidget*(const UUID& patternID, const UUID& trackID, QWidget* parent)>;

  Pattern stepGrid{};
  Pattern pianoRoll{};
  std::function<QWidget*(const UUID& trackID, QWidget* parent)> audio{};
};

}  // namespace velmora
