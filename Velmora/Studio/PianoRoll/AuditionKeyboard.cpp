#include "Velmora/Studio/PianoRoll/AuditionKeyboard.h"

#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

keyboard::KeyboardLayout layoutFrom(int lowerPitch) {
  return {{keyboard::PitchRange::twoOctavesFrom(lowerPitch)}};
}

keyboard::PianoKeyLook look(const QColor& color) {
  keyboard::PianoKeyLook look;
  look.activeColor = color;
  look.darkColor = Theme::surface;
  look.gapColor = Theme::background;
  look.labelFont = Theme::font(Theme::Text::label);
  return look;
}

}  // namespace

AuditionKeyboard::AuditionKeyboard(AppModel& model, UUID trackID, int lowerPitch, const QColor& color,
                                   QWidget* parent)
    : Keyboard(layoutFrom(lowerPitch), parent),
      model_(model),
      trackID_(trackID),
      trackChanged_(model.selectedTrackID.addNotifier([this] { releaseAll(); })) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  setProperty("keepsEditingKeys", true);
  setProperty("keepsActivationKeys", true);
  setColor(color);
  onNotes([this](tonic::Pitch pitch,
                 QPointF) { model_.engine().setAuditionKey(pitch.intValue(), true, trackID_); },
          [this](tonic::Pitch pitch) { model_.engine().setAuditionKey(pitch.intValue(), false, trackID_); });
}

AuditionKeyboard::~AuditionKeyboard() { model_.engine().releaseAuditionKeys(); }

void AuditionKeyboard::setLowerPitch(int lowerPitch) { setKeyboardLayout(layoutFrom(lowerPitch)); }

void AuditionKeyboard::setColor(const QColor& color) { setContent(keyboard::PianoKey{look(color)}); }

void AuditionKeyboard::hideEvent(QHideEvent* event) {
  Keyboard::hideEvent(event);
  model_.engine().releaseAuditionKeys();
}

}  // namespace velmora
