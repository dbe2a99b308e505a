#include "Platform/Services/Preferences.h"

#include <QVariant>
#include <cmath>

namespace platform {

// The file holds texts only, so that what was read from it and what was set a moment ago are told apart by
// their text.

bool Preferences::boolean(const QString& key, bool standard) const {
  const QString value = settings_.value(key).toString();
  if (value == "true") return true;
  return value == "false" ? false : standard;
}

double Preferences::number(const QString& key, double standard) const {
  bool isNumber = false;
  const double value = settings_.value(key).toString().toDouble(&isNumber);
  return isNumber && std::isfinite(value) ? value : standard;
}

QString Preferences::text(const QString& key, const QString& standard) const {
  const QVariant value = settings_.value(key);
  return value.typeId() == QMetaType::QString ? value.toString() : standard;
}

void Preferences::set(const QString& key, bool value) { settings_.setValue(key, value); }
void Preferences::set(const QString& key, double value) { settings_.setValue(key, value); }
void Preferences::set(const QString& key, const QString& value) { settings_.setValue(key, value); }

}  // namespace platform
