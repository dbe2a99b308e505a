#include "Velmora/Studio/Shell/WorkspaceView.h"

#include <QPainter>
#include <utility>

#include "Velmora/Studio/Shell/WorkspaceLayout.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

void placeWidget(QWidget& widget, const QRect& rect) {
  if (!rect.isEmpty()) widget.setGeometry(rect);
  widget.setVisible(!rect.isEmpty());
}

}  // namespace

WorkspaceView::WorkspaceView(AppModel& model, WorkspaceViews views, EditorFraction& editorFraction,
                             QWidget* parent)
    : QWidget(parent),
      model_(model),
      editorFraction_(editorFraction),
      arrangement_{std::move(views.arrangement)},
      editor_{std::move(views.patternEditor)},
      mixer_{std::move(views.mixer)},
      picker_(model, this),
      handle_(adjustment(), this),
      listener_([this] { place(); }, model.workspace, model.editorVisible) {
  setObjectName("workspace");
  picker_.setObjectName("workspace.picker");
  listener_.hear(editorFraction.value());
  handle_.onDrag = [this](double translation) { drag(translation); };
  handle_.onDragEnd = [this](double translation) { endDrag(translation); };
}

Spoken::Adjustment WorkspaceView::adjustment() {
  return {.value = [this] { return editorFraction_(); },
          .set = [this](double wanted) { adjust(wanted); },
          .minimum = WorkspaceLayout::lowestAdjusted,
          .maximum = WorkspaceLayout::highestAdjusted,
          .step = WorkspaceLayout::adjustmentStep};
}

void WorkspaceView::adjust(double wanted) {
  editorFraction_.store(WorkspaceLayout::adjustedFraction(wanted));
  Spoken::tellValue(handle_);
}

void WorkspaceView::setShowsWorkspacePicker(bool showsWorkspacePicker) {
  showsWorkspacePicker_ = showsWorkspacePicker;
  place();
}

WorkspaceLayout WorkspaceView::currentLayout() const {
  return WorkspaceLayout({.size = size(),
                          .workspace = model_.workspace(),
                          .editorVisible = model_.editorVisible(),
                          .showsWorkspacePicker = showsWorkspacePicker_,
                          .editorFraction = editorFraction_(),
                          .resizeOffset = resizeOffset_});
}

void WorkspaceView::place() {
  const WorkspaceLayout layout = currentLayout();
  placePane(arrangement_, layout.arrangement);
  placePane(editor_, layout.editor);
  placePane(mixer_, layout.mixer);
  placeWidget(handle_, layout.handle);
  const QMargins padding(8, 8, 8, 8);
  placeWidget(picker_, layout.picker.isEmpty() ? QRect() : layout.picker.marginsRemoved(padding));
}

void WorkspaceView::placePane(Pane& pane, const QRect& rect) {
  if (!rect.isEmpty() && !pane.view && pane.make) {
    pane.view = pane.make(this);
    pane.view->lower();
  }
  if (pane.view) placeWidget(*pane.view, rect);
}

void WorkspaceView::drag(double translation) {
  resizeOffset_ = translation;
  place();
}

void WorkspaceView::endDrag(double translation) {
  resizeOffset_ = 0;
  editorFraction_.store(WorkspaceLayout::draggedFraction(height(), editorFraction_(), translation));
  place();
}

void WorkspaceView::resizeEvent(QResizeEvent*) { place(); }

void WorkspaceView::paintEvent(QPaintEvent*) { QPainter(this).fillRect(rect(), Theme::background); }

}  // namespace velmora
