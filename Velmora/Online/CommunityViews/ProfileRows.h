#pragma once

#include <QWidget>
#include <functional>
#include <vector>

#include "Velmora/Online/Community/CommunityRecords.h"
#include "Velmora/Theme/FormParts.h"
#include "Velmora/Theme/TallButton.h"

namespace velmora {

/// One of the user's own previews and how far its review is.
class PreviewRow final : public QWidget {
 public:
  using Action = std::function<void(const UUID&)>;

  PreviewRow(const Action& play, const Action& remove);

  const UUID& id() const { return preview_.id; }
  void show(const CommunityStudio::Preview& preview);
  void setPlaying(bool isPlaying);
  std::vector<QWidget*> stops() { return {&play_, &delete_}; }

 private:
  CommunityStudio::Preview preview_;
  WrappedText title_{{}};
  WrappedText state_{{}, Theme::Text::caption, Theme::secondary};
  TallButton play_{"Play", "play.fill"};
  TallButton delete_{"Delete preview", "trash"};
};

/// A creator whom the user has blocked.
class BlockedRow final : public QWidget {
 public:
  explicit BlockedRow(const PreviewRow::Action& unblock);

  const UUID& id() const { return creator_.id; }
  void show(const CommunityStudio::BlockedCreator& creator);
  std::vector<QWidget*> stops() { return {&unblock_}; }

 private:
  CommunityStudio::BlockedCreator creator_;
  WrappedText handle_{{}};
  TallButton unblock_{"Unblock"};
};

}  // namespace velmora
