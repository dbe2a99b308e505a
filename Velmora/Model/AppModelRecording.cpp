#include <QPointer>
#include <filesystem>
#include <system_error>
#include <utility>

#include "Platform/Files/FileError.h"
#include "Velmora/Model/AppModelEdits.h"

namespace velmora {

namespace {

constexpr LoopRange endlessLoop{0, 16384};  // so that a take can't wrap

}  // namespace

/// A take starts where the playhead stands, on the selected track if it takes audio.
void AppModel::startRecording() {
  if (isRecording() || isAudioBusy() || isProjectBusy() || pendingTake()) return;
  isAudioBusy.set(true);
  pause();
  const double beat = transport_.playhead();
  const UUID trackID = audioTrack(selectedTrackID());
  const RecordingContext take{
      .url = TakeFolder::newTake(), .trackID = trackID, .beat = beat, .importedClipID = {}};
  try {
    takeFolder_.note(take);
    recorder_.start(take.url);
    recordingContext.set(take);
    transport_.setLoop(endlessLoop);
    isRecording.set(true);
    play();
  } catch (const std::exception& error) {
    telemetry_.record(TelemetryEvent::recordingFailed);
    reportFailure("", error);
    TakeFolder::remove(take);
  }
  isAudioBusy.set(false);
}

QCoro::Task<> AppModel::stopRecording(bool isClean) {
  if (!isRecording() || !recordingContext()) co_return;
  isRecording.set(false);
  const RecordingContext take = *recordingContext();
  recordingContext.set({});
  const bool isWhole = recorder_.stop();
  pause();
  transport_.setLoop(song().loop);
  pendingTake.set(take);
  if (isClean && isWhole) {
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
  TakeFolder::remove(take);
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

/// The take was imported; should the process end before it is saved, the next one can tell whether it was.
void AppModel::noteImportedTake(const UUID& clipID) {
  RecordingContext take = *pendingTake();
  take.importedClipID = clipID;
  pendingTake.set(take);
  try {
    takeFolder_.note(take);
  } catch (const platform::FileError&) {  // then a crash would offer the take once too often
  }
}

/// What an earlier process left, unless the project that it saved has it. The editor of the take's track is
/// where it can be saved.
void AppModel::offerLeftTake() {
  std::optional<RecordingContext> left = takeFolder_.leftTake();
  if (!left) return;
  if (left->importedClipID && song().clip(*left->importedClipID)) {
    TakeFolder::remove(*left);
    return;
  }
  left->importedClipID.reset();
  left->trackID = audioTrack(left->trackID);
  selectTrack(left->trackID);
  pendingTake.set(std::move(left));
  if (!lastError()) reportError("Your recorded take is waiting to be saved.");
}

/// What runs for a while without a hand on the keyboard must not be ended by a computer that goes to sleep.
void AppModel::keepAwake() {
  const char* const reason = isRecording() ? "Recording" : exportTask() ? "Exporting" : nullptr;
  if (!reason) sleepInhibitor_.reset();
  if (reason && !sleepInhibitor_ && inhibitSleep_) sleepInhibitor_ = inhibitSleep_(reason);
}

void AppModel::discardPendingTake() {
  if (!pendingTake()) return;
  const RecordingContext take = *pendingTake();
  if (const std::error_code code = TakeFolder::remove(take))
    return reportError("Could not discard take: " + code.message());
  if (take.importedClipID) {
    if (selectedClipID() == take.importedClipID) selectedClipID.set({});
    editSong([&](Song& edited) { edited.removeClip(*take.importedClipID); });
  }
  pendingTake.set({});
}

}  // namespace velmora
