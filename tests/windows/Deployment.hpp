// SPDX-License-Identifier: MIT
#pragma once

#include <boost/json.hpp>
#include <fstream>

#include "support/Desktop.hpp"
#include "support/LocalServices.hpp"
#include "support/SpeechSamples.hpp"

namespace vek::test {

/// Has the programs of a desktop use these services, with values of the test's own beside them.
inline void deploy(Desktop const& desktop, LocalServices const& services,
                   boost::json::object values = {}) {
  values.insert({{"backendURL", services.url()},
                 {"recogniserURL", services.webSocketURL()},
                 {"updateFeedURL", services.url() + "/updates/feed.json"},
                 {"updatePublicKey", (services.folder() / "update-key.pem").string()},
                 {"authConfiguration", (services.folder() / "Auth0.plist").string()},
                 {"trustedAuthority", services.authority().string()},
                 {"modelsFolder", modelsFolder().string()}});
  std::ofstream(desktop.folder() / "deployment.json") << boost::json::serialize(values);
}

}  // namespace vek::test
