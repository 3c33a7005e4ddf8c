// SPDX-License-Identifier: MIT
#include "platform/Keychain.hpp"

#include <sys/stat.h>

#include <atomic>
#include <thread>

#include "platform/FileKeychainStore.hpp"
#include "platform/Files.hpp"
#include "support/TemporaryFolder.hpp"

namespace vek {
namespace {

using test::TemporaryFolder;

unsigned modeOf(std::filesystem::path const& path) {
  struct stat status{};
  EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
  return status.st_mode & 0777U;
}

class FileKeychainTest : public testing::Test {
 protected:
  static KeychainDictionary item(std::string const& account) {
    return {{kSecClass, kSecClassGenericPassword},
            {kSecAttrService, "com.vek.test"},
            {kSecAttrAccount, account}};
  }

  static KeychainDictionary with(KeychainDictionary dictionary, KeychainDictionary more) {
    dictionary.merge(more);
    return dictionary;
  }

  TemporaryFolder folder_;
  std::filesystem::path files_ = folder_ / "keychain/com.vek.test";
  Keychain keychain_{std::make_shared<FileKeychainStore>(folder_ / "keychain")};
};

TEST_F(FileKeychainTest, OperationsAnswerAsPromised) {
  auto const add = [&](KeychainDictionary const& more) {
    return keychain_.SecItemAdd(with(item("a"), more));
  };
  auto const find = [&](KeychainDictionary const& query) {
    KeychainResult result;
    return std::pair(keychain_.SecItemCopyMatching(query, result), result);
  };
  KeychainDictionary const value = {{kSecValueData, Data{"1"}}};
  KeychainDictionary const ofService = {{kSecClass, kSecClassGenericPassword},
                                        {kSecAttrService, "com.vek.test"}};

  EXPECT_EQ(find(item("a")).first, errSecItemNotFound);
  EXPECT_EQ(keychain_.SecItemDelete(ofService), errSecItemNotFound);
  EXPECT_EQ(keychain_.SecItemUpdate(item("a"), value), errSecItemNotFound);
  EXPECT_EQ(add(value), errSecSuccess);
  EXPECT_EQ(add(value), errSecDuplicateItem);
  EXPECT_EQ(keychain_.SecItemUpdate(item("a"), {{kSecValueData, Data{"2"}}}), errSecSuccess);
  EXPECT_EQ(find(item("a")), std::pair(errSecSuccess, KeychainResult()));
  EXPECT_EQ(find(with(item("a"), {{kSecReturnData, true}, {kSecMatchLimit, kSecMatchLimitOne}})),
            std::pair(errSecSuccess, KeychainResult(Data{"2"})));
  EXPECT_EQ(
      find(with(ofService, {{kSecReturnAttributes, true}, {kSecMatchLimit, kSecMatchLimitAll}})),
      std::pair(errSecSuccess, KeychainResult(std::vector{item("a")})));

  // What is not understood is refused, and nothing is kept with less protection than asked for.
  EXPECT_EQ(add({}), errSecParam);
  EXPECT_EQ(add({{kSecValueData, "text"}}), errSecParam);
  EXPECT_EQ(keychain_.SecItemAdd(value), errSecParam);
  for (char const* name : {"", ".", "..", "../a", ".hidden"}) {
    EXPECT_EQ(keychain_.SecItemAdd(with(item(name), value)), errSecParam) << name;
    EXPECT_EQ(find(item(name)).first, errSecItemNotFound) << name;
  }
  auto const control = *Keychain::SecAccessControlCreateWithFlags("whenUnlocked", 1);
  for (KeychainDictionary const& more : {KeychainDictionary{{kSecAttrAccessControl, control}},
                                         KeychainDictionary{{kSecAttrSynchronizable, true}},
                                         KeychainDictionary{{kSecAttrAccessGroup, "group"}}}) {
    EXPECT_EQ(keychain_.SecItemAdd(with(with(item("b"), value), more)), errSecUnimplemented);
  }

  EXPECT_EQ(keychain_.SecItemDelete(with(ofService, {{kSecMatchLimit, kSecMatchLimitAll}})),
            errSecSuccess);
  EXPECT_EQ(find(item("a")).first, errSecItemNotFound);
}

TEST_F(FileKeychainTest, OthersCanReadNothingAtAnyMoment) {
  auto const oldMask = umask(0);
  std::filesystem::create_directories(files_);
  std::atomic<bool> isOver = false;
  unsigned seen = 0;
  std::thread watcher([&] {
    while (!isOver) {
      std::error_code gone;
      for (auto const& entry : std::filesystem::directory_iterator(files_, gone)) {
        struct stat status{};
        if (lstat(entry.path().c_str(), &status) == 0) seen |= status.st_mode & 0777U;
      }
    }
  });
  EXPECT_EQ(keychain_.SecItemAdd(with(item("a"), {{kSecValueData, Data{"secret"}}})),
            errSecSuccess);
  for (int i = 0; i < 30; ++i) {
    std::ignore = keychain_.SecItemUpdate(item("a"), {{kSecValueData, Data{"secret"}}});
  }
  isOver = true;
  watcher.join();
  umask(oldMask);
  EXPECT_EQ(seen, 0600U);
  EXPECT_EQ(modeOf(files_), 0700U) << "although it was there with another mode";
}

TEST_F(FileKeychainTest, WhatAKilledWriterLeftGoesWithTheNextWriteOrRemoval) {
  replaceFile(files_ / ".a.Xy12zz", "a token");
  EXPECT_EQ(keychain_.SecItemDelete(item("a")), errSecItemNotFound);
  EXPECT_FALSE(std::filesystem::exists(files_ / ".a.Xy12zz"));
  ASSERT_EQ(keychain_.SecItemAdd(with(item("a"), {{kSecValueData, Data{"old"}}})), errSecSuccess);
  replaceFile(files_ / ".a.Xy12zz", "a token");
  EXPECT_EQ(keychain_.SecItemUpdate(item("a"), {{kSecValueData, Data{"new"}}}), errSecSuccess);
  std::vector<std::string> names;
  for (auto const& entry : std::filesystem::directory_iterator(files_)) {
    names.push_back(entry.path().filename());
  }
  EXPECT_THAT(names, testing::UnorderedElementsAre(".lock", "a"));
}

TEST_F(FileKeychainTest, UnusableFolderIsAFailureAndNoEmptyKeychain) {
  replaceFile(folder_ / "keychain", "not a folder");
  EXPECT_EQ(keychain_.SecItemAdd(with(item("a"), {{kSecValueData, Data{"1"}}})), errSecIO);
}

TEST(FileLock, IsWaitedForNoLongerThanTold) {
  TemporaryFolder const folder;
  std::optional<FileLock> held(folder / "lock");
  auto const tryFor = [&](std::chrono::milliseconds limit) {
    try {
      FileLock const lock(folder / "lock", limit);
      return std::error_code();
    } catch (std::system_error const& error) {
      return error.code();
    }
  };
  EXPECT_EQ(tryFor(std::chrono::milliseconds(30)), std::errc::timed_out);
  std::jthread const releaser([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    held.reset();
  });
  EXPECT_EQ(tryFor(std::chrono::seconds(10)), std::error_code());
}

}  // namespace
}  // namespace vek
