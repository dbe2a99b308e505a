#pragma once

#include <QAccessibleActionInterface>
#include <QAccessibleInterface>
#include <QPointer>

#include "Velmora/Studio/Arrangement/ArrangementCanvas.h"

namespace velmora {

/// What a screen reader sees of one clip: an entry that can be selected and deleted. Stands for a place in
/// the row of all clips.
class AccessibleClip final : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  AccessibleClip(ArrangementCanvas* canvas, int index) : canvas_(canvas), index_(index) {}

  int index() const { return index_; }

  bool isValid() const override { return place().has_value(); }
  QObject* object() const override { return nullptr; }
  QWindow* window() const override;
  QAccessibleInterface* parent() const override;
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  QAccessibleInterface* child(int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }

  QString text(QAccessible::Text type) const override;
  void setText(QAccessible::Text, const QString&) override {}
  QRect rect() const override;
  QAccessible::Role role() const override { return QAccessible::ListItem; }
  QAccessible::State state() const override;
  void* interface_cast(QAccessible::InterfaceType type) override;

  QStringList actionNames() const override;
  void doAction(const QString& name) override;
  QStringList keyBindingsForAction(const QString& name) const override;

 private:
  std::optional<ClipPlace> place() const;
  QString label() const;

  QPointer<ArrangementCanvas> canvas_;
  int index_;
};

}  // namespace velmora
