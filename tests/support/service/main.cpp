// Starts the online service by hand, so that a person can try the studio's windows against it.

#include <QCommandLineParser>
#include <QCoreApplication>
#include <cmath>
#include <exception>
#include <iostream>
#include <string>
#include <unistd.h>

#include "tests/support/service/ServiceDouble.h"

namespace velmora::testing {
namespace {

constexpr char demoPassword[] = "a good password";

/// Two creators and their loops; one post waits for its approval.
void fill(ServiceDouble& service) {
  const std::string ada = service.addAccount({"ada", demoPassword, "Ada"});
  const std::string ben = service.addAccount({"ben", demoPassword, "Ben", "ben@example.org"});
  service.addProfile(ada, {.handle = "ada_beats", .displayName = "Ada", .bio = "Slow drums, long chords."});
  service.addProfile(ben, {.handle = "ben_and_tape", .displayName = "Ben", .isDemo = true});
  const char* const titles[] = {"Rain on the tram",  "Second window", "Kitchen at six",     "Copper wire",
                                "A walk in 7",       "Lanterns",      "Borrowed bass line", "Nine floors up",
                                "The blue elevator", "Small hours",   "Paper boats",        "North platform"};
  int step = 0;
  for (const char* title : titles) {
    const double hertz = 220 * std::pow(2, step * 2 % 12 / 12.0);
    service.addPost(step % 3 ? ada : ben, {title, step % 2 ? "Made this morning." : "",
                                           toneWAV(std::chrono::seconds(2 + step), hertz)});
    ++step;
  }
  service.addPost(ada, {"Not heard yet", "", toneWAV(std::chrono::seconds(4)), "pending"});
  service.setPageSize(5);
}

int run(int count, char** arguments) {
  const QCoreApplication application(count, arguments);
  QCommandLineParser parser;
  parser.setApplicationDescription(
      "An online service for trying the studio by hand. It forgets all when it ends.");
  parser.addHelpOption();
  const QCommandLineOption port("port", "Listens on this port of the loopback.", "number", "4711");
  const QCommandLineOption demo("demo", "Starts with two creators and some posts.");
  const QCommandLineOption approve("approve", "Approves whatever is sent at once.");
  parser.addOptions({port, demo, approve});
  parser.process(application);

  ServiceDouble service(ServiceDouble::Transport::plain, parser.value(port).toInt());
  if (parser.isSet(demo)) fill(service);
  service.setApproving(parser.isSet(approve));
  std::cout << service.address().toString().toStdString() << '\n';
  if (parser.isSet(demo)) std::cout << "Accounts: ada and ben, password: " << demoPassword << '\n';
  std::cout << "Return approves everything that waits for review; Ctrl+C ends.\n" << std::flush;
  for (std::string line; std::getline(std::cin, line);) {
    service.approveEverything();
    std::cout << "Everything is approved.\n" << std::flush;
  }
  ::pause();  // started without a terminal
  return 0;
}

}  // namespace
}  // namespace velmora::testing

int main(int count, char** arguments) {
  try {
    return velmora::testing::run(count, arguments);
  } catch (const std::exception& error) {
    std::cerr << "velmora-service: " << error.what() << '\n';
    return 1;
  }
}
