#include "Velmora/Online/CommunityViews/ProfileRows.h"

#include <QHBoxLayout>

#include "Velmora/Online/CommunityViews/ServiceText.h"

namespace velmora {

namespace {

constexpr int gap = 8;

/// Of a preview whose audio is still on its way there is nothing to hear.
const std::string uploading = "uploading";

QHBoxLayout* makeLine(QWidget& row) {
  auto* const line = new QHBoxLayout(&row);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(gap);
  return line;
}

}  // namespace

PreviewRow::PreviewRow(const Action& play, const Action& remove) {
  play_.setObjectName("profile.play");
  delete_.setObjectName("profile.delete");
  auto* const texts = new QVBoxLayout;
  texts->setSpacing(2);
  texts->addWidget(&title_);
  texts->addWidget(&state_);
  QHBoxLayout* const line = makeLine(*this);
  line->addLayout(texts, 1);
  line->addWidget(&play_);
  line->addWidget(&delete_);
  connect(&play_, &QAbstractButton::clicked, this, [this, &play] { play(id()); });
  connect(&delete_, &QAbstractButton::clicked, this, [this, &remove] { remove(id()); });
}

void PreviewRow::show(const CommunityStudio::Preview& preview) {
  preview_ = preview;
  title_.setText(ServiceText::line(preview.title));
  state_.setText(ServiceText::line(preview.state));
  play_.setVisible(preview.state != uploading);
  for (TallButton* const button : {&play_, &delete_}) button->setAccessibleDescription(title_.text());
}

void PreviewRow::setPlaying(bool isPlaying) {
  play_.setContent(isPlaying ? "Stop" : "Play", isPlaying ? "stop.fill" : "play.fill");
}

BlockedRow::BlockedRow(const PreviewRow::Action& unblock) {
  unblock_.setObjectName("profile.unblock");
  QHBoxLayout* const line = makeLine(*this);
  line->addWidget(&handle_, 1);
  line->addWidget(&unblock_);
  connect(&unblock_, &QAbstractButton::clicked, this, [this, &unblock] { unblock(id()); });
}

void BlockedRow::show(const CommunityStudio::BlockedCreator& creator) {
  creator_ = creator;
  handle_.setText(ServiceText::handle(creator.handle));
  unblock_.setAccessibleDescription(handle_.text());
}

}  // namespace velmora
