// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/AudioPCMBuffer.hpp"

struct evp_md_ctx_st;

namespace vek::services {

/// The audio of a stream: makes buffers of bytes that come in pieces of any length, and keeps
/// count.
class ListenAudio {
 public:
  explicit ListenAudio(AudioFormat format);

  /// The whole frames that these bytes complete, in short buffers. The rest waits for more.
  std::vector<AudioPCMBuffer> take(std::string_view bytes);

  /// The length in seconds of all frames so far.
  [[nodiscard]] double duration() const { return seconds(frames_); }
  [[nodiscard]] double seconds(std::uint64_t frames) const {
    return static_cast<double>(frames) / format_.sampleRate();
  }
  [[nodiscard]] std::uint32_t channels() const { return format_.channelCount(); }

  /// Of all bytes so far, in hexadecimal. For the end: nothing may be taken after it.
  [[nodiscard]] std::string sha256();

 private:
  struct FreeDigest {
    void operator()(evp_md_ctx_st* digest) const;
  };

  AudioFormat format_;
  std::size_t bytesPerFrame_;
  std::string incompleteFrame_;
  std::uint64_t frames_ = 0;
  std::unique_ptr<evp_md_ctx_st, FreeDigest> digest_;
};

}  // namespace vek::services
