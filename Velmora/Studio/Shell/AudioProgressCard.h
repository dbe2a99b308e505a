#pragma once

#include <QProgressBar>
#include <QTimer>
#include <QWidget>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Studio/Shell/AudioFileActions.h"
#include "Velmora/Theme/CommandButton.h"
#include "Velmora/Theme/TextLabel.h"

namespace velmora {

/// A line over the foot of the workspace while audio is worked on: an export shows how far it is and can be
/// cancelled, anything else that takes a while just moves.
class AudioProgressCard : public QWidget {
 public:
  static constexpr int maximumWidth = 400;
  static constexpr int margin = 8;      ///< to the foot and the sides
  static constexpr int patience = 200;  ///< ms that work without an end in sight may take unseen

  /// Model and actions outlive the card.
  AudioProgressCard(AppModel& model, const AudioFileActions& actions, QWidget& parent);

  /// To its place in `area` of the parent; for the parent's resizes.
  void place(const QRect& area);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  enum class Work : std::uint8_t { none, exporting, preparing };

  void arrange();
  Work currentWork() const;
  void refresh();
  void showWork();

  AppModel& model_;
  const AudioFileActions& actions_;
  Work work_ = Work::none;
  TextLabel message_;
  QProgressBar bar_;
  CommandButton cancel_;
  QTimer patience_;
  ChangeListener workListener_;
  ChangeListener progressListener_;
};

}  // namespace velmora
