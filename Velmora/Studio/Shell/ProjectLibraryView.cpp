#include "Velmora/Studio/Shell/ProjectLibraryView.h"

#include <utility>

#include "Velmora/Theme/ConfirmationSheet.h"
#include "Velmora/Theme/Placeholder.h"

namespace velmora {

namespace {

QCoro::Task<> createAndDismiss(QPointer<AppModel> model) {
  auto creating = model->createProject();
  co_await creating;
  if (model) model->showsProjects.set(false);
}

QWidget* makeEmptyState() { return new Placeholder({"folder", "No Projects", "Create your first beat."}); }

}  // namespace

ProjectLibraryView::ProjectLibraryView(AppModel& model, QWidget* parent)
    : Sheet("Projects", parent),
      model_(model),
      list_(model),
      listener_([this] { refresh(); }, model.projects, model.isProjectBusy) {
  setObjectName("library");
  setMinimumSize(340, 400);
  resize(560, 480);
  content().setContentsMargins(12, 8, 12, 12);
  content().addWidget(&pages_);
  pages_.addWidget(&list_);
  pages_.addWidget(makeEmptyState());
  TallButton& newProject = addToolbarButton(new TallButton("New Project", "plus"), "library.newProject");
  TallButton& done =
      addToolbarButton(new TallButton("Done", {}, {.fill = TallButton::Fill::raised}), "library.done");
  connect(&newProject, &QAbstractButton::clicked, this, [this] { create(); });
  connect(&done, &QAbstractButton::clicked, this, &QDialog::accept);
  connect(this, &QDialog::finished, this, [this] { model_.showsProjects.set(false); });
  list_.onChoose = [this](const ProjectSummary& summary) { model_.openProject(summary.id); };
  list_.onDelete = [this](const ProjectSummary& summary) { confirmDelete(summary); };
  refresh();
  list_.setFocus();
  model_.refreshProjects();
}

void ProjectLibraryView::refresh() {
  setCursor(model_.isProjectBusy() ? Qt::BusyCursor : Qt::ArrowCursor);
  pages_.setCurrentIndex(model_.projects().empty() ? 1 : 0);
}

void ProjectLibraryView::create() {
  QPointer<AppModel> model(&model_);
  createAndDismiss(std::move(model));
}

void ProjectLibraryView::confirmDelete(const ProjectSummary& summary) {
  pendingDelete_ = summary;
  auto* sheet =
      new ConfirmationSheet({.title = "Delete Project?",
                             .message = "This removes the project and its recordings from this device.",
                             .destructive = "Delete"},
                            this);
  connect(sheet, &QDialog::finished, this, [this](int answer) {
    const auto pending = std::exchange(pendingDelete_, {});
    if (answer == QDialog::Accepted && pending) model_.deleteProject(pending->id);
  });
  sheet->open();
}

}  // namespace velmora
