#include "Velmora/Studio/Parts/KeyboardLead.h"

#include <QFocusEvent>
#include <QWidget>

namespace velmora {

bool KeyboardLead::focusCame(const QFocusEvent& event) {
  const Qt::FocusReason reason = event.reason();
  if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason) return false;
  set(reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason);
  return true;
}

void KeyboardLead::setMayActivate(bool mayActivate) {
  mayActivate_ = mayActivate;
  tell();
}

void KeyboardLead::set(bool cameByTab) {
  showsCursor_ = cameByTab_ = cameByTab;
  tell();
}

void KeyboardLead::tell() const { canvas_.setProperty("keepsActivationKeys", cameByTab_ && mayActivate_); }

}  // namespace velmora
