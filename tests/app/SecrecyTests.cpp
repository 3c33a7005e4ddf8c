// SPDX-License-Identifier: MIT
// What of a user's secrets can be found outside the keychain.
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <thread>

#include "app/ProgramTests.hpp"
#include "identity/CredentialsArchive.hpp"
#include "platform/FileKeychainStore.hpp"
#include "platform/Files.hpp"
#include "support/IdentityClient.hpp"

namespace vek::test {
namespace {

using testing::HasSubstr;
using testing::Not;

/// Everything that the system's list of processes shows from now on.
class ProcessList {
 public:
  [[nodiscard]] std::string stop() {
    thread_.request_stop();
    thread_.join();
    std::string all;
    for (auto const& line : seen_) all += line + "\n";
    return all;
  }

 private:
  void look() {
    std::error_code ignored;
    for (auto const& entry : std::filesystem::directory_iterator("/proc", ignored)) {
      // Read so that a process which ends meanwhile is no error.
      std::ostringstream words;
      words << std::ifstream(entry.path() / "cmdline").rdbuf();
      auto line = words.str();
      std::ranges::replace(line, '\0', ' ');
      if (line.find("vek") != std::string::npos) seen_.insert(std::move(line));
    }
  }

  std::set<std::string> seen_;
  std::jthread thread_{[this](std::stop_token const& stop) {
    while (!stop.stop_requested()) {
      look();
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
  }};
};

class Secrecy : public ProgramTests {
 protected:
  Secrecy() { std::filesystem::remove_all(surroundings.dataHome()); }

  /// What was said to people, and to the log.
  std::string said(std::vector<std::string> arguments) const {
    auto const result = run(std::move(arguments));
    return result.output + result.messages;
  }
  /// Signs in through the form. What was said meanwhile.
  std::string signIn() {
    VekctlRun login(surroundings, {"login"});
    EXPECT_TRUE(login.waitForOutput("\n"));
    auto redirect = browser.redirectFrom(login.lines().at(0));
    auto said = this->said({"callback", redirect});
    EXPECT_EQ(login.wait(), 0);
    return said + login.output() + login.messages();
  }
  [[nodiscard]] Credentials stored() const {
    std::string bytes;
    FileKeychainStore(keychain).read(item, bytes);
    return CredentialsArchive::unarchive(bytes).value();
  }
  /// Lets the access token have run out.
  void expire() const {
    auto const now = stored();
    auto const archive = CredentialsArchive::archive(
        Credentials({.accessToken = now.accessToken(),
                     .tokenType = now.tokenType(),
                     .expiresIn = std::chrono::system_clock::now() - std::chrono::seconds(1),
                     .refreshToken = now.refreshToken(),
                     .idToken = now.idToken(),
                     .scope = now.scope()}));
    FileKeychainStore(keychain).replace(item, archive.value());
  }
  /// The secrets that are stored now join those that were stored before.
  void note() {
    auto const now = stored();
    secrets.insert({now.accessToken(), now.refreshToken().value(), now.idToken()});
  }
  /// All that the program has written but for its keychain.
  [[nodiscard]] std::string written() const {
    std::string all;
    for (auto entry = std::filesystem::recursive_directory_iterator(surroundings.folder.path());
         entry != std::filesystem::recursive_directory_iterator(); ++entry) {
      if (entry->path() == keychain) entry.disable_recursion_pending();
      if (entry->is_regular_file()) all += readFile(entry->path()).value_or("");
    }
    return all;
  }

  std::filesystem::path const keychain = surroundings.dataHome() / "vek/keychain";
  KeychainStore::Key const item{.service = "com.vek.app", .account = "credentials"};
  std::set<std::string> secrets;
  IdentityClient browser{services};
};

TEST_F(Secrecy, NothingShowsATokenByDefault) {
  ProcessList processes;
  // The lowest level that is written unless somebody asks for more.
  surroundings.environment["VEK_LOG"] = "notice";
  auto all = signIn();
  note();
  all += said({"whoami"}) + said({"transcripts"});
  all += said({"record", "--from", speechFile("hts-slt-s03")});
  expire();
  all += said({"customers"});
  note();
  ASSERT_EQ(secrets.size(), 6U) << "renewed once";
  surroundings.deployment["backendURL"] = "https://localhost:1";
  all += said({"transcripts"});
  expire();
  services.stop();
  all += said({"whoami", "--json"}) + said({"transcripts"}) + said({"logout"});
  EXPECT_THAT(all, HasSubstr("The credentials renewal failed. CAUSE: "));
  all += services.log() + written() + processes.stop();
  secrets.insert(services.account().password);
  for (auto const& secret : secrets) EXPECT_THAT(all, Not(HasSubstr(secret)));
}

TEST_F(Secrecy, TheDebugLogShowsTheAccessTokenInRequestsToTheBackendAlone) {
  surroundings.environment["VEK_LOG"] = "debug";
  auto log = signIn();
  note();
  EXPECT_THAT(log, Not(HasSubstr(stored().accessToken())));
  expire();
  auto const requests = said({"customers"});
  note();
  auto const token = stored().accessToken();
  EXPECT_THAT(requests, HasSubstr("curl \"" + services.url() + "/api/v1/agents/customers\""));
  EXPECT_THAT(requests, HasSubstr("Authorization: Bearer " + token));
  secrets.erase(token);
  log += requests;
  secrets.insert(services.account().password);
  for (auto const& secret : secrets) EXPECT_THAT(log, Not(HasSubstr(secret)));
}

}  // namespace
}  // namespace vek::test
