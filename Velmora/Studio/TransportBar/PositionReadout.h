#pragma once

#include <QWidget>
#include <functional>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Studio/TransportBar/ReadoutFace.h"
#include "Velmora/Studio/TransportBar/SongPosition.h"
#include "Velmora/Theme/FrameTicker.h"

namespace velmora {

/// Where the playhead stands. It looks about sixty times a second while the transport runs, and otherwise
/// only when the playhead jumps; it repaints nothing but itself, and only for another text.
class PositionReadout final : public QWidget {
 public:
  PositionReadout(const AppModel& model, QWidget* parent);

  void setSizeClass(SizeClass sizeClass);
  int numberWidth() const { return face_.numberWidth(); }

  /// Hears that the number got more or fewer digits.
  std::function<void()> onLengthChange;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void follow();
  void look();

  const AppModel& model_;
  ReadoutFace face_{.caption = "POSITION", .order = ReadoutFace::Order::captionFirst};
  SongPosition position_;
  FrameTicker frames_{[this] { look(); }};
  ChangeListener listener_;
};

}  // namespace velmora
