// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

namespace vek::test {

/// Writes WAV files of any kind, broken ones too.
struct WaveBytes {
  std::uint16_t tag = 1;
  std::uint16_t channels = 1;
  std::uint32_t sampleRate = 16000;
  std::uint16_t bits = 16;
  /// Wraps the format in the extensible form.
  bool isExtensible = false;
  /// A chunk of odd size that readers skip, before the data.
  std::string note = {};
  std::string data = {};
  /// What the header says about the size of the data, if not the truth.
  std::uint32_t claimedSize = 0;

  [[nodiscard]] std::string bytes() const {
    auto const frameSize = static_cast<std::uint16_t>(channels * (bits / 8));
    std::string format = number(isExtensible ? std::uint16_t{0xfffe} : tag) + number(channels) +
                         number(sampleRate) + number(sampleRate * frameSize) + number(frameSize) +
                         number(bits);
    if (isExtensible) {
      format += number(std::uint16_t{22}) + number(bits) + number(std::uint32_t{3}) + number(tag);
      format += std::string("\x00\x00\x00\x00\x10\x00\x80\x00\x00\xaa\x00\x38\x9b\x71", 14);
    }
    std::string body = "WAVE" + chunk("fmt ", format);
    if (!note.empty()) body += chunk("note", note);
    auto const size = claimedSize ? claimedSize : static_cast<std::uint32_t>(data.size());
    body += "data" + number(size) + data;
    return "RIFF" + number(static_cast<std::uint32_t>(body.size())) + body;
  }

  void write(std::filesystem::path const& path) const {
    std::ofstream(path, std::ios::binary) << bytes();
  }

  template <class Number>
  static std::string number(Number value) {
    std::string bytes(sizeof value, '\0');
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
  }

 private:
  static std::string chunk(std::string const& name, std::string const& content) {
    return name + number(static_cast<std::uint32_t>(content.size())) + content +
           (content.size() % 2 ? std::string(1, '\0') : "");
  }
};

}  // namespace vek::test
