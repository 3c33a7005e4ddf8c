// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <utility>

#include "identity/CredentialsManager.hpp"
#include "support/ChildProcess.hpp"
#include "support/Environment.hpp"
#include "support/RotatingProvider.hpp"
#include "support/SecretService.hpp"

namespace vek::test {

/// One user's credentials, kept by programs that are started and killed. Sets the environment and
/// the keychain of this process to the same place.
class CredentialsKills {
 public:
  enum class Place : std::uint8_t { files, secretService };

  explicit CredentialsKills(Place place);

  /// Kills a program at a random moment, so many times. What one kill has broken, in words; empty
  /// when some came after the program had begun its work, and the item was the old or the new
  /// record each time and could be renewed.
  std::string killWhileStoring(int times) { return kill("store", times); }
  std::string killWhileRenewing(int times) { return kill("renew", times); }

  /// The access tokens that two programs get at once for a record that has run out.
  std::pair<std::string, std::string> renewTwiceAtOnce();

  [[nodiscard]] RotatingProvider& provider() { return provider_; }

 private:
  std::string kill(std::string const& mode, int times);
  [[nodiscard]] std::pair<std::optional<std::string>, std::size_t> traces() const;
  [[nodiscard]] std::string damage() const;
  [[nodiscard]] ChildProcess startKeeper(std::string const& mode) const;

  TemporaryFolder folder_;
  SecretService service_;
  EnvironmentVariable bus_;
  EnvironmentVariable data_;
  RotatingProvider provider_;
  CredentialsManager manager_;
  std::mt19937 random_;
};

}  // namespace vek::test
