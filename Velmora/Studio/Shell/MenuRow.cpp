#include "Velmora/Studio/Shell/MenuRow.h"

#include <QMenu>

namespace velmora {

namespace {

using Target = const MenuTarget&;
using enum Qt::Key;

constexpr auto application = "&Velmora";
constexpr auto file = "&File";
constexpr auto workspace = "&Workspace";
constexpr auto transport = "&Transport";
constexpr auto track = "T&rack";
constexpr auto editSelection = "&Edit Selection";

constexpr auto control = Qt::CTRL;
constexpr auto controlShift = Qt::CTRL | Qt::SHIFT;
constexpr auto controlAlt = Qt::CTRL | Qt::ALT;

void showEditor(Target to) {
  to.model.setWorkspace(Workspace::pattern);
  to.model.editorVisible.set(true);
}

void deleteSelectedTrack(Target to) {
  if (const auto id = to.model.selectedTrackID()) to.model.deleteTrack(*id);
}

void fillSynths(QMenu& submenu, AppModel& model) {
  for (const SynthPreset preset : allSynthPresets()) {
    const std::string_view name = label(preset);
    QAction* action = submenu.addAction(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
    QObject::connect(action, &QAction::triggered, &model,
                     [&model, preset] { model.addTrack(TrackKind::synth(preset)); });
  }
}

// clang-format off
constexpr MenuRow rows[] = {
    {application, "About Velmora", [](Target to) { to.window.showAbout(); }},
    {application, "Check for Updates…", [](Target to) { to.window.checkForUpdates(); }},
    {application, "Velmora Account…", [](Target to) { to.window.showAccount(); }},

    {file, "New Velmora by Orrin Window", [](Target to) { to.window.newWindow(); }, {controlShift | Key_N}},
    {file, "New Project", [](Target to) { to.model.createProject(); }, {control | Key_N}},
    {file, "Open Project…", [](Target to) { to.model.showsProjects.set(true); }, {control | Key_O}},
    {file, "Save Project", [](Target to) { to.model.saveNow(); }, {control | Key_S}},
    {file},
    {file, "Import Audio…", [](Target to) { to.model.showsAudioImport.set(true); }, {control | Key_I}},
    {file, "Export WAV…", [](Target to) { to.window.exportWAV(); }, {controlShift | Key_E}},
    {file},
    {file, "Close Window", [](Target to) { to.window.closeWindow(); }, {control | Key_W}},
    {file, "Quit", [](Target to) { to.window.quit(); }, {control | Key_Q}},

    {workspace, "Arrangement", [](Target to) { to.model.setWorkspace(Workspace::arrangement); },
     {controlAlt | Key_1}},
    {workspace, "Pattern / Audio Editor", showEditor, {controlAlt | Key_2}},
    {workspace, "Mixer", [](Target to) { to.model.setWorkspace(Workspace::mixer); }, {controlAlt | Key_3}},
    {workspace},
    {workspace, "Hide Editor", [](Target to) { flipEditor(to.model); }, {}, editorItemText},

    {transport, "Play / Pause", [](Target to) { to.model.togglePlay(); }, {Key_Space}},
    {transport, "Stop", [](Target to) { to.model.stop(); }, {control | Key_Period}},
    {transport, "Return to Start", [](Target to) { to.model.returnToStart(); }, {Key_Return, Key_Enter}},
    {transport},
    {transport, "Pattern Mode", [](Target to) { to.model.setMode(PlaybackMode::pattern); },
     {control | Key_1}},
    {transport, "Song Mode", [](Target to) { to.model.setMode(PlaybackMode::song); }, {control | Key_2}},

    {track, "Add Drums", [](Target to) { to.model.addTrack(TrackKind::drums()); }},
    {track, "Add Synth", nullptr, {}, nullptr, fillSynths},
    {track, "Add Audio", [](Target to) { to.model.addTrack(TrackKind::audio()); }},
    {track},
    {track, "Delete Track", deleteSelectedTrack, {controlShift | Key_Delete, controlShift | Key_Backspace}},

    {editSelection, "Delete Selection", [](Target to) { to.model.deleteSelection(); },
     {Key_Delete, Key_Backspace}},
};
// clang-format on

}  // namespace

std::span<const MenuRow> menuRows() { return rows; }

}  // namespace velmora
