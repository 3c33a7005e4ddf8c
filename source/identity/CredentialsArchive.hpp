// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "identity/Credentials.hpp"

namespace vek {

/// The form in which credentials are kept: a JSON object under the class name "A0Credentials".
struct CredentialsArchive {
  static constexpr std::size_t largestSize = std::size_t{1} << 20U;

  /// Nothing when they hold what could not be read again: no text, or too much of it.
  [[nodiscard]] static std::optional<std::string> archive(Credentials const& credentials);

  /// Nothing for bytes of another form, of a later version or of more than the largest size.
  [[nodiscard]] static std::optional<Credentials> unarchive(std::string_view bytes);
};

}  // namespace vek
