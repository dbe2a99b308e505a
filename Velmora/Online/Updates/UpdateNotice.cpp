#include "Velmora/Online/Updates/UpdateNotice.h"

#include <QAccessible>
#include <QBoxLayout>
#include <QEvent>
#include <QPainter>
#include <algorithm>

#include "Velmora/Online/Updates/AppUpdater.h"
#include "Velmora/Theme/Paint.h"
#include "Velmora/Theme/Spoken.h"
#include "Velmora/Theme/Theme.h"

namespace velmora {

namespace {

constexpr double radius = 12;
constexpr int inset = 16;
constexpr int symbolSize = 18;
constexpr int symbolRoom = 32;

constexpr char downloads[] = "Velmora can download and install this update for you.";
constexpr char isOnPage[] = "You can get this update from its download page.";
constexpr char isReady[] = "Ready when you are. Your projects stay on this computer.";
constexpr char hasObstacle[] = "Finish your recording, export or save before restarting.";

}  // namespace

UpdateNotice::UpdateNotice(AppUpdater& updater, QWidget* parent)
    : QWidget(parent),
      updater_(updater),
      title_({}, Theme::Text::title),
      later_("xmark", "Later"),
      line_({}, Theme::Text::caption, Theme::secondary),
      obstacle_(hasObstacle, Theme::Text::caption, Theme::amber),
      install_({}, {}, {.fill = CommandButton::Fill::accent}),
      offerListener_([this] { refresh(); }, updater.availableVersion, updater.readyToInstall,
                     updater.dismissed),
      modelListener_([this] { hearModel(); }, updater.model) {
  setObjectName("updateNotice");
  Spoken::attach(*this, {.role = QAccessible::AlertMessage});
  later_.setObjectName("updateNotice.later");
  install_.setObjectName("updateNotice.install");
  connect(&later_, &QAbstractButton::clicked, this, [this] { updater_.dismiss(); });
  connect(&install_, &QAbstractButton::clicked, this, [this] { updater_.installUpdate(); });
  arrange();
  hide();
  hearModel();
}

void UpdateNotice::arrange() {
  later_.setTint(Theme::secondary);
  later_.setSymbolSize(15);
  auto* const head = new QHBoxLayout;
  head->setSpacing(0);
  auto* const symbol = new SymbolLabel("arrow.down.circle.fill", Theme::accent, symbolSize);
  symbol->setFixedWidth(symbolRoom);
  symbol->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  head->addWidget(symbol);
  head->addWidget(&title_, 1);
  head->addWidget(&later_);
  auto* const words = new QVBoxLayout;
  words->setContentsMargins(0, 0, inset, 0);
  words->setSpacing(8);
  for (TextLabel* const label : {&line_, &obstacle_}) {
    label->setWordWrap(true);
    words->addWidget(label);
  }
  words->addWidget(&install_, 0, Qt::AlignLeft);
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(inset, 4, 0, 8);
  column->setSpacing(0);
  column->addLayout(head);
  column->addLayout(words);
}

/// From now on the card hears the model that the updater guards.
void UpdateNotice::hearModel() {
  workListener_.reset();
  if (const AppModel* const model = updater_.model())
    workListener_.emplace([this] { refresh(); }, model->isRecording, model->isAudioBusy, model->isProjectBusy,
                          model->pendingTake, model->exportTask);
  refresh();
}

void UpdateNotice::refresh() {
  const auto& version = updater_.availableVersion();
  if (!version || updater_.dismissed()) return hide();
  showOffer(QString::fromStdString(*version));
}

void UpdateNotice::showOffer(const QString& version) {
  const bool isUpdateReady = updater_.readyToInstall();
  const bool canRestart = updater_.canRestart();
  title_.setText("Velmora " + version + " is available");
  line_.setText(isUpdateReady ? isReady : updater_.canInstall() ? downloads : isOnPage);
  obstacle_.setVisible(!canRestart);
  install_.setContent(isUpdateReady ? "Update & Restart" : "Get Update");
  install_.setEnabled(canRestart);
  const QString description = canRestart ? line_.text() : line_.text() + ' ' + obstacle_.text();
  const bool isNews =
      isHidden() || accessibleName() != title_.text() || accessibleDescription() != description;
  setAccessibleName(title_.text());
  setAccessibleDescription(description);
  takePlace();
  show();
  raise();
  if (!isNews) return;
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void UpdateNotice::place(const QRect& area) {
  area_ = area;
  takePlace();
}

void UpdateNotice::takePlace() {
  const QRect area = area_.value_or(parentWidget() ? parentWidget()->rect() : QRect(0, 0, maximumWidth, 0));
  const int width = std::min(area.width() - 2 * margin, maximumWidth);
  layout()->activate();
  const int height = layout()->heightForWidth(width);
  const int left =
      layoutDirection() == Qt::RightToLeft ? area.left() + margin : area.right() + 1 - margin - width;
  setGeometry(left, area.bottom() + 1 - margin - height, width, height);
}

bool UpdateNotice::event(QEvent* event) {
  const bool isHandled = QWidget::event(event);
  if (event->type() == QEvent::LayoutRequest && isVisible()) takePlace();
  return isHandled;
}

void UpdateNotice::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintPanel(painter, rect(), radius, Theme::raised, Theme::line);
}

}  // namespace velmora
