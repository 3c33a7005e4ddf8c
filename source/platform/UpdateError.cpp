// SPDX-License-Identifier: MIT
#include "platform/UpdateError.hpp"

namespace vek {
namespace {

char const* text(UpdateError::Code code) {
  using enum UpdateError::Code;
  switch (code) {
    case noFeed:
      return "This installation does not say where its updates are published";
    case insecureFeed:
      return "The address of the updates is not secure";
    case noKey:
      return "This installation lacks the key that proves updates genuine";
    case unreachable:
      return "The updates could not be fetched";
    case refused:
      return "The server did not give out the updates";
    case badSignature:
      return "The list of updates does not come from the maker of VEK";
    case malformed:
      return "The list of updates cannot be read";
    case outdated:
      break;
  }
  return "The server gave out an old list of updates";
}

}  // namespace

UpdateError::UpdateError(Code code, std::string const& detail)
    : code_(code), description_(text(code)) {
  if (detail.ends_with('.')) {
    description_ += ". " + detail;
  } else {
    description_ += detail.empty() ? "." : " (" + detail + ").";
  }
}

}  // namespace vek
