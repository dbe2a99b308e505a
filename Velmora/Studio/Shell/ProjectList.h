#pragma once

#include <QListView>
#include <QStandardItemModel>
#include <functional>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"

namespace velmora {

/// The rows of the library: name, number of tracks, date, and a mark on the open project. A row is chosen
/// with a click or Return and deleted with its menu, its button or the Delete key.
class ProjectList : public QListView {
 public:
  explicit ProjectList(AppModel& model, QWidget* parent = nullptr);

  using Listener = std::function<void(const ProjectSummary&)>;
  Listener onChoose;
  Listener onDelete;

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void refresh();
  void tell(const Listener& listener, const QModelIndex& index) const;

  AppModel& model_;
  QStandardItemModel rows_;
  ChangeListener listener_;
};

}  // namespace velmora
