// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/AudioPCMBuffer.hpp"

namespace vek {

/// The audio that is to be recognised, appended while it is captured. Any thread may use it.
class SpeechAudioBufferRecognitionRequest {
 public:
  using Buffer = std::shared_ptr<AudioPCMBuffer const>;
  using Receiver = std::function<void(Buffer)>;

  /// Whether the audio must not leave the machine.
  void setRequiresOnDeviceRecognition(bool isRequired);
  [[nodiscard]] bool requiresOnDeviceRecognition() const;

  /// The buffer is held until it has been recognised, and not longer: who produces audio faster
  /// than it is spoken can pace itself by that. Formats may differ from buffer to buffer.
  void appendAudioPCMBuffer(Buffer buffer);

  /// For the recogniser: hands all buffers to `receiver`, in order, those appended already first.
  void setReceiver(Receiver receiver);

 private:
  mutable std::mutex mutex_;
  bool requiresOnDevice_ = false;
  Receiver receiver_;
  std::vector<Buffer> waiting_;
};

}  // namespace vek
