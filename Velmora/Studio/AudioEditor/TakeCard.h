#pragma once

#include <QBoxLayout>
#include <QPointer>
#include <QWidget>
#include <filesystem>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Theme/CommandButton.h"
#include "Velmora/Theme/ConfirmationSheet.h"
#include "Velmora/Theme/TextLabel.h"

namespace velmora {

/// Stands over the editor while a take waits to be saved: save it again, keep its file, or give it up.
class TakeCard final : public QWidget {
 public:
  /// The model must outlive it.
  explicit TakeCard(AppModel& model, QWidget* parent = nullptr);

  /// Visible or not, as the model has a take.
  void refresh();
  bool confirmsDiscard() const;  ///< it asks whether to give the take up

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void chooseCopy();
  void saveCopy(const std::filesystem::path& target);
  void askToDiscard();

  AppModel& model_;
  QBoxLayout row_{QBoxLayout::LeftToRight};
  TextLabel line_;
  CommandButton retry_;
  CommandButton saveOriginal_;
  CommandButton discard_;
  QPointer<ConfirmationSheet> question_;
  QPointer<QDialog> copyDialog_;
};

}  // namespace velmora
