// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace vek::test {

/// An identity provider's key: signs tokens as a provider does.
class TokenSigner {
 public:
  /// A key made anew.
  explicit TokenSigner(unsigned bits = 2048, unsigned long exponent = 65537);
  /// A private key in PEM.
  explicit TokenSigner(std::string const& pem);

  /// Big-endian numbers.
  [[nodiscard]] std::string modulus() const;
  [[nodiscard]] std::string exponent() const;
  /// The public key as an entry of a key set.
  [[nodiscard]] std::string jwk(std::string_view keyId) const;

  /// The public key in PEM.
  [[nodiscard]] std::string publicPEM() const;

  /// The token of these two JSON texts, signed by RS256 whatever the header says.
  [[nodiscard]] std::string token(std::string_view header, std::string_view body) const;
  /// The bytes of the RS256 signature.
  [[nodiscard]] std::string signature(std::string_view message) const;

 private:
  std::shared_ptr<void> key_;
};

}  // namespace vek::test
