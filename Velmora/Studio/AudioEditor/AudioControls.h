#pragma once

#include <QTimer>
#include <QWidget>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Theme/CommandButton.h"
#include "Velmora/Theme/TextLabel.h"

namespace velmora {

/// The ways in for sound: import a file, record a take, and how long the take is by now.
class AudioControls final : public QWidget {
 public:
  /// The model must outlive it.
  explicit AudioControls(AppModel& model, QWidget* parent = nullptr);

 private:
  void toggleRecording();
  void refresh();
  void showTime();

  AppModel& model_;
  CommandButton import_;
  CommandButton record_;
  TextLabel time_;
  QTimer clock_;
  ChangeListener listener_;
};

}  // namespace velmora
