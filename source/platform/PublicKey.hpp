// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string_view>

namespace vek {

/// The public half of an RSA key. A value; any thread may use it.
class PublicKey {
 public:
  /// From modulus and exponent as big-endian numbers. Nothing for a key that is too weak to prove
  /// anything (a modulus of less than 2048 bits, an exponent below 65537), that would take too long
  /// to compute with (more than 8192 and 64 bits), or is no key at all.
  [[nodiscard]] static std::optional<PublicKey> createWithData(std::string_view modulus,
                                                               std::string_view exponent);

  /// Whether `signature` is the key owner's over `message`, by PKCS #1 v1.5 with SHA-256.
  [[nodiscard]] bool verifySignature(std::string_view message, std::string_view signature) const;

 private:
  explicit PublicKey(std::shared_ptr<void> key) : key_(std::move(key)) {}

  std::shared_ptr<void> key_;
};

}  // namespace vek
