#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Velmora/Online/Account/AccountRecords.h"
#include "VelmoraCore/Song/UUID.h"

namespace velmora {

/// A public profile.
struct CommunityCreator {
  UUID id;
  std::string handle;
  std::string displayName;
  std::string bio;
  std::int64_t followers = 0;
  bool following = false;            ///< the signed-in user follows this creator
  std::optional<bool> isDemo;        ///< a generated example rather than a person
  std::optional<std::string> state;  ///< of moderation; only for the user's own profile

  bool operator==(const CommunityCreator&) const = default;
};

/// One entry of the public feed.
struct CommunityPost {
  UUID id;
  std::string title;
  std::string caption;
  std::int64_t durationMs = 0;
  std::string publishedAt;
  CommunityCreator creator;
  std::int64_t votes = 0;
  bool voted = false;  ///< the signed-in user upvoted it

  bool operator==(const CommunityPost&) const = default;
};

/// One page of the public feed.
struct CommunityFeed {
  std::vector<CommunityPost> posts;
  std::optional<std::int64_t> nextPage;  ///< none on the last page
};

/// What a signed-in user sees of themselves.
struct CommunityStudio {
  /// One of the user's own previews, in any state of moderation.
  struct Preview {
    UUID id;
    std::string title;
    std::string state;
    bool operator==(const Preview&) const = default;
  };
  struct BlockedCreator {
    UUID id;
    std::string handle;
    bool operator==(const BlockedCreator&) const = default;
  };

  std::optional<CommunityCreator> profile;  ///< none before the first one was sent
  std::vector<Preview> posts;
  std::vector<BlockedCreator> blocked;

  bool operator==(const CommunityStudio&) const = default;
};

/// The answer to a new post.
struct Created {
  UUID id;
};

/// Why the service didn't do something, for the user.
using Failure = ErrorBody;

}  // namespace velmora
