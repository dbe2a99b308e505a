#pragma once

#include <array>

#include "Velmora/Model/AppModel.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Theme/PaintedButton.h"

namespace velmora {

/// One of the tabs: symbol over text; the checked one is in front.
class WorkspaceTab : public PaintedButton {
 public:
  static constexpr int tabHeight = 48;

  WorkspaceTab(const QString& text, QString symbol, QWidget* parent);

  QSize sizeHint() const override { return {tabHeight * 2, tabHeight}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const QString symbol_;
};

/// The tabs at the foot of a narrow window.
class WorkspaceTabs : public QWidget {
 public:
  explicit WorkspaceTabs(AppModel& model, QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void refresh();

  AppModel& model_;
  std::array<WorkspaceTab*, workspaces.size()> tabs_{};
  ChangeListener listener_;
};

}  // namespace velmora
