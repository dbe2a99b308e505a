#pragma once

#include <QKeyEvent>
#include <QString>

#include "Velmora/Studio/Arrangement/PointerGesture.h"
#include "VelmoraCore/Song/UUID.h"

namespace velmora {

/// What an arrangement canvas asks of its owner, who outlives it.
struct CanvasResponder : GestureResponder {
  virtual Qt::CursorShape cursorAt(const QPointF& point) = 0;
  /// True for a key that was used.
  virtual bool keyPressed(const QKeyEvent& event) = 0;
  virtual void resized(const QSizeF& size) = 0;

  // For screen readers.
  virtual void selectClip(const UUID& clipID) = 0;
  virtual void deleteClip(const UUID& clipID) = 0;
  virtual QString trackName(const UUID& trackID) = 0;  ///< "track" if it is gone
};

}  // namespace velmora
