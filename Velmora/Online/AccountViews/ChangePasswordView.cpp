#include "Velmora/Online/AccountViews/ChangePasswordView.h"

#include <QPointer>

namespace velmora {

ChangePasswordView::ChangePasswordView(AccountStore& account, QWidget* parent)
    : FormSheet("Change Password", {480, 440}, parent),
      account_(account),
      save_(*new TallButton("Save Password", {}, {.fill = TallButton::Fill::accent})),
      listener_([this] { refresh(); }, account.isBusy),
      messageListener_([this] { refreshMessage(); }, account.message) {
  setObjectName("changePassword");
  TallButton& cancel = addToolbarButton(new TallButton("Cancel"), "changePassword.cancel");
  addToolbarButton(&save_, "changePassword.save");
  auto* const section = new FormSection({});
  const struct {
    QLineEdit& field;
    const char* name;
    const char* id;
    std::function<void()> onReturn;
  } rows[] = {
      {current_, "Current password", "changePassword.current", [this] { new_.setFocus(); }},
      {new_, "New password", "changePassword.new", [this] { confirmation_.setFocus(); }},
      {confirmation_, "Confirm new password", "changePassword.confirmation", [this] { save(); }},
  };
  for (const auto& row : rows) {
    row.field.setObjectName(row.id);
    row.field.setEchoMode(QLineEdit::Password);
    section->column().addWidget(makeLabeled(row.name, row.field));
    connect(&row.field, &QLineEdit::textChanged, this, [this] { refresh(); });
    connect(&row.field, &QLineEdit::returnPressed, this, row.onReturn);
  }
  section->column().addWidget(
      makeHint("Use 8–128 characters. Changing your password signs out your other devices."));
  page().add(section);
  connect(&cancel, &QAbstractButton::clicked, this, &QDialog::reject);
  connect(&save_, &QAbstractButton::clicked, this, [this] { save(); });
  current_.setFocus();
  refresh();
}

/// What it has complained about goes with it.
void ChangePasswordView::reject() {
  if (!account_.isBusy()) account_.message.set({});
  FormSheet::reject();
}

void ChangePasswordView::refresh() {
  lock_.setLocked(account_.isBusy());
  save_.setEnabled(!account_.isBusy() && !current_.text().isEmpty() && !new_.text().isEmpty());
}

void ChangePasswordView::refreshMessage() {
  message().setMessage(QString::fromStdString(account_.message().value_or("")));
}

void ChangePasswordView::save() {
  if (account_.isBusy() || !save_.isEnabled()) return;
  if (new_.text() != confirmation_.text()) {
    account_.message.set({});  // so that the same words are said again
    account_.message.set("The new passwords do not match. Enter them again.");
    confirmation_.setFocus();
    confirmation_.selectAll();
    return;
  }
  change();
}

/// The sheet may be gone when the answer comes; the account isn't.
QCoro::Task<> ChangePasswordView::change() {
  const QPointer self(this);
  auto changing = account_.changePassword(current_.text().toStdString(), new_.text().toStdString());
  const bool isChanged = co_await changing;
  if (self && isChanged) accept();
}

}  // namespace velmora
