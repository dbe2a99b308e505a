#include "Keyboard/KeyboardModel.h"

#include <cstddef>
#include <utility>

namespace keyboard {

using tonic::Pitch;
using tonic::PitchSet;

const KeyRectInfo* KeyboardModel::keyAt(QPointF location) const {
  const KeyRectInfo* top = nullptr;
  for (const KeyRectInfo& key : keyRectInfos) {
    if (key.contains(location) && (top == nullptr || key.zIndex > top->zIndex)) top = &key;
  }
  return top;
}

PitchSet KeyboardModel::pitchesAt(const std::vector<QPointF>& locations) {
  PitchSet pitches;
  for (const QPointF& location : locations) {
    const KeyRectInfo* key = keyAt(location);
    if (key == nullptr) continue;
    pitches.add(key->pitch);
    normalizedPoints_[static_cast<std::size_t>(key->pitch.intValue())] = key->normalized(location);
  }
  return pitches;
}

void KeyboardModel::setTouchLocations(std::vector<QPointF> locations) {
  touchLocations_ = std::move(locations);
  const PitchSet pitches = pitchesAt(touchLocations_);
  if (pitches == touchedPitches_) return;
  latching ? latch(pitches) : play(pitches);
  touchedPitches_ = pitches;
}

void KeyboardModel::play(const PitchSet& pitches) {
  for (Pitch pitch : touchedPitches_.subtracting(pitches).array()) noteOff(pitch);
  for (Pitch pitch : pitches.subtracting(touchedPitches_).array()) {
    noteOn(pitch, normalizedPoints_[static_cast<std::size_t>(pitch.intValue())]);
  }
}

void KeyboardModel::latch(const PitchSet& pitches) {
  for (Pitch pitch : pitches.subtracting(touchedPitches_).array()) {
    externallyActivatedPitches_.contains(pitch) ? deactivate(pitch) : activate(pitch);
  }
}

void KeyboardModel::activate(Pitch pitch) {
  if (activePitches().contains(pitch)) return;
  externallyActivatedPitches_.add(pitch);
  noteOn(pitch, normalizedPoints_[static_cast<std::size_t>(pitch.intValue())]);
}

void KeyboardModel::deactivate(Pitch pitch) {
  if (!externallyActivatedPitches_.contains(pitch)) return;
  externallyActivatedPitches_.remove(pitch);
  if (!activePitches().contains(pitch)) noteOff(pitch);
}

PitchSet KeyboardModel::activePitches() const {
  return latching ? externallyActivatedPitches_ : externallyActivatedPitches_.united(touchedPitches_);
}

}  // namespace keyboard
