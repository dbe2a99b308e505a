#include "Velmora/Studio/Arrangement/ClipKeys.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

#include "Velmora/Studio/Arrangement/ArrangementGeometry.h"

namespace velmora {

namespace {

constexpr auto shift = Qt::KeyboardModifiers(Qt::ShiftModifier);
constexpr auto shiftAlt = Qt::ShiftModifier | Qt::AltModifier;

/// The lane's clips from left to right.
std::vector<const ClipBox*> byStart(const Lane& lane) {
  std::vector<const ClipBox*> clips;
  for (const ClipBox& clip : lane.clips) clips.push_back(&clip);
  std::ranges::stable_sort(clips, {}, &ClipBox::startBeat);
  return clips;
}

const ClipBox* nearest(const Lane& lane, double beat) {
  const auto distance = [beat](const ClipBox& clip) { return std::abs(clip.startBeat - beat); };
  const auto found = std::ranges::min_element(lane.clips, {}, distance);
  return found == lane.clips.end() ? nullptr : &*found;
}

}  // namespace

struct ClipKeys::Row {
  int key;
  Qt::KeyboardModifiers modifiers;
  void (ClipKeys::*command)(int step);
  int step;
};

const ClipKeys::Row ClipKeys::rows[] = {
    {Qt::Key_Left, {}, &ClipKeys::goToClip, -1},         {Qt::Key_Right, {}, &ClipKeys::goToClip, 1},
    {Qt::Key_Home, {}, &ClipKeys::goToEnd, -1},          {Qt::Key_End, {}, &ClipKeys::goToEnd, 1},
    {Qt::Key_Up, {}, &ClipKeys::goToTrack, -1},          {Qt::Key_Down, {}, &ClipKeys::goToTrack, 1},
    {Qt::Key_PageUp, {}, &ClipKeys::scrollPage, -1},     {Qt::Key_PageDown, {}, &ClipKeys::scrollPage, 1},
    {Qt::Key_Left, shift, &ClipKeys::moveClip, -1},      {Qt::Key_Right, shift, &ClipKeys::moveClip, 1},
    {Qt::Key_Up, shift, &ClipKeys::moveToTrack, -1},     {Qt::Key_Down, shift, &ClipKeys::moveToTrack, 1},
    {Qt::Key_Left, shiftAlt, &ClipKeys::resizeClip, -1}, {Qt::Key_Right, shiftAlt, &ClipKeys::resizeClip, 1},
    {Qt::Key_Delete, {}, &ClipKeys::deleteClip, 0},      {Qt::Key_Backspace, {}, &ClipKeys::deleteClip, 0},
};

bool ClipKeys::press(const QKeyEvent& event) {
  const auto modifiers = event.modifiers() & ~Qt::KeypadModifier;
  const auto* row = std::ranges::find_if(
      rows, [&](const Row& each) { return each.key == event.key() && each.modifiers == modifiers; });
  if (row == std::end(rows)) return false;
  (this->*row->command)(row->step);
  return true;
}

const Clip* ClipKeys::clip() const {
  return model_.selectedClipID() ? model_.song().clip(*model_.selectedClipID()) : nullptr;
}

std::optional<int> ClipKeys::selectedRow() const {
  return model_.selectedTrackID() ? state_.lanes().rowOf(*model_.selectedTrackID()) : std::nullopt;
}

void ClipKeys::goToClip(int step) {
  const auto row = selectedRow();
  if (!row) return;
  const auto clips = byStart(state_.lanes().lane(*row));
  const auto current = std::ranges::find_if(
      clips, [this](const ClipBox* each) { return each->id == model_.selectedClipID(); });
  if (current == clips.end()) return goToEnd(-step);
  const auto next = current - clips.begin() + step;
  if (next >= 0 && next < std::ssize(clips)) select(clips[static_cast<std::size_t>(next)]);
}

void ClipKeys::goToEnd(int step) {
  const auto row = selectedRow();
  if (!row) return;
  const auto clips = byStart(state_.lanes().lane(*row));
  if (!clips.empty()) select(step < 0 ? clips.front() : clips.back());
}

void ClipKeys::goToTrack(int step) {
  const LaneData& lanes = state_.lanes();
  if (lanes.trackCount() == 0) return;
  const auto current = selectedRow();
  const int row = std::clamp(current ? *current + step : 0, 0, lanes.trackCount() - 1);
  if (row == current) return;
  const Clip* from = clip();
  const ClipBox* next = from ? nearest(lanes.lane(row), from->startBeat) : nullptr;
  model_.selectTrack(lanes.lane(row).id);
  if (next) return select(next);
  const double top = ArrangementGeometry::laneHeight * row;
  state_.changeViewport([&](TimelineViewport& viewport) {
    viewport.reveal({viewport.scrollOffset.x(), top, 1, ArrangementGeometry::laneHeight});
  });
}

void ClipKeys::moveClip(int step) {
  if (const Clip* moved = clip()) change({.startBeat = moved->startBeat + step});
}

void ClipKeys::resizeClip(int step) {
  if (const Clip* resized = clip()) change({.lengthBeats = resized->lengthBeats + step});
}

/// To the next track of the same family, over all others.
void ClipKeys::moveToTrack(int step) {
  const Clip* moved = clip();
  const Track* own = moved ? model_.song().track(moved->trackID) : nullptr;
  if (!own) return;
  const auto& tracks = model_.song().tracks.items();
  for (auto row = own - tracks.data() + step; row >= 0 && row < std::ssize(tracks); row += step) {
    const Track& other = tracks[static_cast<std::size_t>(row)];
    if (other.kind.family() == own->kind.family()) return change({.trackID = other.id});
  }
}

void ClipKeys::scrollPage(int step) {
  state_.changeViewport([&](TimelineViewport& viewport) {
    viewport.scrollBy({0, step * std::max(viewport.viewportSize.height(), ArrangementGeometry::laneHeight)});
  });
}

void ClipKeys::deleteClip(int) { model_.deleteSelectedClip(); }

void ClipKeys::select(const ClipBox* clip) {
  model_.selectClip(clip->id);
  revealSelection();
}

void ClipKeys::change(const ClipEdit& edit) {
  model_.changeClip(clip()->id, edit);
  state_.refresh();
  revealSelection();
}

void ClipKeys::revealSelection() {
  const auto place = model_.selectedClipID() ? state_.lanes().find(*model_.selectedClipID()) : std::nullopt;
  if (!place) return;
  const ClipBox& clip = state_.lanes().clip(*place);
  state_.changeViewport([&](TimelineViewport& viewport) {
    const QRectF frame = ArrangementGeometry::clipFrame(clip.startBeat, clip.lengthBeats, place->row,
                                                        viewport.pointsPerBeat());
    viewport.reveal(frame.adjusted(-1.5, -ArrangementGeometry::clipTop, 1.5, ArrangementGeometry::clipTop));
  });
}

}  // namespace velmora
