#include <QPointer>
#include <algorithm>
#include <cmath>
#include <utility>

#include "Velmora/Audio/ProjectAudio.h"
#include "Velmora/Model/AppModelEdits.h"

namespace velmora {

namespace {

constexpr double lastBeat = 16383;
constexpr double timelineEnd = 16384;
constexpr double shortestClip = 0.25;

double startBeat(std::optional<double> wanted, double playhead) {
  const double beat = wanted && std::isfinite(*wanted) ? *wanted : std::round(playhead);
  return std::clamp(beat, 0.0, lastBeat);
}

}  // namespace

QCoro::Task<bool> AppModel::importAudio(std::filesystem::path url, ImportTarget target) {
  if (isAudioBusy() || isRecording() || isProjectBusy() || !projectStore_) co_return false;
  const QPointer<AppModel> self(this);
  isAudioBusy.set(true);
  bool isImported = false;
  try {
    auto importing = importFile(std::move(url), std::move(target));
    co_await importing;
    if (!self) co_return false;
    telemetry_.record(TelemetryEvent::audioImported);
    isImported = true;
  } catch (const std::exception& error) {
    if (!self) co_return false;
    telemetry_.record(TelemetryEvent::audioImportFailed);
    reportFailure("Could not import audio: ", error);
  }
  isAudioBusy.set(false);
  co_return isImported;
}

/// Only a failure of the last step, the save, leaves the song changed.
QCoro::Task<> AppModel::importFile(std::filesystem::path url, ImportTarget target) {
  const QPointer<AppModel> self(this);
  auto loading = audioFileLoader_.load(url);
  const LoadedAudio loaded = co_await loading;
  if (!self) co_return;
  AudioBudget(audioSamples()).add(*loaded.sample);
  auto copying = projectStore_->importAudioFile(url, song().id);
  const std::filesystem::path copy = co_await copying;
  if (!self) co_return;
  placeImported(copy, loaded, url, target);
  auto saving = flushSave();
  co_await saving;
}

void AppModel::placeImported(const std::filesystem::path& copy, const LoadedAudio& loaded,
                             const std::filesystem::path& url, const ImportTarget& target) {
  const UUID trackID = audioTrack(target.trackID);
  const AudioSample& sample = *loaded.sample;
  const auto frames = static_cast<std::int64_t>(sample.samples.size());
  const AudioAsset asset{.name = target.name.value_or(url.stem().string()),
                         .id = UUID::random(),
                         .fileName = copy.filename().string(),
                         .sampleRate = sample.sampleRate,
                         .frameCount = frames,
                         .channelCount = loaded.channelCount};
  const double start = startBeat(target.beat, transport_.playhead());
  const double seconds = static_cast<double>(frames) / sample.sampleRate;
  const double length = std::min(std::max(seconds * song().bpm / 60, shortestClip), timelineEnd - start);
  const Clip clip{.id = UUID::random(),
                  .trackID = trackID,
                  .source = ClipSource::audio(asset.id),
                  .startBeat = start,
                  .lengthBeats = length};

  Song edited = song();
  edited.audioAssets.write().push_back(asset);
  edited.update(clip);
  AudioSamples samples = audioSamples();
  samples[asset.id] = loaded.sample;
  audioSamples.set(std::move(samples));
  song.set(std::move(edited));
  selectClip(clip.id);
  if (pendingTake() && pendingTake()->url == url) noteImportedTake(clip.id);
  commit();
}

/// The wanted track if it takes audio, otherwise a new one.
UUID AppModel::audioTrack(std::optional<UUID> wanted) {
  const Track* track = wanted ? song().track(*wanted) : nullptr;
  if (track && track->kind.isAudio()) return track->id;
  addTrack(TrackKind::audio());
  return song().tracks.back().id;
}

/// The first file that can't be loaded ends the loading; what came before it is kept, and the project opens.
QCoro::Task<> AppModel::reloadAudioSamples() {
  const QPointer<AppModel> self(this);
  audioSamples.set({});
  if (!song().audioAssets.empty()) {
    SharedList<AudioAsset> assets = song().audioAssets;
    auto asking = projectStore_->audioFolder(song().id);
    std::filesystem::path folder = co_await asking;
    if (!self) co_return;
    auto loading = ProjectAudio::load(std::move(assets), std::move(folder), audioFileLoader_);
    ProjectAudio loaded = co_await loading;
    if (!self) co_return;
    audioSamples.set(std::move(loaded.samples));
    if (loaded.error) reportUnloadedAudio(loaded.error);
  }
  publishSnapshot();
}

void AppModel::reportUnloadedAudio(const std::exception_ptr& error) {
  telemetry_.record(TelemetryEvent::projectLoadFailed);
  try {
    std::rethrow_exception(error);
  } catch (const std::exception& reason) {
    reportFailure("Some audio could not be loaded: ", reason);
  }
}

}  // namespace velmora
