#include "Velmora/Model/AppModel.h"

#include <QPointer>
#include <chrono>
#include <utility>

namespace velmora {

namespace {

constexpr std::chrono::milliseconds saveDelay{500};
constexpr std::string_view startFailed = "Audio engine failed to start: ";
constexpr std::string_view engineErrors = "Audio engine ";

std::optional<UUID> firstTrackID(const Song& song) {
  return song.tracks.empty() ? std::nullopt : std::optional(song.tracks.front().id);
}

}  // namespace

AppModel::AppModel(Song initialSong, ProjectStore* projectStore, Devices devices, TelemetrySink& telemetry)
    : song(std::move(initialSong)),
      selectedTrackID(firstTrackID(song())),
      projectStore_(projectStore),
      telemetry_(telemetry),
      engine_(std::move(devices.output)),
      recorder_(std::move(devices.input)),
      takeFolder_(projectStore ? projectStore->root() : std::filesystem::path()),
      inhibitSleep_(std::move(devices.inhibitSleep)) {
  recorder_.setOnFinished([this](bool isClean) { stopRecording(isClean); });
  saveTimer_.setSingleShot(true);
  saveTimer_.setInterval(saveDelay);
  saveTimer_.setTimerType(Qt::PreciseTimer);
  saveTimer_.callOnTimeout(this, [this] { writeScheduledSave(); });
}

AppModel::~AppModel() { dropExport(); }

const Track* AppModel::selectedTrack() const {
  return selectedTrackID() ? song().track(*selectedTrackID()) : nullptr;
}

const Pattern* AppModel::selectedPattern() const {
  const Track* track = selectedTrack();
  if (!track || !track->selectedPatternID) return nullptr;
  const Pattern* pattern = song().pattern(*track->selectedPatternID);
  return pattern && pattern->trackID == track->id ? pattern : nullptr;
}

/// A project that could not be opened stays told when the engine starts.
QCoro::Task<> AppModel::startUp() {
  const QPointer<AppModel> self(this);
  auto loading = loadInitialProject();
  co_await loading;
  if (!self) co_return;
  if (projectStore_) offerLeftTake();
  const std::optional<std::string> loadError = lastError();
  configure();
  if (loadError && !lastError()) reportError(*loadError);
}

void AppModel::configure() {
  if (std::exchange(hasConfigured_, true)) return;
  transport_.setMode(mode());
  transport_.setBPM(song().bpm);
  transport_.setLoop(song().loop);
  engine_.setOnError([this](const std::string& text) { engineFailed(text); });
  engine_.setOnRecovery([this] { engineRecovered(); });
  engine_.attach(transport_, snapshotStore_);
  commit();
  engine_.sync(song());
  if (!isEngineRunning()) startEngine();
}

void AppModel::startEngine() {
  try {
    engine_.start();
    isEngineRunning.set(true);
    lastError.set({});
  } catch (const platform::DeviceError& error) {
    engineFailed(std::string(startFailed) + error.what());
  }
}

void AppModel::engineFailed(const std::string& text) {
  isEngineRunning.set(engine_.isRunning());
  reportError(text);
  telemetry_.record(TelemetryEvent::audioEngineFailed);
}

/// Takes back the engine's own message, and no other.
void AppModel::engineRecovered() {
  isEngineRunning.set(engine_.isRunning());
  if (lastError() && lastError()->starts_with(engineErrors)) lastError.set({});
}

void AppModel::commit() {
  publishSnapshot();
  if (!isRecording()) transport_.setLoop(song().loop);
  engine_.applyMix(song());
  scheduleSave();
}

void AppModel::publishSnapshot() {
  snapshotStore_.publish(snapshotCompiler_.compile(song(), mode(), audioSamples()));
}

void AppModel::selectTrack(std::optional<UUID> trackID) {
  if (trackID == selectedTrackID()) return;
  selectedTrackID.set(trackID);
  selectedNoteID.set({});
  selectedClipID.set({});
  engine_.releaseAuditionKeys();
}

void AppModel::selectNote(std::optional<UUID> noteID) {
  selectedNoteID.set(noteID);
  if (noteID) selectedClipID.set({});
}

void AppModel::setWorkspace(Workspace newWorkspace) {
  if (newWorkspace == workspace()) return;
  workspace.set(newWorkspace);
  constexpr std::array opened{TelemetryEvent::arrangementOpened, TelemetryEvent::patternOpened,
                              TelemetryEvent::mixerOpened};
  telemetry_.record(opened[static_cast<std::size_t>(newWorkspace)]);
}

void AppModel::reportError(std::string_view text) { lastError.set(std::string(text)); }

void AppModel::reportFailure(std::string_view prefix, const std::exception& error) {
  reportError(std::string(prefix) + error.what());
}

/// Nothing is saved before the stored project was taken over, so that the demo song can't overwrite it.
void AppModel::scheduleSave() {
  if (!hasLoadedProject() || !projectStore_) return;
  cancelSave();
  saveStatus.set("Saving…");
  scheduledSave_ = song();
  saveTimer_.start();
}

void AppModel::cancelSave() {
  saveTimer_.stop();
  scheduledSave_.reset();
  ++saveVersion_;
}

QCoro::Task<> AppModel::writeScheduledSave() {
  const QPointer<AppModel> self(this);
  const std::uint64_t version = saveVersion_;
  Song copy = *std::exchange(scheduledSave_, {});
  const UUID id = copy.id;
  try {
    auto saving = projectStore_->save(std::move(copy));
    co_await saving;
    if (!self || version != saveVersion_) co_return;
    if (song().id == id) saveStatus.set("Saved");
  } catch (const std::exception& error) {
    if (!self) co_return;
    telemetry_.record(TelemetryEvent::projectSaveFailed);
    saveStatus.set("Save failed");
    reportFailure("Could not save: ", error);
  }
}

}  // namespace velmora
