#pragma once

#include <QUrl>
#include <chrono>
#include <cstddef>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmora::testing {

/// A request as it came.
struct ServiceRequest {
  std::string method;
  std::string path;
  std::string query;  ///< still encoded, without the "?"
  std::multimap<std::string, std::string> headers;
  std::string body;

  /// The name in any case of letters; nothing if there is no such header.
  std::optional<std::string> header(const std::string& name) const;
};

/// The online service with its state in memory, on the loopback from its construction to its destruction. Any
/// thread may call it.
///
/// A pattern is a regular expression that is searched for in the method and the target, as in
/// "GET /api/v1/community/feed?order=newest&page=1": "feed", "GET .*/vote$", "order=newest". An empty one is
/// found in all.
class ServiceDouble {
 public:
  enum class Transport { plain, encrypted };

  /// Port 0 takes a free one. Throws `std::runtime_error` if there is none.
  explicit ServiceDouble(Transport transport = Transport::plain, int port = 0);
  /// Hanging and held requests are let go of.
  ~ServiceDouble();
  ServiceDouble(const ServiceDouble&) = delete;
  ServiceDouble& operator=(const ServiceDouble&) = delete;

  /// Without a path.
  QUrl address() const;
  /// In PEM, made for 127.0.0.1 and signed by itself; empty if plain.
  std::string certificate() const;

  // What came, the oldest first.
  std::vector<ServiceRequest> requests(const std::string& pattern = "") const;
  /// Serves the caller's event loop until that many such requests came; false after ten seconds.
  bool await(const std::string& pattern, std::size_t count = 1) const;

  // How the next such requests are answered. These take the place of what the service would have done:
  static constexpr int always = std::numeric_limits<int>::max();
  void answer(const std::string& pattern, int status, const std::string& body, int times = 1,
              const std::string& contentType = "application/json");
  void redirect(const std::string& pattern, const std::string& location, int times = 1);
  /// A successful body of so many bytes; without an end if there is no number.
  void pour(const std::string& pattern, std::optional<std::size_t> bytes, int times = 1);
  void hang(const std::string& pattern, int times = 1);
  // These come on top of it, and of the above:
  /// The answer is made at once and leaves when it is released.
  void hold(const std::string& pattern, int times = 1);
  void release(const std::string& pattern = "");
  void delay(const std::string& pattern, std::chrono::milliseconds time, int times = 1);
  /// The connection ends in the middle of the answer's body.
  void cut(const std::string& pattern, int times = 1);
  /// The body leaves in so many pieces with a pause before each.
  void trickle(const std::string& pattern, std::size_t pieces, std::chrono::milliseconds pause,
               int times = 1);
  /// Forgets all of these and releases what is held.
  void behave();

  // Accounts.
  struct Account {
    std::string username;
    std::string password = "a good password";
    std::optional<std::string> displayName, email;
  };
  /// Gives the account's id.
  std::string addAccount(const Account& account);
  bool hasAccount(const std::string& username) const;
  /// Gives a new session's token.
  std::string openSession(const std::string& accountID);
  void endSessions(const std::string& accountID);
  bool isSignedIn(const std::string& token) const;

  // The community. A creator has the id of the account.
  struct Profile {
    std::string handle;
    std::string displayName = "Creator";
    std::string bio;
    std::string state = "approved";
    bool isDemo = false;
  };
  void addProfile(const std::string& accountID, const Profile& profile);
  struct Post {
    std::string title;
    std::string caption;
    std::string wav;
    std::string state = "approved";
  };
  /// Gives the post's id. A later one is newer.
  std::string addPost(const std::string& accountID, const Post& post);
  /// Nothing if there is no such post or profile.
  std::optional<std::string> stateOf(const std::string& id) const;
  void setState(const std::string& id, const std::string& state);
  void approveEverything();
  /// Whether all that comes is approved at once.
  void setApproving(bool isApproving);
  void setPageSize(std::size_t posts);
  /// The accepted bodies.
  std::vector<std::string> reports() const;
  std::vector<std::string> telemetry() const;

 private:
  class Server;
  std::unique_ptr<Server> server_;
};

/// A tone of 16-bit mono at 8000 Hz as a WAV file.
std::string toneWAV(std::chrono::milliseconds length, double hertz = 440);

}  // namespace velmora::testing
