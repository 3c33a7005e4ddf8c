// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace vek {

/// How samples are laid out. The number is the one that callers name a format by.
enum class AudioCommonFormat : std::uint8_t { pcmFormatFloat32 = 1, pcmFormatInt16 = 3 };

/// Describes PCM: samples a second, channels, sample type and whether channels alternate.
class AudioFormat {
 public:
  AudioFormat(AudioCommonFormat commonFormat, double sampleRate, std::uint32_t channels,
              bool interleaved)
      : commonFormat_(commonFormat),
        sampleRate_(sampleRate),
        channelCount_(channels),
        isInterleaved_(interleaved) {}

  [[nodiscard]] AudioCommonFormat commonFormat() const { return commonFormat_; }
  [[nodiscard]] double sampleRate() const { return sampleRate_; }
  [[nodiscard]] std::uint32_t channelCount() const { return channelCount_; }
  [[nodiscard]] bool isInterleaved() const { return isInterleaved_; }

  bool operator==(AudioFormat const&) const = default;

 private:
  AudioCommonFormat commonFormat_;
  double sampleRate_;
  std::uint32_t channelCount_;
  bool isInterleaved_;
};

/// Captured audio: interleaved little-endian 16-bit samples. Immutable, shared by its readers
/// through `std::shared_ptr<AudioPCMBuffer const>`; it is gone when the last reader lets it go.
class AudioPCMBuffer {
 public:
  AudioPCMBuffer(AudioFormat format, std::vector<std::int16_t> samples)
      : format_(format), samples_(std::move(samples)) {}

  [[nodiscard]] AudioFormat const& format() const { return format_; }
  [[nodiscard]] std::size_t frameLength() const { return samples_.size() / format_.channelCount(); }

  /// All samples, channels alternating.
  [[nodiscard]] std::span<std::int16_t const> samples() const { return samples_; }
  /// The same as bytes, as they go onto a wire.
  [[nodiscard]] std::span<std::byte const> bytes() const { return std::as_bytes(samples()); }

 private:
  AudioFormat format_;
  std::vector<std::int16_t> samples_;
};

}  // namespace vek
