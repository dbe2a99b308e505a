#pragma once

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QWidget>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Studio/Shell/WindowActions.h"
#include "Velmora/Studio/Shell/WorkspacePicker.h"
#include "Velmora/Theme/IconButton.h"
#include "Velmora/Theme/TallButton.h"

namespace velmora {

/// The row over the workspace: projects, the name, what else fits, and the menu of actions.
class ProjectHeaderView : public QWidget {
 public:
  static constexpr int headerHeight = 48;

  /// The actions are the window's and outlive the header.
  ProjectHeaderView(AppModel& model, const WindowActions& actions, QWidget* parent = nullptr);

  void setShowsWorkspacePicker(bool showsWorkspacePicker);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  enum class Form { full, compact };

  void arrange();
  void fillMenu();
  void refresh();
  Form fittingForm() const;
  void showForm();
  void openRenameSheet();
  void openMenu();
  void changeWorkspace();

  AppModel& model_;
  const WindowActions& actions_;
  bool showsWorkspacePicker_ = false;

  TallButton projects_;
  TallButton name_;
  WorkspacePicker picker_;
  QLabel status_;
  IconButton menuButton_;
  QMenu menu_;
  TallButton workspace_;
  ChangeListener listener_;
};

}  // namespace velmora
