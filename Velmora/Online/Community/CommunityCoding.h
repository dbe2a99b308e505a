#pragma once

#include <QByteArray>
#include <optional>
#include <string>

#include "Velmora/Online/Account/JSONDecoding.h"
#include "Velmora/Online/Community/CommunityRecords.h"

namespace velmora {

// The records of the community as JSON. Each `decode` throws `DecodingError`, each `encode` `EncodingError`.

CommunityCreator decodeCreator(const JSONValue& json);
CommunityPost decodePost(const JSONValue& json);
CommunityFeed decodeFeed(const JSONValue& json);
CommunityStudio decodeStudio(const JSONValue& json);
Created decodeCreated(const JSONValue& json);

QByteArray encodeProfile(const std::string& handle, const std::string& displayName, const std::string& bio,
                         bool acceptedRules);
/// Without a post it concerns the creator's profile.
QByteArray encodeReport(const UUID& creatorID, const std::optional<UUID>& postID, const std::string& reason,
                        const std::string& details);
QByteArray encodeNewPost(const std::string& title, const std::string& caption, bool ownsRights);

}  // namespace velmora
