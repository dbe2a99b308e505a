#include "tests/support/service/ServiceDouble.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <httplib.h>
#include <list>
#include <mutex>
#include <numbers>
#include <regex>
#include <stdexcept>
#include <strings.h>
#include <thread>

#include "VelmoraCore/Song/UUID.h"
#include "tests/support/service/Certificate.h"
#include "tests/support/service/ServiceState.h"

namespace velmora::testing {
namespace {

using Lock = std::unique_lock<std::mutex>;
using std::chrono::milliseconds;

constexpr std::size_t workers = 16;  // more than there are requests under way, as those may wait

bool isFound(const std::string& pattern, const std::string& target) {
  return std::regex_search(target, std::regex(pattern));
}

std::string target(const ServiceRequest& request) {
  return request.method + " " + request.path + (request.query.empty() ? "" : "?" + request.query);
}

/// One thing that the next requests meet.
struct Switch {
  enum class Kind { instead, hold, delay, cut, trickle };

  Kind kind = Kind::instead;
  std::string pattern;
  int times = 1;
  std::function<void(httplib::Response&)> answer;  ///< instead of the service's; none hangs
  milliseconds time{};
  std::size_t pieces = 1;
};

}  // namespace

class ServiceDouble::Server {
 public:
  Server(Transport transport, int port) : isEncrypted_(transport == Transport::encrypted) {
    if (isEncrypted_)
      http_ = std::make_unique<httplib::SSLServer>(certificate.x509(), certificate.key());
    else
      http_ = std::make_unique<httplib::Server>();
    http_->new_task_queue = [] { return new httplib::ThreadPool(workers); };
    http_->set_keep_alive_max_count(1);  // so that no idle connection ends just when the next request comes
    http_->set_tcp_nodelay(true);
    http_->set_socket_options([](socket_t socket) {  // the usual ones let two services share a port
      const int on = 1;
      ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    });
    const auto handler = [this](const httplib::Request& in, httplib::Response& out) { respond(in, out); };
    http_->Get(".*", handler)
        .Post(".*", handler)
        .Put(".*", handler)
        .Patch(".*", handler)
        .Delete(".*", handler);

    const char host[] = "127.0.0.1";
    port_ = port == 0 ? http_->bind_to_any_port(host) : http_->bind_to_port(host, port) ? port : -1;
    if (port_ < 0) throw std::runtime_error("port " + std::to_string(port) + " isn't free");
    thread_ = std::thread([this] { http_->listen_after_bind(); });
    while (!http_->is_running()) std::this_thread::yield();
  }

  ~Server() {
    {
      const Lock lock(mutex_);
      isStopping_ = true;
    }
    changed_.notify_all();
    http_->stop();
    thread_.join();
  }

  QUrl address() const {
    return QUrl(QString("%1://127.0.0.1:%2").arg(isEncrypted_ ? "https" : "http").arg(port_));
  }

  void add(Switch added) {
    const Lock lock(mutex_);
    switches_.push_back(std::move(added));
  }

  void release(const std::string& pattern) {
    const Lock lock(mutex_);
    for (Waiting& waiting : waiting_)
      if (isFound(pattern, waiting.target)) waiting.isReleased = true;
    changed_.notify_all();
  }

  void behave() {
    {
      const Lock lock(mutex_);
      switches_.clear();
    }
    release("");
  }

  std::vector<ServiceRequest> requests(const std::string& pattern) const {
    const Lock lock(mutex_);
    std::vector<ServiceRequest> found;
    std::ranges::copy_if(requests_, std::back_inserter(found),
                         [&](const ServiceRequest& request) { return isFound(pattern, target(request)); });
    return found;
  }

  /// Runs with the state locked.
  template <class Action>
  auto with(const Action& action) {
    const Lock lock(mutex_);
    return action(state_);
  }

  /// False once the server stops.
  bool pause(milliseconds time) {
    Lock lock(mutex_);
    return !changed_.wait_for(lock, time, [this] { return isStopping_; });
  }

  const Certificate certificate;

 private:
  struct Waiting {
    std::string target;
    bool isReleased = false;
  };

  void respond(const httplib::Request& in, httplib::Response& out) {
    ServiceRequest request{in.method, in.target.substr(0, in.target.find('?')), {}, {}, in.body};
    if (request.path.size() < in.target.size()) request.query = in.target.substr(request.path.size() + 1);
    request.headers.insert(in.headers.begin(), in.headers.end());
    for (const char* own : {"REMOTE_ADDR", "REMOTE_PORT", "LOCAL_ADDR", "LOCAL_PORT"})
      request.headers.erase(own);

    Lock lock(mutex_);
    requests_.push_back(request);
    using enum Switch::Kind;
    const std::string place = target(request);
    const auto replacement = take(instead, place);
    const auto held = take(hold, place), delayed = take(delay, place), severed = take(cut, place),
               dripping = take(trickle, place);
    if (!replacement) {
      const ServiceReply reply = state_.answer(request);
      out.status = reply.status;
      out.set_content(reply.body, reply.contentType);
    } else if (replacement->answer) {
      replacement->answer(out);
    }
    if (held || (replacement && !replacement->answer)) awaitRelease(lock, place);
    lock.unlock();

    if (delayed) pause(delayed->time);
    if (severed) sendHalf(out);
    if (dripping) sendInPieces(out, dripping->pieces, dripping->time);
  }

  /// The first of the kind that fits, and once less to come.
  std::optional<Switch> take(Switch::Kind kind, const std::string& place) {
    for (Switch& each : switches_)
      if (each.kind == kind && each.times > 0 && isFound(each.pattern, place)) {
        if (each.times != always) --each.times;
        return each;
      }
    return std::nullopt;
  }

  void awaitRelease(Lock& lock, const std::string& place) {
    const auto own = waiting_.insert(waiting_.end(), {place});
    changed_.wait(lock, [&] { return isStopping_ || own->isReleased; });
    waiting_.erase(own);
  }

  static void sendHalf(httplib::Response& out) {
    const std::string body = std::exchange(out.body, {});
    out.set_content_provider(std::max<std::size_t>(body.size(), 1), out.get_header_value("Content-Type"),
                             [body](std::size_t, std::size_t, httplib::DataSink& sink) {
                               sink.write(body.data(), body.size() / 2);
                               return false;
                             });
  }

  void sendInPieces(httplib::Response& out, std::size_t pieces, milliseconds time) {
    const std::string body = std::exchange(out.body, {});
    const std::size_t piece = std::max<std::size_t>(1, body.size() / pieces);
    out.set_content_provider(
        body.size(), out.get_header_value("Content-Type"),
        [this, body, piece, time](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
          return pause(time) && sink.write(body.data() + offset, std::min(piece, length));
        });
  }

  const bool isEncrypted_;
  std::unique_ptr<httplib::Server> http_;
  int port_ = -1;
  std::thread thread_;

  mutable std::mutex mutex_;  // of all below
  std::condition_variable changed_;
  bool isStopping_ = false;
  std::list<Waiting> waiting_;
  std::vector<Switch> switches_;
  std::vector<ServiceRequest> requests_;
  ServiceState state_;
};

std::optional<std::string> ServiceRequest::header(const std::string& name) const {
  const auto found = std::ranges::find_if(
      headers, [&](const auto& entry) { return ::strcasecmp(entry.first.c_str(), name.c_str()) == 0; });
  return found == headers.end() ? std::nullopt : std::optional(found->second);
}

ServiceDouble::ServiceDouble(Transport transport, int port)
    : server_(std::make_unique<Server>(transport, port)) {}
ServiceDouble::~ServiceDouble() = default;

QUrl ServiceDouble::address() const { return server_->address(); }
std::string ServiceDouble::certificate() const {
  return address().scheme() == "https" ? server_->certificate.pem() : "";
}

std::vector<ServiceRequest> ServiceDouble::requests(const std::string& pattern) const {
  return server_->requests(pattern);
}

bool ServiceDouble::await(const std::string& pattern, std::size_t count) const {
  const QDeadlineTimer deadline(10000);
  while (requests(pattern).size() < count && !deadline.hasExpired())
    QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
  return requests(pattern).size() >= count;
}

void ServiceDouble::answer(const std::string& pattern, int status, const std::string& body, int times,
                           const std::string& contentType) {
  server_->add({.pattern = pattern, .times = times, .answer = [=](httplib::Response& out) {
                  out.status = status;
                  out.set_content(body, contentType);
                }});
}

void ServiceDouble::redirect(const std::string& pattern, const std::string& location, int times) {
  server_->add({.pattern = pattern, .times = times, .answer = [=](httplib::Response& out) {
                  out.set_redirect(location);
                }});
}

void ServiceDouble::pour(const std::string& pattern, std::optional<std::size_t> bytes, int times) {
  server_->add({.pattern = pattern, .times = times, .answer = [=](httplib::Response& out) {
                  static const std::string piece(1 << 16, 'x');
                  const char type[] = "application/octet-stream";
                  if (!bytes)
                    out.set_content_provider(type, [](std::size_t, httplib::DataSink& sink) {
                      return sink.write(piece.data(), piece.size());
                    });
                  else
                    out.set_content(std::string(*bytes, 'x'), type);
                }});
}

void ServiceDouble::hang(const std::string& pattern, int times) {
  server_->add({.pattern = pattern, .times = times});
}
void ServiceDouble::hold(const std::string& pattern, int times) {
  server_->add({.kind = Switch::Kind::hold, .pattern = pattern, .times = times});
}
void ServiceDouble::release(const std::string& pattern) { server_->release(pattern); }
void ServiceDouble::delay(const std::string& pattern, milliseconds time, int times) {
  server_->add({.kind = Switch::Kind::delay, .pattern = pattern, .times = times, .time = time});
}
void ServiceDouble::cut(const std::string& pattern, int times) {
  server_->add({.kind = Switch::Kind::cut, .pattern = pattern, .times = times});
}
void ServiceDouble::trickle(const std::string& pattern, std::size_t pieces, milliseconds pause, int times) {
  server_->add({Switch::Kind::trickle, pattern, times, {}, pause, pieces});
}
void ServiceDouble::behave() { server_->behave(); }

std::string ServiceDouble::addAccount(const Account& account) {
  std::string id = UUID::random().text();
  server_->with([&](ServiceState& state) { state.accounts[id].own = account; });
  return id;
}
bool ServiceDouble::hasAccount(const std::string& username) const {
  return server_->with([&](const ServiceState& state) {
    return std::ranges::any_of(state.accounts,
                               [&](const auto& entry) { return entry.second.own.username == username; });
  });
}
std::string ServiceDouble::openSession(const std::string& accountID) {
  return server_->with([&](ServiceState& state) { return state.openSession(accountID); });
}
void ServiceDouble::endSessions(const std::string& accountID) {
  server_->with([&](ServiceState& state) { state.endSessions(accountID); });
}
bool ServiceDouble::isSignedIn(const std::string& token) const {
  return server_->with([&](const ServiceState& state) { return state.sessions.contains(token); });
}

void ServiceDouble::addProfile(const std::string& accountID, const Profile& profile) {
  server_->with([&](ServiceState& state) { state.accounts.at(accountID).profile = profile; });
}
std::string ServiceDouble::addPost(const std::string& accountID, const Post& post) {
  return server_->with([&](ServiceState& state) { return state.addPost(accountID, post); });
}
std::optional<std::string> ServiceDouble::stateOf(const std::string& id) const {
  return server_->with([&](ServiceState& state) -> std::optional<std::string> {
    const std::string* const found = state.stateOf(id);
    return found ? std::optional(*found) : std::nullopt;
  });
}
void ServiceDouble::setState(const std::string& id, const std::string& newState) {
  server_->with([&](ServiceState& state) {
    std::string* const found = state.stateOf(id);
    if (!found) throw std::invalid_argument("no post or profile " + id);
    *found = newState;
  });
}
void ServiceDouble::approveEverything() {
  server_->with([](ServiceState& state) { state.approveEverything(); });
}
void ServiceDouble::setApproving(bool isApproving) {
  server_->with([=](ServiceState& state) { state.isApproving = isApproving; });
}
void ServiceDouble::setPageSize(std::size_t posts) {
  server_->with([=](ServiceState& state) { state.pageSize = posts; });
}
std::vector<std::string> ServiceDouble::reports() const {
  return server_->with([](const ServiceState& state) { return state.reports; });
}
std::vector<std::string> ServiceDouble::telemetry() const {
  return server_->with([](const ServiceState& state) { return state.telemetry; });
}

std::string toneWAV(milliseconds length, double hertz) {
  constexpr std::uint32_t rate = 8000;
  const auto frames = static_cast<std::uint32_t>(length.count() * rate / 1000);
  const auto number = [](std::uint32_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> 8 * i);
    return text;
  };
  std::string wav = "RIFF" + number(36 + frames * 2, 4) + "WAVEfmt " + number(16, 4) + number(1, 2) +
                    number(1, 2) + number(rate, 4) + number(rate * 2, 4) + number(2, 2) + number(16, 2) +
                    "data" + number(frames * 2, 4);
  for (std::uint32_t i = 0; i < frames; ++i) {
    const double value = 8000 * std::sin(2 * std::numbers::pi * hertz * i / rate);
    wav += number(static_cast<std::uint32_t>(static_cast<std::int32_t>(value)), 2);
  }
  return wav;
}

}  // namespace velmora::testing
