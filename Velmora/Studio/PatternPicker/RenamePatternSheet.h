#pragma once

#include <QDialog>
#include <QLineEdit>
#include <QPushButton>

#include "Velmora/Model/AppModel.h"

namespace velmora {

/// Asks for a pattern's name. Deletes itself when it is closed.
class RenamePatternSheet final : public QDialog {
 public:
  /// The model must outlive it.
  RenamePatternSheet(AppModel& model, const Pattern& pattern, QWidget* parent);

  QLineEdit& name() { return name_; }
  QPushButton& saveButton() { return save_; }
  QPushButton& cancelButton() { return cancel_; }

  bool eventFilter(QObject* watched, QEvent* event) override;
  void done(int result) override;

 private:
  void layOut();
  void save();

  AppModel& model_;
  const UUID patternID_;
  QLineEdit name_;
  QPushButton cancel_;
  QPushButton save_;
};

}  // namespace velmora
