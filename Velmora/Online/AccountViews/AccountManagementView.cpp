#include "Velmora/Online/AccountViews/AccountManagementView.h"

#include <utility>

#include "Velmora/Online/AccountViews/ChangePasswordView.h"
#include "Velmora/Theme/ConfirmationSheet.h"

namespace velmora {

namespace {

QString toText(const std::optional<std::string>& text) { return QString::fromStdString(text.value_or("")); }

constexpr CommandButton::Look command{.fill = CommandButton::Fill::raised, .groundHeight = 40};
constexpr CommandButton::Look destruction{
    .fill = CommandButton::Fill::raised, .color = Theme::danger, .groundHeight = 40};

}  // namespace

AccountManagementView::Detail::Detail(const QString& name, const QString& id) {
  setObjectName(id);
  setAccessibleName(name);
  setFont(Theme::font(Theme::Text::body));
  setFrame(false);
  setReadOnly(true);
  setTextMargins(-2, 0, 0, 0);  // the field's own margin, which has no frame to stand off
  QPalette clear = palette();
  clear.setColor(QPalette::Base, Qt::transparent);
  setPalette(clear);
}

void AccountManagementView::Detail::show(const std::optional<std::string>& text) {
  const QString shown = toText(text);
  if (shown != QLineEdit::text()) setText(shown);
  if (!hasSelectedText()) setCursorPosition(0);
  setVisible(text.has_value());
}

AccountManagementView::AccountManagementView(AppModel& model, AccountStore& account, Telemetry& telemetry,
                                             QUrl endpoint, QWidget* parent)
    : FormSheet("Account", {520, 720}, parent),
      model_(model),
      account_(account),
      telemetry_(telemetry),
      endpoint_(std::move(endpoint)),
      customer_({}),
      usernameCaption_("Username", Theme::Text::body, Theme::secondary),
      username_("Username", "account.username"),
      changePassword_("Change Password", {}, command),
      email_("Email", "account.email"),
      signIn_(account),
      consent_("Share usage and error reports"),
      wayOut_({}),
      listener_([this] { refresh(); }, account.session, account.isBusy, account.showsAccount),
      consentListener_([this] { refreshConsent(); }, telemetry.isEnabled, account.session),
      messageListener_([this] { refreshMessage(); }, account.message) {
  setObjectName("account");
  TallButton& done =
      addToolbarButton(new TallButton("Done", {}, {.fill = TallButton::Fill::raised}), "account.done");
  connect(&done, &QAbstractButton::clicked, this, &QDialog::accept);
  connect(this, &QDialog::finished, this, [this] { noteClosed(); });
  layCustomer();
  layWayIn();
  layTelemetry();
  layLinks();
  layWayOut();
  refresh();
  refreshConsent();
  refreshMessage();
  if (!account.session()) signIn_.setFocus();
}

void AccountManagementView::setVisible(bool isVisible) {
  if (!isVisible) editing_.reset();
  if (isVisible && !editing_) editing_.emplace(model_);
  FormSheet::setVisible(isVisible);
}

// What stands in it

void AccountManagementView::layCustomer() {
  auto* const row = new QHBoxLayout;
  row->setSpacing(12);
  row->addWidget(&usernameCaption_);
  row->addWidget(&username_, 1);
  row->addWidget(&changePassword_);
  changePassword_.setObjectName("account.changePassword");
  connect(&changePassword_, &QAbstractButton::clicked, this,
          [this] { (new ChangePasswordView(account_, this))->open(); });
  customer_.setObjectName("account.customer");
  customer_.column().addLayout(row);
  customer_.column().addWidget(&email_);
  page().add(&customer_);
}

void AccountManagementView::layWayIn() {
  auto* const column = new QVBoxLayout(&wayIn_);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(12);
  column->addWidget(makeLabel("Sign in to your Velmora account.", Theme::Text::body));
  column->addWidget(&signIn_);
  page().add(&wayIn_);
}

void AccountManagementView::layTelemetry() {
  auto* const section = new FormSection("Help improve Velmora");
  consent_.setObjectName("account.telemetry");
  connect(&consent_, &QAbstractButton::clicked, this, [this] {
    telemetry_.setConsent(consent_.isChecked());
    refreshConsent();
  });
  section->column().addWidget(&consent_);
  section->column().addWidget(makeHint(
      "Optional, for this account on this device. Sends feature counts, error categories, app version "
      "and OS version, linked to your account. Never sends music, project names or passwords. Reports "
      "are kept for 90 days."));
  page().add(section);
}

void AccountManagementView::layLinks() {
  static constexpr struct {
    const char* title;
    const char* id;
    ServicePage page;
  } links[] = {{"Privacy Policy", "account.privacy", ServicePage::privacy},
               {"Terms of Use", "account.terms", ServicePage::terms},
               {"Contact Support", "account.support", ServicePage::support}};
  auto* const row = new QWidget;
  auto* const layout = new QHBoxLayout(row);
  layout->setContentsMargins(4, 0, 4, 0);
  layout->setSpacing(0);
  for (const auto& link : links) {
    auto* const button = new LinkButton(link.title);
    button->setObjectName(link.id);
    connect(button, &QAbstractButton::clicked, this, [this, page = link.page] { openPage(page); });
    layout->addWidget(button);
  }
  layout->addStretch(1);
  page().add(row);
}

void AccountManagementView::layWayOut() {
  auto* const logOut = new CommandButton("Log out", "rectangle.portrait.and.arrow.right", command);
  auto* const deletion = new CommandButton("Delete Account", {}, destruction);
  logOut->setObjectName("account.logOut");
  deletion->setObjectName("account.delete");
  connect(logOut, &QAbstractButton::clicked, this, [this] { account_.signOut(); });
  connect(deletion, &QAbstractButton::clicked, this, [this] { confirmDeletion(); });
  wayOut_.column().addWidget(logOut);
  wayOut_.column().addWidget(deletion);
  wayOut_.column().addWidget(
      makeHint("Account deletion removes your profile and server records. Your local projects and audio stay "
               "on this device."));
  page().add(&wayOut_);
}

// What it shows

void AccountManagementView::refresh() {
  if (!account_.showsAccount() && isVisible()) {
    close();
    return;
  }
  const auto& session = account_.session();
  const bool hasSignedIn = session && wayIn_.isVisible();
  wayIn_.setVisible(!session);
  customer_.setVisible(session.has_value());
  wayOut_.setVisible(session.has_value());
  if (session) refreshCustomer(session->customer);
  passwordLock_.setLocked(account_.isBusy());
  wayOutLock_.setLocked(account_.isBusy());
  if (hasSignedIn) (username_.isVisible() ? username_ : email_).setFocus(Qt::TabFocusReason);
}

/// What the user closes has been read. What the account closes has something to say the next time.
void AccountManagementView::noteClosed() {
  if (account_.showsAccount() && !account_.isBusy()) account_.message.set({});
  account_.showsAccount.set(false);
}

void AccountManagementView::refreshCustomer(const VelmoraCustomer& customer) {
  customer_.setHeading(toText(customer.displayName.value_or("Your Velmora account")));
  username_.show(customer.username);
  usernameCaption_.setVisible(customer.username.has_value());
  changePassword_.setVisible(customer.username.has_value());
  email_.show(customer.email);
}

/// Consent belongs to an account: without one there is nothing to switch.
void AccountManagementView::refreshConsent() {
  consent_.setEnabled(account_.session().has_value());
  consent_.setChecked(telemetry_.isEnabled());
}

void AccountManagementView::refreshMessage() { message().setMessage(toText(account_.message())); }

void AccountManagementView::confirmDeletion() {
  auto* const sheet = new ConfirmationSheet(
      {.title = "Delete your Velmora account?",
       .message = "This removes your profile and server records. Local projects remain.",
       .destructive = "Delete Account"},
      this);
  connect(sheet, &QDialog::accepted, this, [this] { account_.deleteAccount(); });
  sheet->open();
}

void AccountManagementView::openPage(ServicePage page) {
  if (!openServicePage(endpoint_, page)) account_.message.set("The page could not be opened.");
}

}  // namespace velmora
