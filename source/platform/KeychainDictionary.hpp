// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace vek {

/// Bytes, told apart from text.
struct Data {
  std::string bytes;
  bool operator==(Data const&) const = default;
};

/// What a user has to do before an item opens.
struct AccessControl {
  std::string protection;
  std::uint32_t flags = 0;
  bool operator==(AccessControl const&) const = default;
};

/// A session in which the user has shown who they are. Nothing on this system gives one.
struct AuthenticationContext {
  bool operator==(AuthenticationContext const&) const = default;
};

using KeychainValue = std::variant<bool, std::string, Data, AccessControl, AuthenticationContext>;

/// Attributes of an item, or a query for items: values by the keys below.
using KeychainDictionary = std::map<std::string, KeychainValue, std::less<>>;

/// What was found: nothing that was asked for, one item's bytes, or the attributes of items.
using KeychainResult = std::variant<std::monostate, Data, std::vector<KeychainDictionary>>;

inline constexpr char const* kSecClass = "class";
inline constexpr char const* kSecAttrService = "service";
inline constexpr char const* kSecAttrAccount = "account";
inline constexpr char const* kSecValueData = "data";
inline constexpr char const* kSecReturnData = "returnData";
inline constexpr char const* kSecReturnAttributes = "returnAttributes";
inline constexpr char const* kSecMatchLimit = "matchLimit";
inline constexpr char const* kSecAttrAccessGroup = "accessGroup";
inline constexpr char const* kSecAttrAccessControl = "accessControl";
inline constexpr char const* kSecAttrAccessible = "accessible";
inline constexpr char const* kSecAttrSynchronizable = "synchronizable";
inline constexpr char const* kSecUseAuthenticationContext = "authenticationContext";
inline constexpr char const* kSecUseDataProtectionKeychain = "dataProtectionKeychain";

// Values of kSecClass, kSecMatchLimit and kSecAttrAccessible.
inline constexpr char const* kSecClassGenericPassword = "genericPassword";
inline constexpr char const* kSecMatchLimitOne = "one";
inline constexpr char const* kSecMatchLimitAll = "all";
inline constexpr char const* kSecAttrAccessibleWhenUnlocked = "whenUnlocked";
inline constexpr char const* kSecAttrAccessibleWhenUnlockedThisDeviceOnly =
    "whenUnlockedThisDeviceOnly";
inline constexpr char const* kSecAttrAccessibleAfterFirstUnlock = "afterFirstUnlock";
inline constexpr char const* kSecAttrAccessibleAfterFirstUnlockThisDeviceOnly =
    "afterFirstUnlockThisDeviceOnly";
inline constexpr char const* kSecAttrAccessibleWhenPasscodeSetThisDeviceOnly =
    "whenPasscodeSetThisDeviceOnly";

}  // namespace vek
