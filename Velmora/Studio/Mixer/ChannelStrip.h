#pragma once

#include <QWidget>
#include <vector>

#include "Velmora/Model/AppModel.h"

class QVBoxLayout;

namespace velmora {

class KnobWithCaption;
class MeterView;
class ToggleChip;

/// One track in the mixer: mute and solo, level, volume and pan, equalizer, delay and reverb.
class ChannelStrip final : public QWidget {
 public:
  ChannelStrip(AppModel& model, const Track& track, QWidget* parent = nullptr);

  const UUID& trackID() const { return trackID_; }

  /// Shows the track as it is now, among the others of the song.
  void show(const Track& track, bool isAnySoloed, bool isSelected);
  using QWidget::show;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  /// An effect's knob and the field that it turns.
  struct EffectKnob {
    float FXSettings::*field;
    KnobWithCaption* knob;
  };

  void addHeader();
  void addMixKnobs();
  void addEffectKnobs();
  KnobWithCaption* makeKnob(const QString& caption, float lower, float upper);
  KnobWithCaption* makeEffectKnob(const QString& caption, float lower, float upper, float FXSettings::*field);
  void label(const Track& track);

  AppModel& model_;
  QVBoxLayout* column_ = nullptr;
  const UUID trackID_;
  QColor color_;
  bool isSelected_ = false;
  QString name_;
  QString symbol_;
  ToggleChip* mute_ = nullptr;
  ToggleChip* solo_ = nullptr;
  MeterView* meter_ = nullptr;
  KnobWithCaption* volume_ = nullptr;
  KnobWithCaption* pan_ = nullptr;
  std::vector<EffectKnob> effects_;
};

}  // namespace velmora
