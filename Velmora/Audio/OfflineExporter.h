#pragma once

#include <QCoroTask>
#include <filesystem>
#include <stop_token>

#include "Platform/Audio/AudioFile.h"
#include "Platform/Tasks/SerialWorker.h"
#include "Velmora/Audio/OfflineRender.h"

namespace velmora {

/// Renders songs to stereo WAV files on a background worker, one at a time.
class OfflineExporter {
 public:
  using OnProgress = OfflineRender::OnProgress;
  using SampleFormat = platform::AudioFileWriter::SampleFormat;

  struct Options {
    SampleFormat format = SampleFormat::int16;
    OnProgress onProgress;  ///< called on the main thread with fractions from 0 to 1, possibly late
    std::stop_token stop;
  };

  /// Writes the file at `path`. The task throws `ExportError`, `platform::FileError`, or
  /// `platform::Cancelled` within a block of a stop's request; an unfinished file is then left to the caller.
  QCoro::Task<> render(OfflineRenderRequest request, std::filesystem::path path, Options options);

  /// The first seconds of a song, without progress. Ends as `render` does.
  QCoro::Task<> renderPreview(Song song, AudioSamples samples, std::filesystem::path path,
                              double maximumSeconds, std::stop_token stop = {});

  /// What the worker does, on the calling thread; progress is told there too.
  static void renderFile(const OfflineRenderRequest& request, const std::filesystem::path& path,
                         const Options& options);

 private:
  platform::SerialWorker worker_;
};

}  // namespace velmora
