#pragma once

#include <QBoxLayout>
#include <QDialog>
#include <QLabel>

#include "Velmora/Theme/TallButton.h"
#include "Velmora/Theme/TextLabel.h"

namespace velmora {

/// A dialog over one window: a toolbar with the heading, and the content under it. Deletes itself when
/// closed.
class Sheet : public QDialog {
 public:
  Sheet(const QString& title, QWidget* parent);

  void setHeading(const QString& heading);

 protected:
  /// Toolbar buttons stand at the trailing edge in the order of the calls.
  TallButton& addToolbarButton(TallButton* button, const QString& id);
  TallButton& addLeadingButton(TallButton* button, const QString& id);
  QVBoxLayout& content() { return content_; }

  void paintEvent(QPaintEvent* event) override;

 private:
  QVBoxLayout column_;
  QHBoxLayout toolbar_;
  QVBoxLayout content_;
  QLabel heading_;
};

/// A text of a sheet in one of the theme's fonts; long ones wrap.
QLabel* makeLabel(const QString& text, Theme::Text font, const QColor& color = Theme::text);

}  // namespace velmora
