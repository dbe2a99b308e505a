#include "Velmora/Studio/Shell/ProjectList.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <algorithm>

#include "Velmora/Studio/Shell/ProjectRow.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

QStandardItem* makeItem(const ProjectSummary& summary, bool isOpen) {
  auto* item = new QStandardItem(QString::fromStdString(summary.name));
  const QString details = ProjectRow::details(summary);
  item->setData(details, ProjectRow::detailsRole);
  item->setData(isOpen, ProjectRow::isOpenRole);
  item->setData(item->text() + ", " + details + (isOpen ? ", open" : ""), Qt::AccessibleTextRole);
  item->setEditable(false);
  return item;
}

}  // namespace

ProjectList::ProjectList(AppModel& model, QWidget* parent)
    : QListView(parent), model_(model), listener_([this] { refresh(); }, model.projects, model.song) {
  setObjectName("library.list");
  setAccessibleName("Projects");
  setModel(&rows_);
  setItemDelegate(new ProjectRowDelegate(this));
  setFrameShape(QFrame::NoFrame);
  setMouseTracking(true);
  setUniformItemSizes(true);
  setVerticalScrollMode(ScrollPerPixel);
  viewport()->setAutoFillBackground(false);
  connect(this, &QListView::clicked, this, [this](const QModelIndex& index) { tell(onChoose, index); });
  refresh();
}

void ProjectList::refresh() {
  const int current = std::max(currentIndex().row(), 0);
  rows_.clear();
  for (const ProjectSummary& summary : model_.projects()) {
    rows_.appendRow(makeItem(summary, summary.id == model_.song().id));
  }
  setCurrentIndex(rows_.index(std::min(current, rows_.rowCount() - 1), 0));
}

void ProjectList::tell(const Listener& listener, const QModelIndex& index) const {
  const auto row = static_cast<std::size_t>(index.row());
  if (index.isValid() && listener && row < model_.projects().size()) listener(model_.projects()[row]);
}

void ProjectList::mouseReleaseEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->position().toPoint());
  const QRect trash = ProjectRowDelegate::trashRect(visualRect(index));
  const bool isOnTrash = index.isValid() && ProjectRowDelegate::canDelete(index) &&
                         event->button() == Qt::LeftButton && trash.contains(event->position().toPoint());
  if (isOnTrash) return tell(onDelete, index);
  QListView::mouseReleaseEvent(event);
}

void ProjectList::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return tell(onChoose, currentIndex());
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
      return tell(onDelete, currentIndex());
    default:
      QListView::keyPressEvent(event);
  }
}

void ProjectList::contextMenuEvent(QContextMenuEvent* event) {
  const bool isByMouse = event->reason() == QContextMenuEvent::Mouse;
  const QPersistentModelIndex index = isByMouse ? indexAt(event->pos()) : currentIndex();
  if (!index.isValid()) return;
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->setObjectName("library.menu");
  connect(menu->addAction(Theme::symbolIcon("trash"), "Delete"), &QAction::triggered, this,
          [this, index] { tell(onDelete, index); });
  menu->popup(isByMouse ? event->globalPos() : viewport()->mapToGlobal(visualRect(index).center()));
}

}  // namespace velmora
