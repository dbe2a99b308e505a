#pragma once

#include <QStyledItemDelegate>

#include "Velmora/Model/AppModel.h"

namespace velmora {

/// What a row of the library holds under Qt's roles.
struct ProjectRow {
  static constexpr int detailsRole = Qt::UserRole;
  static constexpr int isOpenRole = Qt::UserRole + 1;

  /// The line under the name: tracks and the date of the last change, in the user's locale.
  static QString details(const ProjectSummary& summary);
};

/// Paints a row; under the pointer, or current with the keyboard, it offers its deletion.
class ProjectRowDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  static constexpr int rowHeight = 60;
  /// Where the row's trash can lies. The open project has none, as it can't be deleted.
  static QRect trashRect(const QRect& row);
  static bool canDelete(const QModelIndex& index) { return !index.data(ProjectRow::isOpenRole).toBool(); }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace velmora
