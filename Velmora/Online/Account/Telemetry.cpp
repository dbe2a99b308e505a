#include "Velmora/Online/Account/Telemetry.h"

#include <QCoreApplication>
#include <QPointer>
#include <QSysInfo>
#include <QTimer>
#include <algorithm>
#include <array>
#include <charconv>
#include <exception>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

namespace velmora {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t longestQueue = 60;
constexpr std::size_t longestBatch = 20;
constexpr auto window = 60s;  // of each kind of event
constexpr auto firstDelay = 10s;
constexpr auto nextDelay = 60s;
constexpr int attempts = 3;

/// By the event's place in its enumeration.
constexpr std::array wireNames{
    "app_active",
    "studio_opened",
    "playback_started",
    "project_created",
    "project_opened",
    "audio_imported",
    "recording_saved",
    "wav_exported",
    "arrangement_opened",
    "pattern_opened",
    "mixer_opened",
    "community_opened",
    "account_refresh_failed",
    "audio_engine_failed",
    "project_save_failed",
    "project_load_failed",
    "audio_import_failed",
    "recording_failed",
    "wav_export_failed",
};
static_assert(wireNames.size() == static_cast<std::size_t>(TelemetryEvent::wavExportFailed) + 1);

QString consentKey(const UUID& customerID) {
  return "telemetryConsent." + QString::fromStdString(customerID.text());
}

std::string applicationVersion() {
  const QString version = QCoreApplication::applicationVersion();
  return version.isEmpty() ? "1.0.0" : version.toStdString();
}

/// A whole decimal number with or without a sign, or 1.
std::int64_t buildNumber(const QString& text) {
  constexpr std::int64_t none = 1;
  const std::string written = text.toStdString();
  std::string_view digits = written;
  const bool hasPlus = digits.starts_with('+');
  if (hasPlus) digits.remove_prefix(1);
  if (hasPlus && digits.starts_with('-')) return none;
  std::int64_t number = none;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return error == std::errc() && end == digits.data() + digits.size() ? number : none;
}

/// Of the system's kernel, which is what "linux" stands for.
std::int64_t osMajor() { return QSysInfo::kernelVersion().section('.', 0, 0).toLongLong(); }

QByteArray encoded(const Telemetry::Batch& batch) {
  auto events = nlohmann::ordered_json::array();
  for (const Telemetry::Event& event : batch.events)
    events.push_back({{"id", event.id.text()}, {"name", wireNames[static_cast<std::size_t>(event.name)]}});
  const nlohmann::ordered_json object{
      {"consent", true},      {"events", events},         {"sessionId", batch.sessionID.text()},
      {"platform", "linux"},  {"distribution", "direct"}, {"version", batch.version},
      {"build", batch.build}, {"osMajor", batch.osMajor},
  };
  return QByteArray::fromStdString(object.dump());
}

QCoro::Task<> post(platform::HTTPClient& client, QUrl url, QByteArray body, std::string token) {
  platform::HTTPRequest request{.method = "POST", .url = std::move(url), .body = std::move(body)};
  request.headers = {{"Content-Type", "application/json"},
                     {"Authorization", "Bearer " + QByteArray::fromStdString(token)}};
  request.patience = 10s;
  request.bodyLimit = 0;  // nobody reads the answer
  auto sending = client.send(std::move(request));
  const platform::HTTPAnswer answer = co_await sending;
  if (answer.status != 200) throw platform::HTTPError("The service did not take the report.");
}

}  // namespace

Telemetry::Telemetry(platform::Preferences& preferences, Sender sender)
    : Telemetry(preferences, std::move(sender), Options()) {}

Telemetry::Telemetry(platform::Preferences& preferences, Sender sender, Options options)
    : defaults_(preferences), sender_(std::move(sender)), options_(std::move(options)) {}

void Telemetry::record(TelemetryEvent event, Time date) {
  if (!isEnabled() || !customerID_ || !token_) return;
  const auto last = recent_.find(event);
  if (last != recent_.end() && date - last->second < window) return;
  recent_[event] = date;
  if (pending_.size() >= longestQueue) return;
  pending_.push_back({UUID::random(), event});
  schedule(firstDelay);
}

/// What is scheduled already isn't put off.
void Telemetry::schedule(std::chrono::seconds delay) {
  if (!options_.automaticDelivery || scheduled_ || sending_) return;
  scheduled_ = options_.timer(delay, [this] { deliverScheduled(); });
}

void Telemetry::deliverScheduled() {
  scheduled_.reset();
  deliver();
}

/// A change of account or of consent meanwhile leaves the new queue alone.
QCoro::Task<> Telemetry::deliver() {
  if (sending_ || !isEnabled() || !token_ || pending_.empty()) co_return;
  const QPointer self(this);
  sending_ = true;
  const std::int64_t before = generation_;
  const std::size_t count = std::min(pending_.size(), longestBatch);
  bool isDelivered = true;
  try {
    std::vector<Event> events(pending_.begin(), pending_.begin() + static_cast<std::ptrdiff_t>(count));
    auto sending = send(std::move(events), *token_);
    co_await sending;
  } catch (...) {
    isDelivered = false;
  }
  if (!self) co_return;
  if (generation_ == before && (isDelivered || ++failures_ == attempts)) dropDelivered(count);
  sending_ = false;
  if (isEnabled() && !pending_.empty()) schedule(nextDelay);
}

QCoro::Task<> Telemetry::send(std::vector<Event> events, std::string token) {
  const Batch batch{.events = std::move(events),
                    .sessionID = sessionID_,
                    .version = applicationVersion(),
                    .build = buildNumber(options_.buildNumber),
                    .osMajor = osMajor()};
  return sender_(encoded(batch), std::move(token));
}

void Telemetry::dropDelivered(std::size_t count) {
  pending_.erase(pending_.begin(), pending_.begin() + static_cast<std::ptrdiff_t>(count));
  failures_ = 0;
}

void Telemetry::reset() {
  ++generation_;
  scheduled_.reset();
  pending_.clear();
  recent_.clear();
  failures_ = 0;
  sessionID_ = UUID::random();
}

void Telemetry::setAccount(std::optional<UUID> customerID, std::optional<std::string> token) {
  if (customerID == customerID_ && token == token_) return;
  reset();
  customerID_ = customerID;
  token_ = std::move(token);
  isEnabled.set(customerID_ && defaults_.boolean(consentKey(*customerID_)));
  record(TelemetryEvent::appActive);
}

void Telemetry::setConsent(bool isGiven) {
  if (!customerID_) return;
  reset();
  isEnabled.set(isGiven);
  defaults_.set(consentKey(*customerID_), isGiven);
  record(TelemetryEvent::appActive);
}

std::shared_ptr<void> Telemetry::monotonicTimer(std::chrono::seconds delay, std::function<void()> work) {
  const std::shared_ptr<QTimer> timer(new QTimer, [](QTimer* old) {
    old->stop();
    old->deleteLater();  // it may be the one that is firing
  });
  timer->setSingleShot(true);
  timer->callOnTimeout(std::move(work));
  timer->start(delay);
  return timer;
}

Telemetry::Sender telemetrySender(platform::HTTPClient& client, const QUrl& endpoint) {
  QUrl url = endpoint;
  url.setPath("/api/v1/telemetry");
  return [&client, url](QByteArray body, std::string token) {
    return post(client, url, std::move(body), std::move(token));
  };
}

}  // namespace velmora
