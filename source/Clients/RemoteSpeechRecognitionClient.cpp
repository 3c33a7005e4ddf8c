// SPDX-License-Identifier: MIT
#include "Clients/RemoteSpeechRecognitionClient.hpp"

#include <stdexcept>

namespace vek {
namespace {

Task<bool> permitted() {
  co_return true;
}

Task<Stream<RecordingTranscript>> failedStart() {
  throw std::runtime_error("The hosted recogniser is not part of this version.");
  co_return Stream<RecordingTranscript>::makeStream().stream;
}

Task<> nothingToStop() {
  co_return;
}

}  // namespace

RemoteSpeechRecognitionClient RemoteSpeechRecognitionClientKey::liveValue() {
  return {.hasPermission = permitted,
          .requestPermission = permitted,
          .startRecording = failedStart,
          .stopRecording = nothingToStop};
}

}  // namespace vek
