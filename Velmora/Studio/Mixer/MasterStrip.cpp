#include "Velmora/Studio/Mixer/MasterStrip.h"

#include <QPainter>
#include <QVBoxLayout>

#include "Velmora/Studio/Mixer/KnobRow.h"
#include "Velmora/Studio/Mixer/MeterView.h"
#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Spoken.h"
#include "Velmora/Theme/TextLabel.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int stripWidth = 190;
constexpr int padding = 20;
constexpr int spacing = 18;
constexpr int titleHeight = 16;
constexpr double cornerRadius = 12;

QString wholePercent(float value) { return QString::number(static_cast<int>(value * 100)) + " percent"; }

}  // namespace

MasterStrip::MasterStrip(AppModel& model, QWidget* parent)
    : QWidget(parent), volume_(new KnobWithCaption("VOLUME", {0, 1}, Theme::accent)) {
  Spoken::attach(*this, {.role = QAccessible::Grouping});
  setFixedWidth(stripWidth);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setAccessibleName("Master");

  auto* meter = new MeterView([&model] { return model.engine().masterMeter().load(); });
  meter->setColor(Theme::accent);
  volume_->setLabel("Master volume");
  volume_->setDefaultValue(Song{}.masterVolume);
  volume_->valueText = wholePercent;
  volume_->onChanged = [&model](float value) { model.setMasterVolume(value); };

  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(padding, padding + titleHeight + spacing, padding, padding);
  column->setSpacing(spacing);
  column->addWidget(meter);
  column->addWidget(new TextLabel("Keep peaks below 0 dB", Theme::Text::caption, Theme::secondary));
  column->addLayout(knobRow({volume_}));
}

void MasterStrip::setVolume(float volume) { volume_->setValue(volume); }

void MasterStrip::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  paintPanel(painter, rect(), cornerRadius, Theme::raised);
  Theme::drawSymbol(painter, QRectF(padding, padding, titleHeight, titleHeight), "speaker.wave.2.fill",
                    Theme::accent, 14);
  QFont title = Theme::font(Theme::Text::label);
  title.setLetterSpacing(QFont::AbsoluteSpacing, 1);
  painter.setFont(title);
  painter.setPen(Theme::accent);
  painter.drawText(QRectF(padding + titleHeight + 8, padding, width(), titleHeight),
                   Qt::AlignLeft | Qt::AlignVCenter, "MASTER");
}

}  // namespace velmora
