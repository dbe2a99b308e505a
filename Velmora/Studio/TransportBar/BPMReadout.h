#pragma once

#include <QPointer>
#include <optional>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Studio/TransportBar/ReadoutFace.h"
#include "Velmora/Studio/TransportBar/TempoDrag.h"
#include "Velmora/Theme/PaintedButton.h"
#include "Velmora/Theme/Popover.h"

namespace velmora {

/// The tempo: dragged up and down, moved with the arrow keys, or typed after a tap.
class BPMReadout final : public PaintedButton {
 public:
  BPMReadout(AppModel& model, QWidget* parent);

  void setSizeClass(SizeClass sizeClass);
  int numberWidth() const { return face_.numberWidth(); }

  bool showsEditor() const { return editor_ && editor_->isVisible(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void showTempo();
  void openEditor();

  AppModel& model_;
  ReadoutFace face_{.caption = "BPM", .order = ReadoutFace::Order::numberFirst};
  std::optional<TempoDrag> drag_;
  QPointer<Popover> editor_;
  ChangeListener listener_;
};

}  // namespace velmora
