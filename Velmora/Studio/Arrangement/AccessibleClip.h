#pragma once

#include "Velmora/Studio/Arrangement/ArrangementCanvas.h"
#include "Velmora/Theme/AccessiblePart.h"

namespace velmora {

/// What a screen reader sees of one clip: an entry that can be selected and deleted. Stands for a place in
/// the row of all clips.
class AccessibleClip final : public AccessiblePart<ArrangementCanvas> {
 public:
  AccessibleClip(ArrangementCanvas* canvas, int index) : AccessiblePart(canvas), index_(index) {}

  int index() const { return index_; }

  bool isValid() const override { return place().has_value(); }
  QString text(QAccessible::Text type) const override;
  QAccessible::Role role() const override { return QAccessible::ListItem; }
  QAccessible::State state() const override;

  QStringList actionNames() const override;
  void doAction(const QString& name) override;
  QStringList keyBindingsForAction(const QString& name) const override;

 private:
  QRectF frame() const override { return canvas()->frameOf(*place()); }
  std::optional<ClipPlace> place() const;
  QString label() const;

  int index_;
};

}  // namespace velmora
