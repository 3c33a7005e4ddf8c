// SPDX-License-Identifier: MIT
#include "platform/SecretServiceKeychainStore.hpp"

#include <csignal>

#include "platform/DesktopKeychainStore.hpp"
#include "platform/Files.hpp"
#include "platform/KeychainStatus.hpp"
#include "support/Environment.hpp"
#include "support/SecretService.hpp"

namespace vek {
namespace {

using namespace std::chrono_literals;
using test::SecretService;
using test::TemporaryFolder;

KeychainStore::Key const key{.service = "com.vek.test", .account = "credentials"};

/// What a read gives: its status, or the bytes.
std::string textOf(KeychainStore& store, KeychainStore::Key const& of = key) {
  std::string bytes;
  std::int32_t const status = store.read(of, bytes);
  return status == errSecSuccess ? bytes : std::to_string(status);
}

std::string const notFound = std::to_string(errSecItemNotFound);
std::string const locked = std::to_string(errSecInteractionNotAllowed);
std::string const failed = std::to_string(errSecIO);
std::string const absent = std::to_string(errSecNotAvailable);

template <class Condition>
bool comesTrue(Condition condition) {
  auto const deadline = std::chrono::steady_clock::now() + 10s;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(1ms);
  }
  return true;
}

class SecretServiceTest : public testing::Test {
 protected:
  SecretService service_;
  test::EnvironmentVariable bus_{"DBUS_SESSION_BUS_ADDRESS", service_.address()};
};

TEST_F(SecretServiceTest, KeepsOneBlobForEachAccountAcrossRestarts) {
  service_.start();
  std::string const binary("a\0\xff\n", 4);
  {
    SecretServiceKeychainStore store;
    EXPECT_EQ(textOf(store), notFound);
    EXPECT_EQ(store.replace(key, "none to replace"), errSecItemNotFound);
    EXPECT_EQ(store.add(key, "first"), errSecSuccess);
    EXPECT_EQ(store.add(key, "second"), errSecDuplicateItem);
    EXPECT_EQ(store.add({"com.vek.test", "other"}, "untouched"), errSecSuccess);
    EXPECT_EQ(store.add({"com.vek.other", "credentials"}, "untouched"), errSecSuccess);
    EXPECT_EQ(store.replace(key, binary), errSecSuccess);
  }
  service_.kill();
  service_.start();
  SecretServiceKeychainStore store;
  EXPECT_EQ(textOf(store), binary);
  std::vector<std::string> accounts;
  EXPECT_EQ(store.list("com.vek.test", accounts), errSecSuccess);
  EXPECT_THAT(accounts, testing::UnorderedElementsAre("credentials", "other"));
  EXPECT_EQ(store.remove("com.vek.test", "credentials"), errSecSuccess);
  EXPECT_EQ(store.remove("com.vek.test", "credentials"), errSecItemNotFound);
  EXPECT_EQ(textOf(store), notFound);
  EXPECT_EQ(textOf(store, {"com.vek.test", "other"}), "untouched");
  EXPECT_EQ(store.remove("com.vek.test", std::nullopt), errSecSuccess);
  EXPECT_EQ(store.list("com.vek.test", accounts), errSecItemNotFound);
  EXPECT_EQ(textOf(store, {"com.vek.other", "credentials"}), "untouched");
}

TEST_F(SecretServiceTest, IsAskedAgainOnlyWhenSomethingHasChanged) {
  service_.start();
  SecretServiceKeychainStore ours;
  SecretServiceKeychainStore theirs;
  ASSERT_EQ(theirs.add(key, "first"), errSecSuccess);
  ASSERT_EQ(textOf(ours), "first");
  // Word of the change that was made before may come after.
  std::this_thread::sleep_for(100ms);
  ASSERT_EQ(textOf(ours), "first");
  test::SecretServiceCalls calls(service_);
  int const before = calls.count();
  for (int i = 0; i < 1'000; ++i) ASSERT_EQ(textOf(ours), "first");
  EXPECT_EQ(calls.count(), before);

  ASSERT_EQ(theirs.replace(key, "second"), errSecSuccess);
  EXPECT_TRUE(comesTrue([&] { return textOf(ours) == "second"; }));
  EXPECT_GT(calls.count(), before);
  ASSERT_EQ(theirs.replace(key, "third"), errSecSuccess);
  ours.forget();
  EXPECT_EQ(textOf(ours), "third") << "at once";
}

TEST_F(SecretServiceTest, LockedKeyringHoldsNothingUntilItIsOpened) {
  service_.start();
  SecretServiceKeychainStore store;
  ASSERT_EQ(store.add(key, "first"), errSecSuccess);
  service_.lock();
  EXPECT_TRUE(comesTrue([&] { return textOf(store) == locked; }));
  EXPECT_EQ(store.add(key, "second"), errSecDuplicateItem);
  EXPECT_EQ(store.replace(key, "second"), errSecInteractionNotAllowed);
  EXPECT_EQ(store.remove(key.service, key.account), errSecInteractionNotAllowed);
  EXPECT_NE(store.add({key.service, "other"}, "bytes"), errSecSuccess);
  service_.unlock();
  EXPECT_TRUE(comesTrue([&] { return textOf(store) == "first"; }));
  EXPECT_EQ(store.replace(key, "second"), errSecSuccess);

  service_.kill();
  service_.start(SecretService::Keyring::locked);
  SecretServiceKeychainStore fresh;
  EXPECT_TRUE(comesTrue([&] { return textOf(fresh) == locked; })) << "and not as nothing";
}

TEST_F(SecretServiceTest, FailingServiceEndsEachCallInTime) {
  service_.start();
  SecretServiceKeychainStore store(500ms);
  ASSERT_EQ(store.add(key, "first"), errSecSuccess);
  service_.signal(SIGSTOP);
  store.forget();
  auto const begin = std::chrono::steady_clock::now();
  EXPECT_EQ(textOf(store), failed);
  EXPECT_EQ(store.replace(key, "second"), errSecIO);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s);
  service_.signal(SIGCONT);
  EXPECT_TRUE(comesTrue([&] { return textOf(store) == "first"; }));

  // Killed in the middle of a call.
  service_.signal(SIGSTOP);
  store.forget();
  std::jthread killer([this] {
    std::this_thread::sleep_for(100ms);
    service_.kill();
  });
  EXPECT_THAT(textOf(store), testing::AnyOf(failed, absent));
  killer.join();
  service_.start();
  EXPECT_TRUE(comesTrue([&] { return textOf(store) == "first"; }));
}

TEST_F(SecretServiceTest, FilesStandInOnlyUntilTheServiceHasAnswered) {
  TemporaryFolder const folder;
  DesktopKeychainStore store(folder / "keychain");
  auto const file = folder / "keychain/com.vek.test/credentials";
  EXPECT_EQ(textOf(store), notFound);
  EXPECT_EQ(store.add(key, "in a file"), errSecSuccess);
  EXPECT_EQ(textOf(store), "in a file");
  EXPECT_EQ(readFile(file), "in a file");

  service_.start();
  EXPECT_TRUE(comesTrue([&] {
    return textOf(store) == "in a file" && !std::filesystem::exists(file);
  })) << "it has moved";
  SecretServiceKeychainStore inService;
  EXPECT_EQ(textOf(inService), "in a file");
  FileKeychainStore files(folder / "keychain");
  EXPECT_EQ(files.add(key, "left over"), errSecSuccess);
  EXPECT_EQ(textOf(store), "in a file");
  EXPECT_EQ(store.replace(key, "in the service"), errSecSuccess);
  EXPECT_FALSE(std::filesystem::exists(file));
  service_.kill();
  EXPECT_EQ(store.replace(key, "nowhere"), errSecNotAvailable);
  service_.start();
  EXPECT_TRUE(comesTrue([&] { return textOf(store) == "in the service"; }));
  EXPECT_EQ(files.add(key, "left over"), errSecSuccess);
  EXPECT_EQ(store.remove(key.service, key.account), errSecSuccess);
  EXPECT_EQ(textOf(store), notFound) << "neither here nor there";
}

TEST(DesktopKeychainStore, UsesFilesWithoutABus) {
  TemporaryFolder const folder;
  test::EnvironmentVariable const bus("DBUS_SESSION_BUS_ADDRESS", "disabled:");
  DesktopKeychainStore store(folder / "keychain");
  EXPECT_EQ(store.add(key, "in a file"), errSecSuccess);
  EXPECT_EQ(readFile(folder / "keychain/com.vek.test/credentials"), "in a file");
  EXPECT_EQ(textOf(store), "in a file");
}

}  // namespace
}  // namespace vek
