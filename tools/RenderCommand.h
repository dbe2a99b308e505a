#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>
#include <string_view>

namespace velmora {

/// A command line that makes no sense.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// What `velmora-render` is asked to do.
struct RenderCommand {
  enum class Action { render, renderDemo, writeDemo, check, help };

  static constexpr std::string_view usage =
      "usage: velmora-render [--seconds N] [--float] [--threads N] PROJECT OUT.wav\n"
      "       velmora-render [--seconds N] [--float] [--threads N] --demo OUT.wav\n"
      "       velmora-render --write-demo FOLDER\n"
      "       velmora-render --check PROJECT\n";

  Action action = Action::render;
  std::filesystem::path project;  ///< a project's folder; for `writeDemo` the folder to write below
  std::filesystem::path output;
  std::optional<double> maximumSeconds;
  bool isFloat = false;
  int threadCount = 0;  ///< 0 for all cores

  /// Reads the arguments after the program's name. Throws `UsageError`.
  static RenderCommand parse(std::span<const char* const> arguments);
};

}  // namespace velmora
