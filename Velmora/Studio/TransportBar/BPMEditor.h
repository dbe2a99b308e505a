#pragma once

#include <QWidget>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Theme/Popover.h"

class QLineEdit;

namespace velmora {

/// Types a tempo, in a window that it closes when done. As long as it is on the screen, `isEditingText` of
/// the model is set.
class BPMEditor final : public QWidget {
 public:
  explicit BPMEditor(AppModel& model);
  ~BPMEditor() override;

  /// In a popover beside the anchor.
  static Popover& open(AppModel& model, QWidget& anchor);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void set();
  void dismiss();
  void endEditing();

  AppModel& model_;
  QLineEdit* const text_;
  bool isEditing_ = false;
};

}  // namespace velmora
