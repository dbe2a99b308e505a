#pragma once

#include <QLabel>
#include <QMenuBar>
#include <QSettings>
#include <QTest>
#include <functional>
#include <gtest/gtest.h>
#include <utility>

#include "Velmora/Studio/Shell/WindowGroup.h"
#include "tests/support/ModelBench.h"

namespace velmora::testing {

/// The studio's windows over a real model and store; the views of the workspaces are labels with their names
/// unless somebody makes others.
class ShellBench : public ::testing::Test {
 protected:
  using MakeViews = std::function<WorkspaceViews(AppModel&)>;

  using AddServices = std::function<void(AppModel&, ShellServices&)>;

  explicit ShellBench(
      MakeViews makeViews = labels, AddServices addServices = [](AppModel&, ShellServices&) {})
      : makeViews_(std::move(makeViews)), addServices_(std::move(addServices)) {
    QSettings("Orrin", "Velmora").clear();
    start();
    EXPECT_TRUE(spinUntil([&] { return model().isEngineRunning(); }));
  }

  /// A new process on the same disk.
  void start() {
    windows_.reset();
    bench_.start();
    windows_ = std::make_unique<WindowGroup>(model(), services());
    window_ = &windows_->open();
    wasLoadedWhenShown_ = model().hasLoadedProject();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window_));
  }

  AppModel& model() { return *bench_.model; }

  template <class Object = QWidget>
  Object* find(const char* name) {
    return window_->findChild<Object*>(name);
  }
  bool isShown(const char* name) {
    const auto* widget = find(name);
    return widget && widget->isVisible();
  }
  bool awaitShown(const char* name, bool isWanted = true) {
    return spinUntil([&] { return isShown(name) == isWanted; });
  }
  void click(const char* name) {
    ASSERT_TRUE(awaitShown(name)) << name;
    QTest::mouseClick(find(name), Qt::LeftButton);
    QCoreApplication::processEvents();
  }
  /// What the desktop does when a sheet opens or closes.
  bool activate(const char* name) {
    if (!awaitShown(name)) return false;
    find(name)->activateWindow();
    return QTest::qWaitForWindowActive(find(name));
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(QApplication::activeWindow()->windowHandle(), key, modifiers);
    QCoreApplication::processEvents();
  }
  /// Gives the window's content, menus apart, a size.
  bool resizeContent(QSize size) {
    window_->resize(size + QSize(0, window_->menuBar()->height()));
    return spinUntil([&] { return find("root")->size() == size; });
  }

  const MakeViews makeViews_;
  const AddServices addServices_;
  ModelBench bench_;
  bool isTerminated_ = false;
  bool wasLoadedWhenShown_ = true;
  std::unique_ptr<WindowGroup> windows_;
  MainWindow* window_ = nullptr;

 private:
  static WorkspaceViews labels(AppModel&) {
    const auto label = [](const char* name) {
      return [name](QWidget* parent) {
        auto* view = new QLabel(name, parent);
        view->setObjectName(name);
        return view;
      };
    };
    return {label("arrangement"), label("patternEditor"), label("mixer")};
  }

  ShellServices services() {
    ShellServices services;
    services.views = makeViews_(model());
    services.fileDialogOptions = QFileDialog::DontUseNativeDialog;
    services.terminate = [this] { isTerminated_ = true; };
    addServices_(model(), services);
    return services;
  }
};

}  // namespace velmora::testing
