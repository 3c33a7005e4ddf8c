// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>

#include "platform/MicrophoneRules.hpp"

namespace vek {

/// Whether the user lets the program record. The numbers are the platform's.
enum class AuthorizationStatus : std::uint8_t {
  notDetermined = 0,
  restricted = 1,
  denied = 2,
  authorized = 3,
};

enum class MediaType : std::uint8_t { audio };

/// The platform's word on the use of the microphone, as a record so that others can stand in. Both
/// operations look it up anew and block for as long as `isMicrophoneAllowed` does, so they are not
/// for the main thread.
struct CaptureDevice {
  /// `authorized` or `denied`: nothing is left undetermined here.
  std::function<AuthorizationStatus(MediaType)> authorizationStatusForMediaType;
  /// There is nobody to ask: the completion gets what holds already, before the call returns.
  std::function<void(MediaType, std::function<void(bool isGranted)> completion)>
      requestAccessForMediaType;
};

CaptureDevice captureDevice(MicrophoneRules rules = {});

}  // namespace vek
