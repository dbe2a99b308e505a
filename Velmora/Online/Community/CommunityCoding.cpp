#include "Velmora/Online/Community/CommunityCoding.h"

#include <nlohmann/json.hpp>

#include "Velmora/Online/Account/AccountCoding.h"

namespace velmora {
namespace {

using Object = nlohmann::json;

QByteArray bytes(const Object& object) {
  try {
    return QByteArray::fromStdString(object.dump());
  } catch (const Object::exception&) {
    throw EncodingError("The text can't be sent: it isn't valid UTF-8.");
  }
}

CommunityStudio::Preview decodePreview(const JSONValue& json) {
  return {.id = json["id"].uuid(), .title = json["title"].text(), .state = json["state"].text()};
}

CommunityStudio::BlockedCreator decodeBlocked(const JSONValue& json) {
  return {.id = json["id"].uuid(), .handle = json["handle"].text()};
}

}  // namespace

CommunityCreator decodeCreator(const JSONValue& json) {
  return {.id = json["id"].uuid(),
          .handle = json["handle"].text(),
          .displayName = json["displayName"].text(),
          .bio = json["bio"].text(),
          .followers = json["followers"].integer(),
          .following = json["following"].boolean(),
          .isDemo = json.optional("isDemo", &JSONValue::boolean),
          .state = json.optional("state", &JSONValue::text)};
}

CommunityPost decodePost(const JSONValue& json) {
  return {.id = json["id"].uuid(),
          .title = json["title"].text(),
          .caption = json["caption"].text(),
          .durationMs = json["durationMs"].integer(),
          .publishedAt = json["publishedAt"].text(),
          .creator = decodeCreator(json["creator"]),
          .votes = json["votes"].integer(),
          .voted = json["voted"].boolean()};
}

CommunityFeed decodeFeed(const JSONValue& json) {
  return {.posts = json["posts"].list(decodePost),
          .nextPage = json.optional("nextPage", &JSONValue::integer)};
}

CommunityStudio decodeStudio(const JSONValue& json) {
  return {.profile = json.optional("profile", decodeCreator),
          .posts = json["posts"].list(decodePreview),
          .blocked = json["blocked"].list(decodeBlocked)};
}

Created decodeCreated(const JSONValue& json) { return {.id = json["id"].uuid()}; }

std::optional<Failure> decodeFailure(const QByteArray& body) {
  try {
    return Failure{JSONValue::parse(body)["error"].text()};
  } catch (const DecodingError&) {
    return {};
  }
}

QByteArray encodeProfile(const std::string& handle, const std::string& displayName, const std::string& bio,
                         bool acceptedRules) {
  return bytes(
      {{"handle", handle}, {"displayName", displayName}, {"bio", bio}, {"acceptedRules", acceptedRules}});
}

QByteArray encodeReport(const UUID& creatorID, const std::optional<UUID>& postID, const std::string& reason,
                        const std::string& details) {
  Object object{{"creatorId", creatorID.text()}, {"reason", reason}, {"details", details}};
  if (postID) object["postId"] = postID->text();
  return bytes(object);
}

QByteArray encodeNewPost(const std::string& title, const std::string& caption, bool ownsRights) {
  return bytes({{"title", title}, {"caption", caption}, {"ownsRights", ownsRights}});
}

}  // namespace velmora
