#pragma once

#include <QLineEdit>
#include <functional>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Online/Community/CommunityStore.h"
#include "Velmora/Online/CommunityViews/TextArea.h"
#include "Velmora/Theme/FormParts.h"
#include "Velmora/Theme/TallButton.h"

namespace velmora {

/// Two steps to a public preview: render and hear it, then send it for review.
class CommunityShareView final : public FormPage {
 public:
  // In characters.
  static constexpr int longestTitle = 80;
  static constexpr int longestCaption = 500;

  CommunityShareView(AppModel& model, CommunityStore& store, const std::function<void()>& openRules);

 private:
  void makePreviewSection();
  void makeReviewSection(const std::function<void()>& openRules);
  void refresh();
  bool hasProfile() const;

  AppModel& model_;
  CommunityStore& store_;

  FormSection preview_{"Give us twenty seconds"};
  WrappedText needsProfile_{"Create a public profile in the Your profile tab first.", Theme::Text::control,
                            Theme::accent};
  TallButton render_{"Render 20-second preview", "waveform", {.fill = TallButton::Fill::raised}};
  QWidget hearing_;
  TallButton listen_{"Listen to preview", "play.fill"};
  TallButton stop_{"Stop", "stop.fill"};

  FormSection review_{"Send for review"};
  QLineEdit title_;
  TextArea caption_{3, 5};
  Switch owns_{"I made this audio or have permission to share it, and it follows the community rules"};
  LinkButton rules_{"Read community rules"};
  TallButton publish_{
      "Publish preview for review", "square.and.arrow.up", {.fill = TallButton::Fill::accent}};

  ChangeListener listener_;
};

}  // namespace velmora
