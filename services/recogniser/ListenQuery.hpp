// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace vek::services {

/// What a client says of the audio that it will send, and of the results that it wants.
struct ListenQuery {
  /// Frames a second.
  std::uint32_t sampleRate = 0;
  std::uint32_t channels = 0;
  /// Whether results that may still change are wanted.
  bool interimResults = false;
  /// Taken for the sake of clients that ask for it: all that is said is said by speaker 0.
  bool diarize = false;
  /// Whether results tell that the speaker has paused.
  bool endpointing = true;

  /// Reads the items of a URL's query. Throws `Refusal` with 400, which names a bad item.
  static ListenQuery parse(std::vector<std::pair<std::string, std::string>> const& items);
};

}  // namespace vek::services
