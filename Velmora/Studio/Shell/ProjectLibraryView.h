#pragma once

#include <QPointer>
#include <QStackedWidget>
#include <optional>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Studio/Shell/ProjectList.h"
#include "Velmora/Theme/Sheet.h"

namespace velmora {

/// The project library: open, create and delete projects. Closing it clears the model's `showsProjects`.
class ProjectLibraryView : public Sheet {
 public:
  ProjectLibraryView(AppModel& model, QWidget* parent);

 private:
  void refresh();
  void create();
  void confirmDelete(const ProjectSummary& summary);

  AppModel& model_;
  std::optional<ProjectSummary> pendingDelete_;
  QStackedWidget pages_;
  ProjectList list_;
  ChangeListener listener_;
};

}  // namespace velmora
