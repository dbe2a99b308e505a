#include "Platform/Services/UpdateService.h"

#include <QLocale>
#include <QPointer>
#include <algorithm>
#include <utility>

#include "Platform/Tasks/Cancelled.h"

namespace platform {

namespace {

constexpr qint64 pieceSize = 1 << 20;  // bytes of a download that are asked for at a time

QString sizeText(qint64 bytes) { return QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat); }

std::string statusText(int status) {
  return "The server answered with status " + std::to_string(status) + ".";
}

}  // namespace

UpdateService::UpdateService(UpdateChannel channel, Surroundings surroundings)
    : UpdateService(std::move(channel), std::move(surroundings), Timing()) {}

UpdateService::UpdateService(UpdateChannel channel, Surroundings surroundings, Timing timing)
    : channel_(std::move(channel)),
      around_(std::move(surroundings)),
      timing_(timing),
      canInstall_(around_.installer.canInstall()) {
  timer_.callOnTimeout(this, [this] { checkBySchedule(); });
}

void UpdateService::startUpdater() {
  const bool isWeb = channel_.feed.scheme() == "https" || channel_.feed.scheme() == "http";
  if (!channel_.feed.isValid() || !isWeb || channel_.feed.host().isEmpty())
    throw UpdateFeedError("The address of the update information can't be used.");
  if (channel_.exists()) timer_.start(timing_.first);
}

void UpdateService::checkBySchedule() {
  timer_.setInterval(timing_.interval);
  if (stage_ == Stage::idle) check();
}

void UpdateService::checkForUpdates() {
  if (!channel_.exists())
    return around_.userDriver.show({"This " + channel_.name + " has no update channel.",
                                    "New versions come from where you got this one."});
  isByHand_ = true;
  if (stage_ == Stage::idle) {
    check();
  } else {
    show(message_);
  }
}

QCoro::Task<> UpdateService::check() {
  const QPointer<UpdateService> self(this);
  stage_ = Stage::checking;
  stop_ = std::stop_source();
  show({"Checking for updates…", {}, -1, {}, {}, "Cancel", [this] { stop_.request_stop(); }});
  try {
    auto fetching = fetchOffer(stop_.get_token());
    const UpdateOffer offer = co_await fetching;
    if (self) judge(offer);
  } catch (const Cancelled&) {
    if (self) endSession();
  } catch (const std::exception& error) {
    if (self) abortSession("Could not check for updates", error);
  }
}

QCoro::Task<UpdateOffer> UpdateService::fetchOffer(std::stop_token stop) {
  const UpdateKey key = channel_.key;
  HTTPRequest request{.url = channel_.feed, .bodyLimit = UpdateFeed::limit};
  auto sending = around_.client.send(std::move(request), std::move(stop));
  const HTTPAnswer answer = co_await sending;
  if (!answer.isSuccess()) throw HTTPError(statusText(answer.status));
  co_return UpdateFeed::read(answer.body, key);
}

void UpdateService::judge(const UpdateOffer& offer) {
  Preferences& preferences = around_.preferences;
  const auto last = static_cast<qint64>(preferences.number(sequenceKey(), 0));
  const bool isNewer = UpdateFeed::isNewer(
      offer, {channel_.application, channel_.channel, channel_.version, last, around_.now()});
  preferences.set(sequenceKey(), static_cast<double>(offer.sequence));
  if (isNewer) return found(offer);
  const bool isAwaited = isByHand_;
  endSession();
  if (isAwaited)
    around_.userDriver.show({channel_.name + " is up to date.",
                             "You have version " + channel_.version + ", which is the newest one."});
}

void UpdateService::found(const UpdateOffer& offer) {
  UpdateServiceDelegate& delegate = around_.delegate;
  delegate.didFindValidUpdate(offer);
  const bool isShownHere = isByHand_ || !delegate.supportsGentleScheduledUpdateReminders() ||
                           delegate.standardUserDriverShouldHandleShowingScheduledUpdate(offer, false);
  delegate.standardUserDriverWillHandleShowingUpdate(isShownHere, offer,
                                                     {UpdateState::Stage::notDownloaded, isByHand_});
  stage_ = Stage::idle;  // the delegate's notice may stand for days
  if (isShownHere) offerToUser(offer);
}

void UpdateService::offerToUser(const UpdateOffer& offer) {
  stage_ = Stage::offering;
  isByHand_ = true;
  UpdateMessage message{.title = titleOf(offer) + " is available", .close = "Later"};
  message.onClose = [this] { endSession(); };
  if (canInstall_) {
    message.text =
        "You have version " + channel_.version + ". The download has " + sizeText(offer.size) + ".";
    message.action = "Download";
    message.onAction = [this, offer] { download(offer); };
  } else {
    message.text =
        "You have version " + channel_.version + ". Get the new one from where you got this one, or here:";
    message.action = "Open Download Page";
    message.onAction = [this, page = offer.page] {
      around_.userDriver.open(page);
      endSession();
    };
  }
  show(std::move(message));
}

QCoro::Task<> UpdateService::download(UpdateOffer offer) {
  const QPointer<UpdateService> self(this);
  stage_ = Stage::downloading;
  stop_ = std::stop_source();
  show({"Downloading " + titleOf(offer) + "…",
        sizeText(0) + " of " + sizeText(offer.size),
        0,
        {},
        {},
        "Cancel",
        [this] { stop_.request_stop(); }});
  try {
    auto fetching = fetchProgram(offer, stop_.get_token());
    co_await fetching;
    if (self) becomeReady(offer);
  } catch (const Cancelled&) {
    if (!self) co_return;
    around_.installer.discard();
    endSession();
  } catch (const std::exception& error) {
    if (!self) co_return;
    around_.installer.discard();
    abortSession("Could not get the update", error);
  }
}

/// The file comes in pieces, each of which is on its way to the disk before the next one is asked for.
QCoro::Task<> UpdateService::fetchProgram(UpdateOffer offer, std::stop_token stop) {
  const QPointer<UpdateService> self(this);
  UpdateInstaller& installer = around_.installer;
  auto beginning = worker_.run([&installer, offer] { installer.begin(offer.size, offer.hash); });
  co_await beginning;
  for (qint64 done = 0; done < offer.size;) {
    if (!self) throw Cancelled();
    auto fetching = fetchPiece(offer.download, done, offer.size, stop);
    const QByteArray piece = co_await fetching;
    if (!self) throw Cancelled();
    auto writing = worker_.run([&installer, piece] { installer.append(piece); });
    co_await writing;
    if (!self || stop.stop_requested()) throw Cancelled();
    done += piece.size();
    message_.text = sizeText(done) + " of " + sizeText(offer.size);
    message_.progress = static_cast<double>(done) / static_cast<double>(offer.size);
    around_.userDriver.showProgress(message_.text, *message_.progress);
  }
  auto completing = worker_.run([&installer] { installer.complete(); });
  co_await completing;
}

/// A server that knows no pieces may send a small file whole.
QCoro::Task<QByteArray> UpdateService::fetchPiece(QUrl address, qint64 start, qint64 size,
                                                  std::stop_token stop) {
  const qint64 end = std::min(start + pieceSize, size);
  HTTPRequest request{.url = std::move(address), .bodyLimit = pieceSize};
  request.headers.emplace_back("Range",
                               "bytes=" + QByteArray::number(start) + '-' + QByteArray::number(end - 1));
  auto sending = around_.client.send(std::move(request), std::move(stop));
  HTTPAnswer answer = co_await sending;
  if (!answer.isSuccess()) throw HTTPError(statusText(answer.status));
  const qint64 count = answer.body.size();
  if (count == 0 || count > end - start || (answer.status != 206 && count != size))
    throw HTTPError("The server sent something else than was asked for.");
  co_return std::move(answer.body);
}

void UpdateService::becomeReady(const UpdateOffer& offer) {
  stage_ = Stage::ready;
  message_ = {titleOf(offer) + " is ready", "It will be installed when you quit " + channel_.name + "."};
  const auto block = [self = QPointer<UpdateService>(this)] {
    if (self) self->installAtOnce();
  };
  if (around_.delegate.willInstallUpdateOnQuit(offer, block)) {
    around_.userDriver.hide();
  } else {
    around_.userDriver.show(message_);
  }
  around_.delegate.standardUserDriverWillFinishUpdateSession();
}

void UpdateService::installAtOnce() {
  around_.installer.setRelaunches(true);
  around_.quit();
}

void UpdateService::endSession() {
  stage_ = Stage::idle;
  isByHand_ = false;
  around_.userDriver.hide();
  around_.delegate.standardUserDriverWillFinishUpdateSession();
}

void UpdateService::abortSession(const QString& title, const std::exception& error) {
  stage_ = Stage::idle;
  around_.delegate.didAbortWithError(error);
  if (std::exchange(isByHand_, false)) around_.userDriver.show({title, error.what()});
}

void UpdateService::show(UpdateMessage message) {
  message_ = std::move(message);
  if (isByHand_) around_.userDriver.show(message_);
}

QString UpdateService::titleOf(const UpdateOffer& offer) const { return channel_.name + ' ' + offer.version; }

QString UpdateService::sequenceKey() const { return "updateSequence/" + channel_.channel; }

}  // namespace platform
