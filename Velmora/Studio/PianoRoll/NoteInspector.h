#pragma once

#include <QWidget>

#include "Velmora/Studio/PianoRoll/NoteCommands.h"

class QHBoxLayout;
class QLabel;
class QSlider;

namespace velmora {

class Stepper;

/// Pitch, velocity and length of the selected note; hidden while no note of the pattern is selected.
class NoteInspector final : public QWidget {
 public:
  explicit NoteInspector(NoteCommands& commands, QWidget* parent = nullptr);

  void refresh();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void addPitch();
  void addVelocity();
  void addLength(const QString& name, const QString& symbol, const QString& text, double beats);
  void showNote(const Note& note);
  void edit(const NoteEdit& edit);

  NoteCommands& commands_;
  QHBoxLayout* row_ = nullptr;
  Stepper* pitch_ = nullptr;
  QLabel* velocityText_ = nullptr;
  QSlider* velocity_ = nullptr;
};

}  // namespace velmora
