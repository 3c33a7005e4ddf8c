// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/Bundle.hpp"
#include "platform/Files.hpp"
#include "platform/UpdateFeed.hpp"
#include "runtime/SyncWait.hpp"
#include "support/LocalServices.hpp"

namespace vek::services {
namespace {

using test::LocalServices;

/// What a program learns that trusts these services, or those who signed for others.
UpdateFeed::Release latest(LocalServices const& services) {
  auto const http = HTTPClient::make({.trustedAuthority = services.authority()});
  return syncWait(
      UpdateFeed(http, services.url() + "/updates/feed.json", services.folder() / "update-key.pem")
          .latest());
}

TEST(Updates, ArePublishedAndSignedWithAKeyThatStays) {
  LocalServices services({"--update-version", "9.9-beta.1"});
  auto const first = latest(services);
  EXPECT_EQ(first.item.version.text(), "9.9-beta.1");
  auto const key = readFile(services.folder() / "update-key.pem");
  services.stop();
  services.start();
  EXPECT_GE(latest(services).serial, first.serial);
  EXPECT_EQ(readFile(services.folder() / "update-key.pem"), key);

  auto const http = HTTPClient::make({.trustedAuthority = services.authority()});
  auto const page = syncWait(http.send({.url = services.url() + "/updates"}));
  EXPECT_EQ(first.item.link, page.url);
  EXPECT_THAT(page.body, testing::HasSubstr("9.9-beta.1"));
  EXPECT_EQ(syncWait(http.send({.url = services.url() + "/updates/other"})).status, 404);
  EXPECT_EQ(syncWait(http.send({.method = "POST", .url = services.url() + "/updates"})).status,
            405);
}

TEST(Updates, AreThisVersionUnlessToldOtherwise) {
  LocalServices const services;
  EXPECT_EQ(latest(services).item.version.text(), Bundle::main().version);
  EXPECT_EQ(test::runLocalServices({"--data", "x", "--update-version", "new"}).status, 2);
}

}  // namespace
}  // namespace vek::services
