#pragma once

#include <QScrollArea>
#include <memory>
#include <vector>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Studio/AudioEditor/AudioControls.h"
#include "Velmora/Studio/AudioEditor/AudioWaveformView.h"
#include "Velmora/Studio/AudioEditor/ClipRow.h"
#include "Velmora/Studio/AudioEditor/TakeCard.h"
#include "Velmora/Theme/Placeholder.h"

namespace velmora {

/// The editor of an audio track: record and import, the waveform of one of its clips, the take that waits to
/// be saved. A file that is dropped on it goes into the track.
class AudioEditorView final : public QScrollArea {
 public:
  /// The model must outlive it. Shows no clips once the track is gone.
  AudioEditorView(AppModel& model, const UUID& trackID, QWidget* parent = nullptr);

  bool confirmsDiscard() const { return card_.confirmsDiscard(); }
  const AudioWaveformView& waveform() const { return waveform_; }

  /// In a pane of this height.
  static int waveformHeight(int paneHeight);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  /// What a clip plays, as far as it is there.
  struct Source {
    const AudioAsset* asset = nullptr;
    std::shared_ptr<const AudioSample> sample;
  };

  void layOut();
  void refresh();
  const Clip* shownClip(const std::vector<Clip>& clips) const;
  Source sourceOf(const Clip& clip) const;
  void showClip(const Clip& clip);

  AppModel& model_;
  const UUID trackID_;
  TakeCard card_;
  AudioControls controls_;
  AudioWaveformView waveform_;
  TextLabel title_;
  TextLabel length_;
  ClipRow clips_;
  Placeholder empty_;
  QWidget* const dropFrame_;
  ChangeListener listener_;
};

}  // namespace velmora
