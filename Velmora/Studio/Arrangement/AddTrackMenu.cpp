#include "Velmora/Studio/Arrangement/AddTrackMenu.h"

#include <QMenu>

#include "Velmora/Studio/Parts/TrackSymbol.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

AddTrackMenu::AddTrackMenu(AppModel& model, QWidget* parent) : CommandButton("Add Track", "plus", parent) {
  setObjectName("arrangement.addTrack");
  setLabel("Add track");
  setMinimumHeight(leastHeight);
  const auto addItem = [&model, &menu = addMenu()](TrackKind kind) {
    menu.addAction(Theme::symbolIcon(TrackSymbol::name(kind)), TrackSymbol::word(kind), &model,
                   [&model, kind] { model.addTrack(kind); });
  };
  addItem(TrackKind::drums());
  for (SynthPreset preset : allSynthPresets()) addItem(TrackKind::synth(preset));
  addItem(TrackKind::audio());
}

}  // namespace velmora
