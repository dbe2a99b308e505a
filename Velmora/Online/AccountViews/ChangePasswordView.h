#pragma once

#include <QCoroTask>
#include <QLineEdit>

#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Online/Account/AccountStore.h"
#include "Velmora/Theme/FormParts.h"

namespace velmora {

/// Asks for the old and the new password and closes itself once the service has taken the new one. It shows
/// the messages that come while it is open.
class ChangePasswordView : public FormSheet {
 public:
  /// `account` outlives the sheet.
  ChangePasswordView(AccountStore& account, QWidget* parent);

  void reject() override;

 private:
  void refresh();
  void refreshMessage();
  void save();
  QCoro::Task<> change();

  AccountStore& account_;
  QLineEdit current_;
  QLineEdit new_;
  QLineEdit confirmation_;
  TallButton& save_;
  FormLock lock_{page()};
  ChangeListener listener_;
  ChangeListener messageListener_;
};

}  // namespace velmora
