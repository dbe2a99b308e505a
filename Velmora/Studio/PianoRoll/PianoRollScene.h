#pragma once

#include <QColor>
#include <optional>

#include "Velmora/Studio/PianoRoll/NoteDrag.h"
#include "Velmora/Studio/PianoRoll/PianoRollGeometry.h"

namespace velmora {

/// What a piano roll shows besides its geometry.
struct PianoRollScene {
  const Pattern& pattern;
  QColor trackColor;
  std::optional<UUID> selectedNoteID{};
  std::optional<NoteDrag> drag{};
  std::optional<PianoRollCell> cursor{};
  double keysLeft = 0;  ///< the column of names stays in view where the roll is scrolled
};

}  // namespace velmora
