// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>

namespace vek {

/// JSON that does not hold the expected record. The text names the place and the reason, such as
/// "$[0].title: expected text, got number".
class DecodingError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace vek
