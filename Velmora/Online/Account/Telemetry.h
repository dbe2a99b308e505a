#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <QObject>
#include <QString>
#include <QUrl>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Services/HTTPClient.h"
#include "Platform/Services/Preferences.h"
#include "Velmora/Model/Observed.h"
#include "Velmora/Model/TelemetryEvent.h"
#include "VelmoraCore/Song/UUID.h"

namespace velmora {

/// Counts features used and categories of errors for the service, only with the account's consent: names of
/// events, no numbers, no texts, no content. What wasn't delivered when the process ends is gone, and no
/// failure reaches the user. Main thread.
class Telemetry final : public QObject, public TelemetrySink {
 public:
  using Time = std::chrono::steady_clock::time_point;

  struct Event {
    UUID id;
    TelemetryEvent name = TelemetryEvent::appActive;
  };
  /// The body of one request. It is only ever built with consent.
  struct Batch {
    std::vector<Event> events;
    UUID sessionID;
    std::string version;
    std::int64_t build = 1;
    std::int64_t osMajor = 0;
  };

  /// Delivers an encoded batch with the token; fails by throwing.
  using Sender = std::function<QCoro::Task<>(QByteArray body, std::string token)>;
  /// Runs the work once after the delay, unless the handle that it returns goes before.
  using Timer = std::function<std::shared_ptr<void>(std::chrono::seconds delay, std::function<void()> work)>;

  struct Options {
    bool automaticDelivery = true;  ///< without it nothing is delivered but by `deliver`
    QString buildNumber;            ///< of the application; whatever isn't a number goes out as 1
    Timer timer = monotonicTimer;
  };

  /// `preferences` keeps the consent of each account and outlives this.
  Telemetry(platform::Preferences& preferences, Sender sender, Options options);
  Telemetry(platform::Preferences& preferences, Sender sender);

  Observed<bool, Telemetry> isEnabled;  ///< the current account has consented

  void record(TelemetryEvent event) override { record(event, std::chrono::steady_clock::now()); }
  /// At most one event of a kind is taken each minute.
  void record(TelemetryEvent event, Time date);
  void setConsent(bool isGiven);
  void setAccount(std::optional<UUID> customerID, std::optional<std::string> token);

  /// Sends the oldest events, if there are any and none are on their way.
  QCoro::Task<> deliver();

  static std::shared_ptr<void> monotonicTimer(std::chrono::seconds delay, std::function<void()> work);

 private:
  void reset();
  void schedule(std::chrono::seconds delay);
  void deliverScheduled();
  QCoro::Task<> send(std::vector<Event> events, std::string token);
  void dropDelivered(std::size_t count);

  platform::Preferences& defaults_;
  const Sender sender_;
  const Options options_;
  std::optional<UUID> customerID_;
  std::optional<std::string> token_;
  UUID sessionID_ = UUID::random();
  std::int64_t generation_ = 0;  // raised at each reset
  std::vector<Event> pending_;   // oldest first
  std::map<TelemetryEvent, Time> recent_;
  std::shared_ptr<void> scheduled_;
  bool sending_ = false;
  int failures_ = 0;  // of the batch at the head of `pending_`, in a row
};

/// Delivers to the service at `endpoint`. The client outlives whatever is delivered.
Telemetry::Sender telemetrySender(platform::HTTPClient& client, const QUrl& endpoint);

}  // namespace velmora
