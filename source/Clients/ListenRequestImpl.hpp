// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AudioPCMBuffer.hpp"
#include "platform/HTTPClient.hpp"

namespace vek {

/// The upgrade request that opens a stream of audio in `format` to the hosted recogniser of this
/// process's deployment. Only its header holds the key. Throws RemoteSpeechRecognitionError when
/// there is no such sample rate or place, and DeploymentError.
[[nodiscard]] HTTPRequest listenRequest(AudioFormat const& format);

}  // namespace vek
