// SPDX-License-Identifier: MIT
#include "platform/CaptureDevice.hpp"

#include <utility>

namespace vek {

CaptureDevice captureDevice(MicrophoneRules rules) {
  auto const status = [rules = std::move(rules)](MediaType) {
    return isMicrophoneAllowed(rules) ? AuthorizationStatus::authorized
                                      : AuthorizationStatus::denied;
  };
  return {.authorizationStatusForMediaType = status,
          .requestAccessForMediaType = [status](MediaType type,
                                                std::function<void(bool)> const& completion) {
            completion(status(type) == AuthorizationStatus::authorized);
          }};
}

}  // namespace vek
