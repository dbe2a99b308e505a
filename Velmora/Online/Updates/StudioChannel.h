#pragma once

#include "Platform/Services/UpdateService.h"

namespace velmora {

/// Where this build of the studio finds its updates. The preference "updateFeed" puts another address in the
/// place of the studio's own; what is found there has to be signed by the same key.
platform::UpdateChannel studioChannel(const platform::Preferences& preferences);

}  // namespace velmora
