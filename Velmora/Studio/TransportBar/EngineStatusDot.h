#pragma once

#include <QWidget>

namespace velmora {

/// A lamp that tells whether the audio engine runs, with or without the word beside it.
class EngineStatusDot final : public QWidget {
 public:
  /// Free room on every side, where the lamp's light falls.
  static constexpr int margin = 6;

  explicit EngineStatusDot(QWidget* parent);

  void setRunning(bool isRunning);
  void setShowsLabel(bool showsLabel);

  /// The width of lamp and word, without the margin.
  int contentWidth() const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void showState();

  bool isRunning_ = false;
  bool showsLabel_ = true;
};

}  // namespace velmora
