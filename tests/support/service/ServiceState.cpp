#include "tests/support/service/ServiceState.h"

#include <QDateTime>
#include <QUrlQuery>
#include <algorithm>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <regex>

#include "VelmoraCore/Song/UUID.h"

namespace velmora::testing {
namespace {

using Json = nlohmann::json;
using Account = ServiceState::Account;
using Post = ServiceState::Post;

constexpr std::size_t longestAudio = 3'800'000;  // bytes

struct Refusal {
  int status;
  std::string error;
};
void require(bool isRight, int status, const char* error) {
  if (!isRight) throw Refusal{status, error};
}

const Json ok = {{"ok", true}};

std::string timeText(int daysAhead = 0) {
  return QDateTime::currentDateTimeUtc().addDays(daysAhead).toString(Qt::ISODate).toStdString();
}

/// In characters rather than bytes.
std::size_t length(const std::string& text) {
  return static_cast<std::size_t>(std::ranges::count_if(text, [](char c) { return (c & 0xc0) != 0x80; }));
}

bool isMatch(const std::string& text, const char* pattern) {
  return std::regex_match(text, std::regex(pattern));
}

std::uint32_t numberAt(const std::string& wav, std::size_t offset) {
  std::uint32_t value = 0;
  for (std::size_t i = 4; i-- > 0;) value = value << 8 | static_cast<unsigned char>(wav[offset + i]);
  return value;
}

/// Of a WAV file, whatever chunks it has; nothing if it is none.
std::optional<std::int64_t> durationMs(const std::string& wav) {
  if (wav.size() < 12 || wav.substr(0, 4) != "RIFF" || wav.substr(8, 4) != "WAVE") return std::nullopt;
  std::uint32_t bytesPerSecond = 0;
  for (std::size_t at = 12; at + 8 <= wav.size();) {
    const std::string name = wav.substr(at, 4);
    const std::size_t size = numberAt(wav, at + 4);
    if (name == "fmt " && at + 20 <= wav.size()) bytesPerSecond = numberAt(wav, at + 16);
    if (name == "data" && bytesPerSecond > 0)
      return static_cast<std::int64_t>(std::min(size, wav.size() - at - 8)) * 1000 / bytesPerSecond;
    at += 8 + size + size % 2;
  }
  return std::nullopt;
}

/// One request with what its operation needs of it.
struct Call {
  ServiceState& state;
  const ServiceRequest& request;
  std::string token;
  std::string userID;  ///< empty if signed out
  std::string pathID;

  Account& user() const { return state.accounts.at(userID); }
  Account& creator() const {
    const auto found = state.accounts.find(pathID);
    require(found != state.accounts.end() && found->second.profile, 404, "This creator doesn't exist.");
    return found->second;
  }
  Post& post() const {
    const auto found = state.posts.find(pathID);
    require(found != state.posts.end(), 404, "This preview doesn't exist.");
    return found->second;
  }
  Post& ownPost() const {
    require(post().creatorID == userID, 404, "This preview doesn't exist.");
    return post();
  }
  std::string text(const char* key) const { return Json::parse(request.body).at(key).get<std::string>(); }
  bool flag(const char* key) const { return Json::parse(request.body).at(key).get<bool>(); }
  const char* firstState() const { return state.isApproving ? "approved" : "pending"; }
};

Json customerJson(const std::string& id, const ServiceDouble::Account& account) {
  Json json = {{"id", id}, {"username", account.username}};
  if (account.displayName) json["displayName"] = *account.displayName;
  if (account.email) json["email"] = *account.email;
  return json;
}

Json creatorJson(const Call& call, const std::string& id) {
  const Account& account = call.state.accounts.at(id);
  const ServiceDouble::Profile& profile = *account.profile;
  Json json = {{"id", id},
               {"handle", profile.handle},
               {"displayName", profile.displayName},
               {"bio", profile.bio},
               {"followers", account.followers.size()},
               {"following", account.followers.contains(call.userID)}};
  if (profile.isDemo) json["isDemo"] = true;
  if (id == call.userID) json["state"] = profile.state;
  return json;
}

Json sessionJson(const Call& call, const std::string& accountID) {
  return {{"customer", customerJson(accountID, call.state.accounts.at(accountID).own)},
          {"sessionToken", call.state.openSession(accountID)},
          {"expiresAt", timeText(30)}};
}

void requirePassword(const std::string& password) {
  const std::size_t size = length(password);
  require(size >= 8 && size <= 128, 400, "A password needs 8 to 128 characters.");
}

// The account.

Json signUp(const Call& call) {
  const std::string name = call.text("username");
  require(isMatch(name, "[A-Za-z0-9_]{3,24}"), 400, "Choose 3–24 letters, numbers or underscores.");
  requirePassword(call.text("password"));
  const auto hasName = [&](const auto& account) { return account.second.own.username == name; };
  require(std::ranges::none_of(call.state.accounts, hasName), 409, "This username is taken.");
  const std::string id = UUID::random().text();
  call.state.accounts[id].own = {.username = name, .password = call.text("password")};
  return sessionJson(call, id);
}

Json signIn(const Call& call) {
  for (const auto& [id, account] : call.state.accounts)
    if (account.own.username == call.text("username") && account.own.password == call.text("password"))
      return sessionJson(call, id);
  throw Refusal{401, "The username or the password is wrong."};
}

Json signOut(const Call& call) {
  call.state.sessions.erase(call.token);
  return ok;
}

Json deleteAccount(const Call& call) {
  call.state.endSessions(call.userID);
  call.state.accounts.erase(call.userID);
  std::erase_if(call.state.posts, [&](const auto& post) { return post.second.creatorID == call.userID; });
  for (auto& [id, account] : call.state.accounts) account.followers.erase(call.userID);
  for (auto& [id, post] : call.state.posts) post.voters.erase(call.userID);
  return ok;
}

Json changePassword(const Call& call) {
  require(call.text("currentPassword") == call.user().own.password, 403, "The current password is wrong.");
  requirePassword(call.text("newPassword"));
  call.user().own.password = call.text("newPassword");
  call.state.endSessions(call.userID);
  return sessionJson(call, call.userID);
}

Json me(const Call& call) { return {{"customer", customerJson(call.userID, call.user().own)}}; }

Json acknowledge(const Call&) { return ok; }

Json telemetry(const Call& call) {
  const Json batch = Json::parse(call.request.body);
  const std::size_t events = batch.at("events").size();
  require(batch.at("consent") == true && events >= 1 && events <= 20, 400, "This is no batch of events.");
  call.state.telemetry.push_back(call.request.body);
  return ok;
}

// The community.

bool isPublic(const Call& call, const Post& post) {
  const Account& creator = call.state.accounts.at(post.creatorID);
  const bool isBlocked = !call.userID.empty() && call.user().blocked.contains(post.creatorID);
  return post.own.state == "approved" && creator.profile && creator.profile->state == "approved" &&
         !isBlocked;
}

Json postJson(const Call& call, const std::string& id, const Post& post) {
  return {{"id", id},
          {"title", post.own.title},
          {"caption", post.own.caption},
          {"durationMs", durationMs(post.own.wav).value_or(0)},
          {"publishedAt", post.publishedAt},
          {"creator", creatorJson(call, post.creatorID)},
          {"votes", post.voters.size()},
          {"voted", post.voters.contains(call.userID)}};
}

Json feed(const Call& call) {
  const QUrlQuery query(QString::fromStdString(call.request.query));
  const QString order = query.queryItemValue("order");
  const std::size_t page = query.queryItemValue("page").toUInt();
  require(page >= 1, 400, "Pages count from 1.");
  require(order == "newest" || order == "popular" || order == "following", 400, "This order is unknown.");
  require(order != "following" || !call.userID.empty(), 401, "Please sign in.");

  std::vector<std::pair<std::string, const Post*>> found;
  for (const auto& [id, post] : call.state.posts) {
    const bool isFollowed = call.state.accounts.at(post.creatorID).followers.contains(call.userID);
    if (isPublic(call, post) && (order != "following" || isFollowed)) found.emplace_back(id, &post);
  }
  std::ranges::sort(found, std::greater(), [&](const auto& entry) {
    return std::pair(order == "popular" ? entry.second->voters.size() : 0, entry.second->number);
  });
  const std::size_t begin = std::min(found.size(), (page - 1) * call.state.pageSize);
  const std::size_t end = std::min(found.size(), begin + call.state.pageSize);
  Json json = {{"posts", Json::array()}, {"nextPage", nullptr}};
  for (std::size_t i = begin; i < end; ++i)
    json["posts"].push_back(postJson(call, found[i].first, *found[i].second));
  if (end < found.size()) json["nextPage"] = page + 1;
  return json;
}

Json studio(const Call& call) {
  Json json = {{"posts", Json::array()}, {"blocked", Json::array()}};
  if (call.user().profile) json["profile"] = creatorJson(call, call.userID);
  for (const auto& [id, post] : call.state.posts)
    if (post.creatorID == call.userID)
      json["posts"].push_back({{"id", id}, {"title", post.own.title}, {"state", post.own.state}});
  for (const std::string& id : call.user().blocked)
    if (const auto found = call.state.accounts.find(id); found != call.state.accounts.end())
      json["blocked"].push_back({{"id", id}, {"handle", found->second.profile->handle}});
  return json;
}

Json sendProfile(const Call& call) {
  const ServiceDouble::Profile profile{.handle = call.text("handle"),
                                       .displayName = call.text("displayName"),
                                       .bio = call.text("bio"),
                                       .state = call.firstState()};
  require(call.flag("acceptedRules"), 400, "Accept the community rules first.");
  require(isMatch(profile.handle, "[a-z0-9_]{3,24}"), 400,
          "A handle has 3–24 lowercase letters, numbers or underscores.");
  const std::size_t name = length(profile.displayName);
  require(name >= 1 && name <= 40, 400, "A creator name has up to 40 characters.");
  require(length(profile.bio) <= 280, 400, "A bio has up to 280 characters.");
  const auto hasHandle = [&](const auto& account) {
    return account.first != call.userID && account.second.profile &&
           account.second.profile->handle == profile.handle;
  };
  require(std::ranges::none_of(call.state.accounts, hasHandle), 409, "This handle is taken.");
  call.user().profile = profile;
  return creatorJson(call, call.userID);
}

Json createPost(const Call& call) {
  const ServiceDouble::Post post{
      .title = call.text("title"), .caption = call.text("caption"), .state = "uploading"};
  require(call.user().profile.has_value(), 403, "Create a public profile first.");
  require(call.flag("ownsRights"), 400, "Only share what you made or may share.");
  const std::size_t title = length(post.title);
  require(title >= 1 && title <= 80, 400, "A title has up to 80 characters.");
  require(length(post.caption) <= 500, 400, "A caption has up to 500 characters.");
  return {{"id", call.state.addPost(call.userID, post)}};
}

Json uploadAudio(const Call& call) {
  Post& post = call.ownPost();
  require(call.request.body.size() <= longestAudio, 413, "The audio is too large.");
  require(durationMs(call.request.body).has_value(), 415, "This is no WAV file.");
  post.own.wav = call.request.body;
  post.own.state = call.firstState();
  return ok;
}

Json deletePost(const Call& call) {
  call.ownPost();
  call.state.posts.erase(call.pathID);
  return ok;
}

/// Puts the user into the set, or takes them out again.
Json relate(const Call& call, ServiceState::IDs& users, const std::string& id) {
  call.request.method == "POST" ? void(users.insert(id)) : void(users.erase(id));
  return ok;
}
Json vote(const Call& call) {
  require(isPublic(call, call.post()), 404, "This preview doesn't exist.");
  return relate(call, call.post().voters, call.userID);
}
Json follow(const Call& call) { return relate(call, call.creator().followers, call.userID); }
Json block(const Call& call) {
  call.creator().followers.erase(call.userID);
  return relate(call, call.user().blocked, call.pathID);
}

Json report(const Call& call) {
  static const std::set<std::string> reasons = {"abuse", "copyright", "unsafe", "spam", "other"};
  require(reasons.contains(call.text("reason")), 400, "This reason is unknown.");
  require(length(call.text("details")) <= 500, 400, "A report has up to 500 characters.");
  require(call.state.accounts.contains(call.text("creatorId")), 404, "This creator doesn't exist.");
  call.state.reports.push_back(call.request.body);
  return ok;
}

enum class Access { open, signedIn };

constexpr char id[] = "([0-9A-Fa-f-]{36})";

struct Operation {
  const char* method;
  std::string path;
  Access access;
  Json (*run)(const Call&);
};
const Operation operations[] = {
    {"POST", "auth/password", Access::open, signIn},
    {"POST", "auth/register", Access::open, signUp},
    {"POST", "auth/sign-out", Access::signedIn, signOut},
    {"DELETE", "account", Access::signedIn, deleteAccount},
    {"GET", "me", Access::signedIn, me},
    {"POST", "activity", Access::signedIn, acknowledge},
    {"POST", "account/password", Access::signedIn, changePassword},
    {"POST", "telemetry", Access::signedIn, telemetry},
    {"GET", "community/feed", Access::open, feed},
    {"GET", "community/me", Access::signedIn, studio},
    {"POST", "community/profile", Access::signedIn, sendProfile},
    {"POST|DELETE", std::string("community/posts/") + id + "/vote", Access::signedIn, vote},
    {"POST|DELETE", std::string("community/creators/") + id + "/follow", Access::signedIn, follow},
    {"POST|DELETE", std::string("community/creators/") + id + "/block", Access::signedIn, block},
    {"POST", "community/reports", Access::signedIn, report},
    {"POST", "community/posts", Access::signedIn, createPost},
    {"PUT", std::string("community/posts/") + id + "/audio", Access::signedIn, uploadAudio},
    {"DELETE", std::string("community/posts/") + id, Access::signedIn, deletePost},
};

std::string upperCase(std::string text) {
  std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::toupper(c); });
  return text;
}

/// The one answer that isn't JSON.
ServiceReply audio(const Call& call) {
  const Post& post = call.post();
  require(!post.own.wav.empty() && (isPublic(call, post) || post.creatorID == call.userID), 404,
          "This preview doesn't exist.");
  return {200, post.own.wav, "audio/wav"};
}

ServiceReply carryOut(Call call) {
  const std::string& path = call.request.path;
  std::smatch match;
  const auto isAt = [&](const std::string& place) {
    const bool isHere = std::regex_match(path, match, std::regex("/api/v1/" + place));
    if (isHere && match.size() > 1) call.pathID = upperCase(match[1]);
    return isHere;
  };
  if (call.request.method == "GET" && isAt(std::string("community/posts/") + id + "/audio"))
    return audio(call);
  for (const Operation& operation : operations) {
    if (!isMatch(call.request.method, operation.method) || !isAt(operation.path)) continue;
    require(operation.access == Access::open || !call.userID.empty(), 401, "Please sign in.");
    return {200, operation.run(call).dump()};
  }
  throw Refusal{404, "There is nothing here."};
}

}  // namespace

ServiceReply ServiceState::answer(const ServiceRequest& request) {
  const auto failure = [](int status, const std::string& text) {
    return ServiceReply{status, Json{{"error", text}}.dump()};
  };
  try {
    Call call{*this, request};
    if (const auto bearer = request.header("Authorization")) {
      call.token = bearer->substr(std::min<std::size_t>(bearer->size(), 7));
      const auto session = sessions.find(call.token);
      require(bearer->starts_with("Bearer ") && session != sessions.end(), 401, "This session has ended.");
      call.userID = session->second;
    }
    return carryOut(call);
  } catch (const Refusal& refusal) {
    return failure(refusal.status, refusal.error);
  } catch (const Json::exception&) {
    return failure(400, "This request can't be read.");
  }
}

std::string ServiceState::openSession(const std::string& accountID) {
  std::string token = "session-" + UUID::random().text();
  sessions[token] = accountID;
  return token;
}

void ServiceState::endSessions(const std::string& accountID) {
  std::erase_if(sessions, [&](const auto& session) { return session.second == accountID; });
}

std::string ServiceState::addPost(const std::string& accountID, const ServiceDouble::Post& post) {
  std::string postID = UUID::random().text();
  posts[postID] = {post, accountID, timeText(), ++lastNumber_, {}};
  return postID;
}

std::string* ServiceState::stateOf(const std::string& itemID) {
  if (const auto post = posts.find(itemID); post != posts.end()) return &post->second.own.state;
  const auto account = accounts.find(itemID);
  return account != accounts.end() && account->second.profile ? &account->second.profile->state : nullptr;
}

void ServiceState::approveEverything() {
  for (auto& [postID, post] : posts)
    if (post.own.state == "pending") post.own.state = "approved";
  for (auto& [accountID, account] : accounts)
    if (account.profile && account.profile->state == "pending") account.profile->state = "approved";
}

}  // namespace velmora::testing
