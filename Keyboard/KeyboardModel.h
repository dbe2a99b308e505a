#pragma once

#include <QPointF>
#include <array>
#include <functional>
#include <vector>

#include "Keyboard/KeyRectInfo.h"
#include "Tonic/Pitch.h"
#include "Tonic/PitchSet.h"

namespace keyboard {

/// Turns the places where a keyboard is touched into notes. Knows no widget. Main thread.
class KeyboardModel {
 public:
  using NoteOn = std::function<void(tonic::Pitch, QPointF normalizedPoint)>;
  using NoteOff = std::function<void(tonic::Pitch)>;

  NoteOn noteOn = [](tonic::Pitch, QPointF) {};
  NoteOff noteOff = [](tonic::Pitch) {};
  bool latching = false;  ///< a touch turns a key on or off, and lifting does nothing
  std::vector<KeyRectInfo> keyRectInfos;

  /// All present touches in the keyboard's coordinates; none when the last one ends. Calls the note functions
  /// for the difference to the keys touched before, offs first.
  void setTouchLocations(std::vector<QPointF> locations);

  /// Plays a key without a touch, as a computer's key or a screen reader does; an active one stays as it is.
  void activate(tonic::Pitch pitch);
  /// Ends what `activate` began, unless the key is touched.
  void deactivate(tonic::Pitch pitch);

  /// The topmost key at a place; null if there is none.
  const KeyRectInfo* keyAt(QPointF location) const;

  const std::vector<QPointF>& touchLocations() const { return touchLocations_; }
  const tonic::PitchSet& touchedPitches() const { return touchedPitches_; }
  const tonic::PitchSet& externallyActivatedPitches() const { return externallyActivatedPitches_; }
  const std::array<QPointF, 128>& normalizedPoints() const { return normalizedPoints_; }

  /// The keys to show as pressed.
  tonic::PitchSet activePitches() const;

 private:
  tonic::PitchSet pitchesAt(const std::vector<QPointF>& locations);
  void play(const tonic::PitchSet& pitches);
  void latch(const tonic::PitchSet& pitches);

  std::array<QPointF, 128> normalizedPoints_{};
  std::vector<QPointF> touchLocations_;
  tonic::PitchSet touchedPitches_;
  tonic::PitchSet externallyActivatedPitches_;
};

}  // namespace keyboard
