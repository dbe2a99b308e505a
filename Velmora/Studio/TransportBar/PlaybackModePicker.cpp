#include "Velmora/Studio/TransportBar/PlaybackModePicker.h"

namespace velmora {

PlaybackModePicker::PlaybackModePicker(AppModel& model, QWidget* parent)
    : SegmentedPicker("Playback mode", {"Pattern", "Song"}, parent),  // in the order of the cases
      model_(model),
      listener_([this] { showMode(); }, model.mode) {
  setObjectName("transport.mode");
  onSelect = [this](int index) {
    model_.setMode(static_cast<PlaybackMode>(index));
    showMode();  // a refused choice goes back
  };
  showMode();
}

void PlaybackModePicker::showMode() { setSelected(static_cast<int>(model_.mode())); }

}  // namespace velmora
