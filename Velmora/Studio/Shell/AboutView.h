#pragma once

#include <QStackedWidget>

#include "Velmora/Theme/Sheet.h"

namespace velmora {

/// Name, version and two links, each of which leads to a text and back.
class AboutView : public Sheet {
 public:
  explicit AboutView(QWidget* parent);

  /// "Version " and the application's version, or "1.0.0" if it has none.
  static QString versionLine();

 private:
  QWidget* makeAboutPage();
  void openText(const QString& title, const QString& resource);
  void goBack();

  QStackedWidget pages_;
  TallButton& back_;
};

}  // namespace velmora
