#pragma once

#include <QCoroTask>
#include <QObject>
#include <QTimer>
#include <chrono>
#include <cstdint>
#include <functional>
#include <stop_token>

#include "Platform/Services/HTTPClient.h"
#include "Platform/Services/Preferences.h"
#include "Platform/Services/UpdateController.h"
#include "Platform/Services/UpdateFeed.h"
#include "Platform/Services/UpdateInstaller.h"
#include "Platform/Services/UpdateServiceDelegate.h"
#include "Platform/Services/UpdateUserDriver.h"
#include "Platform/Tasks/SerialWorker.h"

namespace platform {

/// Where a program's updates come from, and which program it is.
struct UpdateChannel {
  QString name;         ///< the program's, for people
  QString application;  ///< the desktop id
  QString channel;
  QString version;  ///< of the running program
  QUrl feed;
  UpdateKey key{};  ///< all zero for none: there is no channel then

  bool exists() const { return key != UpdateKey{}; }
};

/// Looks for updates in a signed feed, by schedule and when the user asks. Where the program can replace
/// itself, it gets the new version, which takes its place when the process ends; elsewhere it opens the page
/// to get it from. Main thread.
class UpdateService final : public QObject, public UpdateController {
 public:
  /// Of the scheduled checks.
  struct Timing {
    std::chrono::milliseconds first = std::chrono::seconds(30);
    std::chrono::milliseconds interval = std::chrono::hours(24);
  };

  /// All of it outlives the service.
  struct Surroundings {
    HTTPClient& client;
    Preferences& preferences;  ///< keep the highest sequence number that was taken
    UpdateInstaller& installer;
    UpdateServiceDelegate& delegate;
    UpdateUserDriver& userDriver;
    std::function<void()> quit;  ///< asks for the end of the process, which may be refused
    std::function<QDateTime()> now = [] { return QDateTime::currentDateTimeUtc(); };
  };

  UpdateService(UpdateChannel channel, Surroundings surroundings);
  UpdateService(UpdateChannel channel, Surroundings surroundings, Timing timing);
  ~UpdateService() override { around_.userDriver.hide(); }

  void startUpdater() override;
  void checkForUpdates() override;
  bool canInstall() const override { return canInstall_; }

 private:
  enum class Stage : std::uint8_t { idle, checking, offering, downloading, ready };

  void checkBySchedule();
  QCoro::Task<> check();
  QCoro::Task<UpdateOffer> fetchOffer(std::stop_token stop);
  void judge(const UpdateOffer& offer);
  void found(const UpdateOffer& offer);
  void offerToUser(const UpdateOffer& offer);
  QCoro::Task<> download(UpdateOffer offer);
  QCoro::Task<> fetchProgram(UpdateOffer offer, std::stop_token stop);
  QCoro::Task<QByteArray> fetchPiece(QUrl address, qint64 start, qint64 size, std::stop_token stop);
  void becomeReady(const UpdateOffer& offer);
  void installAtOnce();
  void endSession();
  void abortSession(const QString& title, const std::exception& error);

  void show(UpdateMessage message);
  QString titleOf(const UpdateOffer& offer) const;
  QString sequenceKey() const;

  const UpdateChannel channel_;
  const Surroundings around_;
  const Timing timing_;
  const bool canInstall_;
  QTimer timer_;
  Stage stage_ = Stage::idle;
  bool isByHand_ = false;  // the user waits for an answer
  UpdateMessage message_;  // what the user sees or would see
  std::stop_source stop_;
  SerialWorker worker_;  // last: its end awaits the installer's work
};

}  // namespace platform
