#include <QPointer>
#include <filesystem>
#include <system_error>
#include <utility>

#include "Platform/Files/FileError.h"
#include "Velmora/Model/AppModelEdits.h"

namespace velmora {

namespace {

constexpr LoopRange endlessLoop{0, 16384};  // so that a take can't wrap

std::filesystem::path temporaryFile(std::string_view extension) {
  return std::filesystem::temp_directory_path() / (UUID::random().text() + std::string(extension));
}

}  // namespace

/// A take starts where the playhead stands, on the selected track if it takes audio.
void AppModel::startRecording() {
  if (isRecording() || isAudioBusy() || isProjectBusy() || pendingTake()) return;
  isAudioBusy.set(true);
  const std::filesystem::path url = temporaryFile(".caf");
  pause();
  const double beat = transport_.playhead();
  const UUID trackID = audioTrack(selectedTrackID());
  try {
    recorder_.start(url);
    recordingContext.set(
        RecordingContext{.url = url, .trackID = trackID, .beat = beat, .importedClipID = {}});
    transport_.setLoop(endlessLoop);
    isRecording.set(true);
    play();
  } catch (const std::exception& error) {
    telemetry_.record(TelemetryEvent::recordingFailed);
    reportFailure("", error);
    std::error_code ignored;
    std::filesystem::remove(url, ignored);
  }
  isAudioBusy.set(false);
}

QCoro::Task<> AppModel::stopRecording(bool isClean) {
  if (!isRecording() || !recordingContext()) co_return;
  isRecording.set(false);
  const RecordingContext take = *recordingContext();
  recordingContext.set({});
  recorder_.stop();
  pause();
  transport_.setLoop(song().loop);
  pendingTake.set(take);
  if (isClean) {
    auto saving = saveTake();
    co_await saving;
  } else {
    telemetry_.record(TelemetryEvent::recordingFailed);
    reportError("The microphone stopped unexpectedly. The take is kept so you can try saving it.");
  }
}

/// The file goes only after the project on the disk names the imported copy: no single failure loses the
/// take.
QCoro::Task<> AppModel::saveTake() {
  if (!pendingTake() || isAudioBusy() || isProjectBusy()) co_return;
  const QPointer<AppModel> self(this);
  const RecordingContext take = *pendingTake();
  bool isKept = false;
  if (take.importedClipID && song().clip(*take.importedClipID)) {
    auto saving = saveImportedTake();
    isKept = co_await saving;
  } else {
    ImportTarget target{.trackID = take.trackID, .beat = take.beat, .name = "Recording"};
    auto importing = importAudio(take.url, std::move(target));
    isKept = co_await importing;
  }
  if (!self || !isKept) co_return;
  telemetry_.record(TelemetryEvent::recordingSaved);
  std::error_code ignored;
  std::filesystem::remove(take.url, ignored);
  pendingTake.set({});
}

/// The take was imported before and only the project's save is missing.
QCoro::Task<bool> AppModel::saveImportedTake() {
  const QPointer<AppModel> self(this);
  try {
    auto saving = flushSave();
    co_await saving;
    co_return true;
  } catch (const std::exception& error) {
    if (self) reportFailure("Could not save the recorded take: ", error);
  }
  co_return false;
}

void AppModel::discardPendingTake() {
  if (!pendingTake()) return;
  const RecordingContext take = *pendingTake();
  std::error_code code;
  std::filesystem::remove(take.url, code);
  if (code) return reportError("Could not discard take: " + code.message());
  if (take.importedClipID) {
    if (selectedClipID() == take.importedClipID) selectedClipID.set({});
    editSong([&](Song& edited) { edited.removeClip(*take.importedClipID); });
  }
  pendingTake.set({});
}

}  // namespace velmora
