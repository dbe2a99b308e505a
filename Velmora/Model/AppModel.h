#pragma once

#include <QCoroTask>
#include <QObject>
#include <QTimer>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Tasks/CancellableTask.h"
#include "Platform/Tasks/SerialWorker.h"
#include "Velmora/Audio/AudioEngine.h"
#include "Velmora/Audio/AudioFileLoader.h"
#include "Velmora/Audio/MicrophoneRecorder.h"
#include "Velmora/Audio/OfflineExporter.h"
#include "Velmora/Model/ChangeListener.h"
#include "Velmora/Model/Observed.h"
#include "Velmora/Model/RecordingContext.h"
#include "Velmora/Model/TakeFolder.h"
#include "Velmora/Model/TelemetryEvent.h"
#include "Velmora/Model/Workspace.h"
#include "Velmora/Projects/ProjectStore.h"
#include "VelmoraCore/Render/SnapshotCompiler.h"
#include "VelmoraCore/Render/SnapshotStore.h"
#include "VelmoraCore/Render/TransportController.h"
#include "VelmoraCore/Song/Song.h"

namespace velmora {

/// The one object that owns the current song and that all views read and edit.
///
/// Lives on the main thread as long as the process. Every edit is a command; a command whose guard doesn't
/// hold does nothing, silently. What can fail arrives in `lastError`. The audio threads see only what
/// `commit` publishes, the disk only copies.
class AppModel final : public QObject {
 public:
  /// The desktop's sound; without an input there is no recording. What `inhibitSleep` returns keeps the
  /// computer awake as long as it lives; the reason is one word for the user.
  struct Devices {
    std::unique_ptr<platform::OutputDevice> output;
    std::unique_ptr<platform::InputRecorder> input;
    std::function<std::shared_ptr<void>(const char* reason)> inhibitSleep;
  };

  /// Without a store nothing is loaded or saved. Store and telemetry must outlive the model.
  AppModel(Song song, ProjectStore* projectStore, Devices devices, TelemetrySink& telemetry);
  ~AppModel() override;

  // The document and the audio that belongs to it.
  Observed<Song> song;
  Observed<AudioSamples> audioSamples;

  // What runs.
  Observed<bool> isRecording;
  Observed<bool> isAudioBusy;
  Observed<bool> isProjectBusy;
  Observed<bool> hasLoadedProject;
  Observed<bool> isEngineRunning;
  Observed<bool> isPlaying;
  Observed<std::optional<RecordingContext>> recordingContext;
  Observed<std::optional<RecordingContext>> pendingTake;
  Observed<std::shared_ptr<platform::CancellableTask>> exportTask;  ///< null while none runs
  Observed<double> exportProgress;                                  ///< 0 to 1
  Observed<std::optional<std::filesystem::path>> exportURL;         ///< the last exported file

  // What the views show.
  Observed<std::optional<UUID>> selectedTrackID;
  Observed<std::optional<UUID>> selectedClipID;
  Observed<std::optional<UUID>> selectedNoteID;
  Observed<Workspace> workspace{Workspace::arrangement};
  Observed<PlaybackMode> mode{PlaybackMode::song};
  Observed<std::int64_t> playheadRevision;  ///< raised at each jump of the playhead
  Observed<std::string> saveStatus{"Not saved"};
  Observed<std::vector<ProjectSummary>> projects;  ///< newest first
  Shared<std::optional<std::string>> lastError;    ///< the one line of the error banner
  Shared<bool> editorVisible{true};
  Shared<bool> isEditingText;  ///< a text field has the keyboard
  Shared<bool> showsProjects;
  Shared<bool> showsAudioImport;
  Shared<bool> showsExport;

  TransportController& transport() { return transport_; }
  const TransportController& transport() const { return transport_; }
  AudioEngine& engine() { return engine_; }
  const AudioEngine& engine() const { return engine_; }
  const MicrophoneRecorder& recorder() const { return recorder_; }

  /// The record of the selected track; null without one. Valid until the next edit.
  const Track* selectedTrack() const;
  /// The selected track's selected pattern, if it is that track's; valid until the next edit.
  const Pattern* selectedPattern() const;

  /// What the first window asks for once it is on screen: `loadInitialProject`, then `configure`.
  QCoro::Task<> startUp();
  /// Takes the audio up and starts the engine, which clears `lastError`; the second call does nothing.
  void configure();

  // Central commands.
  void commit();
  void selectTrack(std::optional<UUID> trackID);
  void selectNote(std::optional<UUID> noteID);
  void setWorkspace(Workspace workspace);
  void reportError(std::string_view text);

  // Transport.
  void play();
  void pause();
  void togglePlay();  ///< `pause` while it plays, `play` otherwise
  void stop();
  void returnToStart();
  void seek(double beat);
  void setMode(PlaybackMode mode);
  void setBPM(double value);

  // Tracks.
  void addTrack(TrackKind kind);
  void deleteTrack(UUID trackID);
  void toggleMute(UUID trackID);
  void toggleSolo(UUID trackID);
  void setTrackVolume(UUID trackID, float volume);
  void setTrackPan(UUID trackID, float pan);
  void setTrackEffect(float FXSettings::*field, UUID trackID, float value);
  void setMasterVolume(float volume);
  void setSynthPreset(SynthPreset preset, UUID trackID);

  // Patterns.
  void selectPattern(UUID patternID, UUID trackID);
  void newPattern(UUID trackID);
  void duplicatePattern(UUID patternID);
  void renamePattern(UUID patternID, std::string_view name);
  void toggleDrumStep(UUID patternID, DrumSound sound, int step);
  void setDrumStepVelocity(UUID patternID, DrumSound sound, int step, int velocity);
  void addMelodicNote(UUID patternID, int pitch, double start, double duration, double grid);
  void editMelodicPattern(UUID patternID, const std::function<void(Pattern&)>& edit);
  void deleteSelectedNote();

  // Arrangement.
  void placePattern(std::optional<UUID> trackID, double beat);
  void selectClip(std::optional<UUID> clipID);
  void changeClip(UUID clipID, const ClipEdit& edit);
  void deleteSelectedClip();
  void deleteSelection();
  void setLoop(double startBeat, double endBeat);
  void clearLoop();

  // Sound from outside. The tasks run whether they are awaited or not and report their own failures.
  /// What an import knows beyond the file: without a track that takes audio a new one is made, without a beat
  /// the clip starts at the playhead's nearest, without a name it has the file's.
  struct ImportTarget {
    std::optional<UUID> trackID;
    std::optional<double> beat;
    std::optional<std::string> name;
  };
  /// True once the clip is placed and saved.
  QCoro::Task<bool> importAudio(std::filesystem::path url, ImportTarget target);
  void startRecording();
  QCoro::Task<> stopRecording(bool isClean);
  QCoro::Task<> saveTake();
  void discardPendingTake();
  QCoro::Task<> exportWAV();
  /// Copies an exported file or a take to where the user wants it; it appears whole or not at all. Tells
  /// whether it is there; a failure is reported after `prefix`.
  QCoro::Task<bool> saveCopy(std::filesystem::path source, std::filesystem::path target, std::string prefix);

  // Projects. The tasks run whether they are awaited or not; only those that say so throw.
  QCoro::Task<> loadInitialProject();
  /// Writes the song now. Throws the store's errors.
  QCoro::Task<> flushSave();
  QCoro::Task<> saveNow();
  QCoro::Task<> openProject(UUID id);
  QCoro::Task<> createProject();
  QCoro::Task<> deleteProject(UUID id);
  void renameProject(std::string_view name);
  QCoro::Task<> refreshProjects();
  /// All that has to be done before the process may end. Throws `CloseError` and the store's errors; the
  /// studio then goes on.
  QCoro::Task<> prepareForClose();

 private:
  template <class Edit>
  void editSong(const Edit& edit);
  template <class Edit>
  void editTrack(const UUID& trackID, const Edit& edit);
  template <class Edit>
  bool editPattern(const UUID& patternID, TrackFamily family, const Edit& edit);

  void publishSnapshot();
  void playheadJumped();
  void startEngine();
  void engineFailed(const std::string& text);
  void engineRecovered();

  void scheduleSave();
  void cancelSave();
  QCoro::Task<> writeScheduledSave();

  void placeImported(const std::filesystem::path& copy, const LoadedAudio& loaded,
                     const std::filesystem::path& url, const ImportTarget& target);
  QCoro::Task<> importFile(std::filesystem::path url, ImportTarget target);
  UUID audioTrack(std::optional<UUID> wanted);
  QCoro::Task<bool> saveImportedTake();
  void noteImportedTake(const UUID& clipID);
  void offerLeftTake();
  void keepAwake();
  bool hasEverySample() const;
  void dropExport();
  void exportEnded(const std::filesystem::path& url, const std::exception_ptr& error);

  bool canChangeProject() const;
  void applyLoadedSong(Song loaded);
  QCoro::Task<> takeOverProject();
  QCoro::Task<> leaveFor(UUID id);
  QCoro::Task<> makeProject();
  QCoro::Task<> listProjects();
  QCoro::Task<> reloadAudioSamples();
  void reportFailure(std::string_view prefix, const std::exception& error);
  void reportUnloadedAudio(const std::exception_ptr& error);

  ProjectStore* const projectStore_;
  TelemetrySink& telemetry_;
  TransportController transport_;
  SnapshotStore snapshotStore_;
  SnapshotCompiler snapshotCompiler_;
  AudioFileLoader audioFileLoader_;
  AudioEngine engine_;
  MicrophoneRecorder recorder_;
  const TakeFolder takeFolder_;
  OfflineExporter exporter_;
  std::optional<platform::SerialWorker> copyWorker_{std::in_place};
  bool hasConfigured_ = false;

  QTimer saveTimer_;                   // runs from the last edit to its save
  std::optional<Song> scheduledSave_;  // what it will write
  std::uint64_t saveVersion_ = 0;      // moves with every schedule and cancel: older answers are stale

  const std::function<std::shared_ptr<void>(const char*)> inhibitSleep_;
  std::shared_ptr<void> sleepInhibitor_;  // held while a take or an export runs
  ChangeListener workListener_{[this] { keepAwake(); }, isRecording, exportTask};
};

}  // namespace velmora
