#pragma once

#include <QCommandLineParser>
#include <QStringList>
#include <stdexcept>

#include "Platform/Services/UpdateFeed.h"

namespace velmora {

/// Makes the keys and the feeds of an update channel, and checks them as a studio would.
class FeedTool {
 public:
  /// A command line that makes no sense.
  struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
  };

  static constexpr const char* usage =
      "usage: velmora-update-feed make-key SECRET-FILE\n"
      "       velmora-update-feed sign --key SECRET-FILE --program FILE --application ID --channel NAME\n"
      "                                --sequence N --expiry YYYY-MM-DDTHH:MM:SSZ --version V\n"
      "                                --download ADDRESS --page ADDRESS FEED\n"
      "       velmora-update-feed check --public-key KEY [--program FILE] FEED\n"
      "\n"
      "make-key writes a new secret key to a file that isn't there yet, and prints the public one.\n"
      "sign     writes the feed that offers the program; the sequence number has to rise with each.\n"
      "check    prints what a feed says, if its signature is right and it hasn't expired; with the program,\n"
      "         also tells whether that is the one it means.\n";

  /// `arguments` after the program's name. Throws `UsageError` and what goes wrong.
  void run(const QStringList& arguments);

 private:
  void makeKey();
  void sign();
  void check();

  QString option(const char* name) const;
  std::string file(const char* name) const { return option(name).toLocal8Bit().toStdString(); }
  std::string target() const;

  QCommandLineParser line_;
};

}  // namespace velmora
