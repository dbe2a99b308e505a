#pragma once

#include <QLineEdit>
#include <functional>
#include <memory>
#include <vector>

#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Online/Community/CommunityStore.h"
#include "Velmora/Online/CommunityViews/ProfileRows.h"
#include "Velmora/Online/CommunityViews/TextArea.h"
#include "Velmora/Theme/FormParts.h"

namespace velmora {

/// What others see of the user, the user's previews, and whom the user has blocked.
class CommunityProfileView final : public FormPage {
 public:
  // In characters.
  static constexpr int longestHandle = 24;
  static constexpr int longestName = 40;
  static constexpr int longestBio = 280;

  CommunityProfileView(CommunityStore& store, const std::function<void()>& openRules);

 private:
  void makeForm(const std::function<void()>& openRules);
  void refresh();
  void showProfile(const CommunityCreator& profile);
  void chainTab();
  void refreshPlaying();
  void refreshSend();
  void send();

  CommunityStore& store_;
  const PreviewRow::Action play_ = [this](const UUID& id) { store_.togglePlayback(id); };
  const PreviewRow::Action delete_ = [this](const UUID& id) { store_.deletePreview(id); };
  const PreviewRow::Action unblock_ = [this](const UUID& id) { store_.unblock(id); };

  FormSection profile_{"Your public profile"};
  WrappedText state_{{}, Theme::Text::control, Theme::accent};
  WrappedText note_{"Editing your profile hides it and its previews until the new text is approved.",
                    Theme::Text::caption, Theme::secondary};
  QLineEdit handle_;
  QLineEdit name_;
  TextArea bio_{3, 6};
  LinkButton rules_{"Read community rules"};
  Switch accepts_{"I accept the rules and want this profile to be public"};
  TallButton send_{"Send profile for review", {}, {.fill = TallButton::Fill::accent}};
  CommunityCreator filled_;  // what the fields were last filled from

  FormSection previews_{"Your previews"};
  WrappedText noPreviews_{"No previews yet. Make one in the Share tab.", Theme::Text::body, Theme::secondary};
  std::vector<std::unique_ptr<PreviewRow>> previewRows_;
  FormSection blocked_{"Blocked creators"};
  WrappedText nobody_{"Nobody is blocked.", Theme::Text::body, Theme::secondary};
  std::vector<std::unique_ptr<BlockedRow>> blockedRows_;

  ChangeListener listener_;
  ChangeListener playListener_;
};

}  // namespace velmora
