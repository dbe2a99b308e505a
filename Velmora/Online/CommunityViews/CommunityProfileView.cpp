#include "Velmora/Online/CommunityViews/CommunityProfileView.h"

#include "Velmora/Online/CommunityViews/RowMatching.h"
#include "Velmora/Online/CommunityViews/ServiceText.h"

namespace velmora {

namespace {

/// The rows in their order at the end of the section.
template <class Row>
void place(FormSection& section, const std::vector<std::unique_ptr<Row>>& rows) {
  for (const auto& row : rows) {
    section.column().removeWidget(row.get());
    section.column().addWidget(row.get());
    row->setVisible(true);
  }
}

bool haveSameTexts(const CommunityCreator& one, const CommunityCreator& other) {
  return one.handle == other.handle && one.displayName == other.displayName && one.bio == other.bio;
}

}  // namespace

CommunityProfileView::CommunityProfileView(CommunityStore& store, const std::function<void()>& openRules)
    : store_(store),
      listener_([this] { refresh(); }, store.studio),
      playListener_([this] { refreshPlaying(); }, store.playingID) {
  setObjectName("community.profile");
  makeForm(openRules);
  previews_.column().addWidget(&noPreviews_);
  blocked_.column().addWidget(&nobody_);
  for (FormSection* const section : {&profile_, &previews_, &blocked_}) add(section);
  refresh();
  refreshSend();
}

void CommunityProfileView::makeForm(const std::function<void()>& openRules) {
  state_.setObjectName("profile.state");
  handle_.setObjectName("profile.handle");
  name_.setObjectName("profile.name");
  bio_.setObjectName("profile.bio");
  rules_.setObjectName("profile.rules");
  accepts_.setObjectName("profile.accepts");
  send_.setObjectName("profile.send");
  QVBoxLayout& column = profile_.column();
  column.addWidget(makeHint(
      "Your handle, creator name and bio become public after moderation. Your account email stays private."));
  column.addWidget(&state_);
  column.addWidget(&note_);
  column.addWidget(makeLabeled("Public handle", handle_));
  column.addWidget(makeLabeled("Creator name", name_));
  column.addWidget(makeLabeled("A little about your sound", bio_));
  column.addWidget(makeHint(
      "Handle: 3–24 lowercase letters, numbers or underscores. Name: up to 40 characters. Bio: up to 280."));
  column.addWidget(&rules_, 0, Qt::AlignLeft);
  column.addWidget(&accepts_);
  column.addWidget(&send_, 0, Qt::AlignLeft);
  connect(&handle_, &QLineEdit::textChanged, this, [this] { refreshSend(); });
  connect(&name_, &QLineEdit::textChanged, this, [this] { refreshSend(); });
  connect(&bio_, &QPlainTextEdit::textChanged, this, [this] { refreshSend(); });
  connect(&accepts_, &QAbstractButton::clicked, this, [this] { refreshSend(); });
  connect(&rules_, &QAbstractButton::clicked, this, openRules);
  connect(&send_, &QAbstractButton::clicked, this, [this] { send(); });
}

void CommunityProfileView::refresh() {
  const CommunityStudio studio = store_.studio().value_or(CommunityStudio());
  state_.setVisible(studio.profile.has_value());
  note_.setVisible(studio.profile.has_value());
  if (studio.profile) showProfile(*studio.profile);
  noPreviews_.setVisible(studio.posts.empty());
  nobody_.setVisible(studio.blocked.empty());
  matchRows(previewRows_, studio.posts, [this] { return std::make_unique<PreviewRow>(play_, delete_); });
  place(previews_, previewRows_);
  matchRows(blockedRows_, studio.blocked, [this] { return std::make_unique<BlockedRow>(unblock_); });
  place(blocked_, blockedRows_);
  chainTab();
  refreshPlaying();
}

/// What is being typed stays, unless the service knows other texts than before.
void CommunityProfileView::showProfile(const CommunityCreator& profile) {
  state_.setText("Profile: " + ServiceText::line(profile.state.value_or("")));
  if (haveSameTexts(profile, std::exchange(filled_, profile))) return;
  handle_.setText(QString::fromStdString(profile.handle));
  name_.setText(QString::fromStdString(profile.displayName));
  bio_.setPlainText(QString::fromStdString(profile.bio));
}

void CommunityProfileView::chainTab() {
  QWidget* last = &send_;
  const auto append = [&last](const auto& rows) {
    for (const auto& row : rows) {
      for (QWidget* const stop : row->stops()) {
        setTabOrder(last, stop);
        last = stop;
      }
    }
  };
  append(previewRows_);
  append(blockedRows_);
}

void CommunityProfileView::refreshPlaying() {
  for (const auto& row : previewRows_) row->setPlaying(store_.playingID() == row->id());
}

void CommunityProfileView::refreshSend() {
  send_.setEnabled(accepts_.isChecked() && !handle_.text().isEmpty() && !name_.text().isEmpty() &&
                   holdsAtMost(longestHandle, handle_.text()) && holdsAtMost(longestName, name_.text()) &&
                   holdsAtMost(longestBio, bio_.toPlainText()));
}

void CommunityProfileView::send() {
  store_.saveProfile({.handle = handle_.text().toStdString(),
                      .displayName = name_.text().toStdString(),
                      .bio = bio_.toPlainText().toStdString(),
                      .acceptedRules = accepts_.isChecked()});
}

}  // namespace velmora
