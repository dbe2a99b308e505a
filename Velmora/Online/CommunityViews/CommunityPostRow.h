#pragma once

#include <QStringList>
#include <QWidget>
#include <array>
#include <functional>

#include "Velmora/Online/Community/CommunityRecords.h"
#include "Velmora/Online/CommunityViews/VoteButton.h"
#include "Velmora/Theme/IconButton.h"

class QMenu;

namespace velmora {

/// One post of the feed: to be heard, upvoted, and its creator followed, reported or blocked. Cheap to make
/// and to fill again: its texts are painted, and its menu is made when it opens.
class CommunityPostRow final : public QWidget {
 public:
  /// What the user can do with a post.
  struct Actions {
    using Action = std::function<void(const CommunityPost&)>;

    Action play, vote, follow, report, block;
    bool isSignedIn = false;  ///< else there are no votes, follows and blocks
  };

  /// The actions outlive the row.
  /// To be called before the first row is made, as its parts ask for its accessible interface when they are
  /// made.
  static void install();

  /// Without a parent: to get one tells screen readers of the row, which has to be whole by then.
  explicit CommunityPostRow(const Actions& actions);

  const UUID& id() const { return post_.id; }
  void show(const CommunityPost& post);
  void setPlaying(bool isPlaying);
  bool isPlaying() const { return isPlaying_; }

  /// Where the keyboard can be: on the row itself and on its buttons.
  std::array<QWidget*, 4> stops() { return {this, &play_, &vote_, &menu_}; }
  /// Of all rows only one is in the way of Tab.
  void setReachable(bool isReachable);

  int heightForWidth(int width) const override;

  /// What a screen reader says: title, creator, length and votes, and the rest on demand.
  QString spokenName() const;
  QString spokenDetails() const;
  void press() { actions_.play(post_); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  /// The texts that wrap, as they stand within a width.
  struct Lines {
    int width = -1;
    QStringList title, caption;
  };

  /// Where the texts of a row so wide begin.
  static QRect words(int width);
  void refreshTexts();
  void paintLength(QPainter& painter, const QRect& words) const;
  QPoint underMenuButton() const;
  void openMenu(QPoint place);
  void addTo(QMenu& menu, const QString& text, const QString& symbol, const Actions::Action& action,
             bool isEnabled);
  const Lines& linesFor(int width) const;
  bool isDemo() const { return post_.creator.isDemo.value_or(false); }

  const Actions& actions_;
  CommunityPost post_;
  QString title_, caption_, creator_, length_;
  bool isPlaying_ = false;
  mutable Lines lines_;
  IconButton play_;
  VoteButton vote_;
  IconButton menu_;
};

}  // namespace velmora
