#pragma once

#include <QAccessibleWidget>
#include <unordered_map>

#include "Velmora/Studio/PianoRoll/PianoRollCanvasView.h"

namespace velmora {

/// What a screen reader sees of a piano roll: a group with a button for each note, in the pattern's order.
class AccessiblePianoRoll final : public QAccessibleWidget {
 public:
  explicit AccessiblePianoRoll(PianoRollCanvasView* canvas);
  ~AccessiblePianoRoll() override;

  /// Makes every piano roll of the process accessible; more calls do nothing.
  static void install();

  /// Tells of notes that came or went since the last time.
  void notesChanged();

  int childCount() const override;
  QAccessibleInterface* child(int index) const override;
  QAccessibleInterface* childAt(int x, int y) const override;
  QAccessibleInterface* focusChild() const override;
  int indexOfChild(const QAccessibleInterface* child) const override;
  QString text(QAccessible::Text type) const override;

 private:
  PianoRollCanvasView& canvas() const;
  const SharedList<Note>& notes() const;
  QAccessibleInterface* childFor(const Note* note) const;
  void forgetRemoved();

  mutable std::unordered_map<UUID, QAccessible::Id> children_;  // made when first asked for
  int toldCount_ = 0;
};

}  // namespace velmora
