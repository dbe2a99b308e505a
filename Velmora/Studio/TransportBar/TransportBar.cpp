#include "Velmora/Studio/TransportBar/TransportBar.h"

#include <QPainter>
#include <utility>

#include "Velmora/Studio/TransportBar/BPMReadout.h"
#include "Velmora/Studio/TransportBar/EngineStatusDot.h"
#include "Velmora/Studio/TransportBar/PlayButton.h"
#include "Velmora/Studio/TransportBar/PlaybackModePicker.h"
#include "Velmora/Studio/TransportBar/PositionReadout.h"
#include "Velmora/Studio/TransportBar/TransportButton.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

TransportBar::TransportBar(AppModel& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      listener_([this] { showState(); }, model.isPlaying, model.isRecording, model.isEngineRunning) {
  setObjectName("transport");
  setAccessibleName("Transport");
  returnToStart_ = addButton("transport.returnToStart", "backward.end.fill", "Return to start",
                             [this] { model_.returnToStart(); });
  stop_ = addButton("transport.stop", "stop.fill", "Stop", [this] { model_.stop(); });
  play_ = new PlayButton([this] { model_.togglePlay(); }, this);
  play_->setObjectName("transport.play");
  record_ = addButton("transport.record", {}, {}, [this] { onRecord_(); });
  record_->setTint(Theme::record);
  position_ = new PositionReadout(model, this);
  tempo_ = new BPMReadout(model, this);
  mode_ = new PlaybackModePicker(model, this);
  engine_ = new EngineStatusDot(this);
  position_->onLengthChange = [this] { arrange(); };
  setOnRecord({});
  applySizeClass();
  showState();
}

TransportButton* TransportBar::addButton(const QString& name, const QString& symbol, const QString& label,
                                         std::function<void()> action) {
  auto* const button = new TransportButton(symbol, label, Theme::text, std::move(action), this);
  button->setObjectName(name);
  return button;
}

void TransportBar::setCompact(bool isCompact) {
  const SizeClass sizeClass = isCompact ? SizeClass::compact : SizeClass::regular;
  if (std::exchange(sizeClass_, sizeClass) != sizeClass) applySizeClass();
}

void TransportBar::setOnRecord(std::function<void()> onRecord) {
  onRecord_ = std::move(onRecord);
  record_->setEnabled(static_cast<bool>(onRecord_));
}

void TransportBar::applySizeClass() {
  play_->setSizeClass(sizeClass_);
  position_->setSizeClass(sizeClass_);
  tempo_->setSizeClass(sizeClass_);
  engine_->setShowsLabel(sizeClass_ == SizeClass::regular);
  arrange();
}

TransportWidths TransportBar::widths() const {
  return {.position = position_->numberWidth(),
          .tempo = tempo_->numberWidth(),
          .engine = engine_->contentWidth()};
}

int TransportBar::heightForWidth(int width) const {
  return TransportLayout::fit(width, sizeClass_, widths()).height;
}

QSize TransportBar::sizeHint() const {
  const int width = TransportLayout::oneRowWidth(sizeClass_, widths());
  return {width, heightForWidth(width)};
}

QSize TransportBar::minimumSizeHint() const {
  return {TransportLayout::twoLinesWidth(sizeClass_, widths()), TransportMeasures::of(sizeClass_).height};
}

void TransportBar::arrange() {
  layout_ = TransportLayout::fit(width(), sizeClass_, widths());
  constexpr int margin = EngineStatusDot::margin;
  const std::pair<QWidget*, QRect> places[] = {
      {returnToStart_, layout_.returnToStart},
      {stop_, layout_.stop},
      {play_, layout_.play},
      {record_, layout_.record},
      {position_, layout_.position},
      {tempo_, layout_.tempo},
      {mode_, layout_.mode},
      {engine_, layout_.engine.adjusted(-margin, 0, margin, 0)},
  };
  for (const auto& [widget, place] : places) widget->setGeometry(place);
  updateGeometry();
  update();
}

void TransportBar::resizeEvent(QResizeEvent*) { arrange(); }

void TransportBar::showState() {
  play_->setPlaying(model_.isPlaying());
  engine_->setRunning(model_.isEngineRunning());
  showRecording();
}

void TransportBar::showRecording() {
  const bool isRecording = model_.isRecording();
  record_->setSymbol(isRecording ? "stop.circle.fill" : "record.circle");
  record_->setLabel(isRecording ? "Stop recording" : "Record microphone");
}

void TransportBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Theme::surface);
  for (const QRect& divider : layout_.dividers) painter.fillRect(divider, Theme::line);
  play_->paintLight(painter);
}

}  // namespace velmora
