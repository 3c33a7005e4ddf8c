// SPDX-License-Identifier: MIT
#include "platform/SpeechAudioBufferRecognitionRequest.hpp"

#include <utility>

namespace vek {

void SpeechAudioBufferRecognitionRequest::setRequiresOnDeviceRecognition(bool isRequired) {
  std::lock_guard const lock(mutex_);
  requiresOnDevice_ = isRequired;
}

bool SpeechAudioBufferRecognitionRequest::requiresOnDeviceRecognition() const {
  std::lock_guard const lock(mutex_);
  return requiresOnDevice_;
}

void SpeechAudioBufferRecognitionRequest::appendAudioPCMBuffer(Buffer buffer) {
  std::lock_guard const lock(mutex_);
  if (receiver_) {
    receiver_(std::move(buffer));
  } else {
    waiting_.push_back(std::move(buffer));
  }
}

void SpeechAudioBufferRecognitionRequest::setReceiver(Receiver receiver) {
  std::lock_guard const lock(mutex_);
  receiver_ = std::move(receiver);
  for (Buffer& buffer : std::exchange(waiting_, {})) receiver_(std::move(buffer));
}

}  // namespace vek
