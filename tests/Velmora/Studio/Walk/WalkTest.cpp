#include <QAccessible>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QMenu>
#include <algorithm>
#include <fstream>

#include "Platform/Audio/AudioFile.h"
#include "Velmora/Online/OnlineWindows.h"
#include "Velmora/Studio/Arrangement/ArrangementView.h"
#include "Velmora/Studio/AudioEditor/AudioEditorView.h"
#include "Velmora/Studio/Mixer/MixerView.h"
#include "Velmora/Studio/PatternPicker/PatternEditorView.h"
#include "Velmora/Studio/PianoRoll/PianoEditorView.h"
#include "Velmora/Studio/StepGrid/StepGridView.h"
#include "Velmora/Theme/Theme.h"
#include "tests/Velmora/Studio/Shell/ShellBench.h"
#include "tests/Velmora/Studio/Walk/PaintedText.h"

namespace velmora {
namespace {

using testing::contrast;
using testing::ModelBench;
using testing::spinUntil;

constexpr QSize sizes[] = {{540, 480}, {800, 600}, {1280, 800}};
constexpr int largeText = 19;  // pixels, from which on the eye needs less contrast
constexpr double leastContrast = 4.5;
constexpr double leastContrastOfLargeText = 3;

WorkspaceViews studioViews(AppModel& model) {
  const PatternEditors editors{
      .stepGrid = [&model](const UUID& patternID, const UUID&,
                           QWidget* parent) { return new StepGridView(model, patternID, parent); },
      .pianoRoll = [&model](
                       const UUID& patternID, const UUID& trackID,
                       QWidget* parent) { return new PianoEditorView(model, patternID, trackID, parent); },
      .audio = [&model](const UUID& trackID,
                        QWidget* parent) { return new AudioEditorView(model, trackID, parent); }};
  return {.arrangement = [&model](QWidget* parent) { return new ArrangementView(model, parent); },
          .patternEditor =
              [&model, editors](QWidget* parent) { return new PatternEditorView(model, editors, parent); },
          .mixer = [&model](QWidget* parent) { return new MixerView(model, parent); }};
}

/// The online services with nobody signed in and nothing at their address.
struct Online {
  explicit Online(AppModel& model)
      : windows(
            model, services, [] {}, [] { return std::make_unique<testing::HandDrivenOutput>(); }) {}

  platform::UpdateInstaller installer{std::filesystem::path()};
  OnlineServices services{installer};
  OnlineWindows windows;
};

void addOnline(AppModel& model, ShellServices& services) {
  platform::Preferences().set("serviceEndpoint", QString("http://127.0.0.1:1"));
  const auto online = std::make_shared<Online>(model);
  services.checkForUpdates = [online](QWidget* window) { online->windows.checkForUpdates(window); };
  services.showAccount = [online](QWidget* window) { online->windows.showAccount(window); };
  services.showCommunity = [online](QWidget* window) { online->windows.showCommunity(window); };
  services.accountEntry = [online] { return online->windows.accountEntry(); };
}

// Where the user stands before a place is opened

void selectClip(ModelBench& bench) {
  bench.model->addTrack(TrackKind::drums());  // where the clip could move
  bench.model->selectClip(bench.model->song().clips.front().id);
}

void selectDrums(ModelBench& bench) { bench.model->selectTrack(bench.model->song().tracks.front().id); }

void selectNote(ModelBench& bench) {
  bench.model->selectTrack(bench.model->song().tracks[1].id);
  bench.model->selectNote(bench.model->song().patterns[1].notes.front().id);
}

void addAudio(ModelBench& bench) {
  const auto path = bench.takes / "Voice.wav";
  platform::AudioFileWriter writer(path, 8000, platform::AudioFileWriter::SampleFormat::int16);
  writer.write(std::vector<float>(8000, 0.5F), std::vector<float>(8000, 0.5F));
  writer.close();
  for (const double beat : {0, 8}) {
    auto importing = bench.model->importAudio(path, {.trackID = {}, .beat = beat, .name = {}});
    ASSERT_TRUE(spinUntil([&] { return importing.isReady(); }));
  }
}

void endTakeBadly(ModelBench& bench) {
  bench.model->addTrack(TrackKind::audio());
  bench.model->startRecording();
  std::ofstream(bench.microphone->file) << "no sound";
  bench.microphone->end(false);
  ASSERT_TRUE(spinUntil([&] { return bench.model->pendingTake().has_value(); }));
}

void makeEmpty(ModelBench& bench) {
  auto creating = bench.model->createProject();
  ASSERT_TRUE(spinUntil([&] { return creating.isReady(); }));
  bench.model->deleteTrack(bench.model->song().tracks.front().id);
}

struct Scene {
  Workspace workspace;
  void (*prepare)(ModelBench& bench);
};
constexpr Scene arrangement{Workspace::arrangement, selectClip};
constexpr Scene drums{Workspace::pattern, selectDrums};
constexpr Scene synth{Workspace::pattern, selectNote};
constexpr Scene take{Workspace::pattern, endTakeBadly};

struct Place {
  const char* name;
  Scene scene;
  QList<const char*> clicks{};  ///< that lead there, by identifiers, in menus by texts
  const char* menu = nullptr;   ///< of the menu bar
};

const Place places[] = {
    {"arrangement", arrangement},
    {"steps", drums},
    {"pianoRollWithInspector", synth},
    {"audioEditor", {Workspace::pattern, addAudio}},
    {"takeCardAndError", take},
    {"mixer", {Workspace::mixer, selectClip}},
    {"emptyArrangement", {Workspace::arrangement, makeEmpty}},
    {"emptyEditor", {Workspace::pattern, makeEmpty}},
    {"emptyMixer", {Workspace::mixer, makeEmpty}},
    {"addFirstTrack", {Workspace::arrangement, makeEmpty}, {"arrangement.addTrack"}},
    {"library", arrangement, {"header.projects"}},
    {"libraryMenu", arrangement, {"header.projects", "library.list"}},
    {"renameProject", arrangement, {"header.rename"}},
    {"projectActions", arrangement, {"header.actions"}},
    {"about", arrangement, {"header.actions", "About Velmora"}},
    {"privacy", arrangement, {"header.actions", "About Velmora", "about.Privacy"}},
    {"notices", arrangement, {"header.actions", "About Velmora", "about.ThirdPartyNotices"}},
    {"account", arrangement, {"header.actions", "Sign In…"}},
    {"newAccount", arrangement, {"header.actions", "Sign In…", "account-password-mode"}},
    {"community", arrangement, {"header.actions", "Velmora Community"}},
    {"deleteProject", arrangement, {"header.projects", "library.list", "Delete"}},
    {"importDialog", arrangement, {"header.actions", "Import Audio"}},
    {"exportDialog", arrangement, {"header.actions", "Export WAV"}},
    {"loopEditor", arrangement, {"arrangement.loop"}},
    {"moveClip", arrangement, {"arrangement.clip.move"}},
    {"addTrack", arrangement, {"arrangement.addTrack"}},
    {"tempo", arrangement, {"transport.tempo"}},
    {"chooseTrack", drums, {"editor.track"}},
    {"choosePattern", drums, {"editor.pattern"}},
    {"patternActions", drums, {"editor.actions"}},
    {"renamePattern", drums, {"editor.actions", "Rename Pattern"}},
    {"presets", synth, {"piano.preset"}},
    {"discardTake", take, {"audio.take.discard"}},
    {"saveTake", take, {"audio.take.saveOriginal"}},
    {"applicationMenu", arrangement, {}, "Velmora"},
    {"fileMenu", arrangement, {}, "File"},
    {"workspaceMenu", arrangement, {}, "Workspace"},
    {"transportMenu", arrangement, {}, "Transport"},
    {"trackMenu", arrangement, {}, "Track"},
    {"editMenu", arrangement, {}, "Edit Selection"},
};

void PrintTo(const Place& place, std::ostream* out) { *out << place.name; }

class WalkTest : public testing::ShellBench, public ::testing::WithParamInterface<Place> {
 protected:
  WalkTest() : ShellBench(studioViews, addOnline) { Theme::setReducesMotion(true); }

  void open(const Place& place);
  void closeAll();
  QWidget& front() const;

 private:
  void click(const char* name);
};

QWidget& WalkTest::front() const {
  if (QWidget* popup = QApplication::activePopupWidget()) return *popup;
  QWidget* sheet = QApplication::activeModalWidget();
  return sheet ? *sheet : static_cast<QWidget&>(*window_);
}

/// Presses a button, opens a list's or a combo box's menu, or chooses from the menu in front.
void WalkTest::click(const char* name) {
  if (auto* menu = qobject_cast<QMenu*>(&front())) {
    const auto actions = menu->actions();
    const auto chosen = std::ranges::find(actions, QString(name), &QAction::text);
    ASSERT_NE(chosen, actions.end()) << name;
    menu->setActiveAction(*chosen);
    QTest::keyClick(menu, Qt::Key_Return);
    return;
  }
  QWidget* shown = nullptr;
  ASSERT_TRUE(spinUntil([&] {
    for (QWidget* each : front().findChildren<QWidget*>(name)) shown = each->isVisible() ? each : shown;
    return shown != nullptr;
  })) << name;
  if (auto* button = qobject_cast<QAbstractButton*>(shown)) return button->click();
  if (auto* box = qobject_cast<QComboBox*>(shown)) return box->showPopup();
  QContextMenuEvent asked(QContextMenuEvent::Keyboard, {}, {});
  QApplication::sendEvent(shown, &asked);
}

void WalkTest::open(const Place& place) {
  for (const char* name : place.clicks) {
    const QWidget* before = &front();
    ASSERT_NO_FATAL_FAILURE(click(name));
    const bool isPage = QString(name).startsWith("about.") || QString(name).startsWith("account-");
    ASSERT_TRUE(spinUntil([&] { return isPage || (&front() != before && &front() != window_); })) << name;
  }
  if (!place.menu) return;
  for (QAction* title : window_->menuBar()->actions()) {
    if (title->text().remove('&') == place.menu) title->menu()->popup({});
  }
  ASSERT_NE(&front(), window_) << place.menu;
}

void WalkTest::closeAll() {
  while (&front() != window_) {
    QWidget& window = front();
    window.close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_TRUE(spinUntil([&] { return &front() != &window; }));
  }
}

// What a screen reader finds

bool canAct(QAccessibleInterface& part) {
  if (QAccessibleActionInterface* actions = part.actionInterface()) {
    QStringList names = actions->actionNames();
    names.removeAll(QAccessibleActionInterface::setFocusAction());
    if (!names.isEmpty()) return true;
  }
  const bool isList = part.role() == QAccessible::List;  // whose rows, if any, are looked at themselves
  if (isList || part.valueInterface() || part.textInterface()) return true;
  for (int index = 0; index < part.childCount(); ++index) {
    if (QAccessibleInterface* child = part.child(index); child && canAct(*child)) return true;
  }
  return false;
}

/// Whatever can be reached tells its name, its role and what can be done with it.
void expectSpoken(QAccessibleInterface& part) {
  if (part.state().invisible) return;
  const QString name = part.text(QAccessible::Name);
  constexpr QAccessible::Role reachedInside[] = {QAccessible::MenuItem, QAccessible::ListItem};
  const bool isReached = part.state().focusable || std::ranges::count(reachedInside, part.role());
  if (isReached) {
    const QObject* object = part.object();
    const std::string which = (name + " / " + (object ? object->objectName() : "")).toStdString() + " / " +
                              qAccessibleRoleString(part.role());
    EXPECT_FALSE(name.isEmpty()) << which;
    EXPECT_NE(part.role(), QAccessible::Client) << which;
    EXPECT_NE(part.role(), QAccessible::NoRole) << which;
    EXPECT_TRUE(part.state().disabled || canAct(part)) << which;
  }
  for (int index = 0; index < part.childCount(); ++index) {
    QAccessibleInterface* child = part.child(index);
    if (!child) continue;
    EXPECT_EQ(part.indexOfChild(child), index) << name.toStdString();  // or the reader drops what it tells
    expectSpoken(*child);
  }
}

// Where the tabulator leads

std::string described(const QWidget& widget) {
  const QString name = widget.accessibleName().isEmpty() ? widget.objectName() : widget.accessibleName();
  return (name.isEmpty() ? QString(widget.metaObject()->className()) : name).toStdString();
}

std::vector<QWidget*> tabStops(QWidget& window) {
  std::vector<QWidget*> stops;
  QWidget* first = window.focusWidget() ? window.focusWidget() : &window;
  for (QWidget* at = first; stops.size() < 500;) {
    QTest::keyClick(at, Qt::Key_Tab);
    at = window.focusWidget();
    if (!at || std::ranges::count(stops, at)) break;
    stops.push_back(at);
  }
  return stops;
}

bool isStop(const QWidget& widget, const QWidget& window) {
  const auto* button = qobject_cast<const QAbstractButton*>(&widget);
  const bool isOtherChoice =
      button && button->autoExclusive() && button->isCheckable() && !button->isChecked();
  return (widget.focusPolicy() & Qt::TabFocus) && widget.isVisible() && widget.isEnabled() &&
         widget.window() == &window && !widget.focusProxy() && !isOtherChoice;
}

/// Down the rows, and in a row from the leading edge: told by what holds the one and the other side by side.
bool isForward(const QWidget* from, const QWidget* to) {
  constexpr int tolerance = 6;
  if (from == to || from->isAncestorOf(to)) return true;
  if (to->isAncestorOf(from)) return false;
  const QWidget* common = from->parentWidget();
  while (!common->isAncestorOf(to)) common = common->parentWidget();
  while (from->parentWidget() != common) from = from->parentWidget();
  while (to->parentWidget() != common) to = to->parentWidget();
  const QRect one = from->geometry();
  const QRect other = to->geometry();
  if (other.top() >= one.bottom() - tolerance) return true;
  return other.left() > one.left() && other.bottom() > one.top() + tolerance;
}

void expectTabOrder(QWidget& window) {
  const std::vector<QWidget*> stops = tabStops(window);
  for (QWidget* each : window.findChildren<QWidget*>()) {
    EXPECT_TRUE(!isStop(*each, window) || std::ranges::count(stops, each))
        << "no way to " << described(*each);
  }
  int jumps = 0;  // of which the one back to the start is right
  std::string path;
  for (std::size_t i = 0; i < stops.size(); ++i) {
    const bool isJump = !isForward(stops[i], stops[(i + 1) % stops.size()]);
    path += described(*stops[i]) + (isJump ? " <<\n" : "\n");
    jumps += isJump ? 1 : 0;
  }
  EXPECT_LE(jumps, 1) << path;
}

// What can be read

/// The colour of most pixels.
QColor groundOf(const QImage& image) {
  QHash<QRgb, int> counts;
  std::pair<int, QRgb> most;
  for (int place = 0; place < image.width() * image.height(); ++place) {
    const QRgb pixel = image.pixel(place % image.width(), place / image.width());
    most = std::max(most, {++counts[pixel], pixel});
  }
  return QColor::fromRgb(most.second);
}

/// What can't be used now needn't be read.
bool isDisabled(QWidget& window, QPoint place) {
  const auto* menu = qobject_cast<QMenu*>(&window);
  const QAction* action = menu ? menu->actionAt(place) : nullptr;
  const QWidget* widget = window.childAt(place);
  return (action && !action->isEnabled()) || (widget && !widget->isEnabled());
}

void expectContrast(QWidget& window) {
  const QImage picture = window.grab().toImage();
  const auto texts = testing::paintedTexts(window);
  EXPECT_FALSE(texts.empty());
  for (const testing::PaintedText& text : texts) {
    const QRect place = text.place & picture.rect();
    if (place.isEmpty() || isDisabled(window, place.center())) continue;
    const QColor ground = groundOf(picture.copy(place));
    EXPECT_GE(contrast(text.color, ground),
              text.pixels >= largeText ? leastContrastOfLargeText : leastContrast)
        << text.words.toStdString() << ", " << text.color.name(QColor::HexArgb).toStdString() << " on "
        << ground.name().toStdString();
  }
}

/// The names that clips paint, by the colours of their tracks. Both colours are given: what is listed can't
/// do better.
TEST(ClipNamesTest, AreReadOnEveryTrackColor) {
  const std::map<TrackColor, double> below{{TrackColor::blue, 3.92},
                                           {TrackColor::red, 3.97},
                                           {TrackColor::pink, 4.46},
                                           {TrackColor::purple, 3.49}};
  ModelBench bench;
  while (bench.model->song().tracks.size() < 8) bench.model->addTrack(TrackKind::drums());
  for (const Track& track : Song(bench.model->song()).tracks) bench.model->placePattern(track.id, 40);
  ArrangementView view(*bench.model);
  view.resize(2400, 800);
  view.show();
  auto* canvas = view.findChild<QWidget*>("arrangement.canvas");
  QAccessibleInterface* clips = QAccessible::queryAccessibleInterface(canvas);
  std::set<TrackColor> seen;
  for (int index = 0; index < clips->childCount(); ++index) {
    const QRect clip = clips->child(index)->rect().translated(-canvas->mapToGlobal(QPoint()));
    const QImage name = canvas->grab(QRect(clip.topLeft() + QPoint(8, 6), QSize(60, 14))).toImage();
    const QColor ground = groundOf(name);
    double most = 1;
    for (int place = 0; place < name.width() * name.height(); ++place)
      most = std::max(most, contrast(name.pixelColor(place % name.width(), place / name.width()), ground));
    const TrackColor color = bench.model->song().tracks[static_cast<std::size_t>(clip.y() / 64)].color;
    seen.insert(color);
    EXPECT_GE(most, below.contains(color) ? below.at(color) : leastContrast);
  }
  EXPECT_EQ(seen.size(), 8U);
}

TEST_P(WalkTest, IsSpokenReachedAndRead) {
  ASSERT_NO_FATAL_FAILURE(GetParam().scene.prepare(bench_));
  model().setWorkspace(GetParam().scene.workspace);
  for (const QSize size : sizes) {
    SCOPED_TRACE(std::to_string(size.width()) + " by " + std::to_string(size.height()));
    ASSERT_TRUE(resizeContent(size));
    ASSERT_NO_FATAL_FAILURE(open(GetParam()));
    for (int round = 0; round < 5; ++round)
      QCoreApplication::processEvents();  // layouts ask one another anew
    QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(&front());
    EXPECT_GE(seen->parent()->indexOfChild(seen), 0);
    expectSpoken(*seen);
    expectContrast(front());
    if (!qobject_cast<QMenu*>(&front())) expectTabOrder(front());
    closeAll();
  }
}

INSTANTIATE_TEST_SUITE_P(Studio, WalkTest, ::testing::ValuesIn(places),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace velmora
