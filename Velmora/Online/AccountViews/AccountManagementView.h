#pragma once

#include <QLineEdit>
#include <QUrl>
#include <optional>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Model/TextEditing.h"
#include "Velmora/Online/Account/AccountStore.h"
#include "Velmora/Online/Account/ServiceAddress.h"
#include "Velmora/Online/Account/Telemetry.h"
#include "Velmora/Online/AccountViews/PasswordSignInView.h"
#include "Velmora/Theme/FormParts.h"

namespace velmora {

/// The account sheet: who is signed in and what can be done about it, or the way in. It closes when the
/// store's `showsAccount` is cleared, and clears it when it is closed. The studio's plain keys rest while it
/// is open.
class AccountManagementView : public FormSheet {
 public:
  /// `endpoint` is the service's address, for the links. All but the parent outlive the sheet.
  AccountManagementView(AppModel& model, AccountStore& account, Telemetry& telemetry, QUrl endpoint,
                        QWidget* parent);

  void setVisible(bool isVisible) override;

 private:
  /// A text of the account that can be selected and copied, with the keys, too.
  struct Detail : QLineEdit {
    Detail(const QString& name, const QString& id);
    void show(const std::optional<std::string>& text);
  };

  void layCustomer();
  void layWayIn();
  void layTelemetry();
  void layLinks();
  void layWayOut();

  void refresh();
  void noteClosed();
  void refreshCustomer(const VelmoraCustomer& customer);
  void refreshConsent();
  void refreshMessage();
  void confirmDeletion();
  void openPage(ServicePage page);

  AppModel& model_;
  AccountStore& account_;
  Telemetry& telemetry_;
  const QUrl endpoint_;
  std::optional<TextEditing> editing_;

  FormSection customer_;
  TextLabel usernameCaption_;
  Detail username_;
  CommandButton changePassword_;
  Detail email_;
  QWidget wayIn_;
  PasswordSignInView signIn_;
  Switch consent_;
  FormSection wayOut_;
  FormLock passwordLock_{changePassword_};
  FormLock wayOutLock_{wayOut_};

  ChangeListener listener_;
  ChangeListener consentListener_;
  ChangeListener messageListener_;
};

}  // namespace velmora
