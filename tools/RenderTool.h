#pragma once

#include <QCoroTask>
#include <filesystem>
#include <stop_token>

#include "Velmora/Audio/AudioFileLoader.h"
#include "Velmora/Audio/OfflineExporter.h"
#include "VelmoraCore/Song/Song.h"
#include "tools/RenderCommand.h"

namespace velmora {

/// Projects to WAV without a window, on the same road as the studio: the store loads, the loader decodes, the
/// exporter renders.
class RenderTool {
 public:
  explicit RenderTool(std::stop_token stop) : stop_(std::move(stop)) {}

  /// Does what the command says; throws what goes wrong.
  QCoro::Task<> run(RenderCommand command);

 private:
  /// A project as the renderer needs it.
  struct Project {
    Song song;
    AudioSamples samples;
  };

  QCoro::Task<Project> load(std::filesystem::path folder);
  QCoro::Task<> render(Project project, RenderCommand command);
  QCoro::Task<> writeDemo(std::filesystem::path folder);

  std::stop_token stop_;
  AudioFileLoader loader_;
  OfflineExporter exporter_;
};

}  // namespace velmora
