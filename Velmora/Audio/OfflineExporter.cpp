#include "Velmora/Audio/OfflineExporter.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <new>
#include <utility>

namespace velmora {

namespace {

/// The same report, made on the main thread.
OfflineExporter::OnProgress postedToMainThread(OfflineExporter::OnProgress report) {
  if (!report) return {};
  return [report = std::move(report)](double fraction) {
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [report, fraction] { report(fraction); }, Qt::QueuedConnection);
  };
}

}  // namespace

QCoro::Task<> OfflineExporter::render(OfflineRenderRequest request, std::filesystem::path path,
                                      Options options) {
  options.onProgress = postedToMainThread(std::move(options.onProgress));
  auto task = worker_.run([request = std::move(request), path = std::move(path),
                           options = std::move(options)] { renderFile(request, path, options); });
  co_await task;
}

QCoro::Task<> OfflineExporter::renderPreview(Song song, AudioSamples samples, std::filesystem::path path,
                                             double maximumSeconds, std::stop_token stop) {
  OfflineRenderRequest request{std::move(song), std::move(samples), maximumSeconds, 0};
  Options options;
  options.stop = std::move(stop);
  auto task = render(std::move(request), std::move(path), std::move(options));
  co_await task;
}

void OfflineExporter::renderFile(const OfflineRenderRequest& request, const std::filesystem::path& path,
                                 const Options& options) {
  try {
    OfflineRender render(request);
    platform::AudioFileWriter file(path, static_cast<int>(OfflineRender::sampleRate), options.format);
    render.run([&file](auto left, auto right) { file.write(left, right); }, options.onProgress, options.stop);
    file.close();
  } catch (const std::bad_alloc&) {
    throw ExportError::renderFailed();
  }
}

}  // namespace velmora
