#include "Velmora/Studio/Shell/AudioProgressCard.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QPainter>
#include <algorithm>
#include <utility>

#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Spoken.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int cardHeight = 60;

/// Opening a project decodes its audio.
bool isLoadingAudio(const AppModel& model) {
  return model.isProjectBusy() && model.audioSamples().size() < model.song().audioAssets.size();
}

}  // namespace

AudioProgressCard::AudioProgressCard(AppModel& model, const AudioFileActions& actions, QWidget& parent)
    : QWidget(&parent),
      model_(model),
      actions_(actions),
      message_({}, Theme::Text::control),
      cancel_("Cancel"),
      workListener_([this] { refresh(); }, model.exportTask, model.isAudioBusy, model.isProjectBusy,
                    model.song, model.audioSamples, actions.isSaving()),
      progressListener_([this] { bar_.setValue(static_cast<int>(100 * model_.exportProgress())); },
                        model.exportProgress) {
  setObjectName("audioProgress");
  Spoken::attach(*this, {.role = QAccessible::AlertMessage});
  patience_.setSingleShot(true);
  patience_.setInterval(patience);
  patience_.callOnTimeout(this, [this] { showWork(); });
  connect(&cancel_, &QAbstractButton::clicked, this, [this] {
    if (const auto task = model_.exportTask()) task->cancel();
  });
  arrange();
  hide();
  refresh();
}

void AudioProgressCard::arrange() {
  message_.setWordWrap(false);
  bar_.setObjectName("audioProgress.bar");
  bar_.setTextVisible(false);
  bar_.setFixedHeight(6);
  cancel_.setObjectName("audioProgress.cancel");
  auto* words = new QVBoxLayout;
  words->setSpacing(8);
  words->addStretch(1);
  words->addWidget(&message_);
  words->addWidget(&bar_);
  words->addStretch(1);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(16, 0, 16, 0);
  row->setSpacing(8);
  row->addLayout(words, 1);
  row->addWidget(&cancel_);
}

AudioProgressCard::Work AudioProgressCard::currentWork() const {
  if (model_.exportTask()) return Work::exporting;
  const bool isBusy = model_.isAudioBusy() || isLoadingAudio(model_) || actions_.isSaving()();
  return isBusy ? Work::preparing : Work::none;
}

void AudioProgressCard::refresh() {
  const Work work = currentWork();
  if (std::exchange(work_, work) == work) return;
  patience_.stop();
  if (work == Work::preparing && !isVisible()) return patience_.start();
  showWork();
}

void AudioProgressCard::showWork() {
  const bool isExporting = work_ == Work::exporting;
  setVisible(work_ != Work::none);
  if (work_ == Work::none) return;
  message_.setText(isExporting ? "Exporting WAV…" : "Preparing audio…");
  setAccessibleName(message_.text());
  bar_.setAccessibleName(message_.text());
  bar_.setRange(0, isExporting ? 100 : 0);
  bar_.setValue(static_cast<int>(100 * model_.exportProgress()));
  cancel_.setVisible(isExporting);
  raise();
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void AudioProgressCard::place(const QRect& area) {
  const int width = std::min(area.width() - 2 * margin, maximumWidth);
  setGeometry(area.center().x() - width / 2, area.bottom() + 1 - margin - cardHeight, width, cardHeight);
}

void AudioProgressCard::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintPanel(painter, rect(), 10, Theme::raised, Theme::line);
}

}  // namespace velmora
