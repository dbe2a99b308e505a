#include <QPointer>
#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "Platform/Files/Files.h"
#include "Platform/Files/Folders.h"
#include "Platform/Tasks/Cancelled.h"
#include "Velmora/Model/AppModelEdits.h"

namespace velmora {

namespace {

void removeQuietly(const std::filesystem::path& file) {
  std::error_code ignored;
  std::filesystem::remove(file, ignored);
}

}  // namespace

bool AppModel::hasEverySample() const {
  return std::all_of(song().clips.begin(), song().clips.end(), [&](const Clip& clip) {
    return clip.source.isPattern() || audioSamples().contains(clip.source.id);
  });
}

/// Renders to a temporary file, which waits in `exportURL` until the user has chosen where to keep it.
QCoro::Task<> AppModel::exportWAV() {
  if (exportTask() || isAudioBusy() || isRecording() || isProjectBusy()) co_return;
  if (!hasEverySample()) {
    telemetry_.record(TelemetryEvent::wavExportFailed);
    reportError("Reload the missing audio files before exporting.");
    co_return;
  }
  const QPointer<AppModel> self(this);
  if (exportURL()) removeQuietly(*exportURL());
  exportURL.set({});
  exportProgress.set(0);
  const std::filesystem::path url = platform::temporaryFile("wav");
  pause();
  const auto task = std::make_shared<platform::CancellableTask>();
  exportTask.set(task);

  std::exception_ptr error;
  try {
    OfflineRenderRequest request{.song = song(), .samples = audioSamples(), .maximumSeconds = {}};
    OfflineExporter::Options options;
    options.stop = task->token();
    options.onProgress = [self, task](double fraction) {
      if (self && self->exportTask() == task) self->exportProgress.set(fraction);
    };
    auto rendering = exporter_.render(std::move(request), url, std::move(options));
    co_await rendering;
    if (task->isCancelled()) throw platform::Cancelled();
  } catch (...) {
    error = std::current_exception();
  }
  if (error) removeQuietly(url);
  if (self) exportEnded(url, error);
  task->finish();
}

void AppModel::exportEnded(const std::filesystem::path& url, const std::exception_ptr& error) {
  exportTask.set(nullptr);
  try {
    if (error) std::rethrow_exception(error);
    exportURL.set(url);
    exportProgress.set(1);
    showsExport.set(true);
    telemetry_.record(TelemetryEvent::wavExported);
  } catch (const platform::Cancelled&) {  // as asked for
  } catch (const std::exception& failure) {
    telemetry_.record(TelemetryEvent::wavExportFailed);
    reportFailure("Export failed: ", failure);
  }
}

/// The source stays: a copy that failed can be tried again elsewhere.
QCoro::Task<bool> AppModel::saveCopy(std::filesystem::path source, std::filesystem::path target,
                                     std::string prefix) {
  const QPointer<AppModel> self(this);
  try {
    auto copy = [source, target] { platform::copyFile(source, target); };
    auto copying = copyWorker_->run(std::move(copy));
    co_await copying;
    co_return true;
  } catch (const std::exception& error) {
    if (self) reportFailure(prefix, error);
  }
  co_return false;
}

/// A copy under way ends well first.
void AppModel::dropExport() {
  copyWorker_.reset();
  if (exportURL()) removeQuietly(*exportURL());
}

}  // namespace velmora
