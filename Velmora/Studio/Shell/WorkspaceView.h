#pragma once

#include <QWidget>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Studio/Shell/EditorFraction.h"
#include "Velmora/Studio/Shell/ResizeHandle.h"
#include "Velmora/Studio/Shell/ShellServices.h"
#include "Velmora/Studio/Shell/WorkspacePicker.h"

namespace velmora {

struct WorkspaceLayout;

/// The workspace in front: arrangement and editor one over the other where there is room, else one of them,
/// or the mixer. A view is made when it is first shown.
class WorkspaceView : public QWidget {
 public:
  /// The views are of this window alone; model and fraction outlive it.
  WorkspaceView(AppModel& model, WorkspaceViews views, EditorFraction& editorFraction,
                QWidget* parent = nullptr);

  void setShowsWorkspacePicker(bool showsWorkspacePicker);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  /// A view that may not exist yet, and how it is made.
  struct Pane {
    WorkspaceViews::Make make;
    QWidget* view = nullptr;
  };

  WorkspaceLayout currentLayout() const;
  void place();
  void placePane(Pane& pane, const QRect& rect);
  Spoken::Adjustment adjustment();
  void adjust(double wanted);
  void drag(double translation);
  void endDrag(double translation);

  AppModel& model_;
  EditorFraction& editorFraction_;
  bool showsWorkspacePicker_ = false;
  double resizeOffset_ = 0;

  Pane arrangement_;
  Pane editor_;
  Pane mixer_;
  WorkspacePicker picker_;
  ResizeHandle handle_;
  ChangeListener listener_;
};

}  // namespace velmora
