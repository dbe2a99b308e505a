#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Studio/Shell/AudioProgressCard.h"
#include "Velmora/Studio/Shell/ErrorBanner.h"
#include "Velmora/Studio/Shell/ProjectHeaderView.h"
#include "Velmora/Studio/Shell/ProjectLibraryView.h"
#include "Velmora/Studio/Shell/WorkspaceTabs.h"
#include "Velmora/Studio/Shell/WorkspaceView.h"
#include "Velmora/Studio/TransportBar/TransportBar.h"

namespace velmora {

/// The content of a window: header, workspace, transport bar and, in narrow windows, tabs; the error banner
/// and the progress of audio work over them and the project library as a sheet.
class RootView : public QWidget {
 public:
  /// Everything given outlives the view.
  RootView(AppModel& model, const WorkspaceViews& views, EditorFraction& editorFraction,
           const WindowActions& actions, const AudioFileActions& audioFileActions, QWidget* parent = nullptr);

  /// Has something over the workspace told its place, now and after every change.
  void setNotice(std::function<void(const QRect& workspace)> place);

  std::function<void()> onAppear;   ///< once, when the content is on the screen
  std::function<bool()> isInFront;  ///< whether sheets of the whole application are this window's to show

 protected:
  bool focusNextPrevChild(bool next) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void refreshBanner();
  void refreshLibrary();
  void notePhase();
  bool ownsActiveWindow() const;

  AppModel& model_;
  std::function<void(const QRect&)> placeNotice_ = [](const QRect&) {};
  bool hasAppeared_ = false;
  bool isActive_ = false;
  ProjectHeaderView header_;
  WorkspaceView workspace_;
  TransportBar transportBar_;
  WorkspaceTabs tabs_;
  AudioProgressCard audioProgress_;
  ErrorBanner banner_;
  QPointer<ProjectLibraryView> library_;
  ChangeListener errorListener_;
  ChangeListener libraryListener_;
};

}  // namespace velmora
