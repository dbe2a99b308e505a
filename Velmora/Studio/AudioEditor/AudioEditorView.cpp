#include "Velmora/Studio/AudioEditor/AudioEditorView.h"

#include <QDropEvent>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>
#include <optional>
#include <utility>

#include "Velmora/Studio/Parts/FileDropEvents.h"
#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int inset = 16;
constexpr int topInset = 8;
constexpr int gap = 8;
constexpr int heightBesidesWaveform = 220;
constexpr int leastWaveformHeight = 100;
constexpr int mostWaveformHeight = 320;

/// The frame round the pane while a file is held over it.
class DropFrame final : public QWidget {
 public:
  explicit DropFrame(QWidget* parent) : QWidget(parent) {
    setObjectName("audio.dropFrame");
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    paintPanel(painter, QRectF(rect()).adjusted(4, 4, -4, -4), 8, Theme::withOpacity(Theme::accent, 0.06),
               Theme::accent);
  }
};

QString titleOf(const AudioAsset* asset) {
  const QString name = asset ? QString::fromStdString(asset->name.value_or("")) : QString();
  return name.isEmpty() ? QStringLiteral("Audio clip") : name;
}

QString lengthOf(const AudioAsset* asset) {
  if (!asset) return {};
  const double seconds = static_cast<double>(asset->frameCount) / asset->sampleRate;
  return QString::number(seconds, 'f', 1) + QStringLiteral(" seconds · Plays at original speed");
}

}  // namespace

AudioEditorView::AudioEditorView(AppModel& model, const UUID& trackID, QWidget* parent)
    : QScrollArea(parent),
      model_(model),
      trackID_(trackID),
      card_(model),
      controls_(model),
      title_({}, Theme::Text::title),
      length_({}, Theme::Text::caption, Theme::secondary),
      empty_({.symbol = "waveform",
              .title = "Add Some Audio",
              .text = "Record a take or import an audio file. Your clip appears at the playhead."}),
      dropFrame_(new DropFrame(this)),
      listener_([this] { refresh(); }, model.song, model.audioSamples, model.selectedClipID,
                model.pendingTake) {
  setObjectName("audio");
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  setWidgetResizable(true);
  setAcceptDrops(true);
  viewport()->setBackgroundRole(QPalette::Window);
  title_.setObjectName("audio.title");
  title_.setWordWrap(true);
  length_.setObjectName("audio.length");
  clips_.onSelect = [this](const UUID& clipID) { model_.selectClip(clipID); };
  layOut();
  refresh();
}

void AudioEditorView::layOut() {
  auto* const content = new QWidget;
  auto* const column = new QVBoxLayout(content);
  column->setContentsMargins(inset, topInset, inset, topInset);
  column->setSpacing(gap);
  column->addWidget(&card_);
  column->addWidget(&controls_);
  column->addWidget(&waveform_);
  auto* const words = new QVBoxLayout;
  words->setSpacing(0);
  words->addWidget(&title_);
  words->addWidget(&length_);
  column->addLayout(words);
  column->addWidget(&clips_);
  column->addWidget(&empty_, 1);
  column->addStretch();
  setWidget(content);
  content->setAutoFillBackground(false);
}

// What is shown

void AudioEditorView::refresh() {
  const std::vector<Clip> clips = model_.song().clipsForTrack(trackID_);
  const Clip* const shown = shownClip(clips);
  card_.refresh();
  empty_.setVisible(!shown);
  waveform_.setVisible(shown);
  for (QWidget* const part : std::initializer_list<QWidget*>{&title_, &length_, &clips_})
    part->setVisible(shown);
  clips_.show(clips, shown ? std::optional(shown->id) : std::nullopt);
  if (shown) showClip(*shown);
}

const Clip* AudioEditorView::shownClip(const std::vector<Clip>& clips) const {
  if (clips.empty()) return nullptr;
  const auto selected =
      std::ranges::find_if(clips, [&](const Clip& clip) { return clip.id == model_.selectedClipID(); });
  return selected != clips.end() ? &*selected : &clips.front();
}

AudioEditorView::Source AudioEditorView::sourceOf(const Clip& clip) const {
  if (!clip.source.isAudio()) return {};
  const auto sample = model_.audioSamples().find(clip.source.id);
  return {model_.song().audioAsset(clip.source.id),
          sample != model_.audioSamples().end() ? sample->second : nullptr};
}

void AudioEditorView::showClip(const Clip& clip) {
  const auto [asset, sample] = sourceOf(clip);
  const Track* const track = model_.song().track(trackID_);
  waveform_.show(sample, Theme::color(track ? track->color : TrackColor::blue));
  waveform_.setVisible(sample != nullptr);
  title_.setText(titleOf(asset));
  length_.setText(lengthOf(asset));
}

int AudioEditorView::waveformHeight(int paneHeight) {
  return std::clamp(paneHeight - heightBesidesWaveform, leastWaveformHeight, mostWaveformHeight);
}

void AudioEditorView::resizeEvent(QResizeEvent* event) {
  waveform_.setFixedHeight(waveformHeight(height()));
  dropFrame_->setGeometry(rect());
  QScrollArea::resizeEvent(event);
}

// Files

void AudioEditorView::dragEnterEvent(QDragEnterEvent* event) {
  if (!importableFile(model_, *event)) return event->ignore();
  acceptAsCopy(*event);
  dropFrame_->show();
  dropFrame_->raise();
}

void AudioEditorView::dragMoveEvent(QDragMoveEvent* event) { acceptAsCopy(*event); }

void AudioEditorView::dragLeaveEvent(QDragLeaveEvent*) { dropFrame_->hide(); }

/// There are no beats here to drop on: the clip starts at the playhead.
void AudioEditorView::dropEvent(QDropEvent* event) {
  dropFrame_->hide();
  auto file = importableFile(model_, *event);
  if (!file) return event->ignore();
  acceptAsCopy(*event);
  AppModel::ImportTarget target{.trackID = trackID_, .beat = {}, .name = {}};
  model_.importAudio(std::move(*file), std::move(target));
}

}  // namespace velmora
