#include "tools/RenderCommand.h"

#include <charconv>
#include <cmath>
#include <string>
#include <vector>

namespace velmora {

namespace {

template <class Number>
Number number(std::string_view option, std::string_view text, Number least, Number most) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || !(value >= least && value <= most)) {
    throw UsageError(std::string(option) + " takes a number, not \"" + std::string(text) + "\".");
  }
  return value;
}

/// How many operands an action takes.
std::size_t operandCount(RenderCommand::Action action) {
  switch (action) {
    case RenderCommand::Action::render:
      return 2;
    case RenderCommand::Action::renderDemo:
    case RenderCommand::Action::writeDemo:
    case RenderCommand::Action::check:
      return 1;
    case RenderCommand::Action::help:
      return 0;
  }
  return 0;
}

}  // namespace

RenderCommand RenderCommand::parse(std::span<const char* const> arguments) {
  RenderCommand command;
  std::vector<std::string_view> operands;
  const auto choose = [&command](Action chosen) {
    if (command.action != Action::render) throw UsageError("Only one thing at a time.");
    command.action = chosen;
  };
  bool areOptionsOver = false;
  bool hasRenderOptions = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    const auto value = [&]() -> std::string_view {
      if (i + 1 == arguments.size()) throw UsageError(std::string(argument) + " takes a number.");
      return arguments[++i];
    };
    if (areOptionsOver || argument.size() < 2 || argument[0] != '-') {
      operands.push_back(argument);
      continue;
    }
    hasRenderOptions |= argument == "--seconds" || argument == "--float" || argument == "--threads";
    if (argument == "--") {
      areOptionsOver = true;
    } else if (argument == "--seconds") {
      command.maximumSeconds = number(argument, value(), 0.0, HUGE_VAL);
    } else if (argument == "--threads") {
      command.threadCount = number(argument, value(), 1, 256);
    } else if (argument == "--float") {
      command.isFloat = true;
    } else if (argument == "--demo") {
      choose(Action::renderDemo);
    } else if (argument == "--write-demo") {
      choose(Action::writeDemo);
    } else if (argument == "--check") {
      choose(Action::check);
    } else if (argument == "--help") {
      choose(Action::help);
    } else {
      throw UsageError("There is no option " + std::string(argument) + ".");
    }
  }
  const bool isRendering = command.action == Action::render || command.action == Action::renderDemo;
  if (hasRenderOptions && !isRendering)
    throw UsageError("Only a render takes --seconds, --float and --threads.");
  if (operands.size() != operandCount(command.action)) throw UsageError("Too few or too many names.");
  if (isRendering) command.output = operands.back();
  if (command.action != Action::renderDemo && !operands.empty()) command.project = operands.front();
  return command;
}

}  // namespace velmora
