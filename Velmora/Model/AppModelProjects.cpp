#include <QPointer>
#include <QTextBoundaryFinder>
#include <utility>

#include "Velmora/Model/AppModelEdits.h"
#include "Velmora/Model/CloseError.h"
#include "VelmoraCore/Song/Text.h"

namespace velmora {

namespace {

constexpr int longestProjectName = 100;

/// The first `count` characters as readers count them.
std::string prefix(std::string_view text, int count) {
  const QString whole = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, whole);
  qsizetype end = 0;
  for (int n = 0; n < count && end >= 0 && end < whole.size(); ++n) end = finder.toNextBoundary();
  return whole.left(end).toStdString();
}

}  // namespace

QCoro::Task<> AppModel::loadInitialProject() {
  if (hasLoadedProject()) co_return;
  hasLoadedProject.set(true);
  if (!projectStore_) co_return;
  const QPointer<AppModel> self(this);
  isProjectBusy.set(true);
  try {
    auto takingOver = takeOverProject();
    co_await takingOver;
    if (!self) co_return;
    saveStatus.set("Saved");
  } catch (const std::exception& error) {
    if (!self) co_return;
    reportFailure("Could not open the last project: ", error);
    telemetry_.record(TelemetryEvent::projectLoadFailed);
    saveStatus.set("Not saved");
  }
  isProjectBusy.set(false);
}

/// The stored project, or on a first run the demo song as the first project.
QCoro::Task<> AppModel::takeOverProject() {
  const QPointer<AppModel> self(this);
  ProjectStore& store = *projectStore_;
  auto asking = store.currentProjectID();
  const std::optional<UUID> current = co_await asking;
  if (!self) co_return;
  if (current) {
    auto loading = store.load(*current);
    Song loaded = co_await loading;
    if (!self) co_return;
    applyLoadedSong(std::move(loaded));
  } else {
    const UUID id = song().id;
    auto saving = store.save(song());
    co_await saving;
    auto marking = store.setCurrentProject(id);
    co_await marking;
    if (!self) co_return;
  }
  auto reloading = reloadAudioSamples();
  co_await reloading;
  if (!self) co_return;
  auto listing = listProjects();
  co_await listing;
}

QCoro::Task<> AppModel::listProjects() {
  const QPointer<AppModel> self(this);
  auto listing = projectStore_->listProjects();
  std::vector<ProjectSummary> found = co_await listing;
  if (self) projects.set(std::move(found));
}

void AppModel::applyLoadedSong(Song loaded) {
  pause();
  engine_.releaseAuditionKeys();
  audioSamples.set({});
  song.set(std::move(loaded));
  selectClip({});
  selectNote({});
  selectTrack(song().tracks.empty() ? std::nullopt : std::optional(song().tracks.front().id));
  transport_.setBPM(song().bpm);
  transport_.setLoop(song().loop);
  transport_.seek(0);
  publishSnapshot();
  engine_.sync(song());
  playheadJumped();
}

QCoro::Task<> AppModel::flushSave() {
  const QPointer<AppModel> self(this);
  cancelSave();
  if (!projectStore_) co_return;
  try {
    auto saving = projectStore_->save(song());
    co_await saving;
  } catch (const std::exception&) {
    if (self) telemetry_.record(TelemetryEvent::projectSaveFailed);
    throw;
  }
  if (self && !saveTimer_.isActive()) saveStatus.set("Saved");
}

QCoro::Task<> AppModel::saveNow() {
  const QPointer<AppModel> self(this);
  try {
    auto flushing = flushSave();
    co_await flushing;
  } catch (const std::exception& error) {
    if (self) reportFailure("", error);
  }
}

bool AppModel::canChangeProject() const {
  return !isProjectBusy() && !isAudioBusy() && !isRecording() && !pendingTake() && projectStore_;
}

QCoro::Task<> AppModel::openProject(UUID id) {
  if (!canChangeProject()) co_return;
  const QPointer<AppModel> self(this);
  isProjectBusy.set(true);
  try {
    auto leaving = leaveFor(id);
    co_await leaving;
    if (!self) co_return;
    showsProjects.set(false);
    saveStatus.set("Saved");
  } catch (const std::exception& error) {
    if (!self) co_return;
    telemetry_.record(TelemetryEvent::projectLoadFailed);
    reportFailure("Could not open project: ", error);
  }
  isProjectBusy.set(false);
}

/// The project that is being left is written first.
QCoro::Task<> AppModel::leaveFor(UUID id) {
  const QPointer<AppModel> self(this);
  ProjectStore& store = *projectStore_;
  auto flushing = flushSave();
  co_await flushing;
  auto loading = store.load(id);
  Song loaded = co_await loading;
  auto marking = store.setCurrentProject(id);
  co_await marking;
  if (!self) co_return;
  applyLoadedSong(std::move(loaded));
  telemetry_.record(TelemetryEvent::projectOpened);
  auto reloading = reloadAudioSamples();
  co_await reloading;
}

QCoro::Task<> AppModel::createProject() {
  if (!canChangeProject()) co_return;
  const QPointer<AppModel> self(this);
  isProjectBusy.set(true);
  try {
    auto making = makeProject();
    co_await making;
    if (!self) co_return;
    showsProjects.set(false);
    saveStatus.set("Saved");
  } catch (const std::exception& error) {
    if (!self) co_return;
    reportFailure("Could not create project: ", error);
  }
  isProjectBusy.set(false);
}

QCoro::Task<> AppModel::makeProject() {
  const QPointer<AppModel> self(this);
  ProjectStore& store = *projectStore_;
  auto flushing = flushSave();
  co_await flushing;
  Song made = Song::empty("Untitled Beat");
  auto saving = store.save(made);
  co_await saving;
  auto marking = store.setCurrentProject(made.id);
  co_await marking;
  if (!self) co_return;
  applyLoadedSong(std::move(made));
  telemetry_.record(TelemetryEvent::projectCreated);
  auto listing = listProjects();
  co_await listing;
}

QCoro::Task<> AppModel::deleteProject(UUID id) {
  if (id == song().id || isProjectBusy() || !projectStore_) co_return;
  const QPointer<AppModel> self(this);
  isProjectBusy.set(true);
  try {
    auto deleting = projectStore_->deleteProject(id);
    co_await deleting;
    if (!self) co_return;
    auto listing = listProjects();
    co_await listing;
  } catch (const std::exception& error) {
    if (self) reportFailure("Could not delete project: ", error);
  }
  if (self) isProjectBusy.set(false);
}

void AppModel::renameProject(std::string_view name) {
  const std::string_view kept = trimmed(name);
  if (kept.empty()) return;
  editSong([&](Song& edited) { edited.name = prefix(kept, longestProjectName); });
}

QCoro::Task<> AppModel::refreshProjects() {
  if (!projectStore_) co_return;
  const QPointer<AppModel> self(this);
  try {
    auto listing = listProjects();
    co_await listing;
  } catch (const std::exception& error) {
    if (self) reportFailure("", error);
  }
}

QCoro::Task<> AppModel::prepareForClose() {
  const QPointer<AppModel> self(this);
  if (isAudioBusy() || isProjectBusy()) throw CloseError::busy();
  auto ending = stopRecording(true);
  co_await ending;
  if (!self) co_return;
  auto keeping = saveTake();
  co_await keeping;
  if (!self) co_return;
  if (pendingTake()) throw CloseError::unsavedTake();
  if (const auto exporting = exportTask()) {
    exporting->cancel();
    auto stopping = exporting->ended();
    co_await stopping;
    if (!self) co_return;
  }
  auto flushing = flushSave();
  co_await flushing;
  if (!self) co_return;
  engine_.releaseAuditionKeys();
  engine_.stop();
  isEngineRunning.set(false);
}

}  // namespace velmora
