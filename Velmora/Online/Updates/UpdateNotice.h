#pragma once

#include <QRect>
#include <QWidget>
#include <optional>

#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Theme/CommandButton.h"
#include "Velmora/Theme/IconButton.h"
#include "Velmora/Theme/TextLabel.h"

namespace velmora {

class AppUpdater;

/// The card that offers an update over the studio, at the user's convenience.
class UpdateNotice : public QWidget {
 public:
  static constexpr int maximumWidth = 360;
  static constexpr int margin = 12;  ///< to the foot and the trailing side

  /// The updater outlives the card.
  UpdateNotice(AppUpdater& updater, QWidget* parent);

  /// To the bottom trailing corner of `area` of the parent; for the parent's resizes. The card keeps to it
  /// when its words change.
  void place(const QRect& area);

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;

 private:
  void arrange();
  void hearModel();
  void refresh();
  void showOffer(const QString& version);
  void takePlace();

  AppUpdater& updater_;
  TextLabel title_;
  IconButton later_;
  TextLabel line_;
  TextLabel obstacle_;
  CommandButton install_;
  std::optional<QRect> area_;
  ChangeListener offerListener_;
  ChangeListener modelListener_;
  std::optional<ChangeListener> workListener_;
};

}  // namespace velmora
