#include "Velmora/Online/AccountViews/PasswordSignInView.h"

#include <QPointer>
#include <array>

namespace velmora {

namespace {

struct Words {
  const char* heading;
  const char* submit;
  const char* otherMode;
};

constexpr std::array words{
    Words{"Or use a username", "Sign In with Username", "Create an account"},
    Words{"Create a Velmora account", "Create Account", "Already have an account? Sign in"},
};

constexpr std::array hints{
    "Choose 3–24 letters, numbers or underscores. Passwords need at least 8 characters.",
    "Save your login in your password manager. Password reset by email is not available yet.",
};

}  // namespace

PasswordSignInView::PasswordSignInView(AccountStore& account, QWidget* parent)
    : FormSection({}, parent),
      account_(account),
      onlyOfCreation_(new QWidget),
      submit_({}, {}, {.fill = CommandButton::Fill::accent, .font = Theme::Text::title, .groundHeight = 44}),
      modeButton_({}),
      listener_([this] { lock_.setLocked(account_.isBusy()); }, account.isBusy) {
  setObjectName("account-sign-in");
  username_.setObjectName("account-username");
  username_.setInputMethodHints(Qt::ImhNoAutoUppercase | Qt::ImhNoPredictiveText);
  password_.setObjectName("account-password");
  password_.setEchoMode(QLineEdit::Password);
  confirmation_.setObjectName("account-password-confirmation");
  confirmation_.setEchoMode(QLineEdit::Password);
  submit_.setObjectName("account-password-submit");
  modeButton_.setObjectName("account-password-mode");
  lay();
  for (QLineEdit* field : {&username_, &password_}) {
    connect(field, &QLineEdit::textChanged, this, [this] { refreshSubmit(); });
  }
  connect(&username_, &QLineEdit::returnPressed, this, [this] { password_.setFocus(); });
  connect(&password_, &QLineEdit::returnPressed, this,
          [this] { mode_ == Mode::create ? confirmation_.setFocus() : submit(); });
  connect(&confirmation_, &QLineEdit::returnPressed, this, [this] { submit(); });
  connect(&submit_, &QAbstractButton::clicked, this, [this] { submit(); });
  connect(&modeButton_, &QAbstractButton::clicked, this, [this] {
    account_.message.set({});
    setMode(mode_ == Mode::create ? Mode::signIn : Mode::create);
  });
  setFocusProxy(&username_);
  setMode(Mode::signIn);
  refreshSubmit();
  lock_.setLocked(account.isBusy());
}

void PasswordSignInView::lay() {
  auto* const creation = new QVBoxLayout(onlyOfCreation_);
  creation->setContentsMargins(0, 0, 0, 0);
  creation->setSpacing(column().spacing());
  creation->addWidget(makeLabeled("Confirm password", confirmation_));
  for (const char* hint : hints) creation->addWidget(makeHint(hint));
  column().addWidget(makeLabeled("Username", username_));
  column().addWidget(makeLabeled("Password", password_));
  column().addWidget(onlyOfCreation_);
  column().addWidget(&submit_);
  column().addWidget(&modeButton_, 0, Qt::AlignHCenter);
}

void PasswordSignInView::setMode(Mode mode) {
  mode_ = mode;
  const Words& shown = words.at(static_cast<std::size_t>(mode));
  setHeading(shown.heading);
  submit_.setContent(shown.submit);
  modeButton_.setContent(shown.otherMode);
  onlyOfCreation_->setVisible(mode == Mode::create);
}

void PasswordSignInView::refreshSubmit() {
  submit_.setEnabled(!username_.text().trimmed().isEmpty() && !password_.text().isEmpty());
}

void PasswordSignInView::submit() {
  if (account_.isBusy() || !submit_.isEnabled()) return;
  if (mode_ == Mode::create && password_.text() != confirmation_.text()) {
    account_.message.set({});  // so that the same words are said again
    account_.message.set("The passwords do not match. Enter them again.");
    confirmation_.setFocus();
    confirmation_.selectAll();
    return;
  }
  signIn();
}

/// The form may be gone when the answer comes; the account isn't.
QCoro::Task<> PasswordSignInView::signIn() {
  const QPointer self(this);
  const auto kind = mode_ == Mode::create ? AccountAPI::Account::created : AccountAPI::Account::existing;
  auto signingIn = account_.signIn(kind, username_.text().toStdString(), password_.text().toStdString());
  const bool isSignedIn = co_await signingIn;
  if (!self || !isSignedIn) co_return;
  password_.clear();
  confirmation_.clear();
}

}  // namespace velmora
