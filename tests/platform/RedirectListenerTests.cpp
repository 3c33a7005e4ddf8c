// SPDX-License-Identifier: MIT
#include "platform/RedirectListener.hpp"

#include <optional>

#include "platform/WebAuthenticationSession.hpp"
#include "support/Environment.hpp"
#include "support/TemporaryFolder.hpp"

namespace vek {
namespace {

struct RedirectListenerTest : testing::Test {
  RedirectListenerTest() {
    WebAuthenticationSession::setPresenter([](auto&) {});
  }
  ~RedirectListenerTest() override { WebAuthenticationSession::setPresenter(nullptr); }
  RedirectListenerTest(RedirectListenerTest const&) = delete;
  RedirectListenerTest& operator=(RedirectListenerTest const&) = delete;

  /// A login page that notes its redirect in `arrived`.
  std::shared_ptr<WebAuthenticationSession> waiting(std::string const& state) {
    auto session = WebAuthenticationSession::make(
        "https://idp.test/authorize?state=" + state, "com.vek.app",
        [this](std::optional<std::string> url, auto const&) { arrived = url.value_or("nothing"); });
    session->start();
    return session;
  }

  test::TemporaryFolder folder;
  test::EnvironmentVariable const place{"XDG_RUNTIME_DIR", folder.path().string()};
  std::string arrived;
};

TEST_F(RedirectListenerTest, HandsARedirectOnOnce) {
  std::string const redirect = "com.vek.app://localhost/callback?code=c%3D&state=ours";
  EXPECT_FALSE(deliverRedirect(redirect)) << "nobody listens";
  RedirectListener const listener("one");
  EXPECT_FALSE(deliverRedirect(redirect)) << "no login waits";
  auto const session = waiting("ours");
  EXPECT_FALSE(deliverRedirect(redirect + std::string(64 * 1024, 'x')));
  EXPECT_FALSE(deliverRedirect("com.other.app://localhost/callback?state=ours"));
  EXPECT_FALSE(deliverRedirect(""));
  EXPECT_EQ(arrived, "");
  EXPECT_TRUE(deliverRedirect(redirect));
  EXPECT_EQ(arrived, redirect);
  EXPECT_FALSE(deliverRedirect(redirect)) << "it came before";
}

TEST_F(RedirectListenerTest, HandsOnWhatNobodyExpectsToWhoeverWaits) {
  RedirectListener const one("one");
  RedirectListener const other("other");
  for (std::string const redirect :
       {"com.vek.app://localhost/?code=c&state=theirs", "com.vek.app://localhost/?code=c",
        "com.vek.app://localhost/?state=ours&state=theirs",
        "com.vek.app://localhost/?state=theirs#state=ours", "com.vek.app://localhost/"}) {
    auto const session = waiting("ours");
    EXPECT_FALSE(WebAuthenticationSession::expects(redirect));
    EXPECT_TRUE(deliverRedirect(redirect));
    EXPECT_EQ(arrived, redirect);
  }
  auto const session = waiting("ours");
  EXPECT_TRUE(WebAuthenticationSession::expects("com.vek.app://localhost/#state=ours"));
  EXPECT_TRUE(
      WebAuthenticationSession::expects("com.vek.app://localhost/?state=theirs&state=ours"));
}

TEST_F(RedirectListenerTest, IsOneForEachNameAndForItsUserAlone) {
  auto const socket = folder / "vek/one.socket";
  {
    RedirectListener const listener("one");
    EXPECT_THROW(RedirectListener("one"), RedirectListener::NameIsTaken);
    RedirectListener const other("other");
    EXPECT_EQ(std::filesystem::status(folder / "vek").permissions(),
              std::filesystem::perms::owner_all);
    EXPECT_TRUE(std::filesystem::is_socket(socket));
    std::filesystem::create_hard_link(socket, folder / "left-behind");
  }
  EXPECT_FALSE(std::filesystem::exists(socket));
  std::filesystem::rename(folder / "left-behind", socket);
  EXPECT_FALSE(deliverRedirect("com.vek.app://localhost/")) << "left by one that was killed";
  RedirectListener const next("one");
  auto const session = waiting("ours");
  EXPECT_TRUE(deliverRedirect("com.vek.app://localhost/?state=ours"));
}

}  // namespace
}  // namespace vek
