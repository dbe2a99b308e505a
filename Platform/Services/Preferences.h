#pragma once

#include <QSettings>
#include <QString>

namespace platform {

/// The user's preferences of this application, kept from one start to the next. A missing one, or one of
/// another type, reads as the standard value.
class Preferences {
 public:
  bool boolean(const QString& key, bool standard = false) const;
  double number(const QString& key, double standard) const;
  QString text(const QString& key, const QString& standard = {}) const;

  void set(const QString& key, bool value);
  void set(const QString& key, double value);
  void set(const QString& key, const QString& value);
  void set(const QString& key, const char* value) = delete;  // would be taken for a truth value

 private:
  QSettings settings_{"Orrin", "Velmora"};
};

}  // namespace platform
