#pragma once

#include <QStringList>
#include <QWidget>
#include <functional>
#include <vector>

class QAbstractButton;

namespace velmora {

/// One choice of a few, side by side: clicked, or moved through with the arrow keys once Tab has come to it.
class SegmentedPicker : public QWidget {
 public:
  SegmentedPicker(const QString& label, const QStringList& entries, QWidget* parent = nullptr);

  int selected() const;
  /// Doesn't call `onSelect`.
  void setSelected(int index);

  /// Hears the user's choices. The picker shows a choice at once; who refuses it calls `setSelected`.
  std::function<void(int index)> onSelect;

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QRect pill() const;

  std::vector<QAbstractButton*> segments_;
};

}  // namespace velmora
