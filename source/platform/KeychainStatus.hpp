// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace vek {

// How an operation of the keychain ends. Other numbers are failures as well.
inline constexpr std::int32_t errSecSuccess = 0;
inline constexpr std::int32_t errSecUnimplemented = -4;
/// The store, or the way to it, has failed; the log says how.
inline constexpr std::int32_t errSecIO = -36;
inline constexpr std::int32_t errSecParam = -50;
/// There is no store.
inline constexpr std::int32_t errSecNotAvailable = -25291;
inline constexpr std::int32_t errSecDuplicateItem = -25299;
inline constexpr std::int32_t errSecItemNotFound = -25300;
/// The store is locked, and the user has not opened it.
inline constexpr std::int32_t errSecInteractionNotAllowed = -25308;

/// A status on its way out of a store.
struct KeychainFailure {
  std::int32_t status;
};

}  // namespace vek
