#include "Velmora/Studio/Mixer/MixerView.h"

#include <QHBoxLayout>
#include <algorithm>

#include "Velmora/Studio/Mixer/ChannelStrip.h"
#include "Velmora/Studio/Mixer/MasterStrip.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr int padding = 16;
constexpr int spacing = 12;

}  // namespace

MixerView::MixerView(AppModel& model, QWidget* parent)
    : QScrollArea(parent),
      model_(model),
      listener_([this] { refresh(); }, model.song, model.selectedTrackID) {
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setFocusPolicy(Qt::NoFocus);
  setAccessibleName("Mixer");
  auto* content = new QWidget;
  content->setAutoFillBackground(true);
  QPalette palette = content->palette();
  palette.setColor(QPalette::Window, Theme::background);
  content->setPalette(palette);
  row_ = new QHBoxLayout(content);
  row_->setContentsMargins(padding, padding, padding, padding);
  row_->setSpacing(spacing);
  row_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  master_ = new MasterStrip(model);
  row_->addWidget(master_, 0, Qt::AlignTop);
  setWidget(content);
  refresh();
}

bool MixerView::showsTracks(const Song& song) const {
  return std::equal(
      strips_.begin(), strips_.end(), song.tracks.begin(), song.tracks.end(),
      [](const ChannelStrip* strip, const Track& track) { return strip->trackID() == track.id; });
}

void MixerView::makeStrips(const Song& song) {
  for (ChannelStrip* strip : strips_) strip->deleteLater();
  strips_.clear();
  for (const Track& track : song.tracks) {
    auto* strip = new ChannelStrip(model_, track);
    row_->insertWidget(static_cast<int>(strips_.size()), strip, 0, Qt::AlignTop);
    strips_.push_back(strip);
  }
}

void MixerView::refresh() {
  const Song& song = model_.song();
  if (!showsTracks(song)) makeStrips(song);
  const bool isAnySoloed =
      std::any_of(song.tracks.begin(), song.tracks.end(), [](const Track& track) { return track.isSoloed; });
  for (std::size_t n = 0; n < strips_.size(); ++n) {
    const Track& track = song.tracks[n];
    strips_[n]->show(track, isAnySoloed, track.id == model_.selectedTrackID());
  }
  master_->setVolume(song.masterVolume);
}

}  // namespace velmora
