// SPDX-License-Identifier: MIT
#include "identity/SimpleKeychain.hpp"

#include "identity/SimpleKeychainError.hpp"
#include "platform/FileKeychainStore.hpp"
#include "platform/Keychain.hpp"
#include "support/TemporaryFolder.hpp"

namespace vek {
namespace {

using Code = SimpleKeychainError::Code;

/// Fails the way it is told to.
struct FailingStore final : KeychainStore {
  std::int32_t add(Key const&, std::string const&) override { return added; }
  std::int32_t replace(Key const&, std::string const&) override { return replaced; }
  std::int32_t read(Key const&, std::string&) override { return errSecItemNotFound; }
  std::int32_t remove(std::string const&, std::optional<std::string> const&) override {
    return errSecItemNotFound;
  }
  std::int32_t list(std::string const&, std::vector<std::string>&) override {
    return errSecItemNotFound;
  }

  std::int32_t added = errSecSuccess;
  std::int32_t replaced = errSecSuccess;
};

template <class Operation>
std::string failureOf(Operation operation) {
  try {
    operation();
    return "none";
  } catch (SimpleKeychainError const& error) {
    return error.what();
  }
}

KeychainDictionary const base = {{kSecClass, kSecClassGenericPassword},
                                 {kSecAttrService, "com.vek.test"},
                                 {kSecAttrAccount, "credentials"}};

KeychainDictionary with(KeychainDictionary more) {
  more.insert(base.begin(), base.end());
  return more;
}

TEST(SimpleKeychain, QueriesHoldWhatTheConfigurationAsksFor) {
  SimpleKeychain const plain("com.vek.test");
  KeychainDictionary const value = {{kSecValueData, Data{"bytes"}}};
  EXPECT_EQ(plain.baseQuery("credentials"), base);
  EXPECT_EQ(plain.readQuery("credentials"),
            with({{kSecReturnData, true}, {kSecMatchLimit, kSecMatchLimitOne}}));
  EXPECT_EQ(plain.addQuery("credentials", "bytes"), with(value));

  struct Case {
    std::function<void(SimpleKeychain&)> configure;
    KeychainDictionary added;
  };
  auto const accessible = [&](KeychainDictionary more, char const* constant) {
    more.insert(value.begin(), value.end());
    more[kSecAttrAccessible] = constant;
    return with(more);
  };
  for (auto const& [configure, added] : {
           Case{[](auto& keychain) { keychain.isSynchronizable = true; },
                accessible({{kSecAttrSynchronizable, true}}, kSecAttrAccessibleAfterFirstUnlock)},
           Case{[](auto& keychain) {
                  keychain.attributes = {{kSecUseDataProtectionKeychain, true},
                                         {kSecAttrService, "overridden"}};
                  keychain.accessibility = Accessibility::whenPasscodeSetThisDeviceOnly;
                },
                accessible({{kSecUseDataProtectionKeychain, true}},
                           kSecAttrAccessibleWhenPasscodeSetThisDeviceOnly)},
           Case{[](auto& keychain) {
                  keychain.accessControlFlags = 5;
                  keychain.isSynchronizable = true;
                  keychain.accessibility = Accessibility::whenUnlocked;
                },
                with({{kSecValueData, Data{"bytes"}},
                      {kSecAttrSynchronizable, true},
                      {kSecAttrAccessControl, AccessControl{kSecAttrAccessibleWhenUnlocked, 5}}})},
           Case{[](auto& keychain) {
                  keychain.accessGroup = "group";
                  keychain.context.emplace();
                },
                with({{kSecValueData, Data{"bytes"}},
                      {kSecAttrAccessGroup, "group"},
                      {kSecUseAuthenticationContext, AuthenticationContext()}})},
       }) {
    SimpleKeychain keychain("com.vek.test");
    configure(keychain);
    EXPECT_EQ(keychain.addQuery("credentials", "bytes"), added);
  }
}

TEST(SimpleKeychain, EveryStatusHasItsErrorAndText) {
  SimpleKeychain keychain("com.vek.test");
  for (auto const& [status, code, text] : std::vector<std::tuple<std::int32_t, Code, std::string>>{
           {-4, Code::operationNotImplemented,
            "errSecUnimplemented: A function or operation is not implemented."},
           {-50, Code::invalidParameters,
            "errSecParam: One or more parameters passed to the function are not valid."},
           {-128, Code::userCanceled, "errSecUserCanceled: User canceled the operation."},
           {-25291, Code::itemNotAvailable, "errSecNotAvailable: No trust results are available."},
           {-25293, Code::authFailed,
            "errSecAuthFailed: Authorization and/or authentication failed."},
           {-25299, Code::duplicateItem, "errSecDuplicateItem: The item already exists."},
           {-25300, Code::itemNotFound, "errSecItemNotFound: The item cannot be found."},
           {-25308, Code::interactionNotAllowed,
            "errSecInteractionNotAllowed: Interaction with the Security Server is not allowed."},
           {-26275, Code::decodeFailed, "errSecDecode: Unable to decode the provided data."},
           {-34018, Code::other, "Unspecified Keychain error: -34018"},
       }) {
    SimpleKeychainError const error(status);
    EXPECT_EQ(error.code(), code);
    EXPECT_EQ(error.status(), status);
    keychain.retrieve = [failing = status](auto&, auto&) { return failing; };
    keychain.remove = [failing = status](auto&) { return failing; };
    EXPECT_EQ(failureOf([&] { std::ignore = keychain.readData("k"); }), text);
    EXPECT_EQ(failureOf([&] { keychain.removeItem("k"); }), text);
    bool const isNotFound = code == Code::itemNotFound;
    EXPECT_EQ(failureOf([&] { keychain.removeAll(); }), isNotFound ? "none" : text);
    EXPECT_EQ(failureOf([&] { EXPECT_FALSE(keychain.containsItem("k")); }),
              isNotFound ? "none" : text);
    EXPECT_EQ(keychain.readEntry("k"), std::nullopt);
    EXPECT_FALSE(keychain.removeEntry("k"));

    auto const store = std::make_shared<FailingStore>();
    Keychain::setShared(Keychain(store));
    store->added = status;
    bool const isDuplicate = code == Code::duplicateItem;
    EXPECT_EQ(failureOf([&] { keychain.writeData("v", "k"); }), isDuplicate ? "none" : text);
    store->added = errSecDuplicateItem;
    store->replaced = status;
    EXPECT_EQ(failureOf([&] { keychain.writeString("v", "k"); }), text);
    EXPECT_FALSE(keychain.writeEntry("v", "k"));
  }
}

TEST(SimpleKeychain, ResultsOfAnotherKindAreUnknownErrors) {
  SimpleKeychain keychain("com.vek.test");
  KeychainResult found;
  keychain.retrieve = [&](auto&, KeychainResult& result) {
    result = found;
    return errSecSuccess;
  };
  EXPECT_EQ(failureOf([&] { std::ignore = keychain.readData("k"); }),
            "Unknown error: Unable to cast the retrieved item to a Data value");
  EXPECT_EQ(failureOf([&] { std::ignore = keychain.listKeys(); }),
            "Unknown error: Unable to cast the retrieved items to a [[String: Any]] value");
  found = Data{"\xff"};
  EXPECT_EQ(keychain.readData("k"), "\xff");
  EXPECT_EQ(failureOf([&] { std::ignore = keychain.readString("k"); }),
            "Unknown error: Unable to convert the retrieved item to a String value");
}

TEST(SimpleKeychain, KeepsValuesByKeyInTheRealKeychain) {
  test::TemporaryFolder const folder;
  Keychain::setShared(Keychain(std::make_shared<FileKeychainStore>(folder.path())));
  SimpleKeychain const keychain("com.vek.test");
  EXPECT_EQ(keychain.readEntry("a"), std::nullopt);
  EXPECT_FALSE(keychain.removeEntry("a"));
  EXPECT_THAT(keychain.listKeys(), testing::IsEmpty());
  EXPECT_TRUE(keychain.writeEntry("first", "a"));
  EXPECT_TRUE(keychain.writeEntry("second", "a"));
  keychain.writeString("text", "b");
  EXPECT_EQ(keychain.readEntry("a"), "second");
  EXPECT_EQ(keychain.readString("b"), "text");
  EXPECT_TRUE(keychain.containsItem("b"));
  EXPECT_THAT(keychain.listKeys(), testing::UnorderedElementsAre("a", "b"));
  EXPECT_EQ(SimpleKeychain("com.vek.other").readEntry("a"), std::nullopt);
  EXPECT_TRUE(keychain.removeEntry("a"));
  EXPECT_EQ(keychain.readEntry("a"), std::nullopt);
  keychain.removeAll();
  EXPECT_FALSE(keychain.containsItem("b"));
}

}  // namespace
}  // namespace vek
