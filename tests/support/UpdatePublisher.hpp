// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "support/TemporaryFolder.hpp"

namespace vek::test {

/// Signs lists of updates as the maker of the program does, with a key of its own.
class UpdatePublisher {
 public:
  UpdatePublisher();

  /// PEM file of the public half of the key.
  [[nodiscard]] std::filesystem::path publicKey() const { return folder_ / "update-key.pem"; }
  [[nodiscard]] std::string sign(std::string_view list) const;

 private:
  TemporaryFolder folder_;
  std::shared_ptr<void> key_;
};

}  // namespace vek::test
