#include "tools/update-feed/FeedTool.h"

#include <QCryptographicHash>
#include <fcntl.h>
#include <iostream>
#include <unistd.h>

#include "Platform/Files/FileDescriptor.h"
#include "Platform/Files/Files.h"

namespace velmora {

namespace {

constexpr std::size_t keyLimit = 1000;  // bytes of a key's file

struct Command {
  const char* name;
  QStringList options;
  QStringList needed;
};

const Command commands[] = {
    {"make-key", {}, {}},
    {"sign",
     {"key", "program", "application", "channel", "sequence", "expiry", "version", "download", "page"},
     {"key", "program", "application", "channel", "sequence", "expiry", "version", "download", "page"}},
    {"check", {"public-key", "program"}, {"public-key"}},
};

const Command& commandNamed(const QString& name) {
  for (const Command& command : commands)
    if (name == command.name) return command;
  throw FeedTool::UsageError(name.isEmpty() ? "Nothing to do." : "Unknown command: " + name.toStdString());
}

/// Throws `FileError`.
QByteArray content(const std::string& path, std::size_t limit) {
  return QByteArray::fromStdString(platform::readFile(path, limit));
}

struct Measure {
  qint64 size = 0;
  QByteArray hash;
};

/// The size and SHA-256 of a file. Throws `FileError`.
Measure measureOf(const std::string& path) {
  const platform::FileDescriptor file = platform::openForReading(path);
  QCryptographicHash sum(QCryptographicHash::Sha256);
  Measure measure;
  for (QByteArray block(1 << 18, 0);;) {
    const ssize_t count = ::read(file.number(), block.data(), static_cast<std::size_t>(block.size()));
    if (count < 0) throw platform::FileError(path, errno);
    if (count == 0) break;
    sum.addData(QByteArrayView(block).first(count));
    measure.size += count;
  }
  measure.hash = sum.result();
  return measure;
}

/// Only its owner may read it, and it never takes the place of another.
void writeSecret(const std::string& path, const QByteArray& text) {
  platform::FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (!file) throw platform::FileError(path, errno);
  const ssize_t written = ::write(file.number(), text.data(), static_cast<std::size_t>(text.size()));
  int code = written == text.size() ? 0 : written < 0 ? errno : ENOSPC;
  if (code == 0) code = file.sync();
  if (code == 0) code = file.close();
  if (code == 0) return;
  ::unlink(path.c_str());
  throw platform::FileError(path, code);
}

}  // namespace

void FeedTool::run(const QStringList& arguments) {
  const QString name = arguments.value(0);
  if (name == "--help" || name == "-h") {
    std::cout << usage;
    return;
  }
  const Command& command = commandNamed(name);
  for (const QString& option : command.options) line_.addOption({option, {}, option});
  if (!line_.parse(arguments)) throw UsageError(line_.errorText().toStdString());
  for (const QString& needed : command.needed)
    if (!line_.isSet(needed)) throw UsageError("There is no --" + needed.toStdString() + ".");
  if (line_.positionalArguments().size() != 1) throw UsageError("One file has to be named.");
  if (name == "make-key") return makeKey();
  name == "sign" ? sign() : check();
}

void FeedTool::makeKey() {
  const platform::UpdateSeed seed = platform::makeUpdateSeed();
  writeSecret(target(), platform::keyText(seed) + '\n');
  std::cout << platform::keyText(platform::publicKey(seed)).toStdString() << '\n';
}

void FeedTool::sign() {
  const platform::UpdateSeed seed = platform::readKeyText(content(file("key"), keyLimit));
  const Measure program = measureOf(file("program"));
  const platform::UpdateOffer offer{.application = option("application"),
                                    .channel = option("channel"),
                                    .sequence = option("sequence").toLongLong(),
                                    .version = option("version"),
                                    .expiry = QDateTime::fromString(option("expiry"), Qt::ISODate),
                                    .size = program.size,
                                    .hash = program.hash,
                                    .download = QUrl(option("download"), QUrl::StrictMode),
                                    .page = QUrl(option("page"), QUrl::StrictMode)};
  const QByteArray feed = platform::UpdateFeed::write(offer, seed);
  platform::atomicWrite(target(), {feed.data(), static_cast<std::size_t>(feed.size())});
}

void FeedTool::check() {
  const platform::UpdateKey key = platform::readKeyText(option("public-key").toLatin1());
  const QByteArray feed = content(target(), platform::UpdateFeed::limit);
  const platform::UpdateOffer offer = platform::UpdateFeed::read(feed, key);
  if (offer.expiry <= QDateTime::currentDateTimeUtc())
    throw platform::UpdateFeedError("The update information is out of date.");
  if (line_.isSet("program")) {
    const Measure program = measureOf(file("program"));
    if (program.size != offer.size || program.hash != offer.hash)
      throw platform::FileError(file("program"), "Not the program that the feed offers");
  }
  std::cout << feed.mid(feed.indexOf('\n') + 1).toStdString();
}

QString FeedTool::option(const char* name) const { return line_.value(name); }

std::string FeedTool::target() const {
  return line_.positionalArguments().front().toLocal8Bit().toStdString();
}

}  // namespace velmora
