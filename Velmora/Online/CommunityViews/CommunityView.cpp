#include "Velmora/Online/CommunityViews/CommunityView.h"

#include <QMenu>
#include <utility>

#include "Velmora/Online/CommunityViews/ServiceText.h"
#include "Velmora/Theme/Placeholder.h"

namespace velmora {

namespace {

constexpr int sideMargin = 20;
constexpr int widest = FormPage::widest - 2 * sideMargin;

/// In the middle, as wide as a form at most.
QLayout* centered(QWidget& widget) {
  widget.setMaximumWidth(widest);
  auto* const line = new QHBoxLayout;
  line->setContentsMargins(sideMargin, 0, sideMargin, 0);
  line->addStretch();
  line->addWidget(&widget, 1);
  line->addStretch();
  return line;
}

QWidget* makeSignInPlaceholder() {
  return new Placeholder({"person.crop.circle", "Sign in to join in",
                          "Close community and sign in to Velmora to create a profile or share a preview."});
}

}  // namespace

CommunityView::CommunityView(AppModel& model, std::unique_ptr<CommunityStore> store, QUrl endpoint,
                             QWidget* parent)
    : Sheet("Velmora Community", parent),
      model_(model),
      store_(std::move(store)),
      endpoint_(std::move(endpoint)),
      sections_("Community section", {"Beat feed", "Your profile", "Share"}),
      feed_(*store_),
      messageListener_(
          [this] { message_.setMessage(ServiceText::paragraph(store_->message().value_or(""))); },
          store_->message),
      workListener_([this] { working_.setVisible(store_->isBusy()); }, store_->isBusy) {
  setObjectName("community");
  setMinimumSize(480, 400);
  resize(780, 700);
  addToolbar();
  addPages();
}

void CommunityView::addToolbar() {
  auto* const info = new TallButton("Community info", "info.circle");
  info->setLabelShown(TallButton::Label::hidden);
  QMenu& menu = info->addMenu();
  menu.setAccessibleName("Community info");
  connect(menu.addAction("Community rules"), &QAction::triggered, this, openRules_);
  connect(menu.addAction("Report or contact support"), &QAction::triggered, this,
          [this] { openPage(ServicePage::communityReport); });
  addToolbarButton(info, "community.info");
  TallButton& done =
      addToolbarButton(new TallButton("Done", {}, {.fill = TallButton::Fill::raised}), "community.done");
  connect(&done, &QAbstractButton::clicked, this, &QDialog::accept);
}

void CommunityView::addPages() {
  sections_.setObjectName("community.section");
  sections_.setSelected(0);
  sections_.onSelect = [this](int index) { pages_.setCurrentIndex(index); };
  working_.setObjectName("community.working");
  working_.setAccessibleName("Working");
  working_.setRange(0, 0);
  working_.setTextVisible(false);
  working_.setFixedSize(72, 6);
  QSizePolicy lasting = working_.sizePolicy();
  lasting.setRetainSizeWhenHidden(true);
  working_.setSizePolicy(lasting);
  working_.hide();
  message_.setObjectName("community.message");
  message_.setOnDismiss([this] { store_->message.set({}); });
  if (store_->isSignedIn()) {
    profile_.emplace(*store_, openRules_);
    share_.emplace(model_, *store_, openRules_);
  }
  pages_.addWidget(&feed_);
  pages_.addWidget(profile_ ? &*profile_ : makeSignInPlaceholder());
  pages_.addWidget(share_ ? &*share_ : makeSignInPlaceholder());
  content().setContentsMargins(0, 4, 0, 0);
  content().setSpacing(6);
  content().addWidget(&working_, 0, Qt::AlignHCenter);
  content().addLayout(centered(sections_));
  content().addLayout(centered(message_));
  content().addWidget(&pages_, 1);
}

void CommunityView::setVisible(bool isVisible) {
  if (isVisible && !editing_) appear();
  if (!isVisible && editing_) disappear();
  Sheet::setVisible(isVisible);
}

void CommunityView::appear() {
  model_.stop();
  editing_.emplace(model_);
  store_->load(1);
}

void CommunityView::disappear() {
  editing_.reset();
  store_->close();
}

void CommunityView::openPage(ServicePage page) {
  if (!openServicePage(endpoint_, page)) store_->message.set("The page could not be opened.");
}

}  // namespace velmora
