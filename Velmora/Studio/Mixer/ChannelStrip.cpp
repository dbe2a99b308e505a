#include "Velmora/Studio/Mixer/ChannelStrip.h"

#include <QPainter>
#include <QVBoxLayout>

#include "Velmora/Studio/Mixer/KnobRow.h"
#include "Velmora/Studio/Mixer/MeterView.h"
#include "Velmora/Studio/Parts/TrackSymbol.h"
#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Spoken.h"
#include "Velmora/Theme/TextLabel.h"
#include "Velmora/Theme/Theme.h"
#include "Velmora/Theme/ToggleChip.h"

namespace velmora {

namespace {

constexpr int stripWidth = 230;
constexpr int padding = 14;
constexpr int spacing = 16;
constexpr int chipSide = 44;  // of the hit area
constexpr int chipInset = 8;  // from there to what shows
constexpr int headerTop = 4;
constexpr double cornerRadius = 10;
constexpr double symbolWidth = 20;
constexpr double symbolSize = 14;

float peakOf(const AppModel& model, const UUID& trackID) {
  const PeakMeter* meter = model.engine().meter(trackID);
  return meter ? meter->load() : 0;
}

/// What the track contributes after mute, solo and fader; its meter is read ahead of them.
float gainAfterMeter(const Track& track, bool isAnySoloed) {
  return track.isMuted || (isAnySoloed && !track.isSoloed) ? 0 : track.volume;
}

}  // namespace

ChannelStrip::ChannelStrip(AppModel& model, const Track& track, QWidget* parent)
    : QWidget(parent), model_(model), column_(new QVBoxLayout(this)), trackID_(track.id) {
  Spoken::attach(*this, {.role = QAccessible::Grouping});
  setFixedWidth(stripWidth);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  column_->setContentsMargins(padding, headerTop, padding, padding + 4);
  column_->setSpacing(spacing);
  addHeader();
  meter_ = new MeterView([this] { return peakOf(model_, trackID_); });
  column_->addWidget(meter_);
  addMixKnobs();
  column_->addWidget(new TextLabel("EQUALIZER", Theme::Text::capitals, Theme::secondary));
  addEffectKnobs();
}

/// The chips are placed by hand: their hit areas overlap and reach into the padding.
void ChannelStrip::addHeader() {
  mute_ = new ToggleChip("M", "Mute", Theme::yellow, this);
  solo_ = new ToggleChip("S", "Solo", Theme::accent, this);
  QObject::connect(mute_, &QAbstractButton::clicked, this, [this] { model_.toggleMute(trackID_); });
  QObject::connect(solo_, &QAbstractButton::clicked, this, [this] { model_.toggleSolo(trackID_); });
  const int right = stripWidth - padding + chipInset;
  solo_->setGeometry(right - chipSide, headerTop, chipSide, chipSide);
  mute_->setGeometry(solo_->x() - chipSide + chipInset, headerTop, chipSide, chipSide);
  column_->addSpacing(chipSide + chipInset);
}

KnobWithCaption* ChannelStrip::makeKnob(const QString& caption, float lower, float upper) {
  return new KnobWithCaption(caption, {lower, upper}, color_, this);
}

void ChannelStrip::addMixKnobs() {
  volume_ = makeKnob("VOLUME", 0, 1);
  volume_->setDefaultValue(Track{}.volume);
  volume_->valueText = spokenPercent;
  volume_->onChanged = [this](float value) { model_.setTrackVolume(trackID_, value); };
  pan_ = makeKnob("PAN", -1, 1);
  pan_->setDefaultValue(0);
  pan_->valueText = plainNumber;
  pan_->onChanged = [this](float value) { model_.setTrackPan(trackID_, value); };
  column_->addLayout(knobRow({volume_, pan_}));
}

void ChannelStrip::addEffectKnobs() {
  column_->addLayout(knobRow({makeEffectKnob("LOW", -12, 12, &FXSettings::lowGainDB),
                              makeEffectKnob("MID", -12, 12, &FXSettings::midGainDB),
                              makeEffectKnob("HIGH", -12, 12, &FXSettings::highGainDB)}));
  column_->addLayout(knobRow({makeEffectKnob("DELAY", 0, 1, &FXSettings::delayMix),
                              makeEffectKnob("REVERB", 0, 1, &FXSettings::reverbMix)}));
}

/// A range that reaches below zero speaks in decibels, any other in percent.
KnobWithCaption* ChannelStrip::makeEffectKnob(const QString& caption, float lower, float upper,
                                              float FXSettings::*field) {
  KnobWithCaption* knob = makeKnob(caption, lower, upper);
  knob->setObjectName(caption);
  knob->setDefaultValue(0);
  knob->valueText = lower < 0 ? spokenDecibels : spokenPercent;
  knob->onChanged = [this, field](float value) { model_.setTrackEffect(field, trackID_, value); };
  effects_.push_back({field, knob});
  return knob;
}

void ChannelStrip::show(const Track& track, bool isAnySoloed, bool isSelected) {
  color_ = Theme::color(track.color);
  isSelected_ = isSelected;
  label(track);
  mute_->setOn(track.isMuted);
  solo_->setOn(track.isSoloed);
  meter_->setColor(color_);
  meter_->setGain(gainAfterMeter(track, isAnySoloed));
  volume_->setValue(track.volume);
  pan_->setValue(track.pan);
  volume_->setColor(color_);
  pan_->setColor(color_);
  for (const EffectKnob& effect : effects_) {
    effect.knob->setValue(track.fx.*effect.field);
    effect.knob->setColor(color_);
  }
  update();
}

void ChannelStrip::label(const Track& track) {
  name_ = QString::fromStdString(track.name);
  symbol_ = TrackSymbol::name(track.kind);
  setAccessibleName(name_);
  mute_->setLabel("Mute " + name_);
  solo_->setLabel("Solo " + name_);
  volume_->setLabel(name_ + " volume");
  pan_->setLabel(name_ + " pan");
  for (const EffectKnob& effect : effects_) effect.knob->setLabel(name_ + " " + effect.knob->objectName());
}

void ChannelStrip::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  paintPanel(painter, rect(), cornerRadius, Theme::raised,
             Theme::withOpacity(color_, isSelected_ ? 0.8 : 0.15));
  const QRectF symbol(padding, mute_->y(), symbolWidth, chipSide);
  Theme::drawSymbol(painter, symbol, symbol_, color_, symbolSize);
  const double left = symbol.right() + 8;
  const QRectF title(left, mute_->y(), mute_->x() - left, chipSide);
  painter.setFont(Theme::font(Theme::Text::control));
  painter.setPen(Theme::text);
  painter.drawText(title, Qt::AlignLeft | Qt::AlignVCenter,
                   painter.fontMetrics().elidedText(name_, Qt::ElideRight, static_cast<int>(title.width())));
}

void ChannelStrip::mousePressEvent(QMouseEvent*) { model_.selectTrack(trackID_); }

}  // namespace velmora
