// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Ed25519PublicKey.hpp"
#include "platform/HTTPClient.hpp"
#include "platform/UpdateItem.hpp"
#include "runtime/Task.hpp"

namespace vek {

/// Where the maker of the program publishes the newest version: a JSON text of one object, and
/// beside it, at the same address with ".signature" behind it, the 64 bytes of the Ed25519
/// signature over it. What is not signed is not even parsed.
///
///     {"product": "com.vek.app", "serial": 17, "expires": 1800000000, "version": "1.4.0",
///      "displayVersion": "1.4", "notes": "What is new.", "link": "https://…"}
///
/// "expires" is in seconds since the start of 1970. "displayVersion" and "notes" may be left out.
class UpdateFeed {
 public:
  struct Release {
    UpdateItem item;
    /// Grows with each list that is published, so that an old one is known for what it is.
    std::uint64_t serial = 0;
    /// From then on the publisher does not stand by it, however well it is signed.
    std::chrono::sys_seconds expires = {};
    /// The fingerprint of the key that it is signed with.
    std::string publisher = {};
  };

  UpdateFeed(HTTPClient http, std::string url, std::filesystem::path publicKey)
      : http_(std::move(http)), url_(std::move(url)), publicKey_(std::move(publicKey)) {}

  /// Throws UpdateError.
  [[nodiscard]] Task<Release> latest() const;

  /// What a signed list says. Throws UpdateError.
  [[nodiscard]] static Release parse(std::string_view list);

 private:
  /// Nothing when the signature is not that of the list.
  [[nodiscard]] Task<std::optional<std::string>> fetchSigned(Ed25519PublicKey key) const;
  [[nodiscard]] Task<std::string> fetch(std::string url, std::size_t largestBody) const;

  HTTPClient http_;
  std::string url_;
  std::filesystem::path publicKey_;
};

}  // namespace vek
