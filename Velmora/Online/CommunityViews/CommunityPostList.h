#pragma once

#include <QScrollArea>
#include <memory>
#include <optional>
#include <vector>

#include "Velmora/Online/CommunityViews/CommunityPostRow.h"
#include "Velmora/Theme/FormParts.h"

namespace velmora {

/// The posts of a page, one row each. Tab comes to one row and its buttons only; the arrows, Page Up, Page
/// Down, Home and End go through the rows and stay on the same kind of button.
class CommunityPostList final : public QScrollArea {
 public:
  static constexpr int widest = 860;  ///< of a row
  static constexpr int sideMargin = 20;

  /// Tab comes from `before`.
  CommunityPostList(CommunityPostRow::Actions actions, QWidget& before, QWidget* parent = nullptr);

  /// Posts that were there before keep their rows, and the focus in them.
  void show(const std::vector<CommunityPost>& posts);
  void setPlaying(const std::optional<UUID>& id);
  /// Rests the rows, which can still be scrolled.
  void setLocked(bool isLocked);
  /// What is shown next is another page: from its top.
  void startOver();
  /// To the row in the way of Tab.
  void takeFocus();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  std::unique_ptr<CommunityPostRow> makeRow();
  void arrange();
  std::size_t indexOf(const QObject* stop) const;
  std::size_t currentIndex() const;
  void setCurrent(std::size_t index);
  bool moveBy(QKeyEvent& event, QWidget* stop);
  std::size_t rowAt(int y) const;

  const CommunityPostRow::Actions actions_;
  QWidget& before_;
  QWidget content_;
  FormLock lock_{content_};
  std::vector<std::unique_ptr<CommunityPostRow>> rows_;
  std::size_t current_ = 0;  // the row in the way of Tab
  UUID currentID_;
  bool hadFocus_ = false;  // when it was locked
};

}  // namespace velmora
