#include "Velmora/Studio/Shell/RootView.h"

#include <QApplication>
#include <QVBoxLayout>
#include <QWindow>
#include <utility>

#include "Velmora/Studio/Shell/RootLayout.h"
#include "Velmora/Theme/FocusOrder.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

RootView::RootView(AppModel& model, const WorkspaceViews& views, EditorFraction& editorFraction,
                   const WindowActions& actions, const AudioFileActions& audioFileActions, QWidget* parent)
    : QWidget(parent),
      model_(model),
      header_(model, actions),
      workspace_(model, views, editorFraction),
      transportBar_(model),
      tabs_(model),
      audioProgress_(model, audioFileActions, *this),
      banner_(*this),
      errorListener_([this] { refreshBanner(); }, model.lastError),
      libraryListener_([this] { refreshLibrary(); }, model.showsProjects) {
  setObjectName("root");
  setMinimumSize(RootLayout::minimumSize);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(&header_);
  column->addWidget(&workspace_, 1);
  column->addSpacing(1);  // the divider
  column->addWidget(&transportBar_);
  column->addWidget(&tabs_);
  if (model.recorder().hasInput()) {
    transportBar_.setOnRecord(
        [&model] { model.isRecording() ? void(model.stopRecording(true)) : model.startRecording(); });
  }
  connect(
      qGuiApp, &QGuiApplication::focusWindowChanged, this, [this] { notePhase(); }, Qt::QueuedConnection);
  banner_.onDismiss = [this] { model_.lastError.set({}); };
  refreshBanner();
}

void RootView::resizeEvent(QResizeEvent*) {
  const RootLayout shown(size());
  header_.setShowsWorkspacePicker(shown.showsPickerInHeader);
  workspace_.setShowsWorkspacePicker(shown.showsPickerInWorkspace);
  transportBar_.setCompact(shown.isCompact);
  tabs_.setVisible(shown.showsTabs);
  layout()->activate();
  audioProgress_.place(workspace_.geometry());
  placeNotice_(workspace_.geometry());
  banner_.place();
}

void RootView::setNotice(std::function<void(const QRect& workspace)> place) {
  placeNotice_ = std::move(place);
  placeNotice_(workspace_.geometry());
}

bool RootView::focusNextPrevChild(bool next) {
  orderFocusByPlace(*this);
  return QWidget::focusNextPrevChild(next);
}

/// The first painting is what the user has waited for; what takes time starts after it.
void RootView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Theme::surface);
  painter.fillRect(0, transportBar_.y() - 1, width(), 1, Theme::line);
  if (std::exchange(hasAppeared_, true) || !onAppear) return;
  QMetaObject::invokeMethod(
      this, [this] { onAppear(); }, Qt::QueuedConnection);
}

/// A sheet of this window leaves it active.
void RootView::notePhase() {
  const bool wasActive = std::exchange(isActive_, ownsActiveWindow());
  if (!wasActive || isActive_) return;
  model_.engine().releaseAuditionKeys();
  // A song that another is about to replace is saved by whoever replaces it, and the one of the start never.
  if (model_.hasLoadedProject() && !model_.isProjectBusy()) model_.saveNow();
}

bool RootView::ownsActiveWindow() const {
  const QObject* active = QApplication::activeWindow();
  while (active && active != window()) active = active->parent();
  return active;
}

void RootView::refreshBanner() {
  banner_.setMessage(QString::fromStdString(model_.lastError().value_or("")));
}

void RootView::refreshLibrary() {
  if (!model_.showsProjects() && library_) library_->close();
  if (!model_.showsProjects() || library_ || (isInFront && !isInFront())) return;
  library_ = new ProjectLibraryView(model_, window());
  library_->open();
}

}  // namespace velmora
