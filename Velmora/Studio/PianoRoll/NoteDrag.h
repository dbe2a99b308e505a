#pragma once

#include <QPointF>
#include <QRectF>
#include <cstdint>
#include <optional>

#include "Velmora/Studio/PianoRoll/PianoRollGeometry.h"

namespace velmora {

/// A drag that began on a note: what it shows while it runs and what it does at its end.
struct NoteDrag {
  enum class Kind : std::uint8_t { move, resize };

  UUID noteID;
  Kind kind = Kind::move;
  QPointF offset{};

  /// Empty if there is no note at the start.
  static std::optional<NoteDrag> begin(QPointF start, const Pattern& pattern, const PianoRollGeometry& roll);

  /// Where the note is drawn meanwhile; a resize never shows less than the quarter beat that it ends with.
  QRectF rect(const Note& note, const PianoRollGeometry& roll) const;
  int pitch(const Note& note, const PianoRollGeometry& roll) const;  ///< where a move would end, 0 to 127

  /// The change of the note if the drag ended now.
  NoteEdit result(const Note& note, const PianoRollGeometry& roll) const;
};

}  // namespace velmora
