// SPDX-License-Identifier: MIT
#include "identity/SimpleKeychainError.hpp"

#include <array>

namespace vek {
namespace {

using Code = SimpleKeychainError::Code;

struct Known {
  std::int32_t status;
  Code code;
  char const* description;
};

constexpr std::array<Known, 9> knownStatuses{{
    {-4, Code::operationNotImplemented,
     "errSecUnimplemented: A function or operation is not implemented."},
    {-50, Code::invalidParameters,
     "errSecParam: One or more parameters passed to the function are not valid."},
    {-128, Code::userCanceled, "errSecUserCanceled: User canceled the operation."},
    {-25291, Code::itemNotAvailable, "errSecNotAvailable: No trust results are available."},
    {-25293, Code::authFailed, "errSecAuthFailed: Authorization and/or authentication failed."},
    {-25299, Code::duplicateItem, "errSecDuplicateItem: The item already exists."},
    {-25300, Code::itemNotFound, "errSecItemNotFound: The item cannot be found."},
    {-25308, Code::interactionNotAllowed,
     "errSecInteractionNotAllowed: Interaction with the Security Server is not allowed."},
    {-26275, Code::decodeFailed, "errSecDecode: Unable to decode the provided data."},
}};

}  // namespace

SimpleKeychainError::SimpleKeychainError(std::int32_t status)
    : code_(Code::other),
      status_(status),
      description_("Unspecified Keychain error: " + std::to_string(status)) {
  for (auto const& known : knownStatuses) {
    if (known.status != status) continue;
    code_ = known.code;
    description_ = known.description;
  }
}

SimpleKeychainError SimpleKeychainError::unknown(std::string const& message) {
  return {Code::unknown, "Unknown error: " + message};
}

}  // namespace vek
