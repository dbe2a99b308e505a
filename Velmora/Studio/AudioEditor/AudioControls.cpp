#include "Velmora/Studio/AudioEditor/AudioControls.h"

#include <QHBoxLayout>
#include <cstdint>

namespace velmora {

namespace {

constexpr int gap = 8;
constexpr int clockMilliseconds = 200;  // well below the second that is shown

constexpr CommandButton::Look raised{.fill = CommandButton::Fill::raised};

}  // namespace

AudioControls::AudioControls(AppModel& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      import_("Import Audio", "square.and.arrow.down", raised),
      record_("Record", "mic.fill", raised),
      time_({}, Theme::Text::body, Theme::record),
      listener_([this] { refresh(); }, model.isRecording) {
  import_.setObjectName("audio.import");
  record_.setObjectName("audio.record");
  time_.setObjectName("audio.recordingTime");
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(gap);
  row->addWidget(&import_);
  row->addWidget(&record_);
  row->addSpacing(gap);
  row->addWidget(&time_, 1);
  connect(&import_, &QAbstractButton::clicked, this, [this] { model_.showsAudioImport.set(true); });
  connect(&record_, &QAbstractButton::clicked, this, [this] { toggleRecording(); });
  connect(&clock_, &QTimer::timeout, this, [this] { showTime(); });
  clock_.setInterval(clockMilliseconds);
  refresh();
}

void AudioControls::toggleRecording() {
  if (model_.isRecording()) {
    model_.stopRecording(true);
  } else {
    model_.startRecording();
  }
}

void AudioControls::refresh() {
  if (model_.isRecording()) {
    record_.setContent("Stop Recording", "stop.circle.fill");
    clock_.start();
  } else {
    record_.setContent("Record", "mic.fill");
    clock_.stop();
  }
  showTime();
}

void AudioControls::showTime() {
  const auto seconds = static_cast<std::int64_t>(model_.recorder().currentTime());
  time_.setText(model_.isRecording() ? QStringLiteral("Recording · %1 sec").arg(seconds) : QString());
}

}  // namespace velmora
