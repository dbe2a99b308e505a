#pragma once

#include <QComboBox>

#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Online/Community/CommunityStore.h"
#include "Velmora/Online/CommunityViews/TextArea.h"
#include "Velmora/Theme/FormParts.h"
#include "Velmora/Theme/Sheet.h"

namespace velmora {

/// Tells the moderator about a post or about its creator. It closes as soon as the report is on its way.
class CommunityReportView final : public Sheet {
 public:
  static constexpr int mostDetails = 500;  ///< characters

  CommunityReportView(CommunityStore& store, const CommunityPost& post, QWidget* parent);

 private:
  void send();
  void refresh();

  CommunityStore& store_;
  const UUID postID_;
  const UUID creatorID_;
  Switch aboutCreator_{"Report the creator profile"};
  QComboBox reason_;
  TextArea details_{3, 6};
  TallButton& send_;
  ChangeListener listener_;
};

}  // namespace velmora
