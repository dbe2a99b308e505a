#pragma once

#include <QCoroTask>
#include <QLineEdit>
#include <cstdint>

#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Online/Account/AccountStore.h"
#include "Velmora/Theme/FormParts.h"

namespace velmora {

/// The way in by a username and a password, for those who have an account and for those who make one. What a
/// good name or password is decides the service alone.
class PasswordSignInView : public FormSection {
 public:
  /// `account` outlives the form.
  explicit PasswordSignInView(AccountStore& account, QWidget* parent = nullptr);

 private:
  enum class Mode : std::uint8_t { signIn, create };

  void lay();
  void setMode(Mode mode);
  void refreshSubmit();
  void submit();
  QCoro::Task<> signIn();

  AccountStore& account_;
  Mode mode_ = Mode::signIn;
  QLineEdit username_;
  QLineEdit password_;
  QLineEdit confirmation_;
  QWidget* const onlyOfCreation_;  // the confirmation and the hints
  CommandButton submit_;
  LinkButton modeButton_;
  FormLock lock_{*this};
  ChangeListener listener_;
};

}  // namespace velmora
