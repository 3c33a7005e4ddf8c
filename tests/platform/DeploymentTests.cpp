// SPDX-License-Identifier: MIT
#include "platform/Deployment.hpp"

#include "platform/Files.hpp"
#include "support/Environment.hpp"
#include "support/TemporaryFolder.hpp"

namespace vek {
namespace {

using test::EnvironmentVariable;
using test::TemporaryFolder;

TEST(Deployment, HomeIsExpandedWithTheDataHome) {
  TemporaryFolder const folder;
  replaceFile(
      folder / "file",
      R"({"modelsFolder": "~/.local/share/vek/models", "authConfiguration": "~/Auth0.plist"})");
  EnvironmentVariable const home("HOME", "/home/someone");
  {
    EnvironmentVariable const data("XDG_DATA_HOME", "/data");
    EXPECT_EQ(Deployment::fromFile(folder / "file").modelsFolder, "/data/vek/models");
  }
  EnvironmentVariable const relative("XDG_DATA_HOME", "ignored");
  Deployment const deployment = Deployment::fromFile(folder / "file");
  EXPECT_EQ(deployment.modelsFolder, "/home/someone/.local/share/vek/models");
  EXPECT_EQ(deployment.authConfiguration, "/home/someone/Auth0.plist");
  EXPECT_EQ(deployment.backendURL, Deployment::builtIn().backendURL);
}

TEST(Deployment, BadFileSaysWhatIsWrong) {
  struct Case {
    char const* content;
    char const* reason;
  };
  TemporaryFolder const folder;
  for (auto const& [content, reason] : {Case{R"({"backendURL": 8443})", "backendURL is not a text"},
                                        Case{R"({"backendUrl": "x"})", "key \"backendUrl\""},
                                        Case{R"({"updateInterval": "0"})", "number of seconds"},
                                        Case{R"({"updateInterval": "1h"})", "number of seconds"},
                                        Case{"[]", "no JSON object"}, Case{"{", "not JSON"}}) {
    replaceFile(folder / "file", content);
    EXPECT_THAT([&] { (void)Deployment::fromFile(folder / "file"); },
                testing::ThrowsMessage<DeploymentError>(testing::AllOf(
                    testing::HasSubstr((folder / "file").string()), testing::HasSubstr(reason))));
  }
  EXPECT_THROW((void)Deployment::fromFile(folder / "absent"), DeploymentError);
  EXPECT_THROW((void)Deployment::fromFile(folder.path()), DeploymentError);
}

}  // namespace
}  // namespace vek
