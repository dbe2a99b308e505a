#pragma once

#include <functional>
#include <optional>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Studio/Arrangement/ClipDrag.h"
#include "Velmora/Studio/Arrangement/LaneDataMaker.h"
#include "Velmora/Studio/Arrangement/TimelineViewport.h"

namespace velmora {

/// What an arrangement knows beyond the document, and what it shows of the document because of it.
///
/// Changes tell `onChange`; the document's own changes come in through `refresh`.
class ArrangementState {
 public:
  explicit ArrangementState(AppModel& model);

  std::function<void()> onChange;

  bool editsClips = true;  ///< off: a drag scrolls

  const TimelineViewport& viewport() const { return viewport_; }
  template <class Change>
  void changeViewport(const Change& change) {
    const double before = viewport_.pointsPerBeat();
    change(viewport_);
    keepDragInPlace(viewport_.pointsPerBeat() / before);
    changed();
  }

  /// The document's lanes, up to date; valid until the next call.
  const LaneData& lanes() { return maker_.make(model_.song()); }

  // What is to be drawn: the document or, in a drag, what it is about to become.
  const Song& shownSong() const { return preview_ ? *preview_ : model_.song(); }
  const LaneData& shownLanes() { return preview_ ? previewMaker_.make(*preview_) : lanes(); }

  bool isDragging() const { return drag_.has_value(); }
  void beginDrag(const QPointF& content);
  void dragTo(const QPointF& content);
  void endDrag();
  /// What the drag would do to the document now.
  std::optional<ClipChange> dragChange();

  /// Takes a changed document over.
  void refresh();

 private:
  void keepDragInPlace(double stretch);
  void updatePreview();
  void changed();

  AppModel& model_;
  TimelineViewport viewport_;
  std::optional<ClipDrag> drag_;
  LaneDataMaker maker_;
  std::optional<Song> preview_;
  LaneDataMaker previewMaker_;
};

}  // namespace velmora
