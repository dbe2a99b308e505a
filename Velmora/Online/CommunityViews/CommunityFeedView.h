#pragma once

#include <QProgressBar>
#include <QStackedWidget>
#include <QWidget>

#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Online/Community/CommunityStore.h"
#include "Velmora/Online/CommunityViews/CommunityPostList.h"
#include "Velmora/Theme/SegmentedPicker.h"
#include "Velmora/Theme/TallButton.h"

namespace velmora {

/// A page of the public feed, in an order of choice. The page is loaded again with its button or F5.
class CommunityFeedView final : public QWidget {
 public:
  explicit CommunityFeedView(CommunityStore& store, QWidget* parent = nullptr);

 private:
  QLayout* makeHeader();
  QLayout* makeStatus();
  QLayout* makePager();
  CommunityPostRow::Actions actions();
  void reload();
  void turnTo(std::int64_t page);
  void report(const CommunityPost& post);
  void refresh();
  void offer(QWidget& button, bool isOffered);
  void refreshWork();

  CommunityStore& store_;
  SegmentedPicker orders_;
  TallButton reload_{"Reload"};
  QProgressBar progress_;
  TextLabel status_{{}, Theme::Text::caption, Theme::secondary};
  QStackedWidget pages_;
  CommunityPostList list_;
  TallButton previous_{"Previous"};
  TallButton more_{"More beats"};
  std::string shownOrder_;
  std::int64_t shownPage_ = 0;
  bool hasLoaded_ = false;  // before, an empty list says nothing
  ChangeListener listener_;
  ChangeListener workListener_;
};

}  // namespace velmora
