#include "Velmora/Online/Community/CommunityCoding.h"

#include "Velmora/Online/Account/AccountCoding.h"

namespace velmora {
namespace {

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

QByteArray encodeProfile(const std::string& handle, const std::string& displayName, const std::string& bio,
                         bool acceptedRules) {
  return encodeFields(
      {{"handle", handle}, {"displayName", displayName}, {"bio", bio}, {"acceptedRules", acceptedRules}});
}

QByteArray encodeReport(const UUID& creatorID, const std::optional<UUID>& postID, const std::string& reason,
                        const std::string& details) {
  JSONFields fields{{"creatorId", creatorID.text()}, {"reason", reason}, {"details", details}};
  if (postID) fields["postId"] = postID->text();
  return encodeFields(fields);
}

QByteArray encodeNewPost(const std::string& title, const std::string& caption, bool ownsRights) {
  return encodeFields({{"title", title}, {"caption", caption}, {"ownsRights", ownsRights}});
}

}  // namespace velmora
