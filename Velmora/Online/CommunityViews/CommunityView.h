#pragma once

#include <QProgressBar>
#include <QStackedWidget>
#include <QUrl>
#include <functional>
#include <memory>
#include <optional>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Model/TextEditing.h"
#include "Velmora/Online/Account/ServiceAddress.h"
#include "Velmora/Online/Community/CommunityStore.h"
#include "Velmora/Online/CommunityViews/CommunityFeedView.h"
#include "Velmora/Online/CommunityViews/CommunityProfileView.h"
#include "Velmora/Online/CommunityViews/CommunityShareView.h"
#include "Velmora/Theme/SegmentedPicker.h"
#include "Velmora/Theme/Sheet.h"

namespace velmora {

/// The community window: the feed, the user's own profile, and the way to share a preview. While it is open
/// the transport rests, and the studio's plain keys, too.
class CommunityView : public Sheet {
 public:
  /// Takes the store, which lives as long as the window. `endpoint` is the service's address, for the links.
  CommunityView(AppModel& model, std::unique_ptr<CommunityStore> store, QUrl endpoint, QWidget* parent);

  void setVisible(bool isVisible) override;

 private:
  void addToolbar();
  void addPages();
  void appear();
  void disappear();
  void openPage(ServicePage page);

  AppModel& model_;
  const std::unique_ptr<CommunityStore> store_;
  const QUrl endpoint_;
  const std::function<void()> openRules_ = [this] { openPage(ServicePage::communityRules); };
  std::optional<TextEditing> editing_;  // while it is open
  SegmentedPicker sections_;
  QProgressBar working_;
  MessageLine message_;
  QStackedWidget pages_;
  CommunityFeedView feed_;
  std::optional<CommunityProfileView> profile_;  // of who is signed in
  std::optional<CommunityShareView> share_;
  ChangeListener messageListener_;
  ChangeListener workListener_;
};

}  // namespace velmora
