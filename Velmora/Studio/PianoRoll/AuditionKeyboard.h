#pragma once

#include <QColor>
#include <QPropertyNotifier>

#include "Keyboard/Keyboard.h"
#include "Velmora/Model/AppModel.h"

namespace velmora {

/// Two octaves of keys that let a track's instrument be heard, whether the transport runs or not. Everything
/// held ends when it is hidden, loses the focus or goes, or when another track is selected.
class AuditionKeyboard final : public keyboard::Keyboard {
 public:
  /// `lowerPitch` is 127 or below.
  AuditionKeyboard(AppModel& model, UUID trackID, int lowerPitch, const QColor& color,
                   QWidget* parent = nullptr);
  ~AuditionKeyboard() override;

  void setLowerPitch(int lowerPitch);
  void setColor(const QColor& color);  ///< of pressed keys

  QSize sizeHint() const override { return {540, 88}; }
  QSize minimumSizeHint() const override { return {180, 56}; }

 protected:
  void hideEvent(QHideEvent* event) override;

 private:
  AppModel& model_;
  const UUID trackID_;
  QPropertyNotifier trackChanged_;
};

}  // namespace velmora
