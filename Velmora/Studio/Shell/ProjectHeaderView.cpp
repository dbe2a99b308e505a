#include "Velmora/Studio/Shell/ProjectHeaderView.h"

#include <algorithm>

#include "Velmora/Studio/Shell/RenameSheet.h"
#include "Velmora/Studio/Shell/WorkspaceEntry.h"
#include "Velmora/Theme/Spoken.h"

namespace velmora {

namespace {

constexpr int edge = 8;
constexpr int spacing = 4;
constexpr int pickerWidth = 260;
constexpr int longestName = 320;  ///< a longer one is elided before anything else makes room

/// One item of the menu "Project actions".
struct HeaderItem {
  QString text;
  const char* symbol;
  std::function<void()> run;
};

QList<HeaderItem> headerItems(AppModel& model, const WindowActions& actions) {
  return {
      {"Import Audio", "square.and.arrow.down", [&model] { model.showsAudioImport.set(true); }},
      {"Export WAV", "square.and.arrow.up", actions.exportWAV},
      {"Save Now", "square.and.arrow.down.on.square", [&model] { model.saveNow(); }},
      {editorItemText(model), "rectangle.bottomthird.inset.filled", [&model] { flipEditor(model); }},
      {"Velmora Community", "person.2", actions.showCommunity},
      {actions.accountEntry(), "person.crop.circle", actions.showAccount},
      {"About Velmora", "info.circle", actions.showAbout},
  };
}

/// What the header's last button leads to.
const WorkspaceEntry& otherWorkspace(Workspace workspace) {
  return entryOf(workspace == Workspace::mixer ? Workspace::arrangement : Workspace::mixer);
}

}  // namespace

ProjectHeaderView::ProjectHeaderView(AppModel& model, const WindowActions& actions, QWidget* parent)
    : QWidget(parent),
      model_(model),
      actions_(actions),
      projects_("Projects", "folder"),
      name_({}, {}, {.font = Theme::Text::title}),
      picker_(model),
      menuButton_("ellipsis.circle", "Project actions"),
      workspace_({}, {}, {.fill = TallButton::Fill::raised}),
      listener_([this] { refresh(); }, model.song, model.saveStatus, model.workspace) {
  setObjectName("header");
  arrange();
  connect(&projects_, &QAbstractButton::clicked, this, [this] { model_.showsProjects.set(true); });
  connect(&name_, &QAbstractButton::clicked, this, [this] { openRenameSheet(); });
  connect(&menuButton_, &QAbstractButton::clicked, this, [this] { openMenu(); });
  connect(&workspace_, &QAbstractButton::clicked, this, [this] { changeWorkspace(); });
  refresh();
}

void ProjectHeaderView::arrange() {
  projects_.setObjectName("header.projects");
  name_.setObjectName("header.rename");
  picker_.setObjectName("header.workspace");
  picker_.setFixedWidth(pickerWidth);
  status_.setObjectName("header.saveStatus");
  status_.setFont(Theme::font(Theme::Text::caption));
  QPalette dimmed = status_.palette();
  dimmed.setColor(QPalette::WindowText, Theme::secondary);
  status_.setPalette(dimmed);
  menuButton_.setObjectName("header.actions");
  Spoken::attach(menuButton_, {.role = QAccessible::ButtonMenu, .press = [this] { menuButton_.click(); }});
  workspace_.setObjectName("header.mixer");
  setFixedHeight(headerHeight);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(edge, 0, edge, 1);  // the rule below
  row->setSpacing(spacing);
  row->addWidget(&projects_);
  row->addWidget(&name_);
  row->addWidget(&picker_);
  row->addWidget(&status_);
  row->addStretch(1);
  row->addWidget(&menuButton_);
  row->addWidget(&workspace_);
}

void ProjectHeaderView::setShowsWorkspacePicker(bool showsWorkspacePicker) {
  showsWorkspacePicker_ = showsWorkspacePicker;
  showForm();
}

void ProjectHeaderView::refresh() {
  name_.setContent(QString::fromStdString(model_.song().name));
  name_.setAccessibleName("Rename project");
  name_.setToolTip(name_.text());
  status_.setText(QString::fromStdString(model_.saveStatus()));
  const WorkspaceEntry& other = otherWorkspace(model_.workspace());
  workspace_.setContent(other.text, other.symbol);
  showForm();
}

/// The full form as long as all of it fits; only the name may be cut.
ProjectHeaderView::Form ProjectHeaderView::fittingForm() const {
  const auto widthOf = [](const QWidget& widget) { return widget.sizeHint().width() + spacing; };
  const int ends = projects_.widthWith(TallButton::Label::shown) + spacing + widthOf(menuButton_) + 2 * edge;
  const int name = std::min(name_.sizeHint().width(), longestName) + spacing;
  const int rest =
      showsWorkspacePicker_ ? pickerWidth + spacing : widthOf(status_) + widthOf(workspace_) + spacing;
  return ends + name + rest <= width() ? Form::full : Form::compact;
}

void ProjectHeaderView::showForm() {
  const bool isFull = fittingForm() == Form::full;
  projects_.setLabelShown(isFull ? TallButton::Label::shown : TallButton::Label::hidden);
  picker_.setVisible(showsWorkspacePicker_);
  status_.setVisible(isFull && !showsWorkspacePicker_);
  workspace_.setVisible(isFull && !showsWorkspacePicker_);
}

void ProjectHeaderView::openRenameSheet() { (new RenameSheet(model_, window()))->open(); }

void ProjectHeaderView::fillMenu() {
  menu_.clear();
  for (const HeaderItem& item : headerItems(model_, actions_)) {
    connect(menu_.addAction(Theme::symbolIcon(item.symbol), item.text), &QAction::triggered, this, item.run);
  }
}

void ProjectHeaderView::openMenu() {
  fillMenu();
  const QPoint corner = menuButton_.mapToGlobal(menuButton_.rect().bottomRight());
  menu_.popup(corner - QPoint(menu_.sizeHint().width(), 0));
}

void ProjectHeaderView::changeWorkspace() {
  model_.setWorkspace(otherWorkspace(model_.workspace()).workspace);
}

void ProjectHeaderView::resizeEvent(QResizeEvent*) { showForm(); }

void ProjectHeaderView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Theme::surface);
  painter.fillRect(0, height() - 1, width(), 1, Theme::line);
}

}  // namespace velmora
