#pragma once

#include <QWidget>
#include <functional>

#include "Velmora/Theme/IconButton.h"
#include "Velmora/Theme/TextLabel.h"

namespace velmora {

/// The line over the grid: the bars to page through, if there are several, and what a page is.
class StepGridHeader final : public QWidget {
 public:
  explicit StepGridHeader(QWidget* parent = nullptr);

  std::function<void(int pages)> onTurnPage;

  void setPage(int page, int pageCount);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent*) override { place(); }

 private:
  bool showsBars() const { return pageCount_ > 1; }
  void place();

  int pageCount_ = 1;
  IconButton previous_;
  TextLabel bar_;
  IconButton next_;
  TextLabel caption_;
};

}  // namespace velmora
