#include "Velmora/Online/CommunityViews/CommunityShareView.h"

#include "Velmora/Online/CommunityViews/ServiceText.h"

namespace velmora {

CommunityShareView::CommunityShareView(AppModel& model, CommunityStore& store,
                                       const std::function<void()>& openRules)
    : model_(model),
      store_(store),
      listener_([this] { refresh(); }, store.studio, store.localPreview, model.isRecording, model.isAudioBusy,
                model.isProjectBusy, model.exportTask) {
  setObjectName("community.share");
  makePreviewSection();
  makeReviewSection(openRules);
  add(&preview_);
  add(&review_);
  refresh();
}

void CommunityShareView::makePreviewSection() {
  render_.setObjectName("share.render");
  listen_.setObjectName("share.listen");
  stop_.setObjectName("share.stop");
  auto* const row = new QHBoxLayout(&hearing_);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(8);
  row->addWidget(&listen_);
  row->addWidget(&stop_);
  row->addStretch(1);
  QVBoxLayout& column = preview_.column();
  column.addWidget(
      makeHint("Make a preview from the start of your current arrangement. Listen first, then choose whether "
               "to publish. Your full project stays on this device."));
  column.addWidget(&needsProfile_);
  column.addWidget(&render_, 0, Qt::AlignLeft);
  column.addWidget(&hearing_);
  connect(&render_, &QAbstractButton::clicked, this,
          [this] { store_.renderPreview(model_.song(), model_.audioSamples()); });
  connect(&listen_, &QAbstractButton::clicked, this, [this] { store_.playLocalPreview(); });
  connect(&stop_, &QAbstractButton::clicked, this, [this] { store_.stopPlayback(); });
}

void CommunityShareView::makeReviewSection(const std::function<void()>& openRules) {
  title_.setObjectName("share.title");
  caption_.setObjectName("share.caption");
  owns_.setObjectName("share.owns");
  rules_.setObjectName("share.rules");
  publish_.setObjectName("share.publish");
  QVBoxLayout& column = review_.column();
  column.addWidget(makeLabeled("Beat title", title_));
  column.addWidget(makeLabeled("What went into it?", caption_));
  column.addWidget(&owns_);
  column.addWidget(&rules_, 0, Qt::AlignLeft);
  column.addWidget(&publish_, 0, Qt::AlignLeft);
  column.addWidget(
      makeHint("Up to 80 characters for the title and 500 for the caption. Approved previews appear in the "
               "public feed."));
  connect(&title_, &QLineEdit::textChanged, this, [this] { refresh(); });
  connect(&caption_, &QPlainTextEdit::textChanged, this, [this] { refresh(); });
  connect(&owns_, &QAbstractButton::clicked, this, [this] { refresh(); });
  connect(&rules_, &QAbstractButton::clicked, this, openRules);
  connect(&publish_, &QAbstractButton::clicked, this, [this] {
    store_.publishPreview(title_.text().toStdString(), caption_.toPlainText().toStdString(),
                          owns_.isChecked());
  });
}

bool CommunityShareView::hasProfile() const { return store_.studio() && store_.studio()->profile; }

void CommunityShareView::refresh() {
  needsProfile_.setVisible(!hasProfile());
  render_.setEnabled(!model_.isRecording() && !model_.isAudioBusy() && !model_.isProjectBusy() &&
                     !model_.exportTask());
  hearing_.setVisible(store_.localPreview().has_value());
  publish_.setEnabled(store_.localPreview() && hasProfile() && owns_.isChecked() &&
                      !title_.text().isEmpty() && holdsAtMost(longestTitle, title_.text()) &&
                      holdsAtMost(longestCaption, caption_.toPlainText()));
}

}  // namespace velmora
