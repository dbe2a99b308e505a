#include "Velmora/Studio/Shell/ProjectRow.h"

#include <QDateTime>
#include <QLocale>
#include <QPainter>

#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

QString dateText(platform::FileTime moment) {
  if (moment == ProjectSummary::distantPast) return "Unknown date";
  const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(moment.time_since_epoch()).count();
  const QDateTime local = QDateTime::fromMSecsSinceEpoch(milliseconds);
  const QLocale locale;
  QString hoursAndMinutes = locale.timeFormat(QLocale::ShortFormat);
  hoursAndMinutes.remove(":ss");  // of the locale that has no language
  return locale.toString(local.date(), "d MMM yyyy") + ", " + locale.toString(local.time(), hoursAndMinutes);
}

void paintTexts(QPainter& painter, const QRect& place, const QModelIndex& index) {
  const auto line = [&](const QRect& rect, Theme::Text font, const QColor& color, int role) {
    painter.setFont(Theme::font(font));
    painter.setPen(color);
    const QString text = index.data(role).toString();
    painter.drawText(rect, Qt::AlignVCenter,
                     painter.fontMetrics().elidedText(text, Qt::ElideRight, rect.width()));
  };
  line({place.left(), place.top() + 10, place.width(), 22}, Theme::Text::body, Theme::text, Qt::DisplayRole);
  line({place.left(), place.top() + 32, place.width(), 18}, Theme::Text::caption, Theme::secondary,
       ProjectRow::detailsRole);
}

}  // namespace

QString ProjectRow::details(const ProjectSummary& summary) {
  return QString::number(summary.trackCount) + " tracks · " + dateText(summary.modified);
}

QRect ProjectRowDelegate::trashRect(const QRect& row) {
  return {row.right() - 51, row.center().y() - 21, 44, 44};
}

void ProjectRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const {
  painter->save();
  const bool isUnderPointer = option.state.testFlag(QStyle::State_MouseOver);
  const bool isCurrent = option.state.testFlag(QStyle::State_HasFocus) &&
                         option.state.testFlag(QStyle::State_KeyboardFocusChange);
  const QRectF panel = QRectF(option.rect).adjusted(0, 2, 0, -2);
  if (isUnderPointer || isCurrent) paintPanel(*painter, panel, 8, Theme::raised);
  if (isCurrent) paintFocusRing(*painter, panel, 8);
  const QRect trash = trashRect(option.rect);
  paintTexts(*painter, QRect(option.rect.topLeft() + QPoint(12, 0), trash.bottomLeft()), index);
  if (index.data(ProjectRow::isOpenRole).toBool()) {
    Theme::drawSymbol(*painter, trash, "checkmark.circle.fill", Theme::accent, 16);
  } else if (isUnderPointer || isCurrent) {
    Theme::drawSymbol(*painter, trash, "trash", Theme::secondary, 15);
  }
  painter->restore();
}

QSize ProjectRowDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
  return {200, rowHeight};
}

}  // namespace velmora
