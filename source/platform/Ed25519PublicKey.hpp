// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vek {

/// The public half of an Ed25519 key. A value; any thread may use it.
class Ed25519PublicKey {
 public:
  /// From a PEM text. Nothing for a text that holds no such key.
  [[nodiscard]] static std::optional<Ed25519PublicKey> fromPEM(std::string_view text);

  /// Whether the 64 bytes of `signature` are the key owner's over `message`.
  [[nodiscard]] bool verifySignature(std::string_view message, std::string_view signature) const;

  /// Tells this key from others: 16 hexadecimal digits.
  [[nodiscard]] std::string fingerprint() const;

 private:
  explicit Ed25519PublicKey(std::shared_ptr<void> key) : key_(std::move(key)) {}

  std::shared_ptr<void> key_;
};

}  // namespace vek
