#include "tools/RenderTool.h"

#include <cmath>
#include <cstdio>
#include <fcntl.h>
#include <iostream>
#include <string>
#include <unistd.h>
#include <utility>

#include "Platform/Files/FileError.h"
#include "Platform/Files/RandomName.h"
#include "Velmora/Audio/ProjectAudio.h"
#include "Velmora/Projects/ProjectStore.h"

namespace velmora {

namespace {

/// A file that grows under a hidden name beside its target and is removed unless it takes the target's place.
class UnfinishedFile {
 public:
  explicit UnfinishedFile(std::filesystem::path target)
      : target_(std::move(target)),
        hidden_(target_.parent_path() / ("." + platform::randomName() + ".wav")) {}
  ~UnfinishedFile() {
    std::error_code ignored;
    std::filesystem::remove(hidden_, ignored);
  }
  UnfinishedFile(const UnfinishedFile&) = delete;
  UnfinishedFile& operator=(const UnfinishedFile&) = delete;

  const std::filesystem::path& path() const { return hidden_; }

  void finish() {
    if (::rename(hidden_.c_str(), target_.c_str()) != 0) throw platform::FileError(target_, errno);
  }

  /// The error told of the target, whose name the user knows.
  [[noreturn]] void rethrow(const platform::FileError& error) const {
    if (error.code() != 0) throw platform::FileError(target_, error.code());
    const std::string_view line = error.what();
    const std::string prefix = hidden_.filename().string() + ": ";
    throw platform::FileError(target_, line.starts_with(prefix) ? line.substr(prefix.size()) : line);
  }

 private:
  std::filesystem::path target_;
  std::filesystem::path hidden_;
};

/// While it lives, nothing reaches the standard error: decoders of damaged files write there as they like,
/// but the user is told one line.
class SilencedStandardError {
 public:
  SilencedStandardError() : saved_(::dup(STDERR_FILENO)) {
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere < 0) return;
    ::dup2(nowhere, STDERR_FILENO);
    ::close(nowhere);
  }
  ~SilencedStandardError() {
    if (saved_ < 0) return;
    ::dup2(saved_, STDERR_FILENO);
    ::close(saved_);
  }
  SilencedStandardError(const SilencedStandardError&) = delete;
  SilencedStandardError& operator=(const SilencedStandardError&) = delete;

 private:
  int saved_;
};

void printProgress(double fraction) {
  std::fprintf(stderr, "\rRendering %3.0f %%", std::floor(fraction * 100));
  if (fraction >= 1) std::fputs("\r\033[K", stderr);
}

void printSummary(const Song& song) {
  std::cout << song.name << ": " << song.tracks.size() << " tracks, " << song.songLengthBeats()
            << " beats at " << song.bpm << " bpm, " << song.audioAssets.size() << " audio files\n";
}

}  // namespace

QCoro::Task<> RenderTool::run(RenderCommand command) {
  switch (command.action) {
    case RenderCommand::Action::help:
      std::cout << RenderCommand::usage;
      co_return;
    case RenderCommand::Action::writeDemo: {
      auto writing = writeDemo(command.project);
      co_await writing;
      co_return;
    }
    case RenderCommand::Action::check: {
      auto loading = load(command.project);
      const Project project = co_await loading;
      printSummary(project.song);
      co_return;
    }
    case RenderCommand::Action::renderDemo: {
      auto rendering = render({Song::demo(), {}}, command);
      co_await rendering;
      co_return;
    }
    case RenderCommand::Action::render: {
      auto loading = load(command.project);
      Project project = co_await loading;
      auto rendering = render(std::move(project), command);
      co_await rendering;
    }
  }
}

QCoro::Task<RenderTool::Project> RenderTool::load(std::filesystem::path folder) {
  const std::filesystem::path whole = std::filesystem::weakly_canonical(folder);
  const auto id = UUID::parse(whole.filename().string());
  if (!id) throw platform::FileError(whole, "Not a project's folder");

  ProjectStore store(whole.parent_path());
  auto loading = store.load(*id);
  Project project;
  project.song = co_await loading;
  if (project.song.audioAssets.empty()) co_return project;

  auto locating = store.audioFolder(*id);
  const std::filesystem::path audioFolder = co_await locating;
  ProjectAudio audio;
  {
    const SilencedStandardError silence;
    auto decoding = ProjectAudio::load(project.song.audioAssets, audioFolder, loader_);
    audio = co_await decoding;
  }
  try {
    if (audio.error) std::rethrow_exception(audio.error);
  } catch (const std::exception& error) {
    throw std::runtime_error(std::string("Some audio could not be loaded: ") + error.what());
  }
  project.samples = std::move(audio.samples);
  co_return project;
}

QCoro::Task<> RenderTool::render(Project project, RenderCommand command) {
  OfflineRenderRequest request{std::move(project.song), std::move(project.samples), command.maximumSeconds,
                               command.threadCount};
  OfflineExporter::Options options;
  if (command.isFloat) options.format = OfflineExporter::SampleFormat::float32;
  if (::isatty(STDERR_FILENO)) options.onProgress = printProgress;
  options.stop = stop_;

  UnfinishedFile file(command.output);
  try {
    auto exporting = exporter_.render(std::move(request), file.path(), std::move(options));
    co_await exporting;
  } catch (const platform::FileError& error) {
    file.rethrow(error);
  }
  file.finish();
}

QCoro::Task<> RenderTool::writeDemo(std::filesystem::path folder) {
  const Song demo = Song::demo();
  ProjectStore store(folder);
  auto saving = store.save(demo);
  co_await saving;
  std::cout << (folder / demo.id.text()).string() << '\n';
}

}  // namespace velmora
