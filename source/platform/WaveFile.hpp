// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <string_view>

#include "platform/AudioPCMBuffer.hpp"

namespace vek {

/// Why a WAV file can't be played; the text names the file.
class WaveFileError : public std::exception {
 public:
  enum class Reason { unreadable, empty, notAWaveFile, unsupported };

  WaveFileError(Reason reason, std::filesystem::path const& path, std::string_view detail = {});

  [[nodiscard]] Reason reason() const { return reason_; }
  [[nodiscard]] char const* what() const noexcept override { return text_.c_str(); }

 private:
  Reason reason_;
  std::string text_;
};

/// The samples of a WAV file, read as they are asked for: integers of 8 to 32 bits and floats of
/// 32 or 64, all given as 16-bit integers at the file's own rate and channel count.
class WaveFile {
 public:
  /// Reads up to the first sample. Throws `WaveFileError`.
  explicit WaveFile(std::filesystem::path const& path);

  /// 16-bit interleaved.
  [[nodiscard]] AudioFormat format() const;
  /// As the header and the file's size tell; 0 when a pipe leaves it open.
  [[nodiscard]] std::uint64_t frameCount() const { return frameCount_; }

  /// Fills `samples` from its front with whole frames and returns the number of samples; fewer
  /// than fit only at the end of the file, and 0 from then on.
  std::size_t read(std::span<std::int16_t> samples);

 private:
  enum class Encoding { unsignedInteger, integer, floatingPoint };

  bool readExactly(std::span<char> bytes);
  /// The header of the chunk of this name, with those before it skipped but for the format's.
  std::uint32_t findData();
  void readFormat(std::uint32_t size);
  [[nodiscard]] std::int16_t sample(unsigned char const* bytes) const;

  std::filesystem::path path_;
  std::ifstream file_;
  Encoding encoding_ = Encoding::integer;
  std::uint32_t sampleRate_ = 0;
  std::uint32_t channelCount_ = 0;
  std::size_t bytesPerSample_ = 0;
  std::uint64_t frameCount_ = 0;
  std::uint64_t framesLeft_ = 0;
};

}  // namespace vek
