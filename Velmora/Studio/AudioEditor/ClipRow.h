#pragma once

#include <QScrollArea>
#include <functional>
#include <optional>
#include <vector>

#include "Velmora/Theme/CommandButton.h"
#include "VelmoraCore/Song/Clip.h"

namespace velmora {

/// A button for each clip of a track, side by side. Tab reaches the one that is shown, the arrow keys move
/// between them.
class ClipRow final : public QScrollArea {
 public:
  explicit ClipRow(QWidget* parent = nullptr);

  std::function<void(const UUID& clipID)> onSelect;

  void show(std::vector<Clip> clips, const std::optional<UUID>& shown);
  using QWidget::show;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

 protected:
  void wheelEvent(QWheelEvent* event) override;

 private:
  void addButton();
  void place();

  std::vector<Clip> clips_;
  std::vector<CommandButton*> buttons_;
  QWidget content_;
};

}  // namespace velmora
