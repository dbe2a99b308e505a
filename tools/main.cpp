#include <QCoreApplication>
#include <csignal>
#include <iostream>

#include "Platform/Tasks/SignalWatcher.h"
#include "tools/RenderTool.h"

namespace {

/// Runs the tool to its end and the event loop with it; the process's exit code.
QCoro::Task<> runAndQuit(velmora::RenderTool& tool, velmora::RenderCommand command) {
  int code = 0;
  try {
    auto running = tool.run(std::move(command));
    co_await running;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    code = 1;
  }
  QMetaObject::invokeMethod(
      QCoreApplication::instance(), [code] { QCoreApplication::exit(code); }, Qt::QueuedConnection);
}

}  // namespace

int main(int argc, char** argv) {
  velmora::RenderCommand command;
  try {
    command = velmora::RenderCommand::parse(std::span(argv, static_cast<std::size_t>(argc)).subspan(1));
  } catch (const velmora::UsageError& error) {
    std::cerr << error.what() << '\n' << velmora::RenderCommand::usage;
    return 2;
  }
  const QCoreApplication application(argc, argv);
  std::stop_source stop;
  const platform::SignalWatcher signals({SIGINT, SIGTERM, SIGHUP}, [&stop](int) { stop.request_stop(); });
  velmora::RenderTool tool(stop.get_token());
  auto running = runAndQuit(tool, std::move(command));
  return QCoreApplication::exec();
}
