// SPDX-License-Identifier: MIT
#include "platform/UpdateError.hpp"

#include <utility>

namespace vek {
namespace {

char const* name(UpdateError::Code code) {
  using enum UpdateError::Code;
  switch (code) {
    case noFeed:
      return "no feed";
    case insecureFeed:
      return "insecure feed";
    case noKey:
      return "no key";
    case unreachable:
      return "unreachable";
    case refused:
      return "refused";
    case badSignature:
      return "bad signature";
    case malformed:
      return "malformed list";
    case outdated:
      break;
  }
  return "outdated list";
}

}  // namespace

UpdateError::UpdateError(Code code, std::string detail)
    : code_(code), detail_(std::move(detail)), description_(name(code)) {
  if (!detail_.empty()) description_ += ": " + detail_;
}

}  // namespace vek
