// SPDX-License-Identifier: MIT
#include "platform/WaveFile.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <limits>
#include <system_error>
#include <vector>

namespace vek {

namespace {

constexpr std::uint32_t maximumChannels = 32;
constexpr std::uint32_t maximumSampleRate = 384'000;

constexpr auto openEnd = std::numeric_limits<std::uint64_t>::max();

constexpr std::uint32_t integerTag = 1;
constexpr std::uint32_t floatTag = 3;
constexpr std::uint32_t extensibleTag = 0xfffe;

std::uint32_t unsignedAt(char const* bytes, std::size_t count) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < count; ++i) {
    value |= std::uint32_t{static_cast<unsigned char>(bytes[i])} << (8 * i);
  }
  return value;
}

bool isNamed(char const* chunk, std::string_view name) {
  return std::string_view(chunk, 4) == name;
}

std::int16_t fromFloat(double value) {
  if (std::isnan(value)) return 0;
  return static_cast<std::int16_t>(std::lrint(std::clamp(value * 32768.0, -32768.0, 32767.0)));
}

std::string text(WaveFileError::Reason reason, std::string const& path, std::string_view detail) {
  using enum WaveFileError::Reason;
  switch (reason) {
    case unreadable:
      return fmt::format("\"{}\" can't be read: {}.", path, detail);
    case empty:
      return fmt::format("\"{}\" holds no audio.", path);
    case notAWaveFile:
      return fmt::format("\"{}\" is not a WAV file.", path);
    case unsupported:
      break;
  }
  return fmt::format("\"{}\" is a WAV file of a kind that can't be played: {}.", path, detail);
}

}  // namespace

WaveFileError::WaveFileError(Reason reason, std::filesystem::path const& path,
                             std::string_view detail)
    : reason_(reason), text_(text(reason, path.string(), detail)) {}

WaveFile::WaveFile(std::filesystem::path const& path) : path_(path) {
  using enum WaveFileError::Reason;
  if (std::error_code ignored; std::filesystem::is_directory(path, ignored)) {
    throw WaveFileError(unreadable, path, "it is a folder");
  }
  errno = 0;
  file_.open(path, std::ios::binary);
  if (!file_) throw WaveFileError(unreadable, path, std::generic_category().message(errno));

  std::array<char, 12> riff{};
  if (!readExactly(riff)) {
    if (file_.bad()) throw WaveFileError(unreadable, path, "reading failed");
    throw WaveFileError(file_.gcount() == 0 ? empty : notAWaveFile, path);
  }
  if (!isNamed(riff.data(), "RIFF") || !isNamed(riff.data() + 8, "WAVE")) {
    throw WaveFileError(notAWaveFile, path);
  }

  auto const dataSize = findData();
  auto const frameSize = bytesPerSample_ * channelCount_;
  // Programs that write to a pipe leave the size open.
  bool const isOpenEnded = dataSize == std::numeric_limits<std::uint32_t>::max();
  framesLeft_ = isOpenEnded ? openEnd : dataSize / frameSize;
  std::error_code noSize;
  if (auto const fileSize = std::filesystem::file_size(path, noSize); !noSize) {
    auto const here = static_cast<std::uint64_t>(file_.tellg());
    framesLeft_ = std::min(framesLeft_, (fileSize - std::min(here, fileSize)) / frameSize);
  }
  if (framesLeft_ == 0) throw WaveFileError(empty, path);
  frameCount_ = framesLeft_ == openEnd ? 0 : framesLeft_;
}

AudioFormat WaveFile::format() const {
  return {AudioCommonFormat::pcmFormatInt16, static_cast<double>(sampleRate_), channelCount_, true};
}

bool WaveFile::readExactly(std::span<char> bytes) {
  file_.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return file_.good();
}

std::uint32_t WaveFile::findData() {
  using enum WaveFileError::Reason;
  std::array<char, 8> header{};
  while (readExactly(header)) {
    auto const size = unsignedAt(header.data() + 4, 4);
    if (isNamed(header.data(), "data")) {
      if (channelCount_ == 0) throw WaveFileError(notAWaveFile, path_);
      return size;
    }
    if (isNamed(header.data(), "fmt ")) {
      readFormat(size);
    } else {
      file_.ignore(static_cast<std::streamsize>(size));
    }
    if (size % 2 != 0) file_.ignore(1);  // chunks begin at even places
  }
  throw WaveFileError(channelCount_ == 0 ? notAWaveFile : empty, path_);
}

void WaveFile::readFormat(std::uint32_t size) {
  using enum WaveFileError::Reason;
  std::array<char, 40> bytes{};
  auto const known = std::min<std::size_t>(size, bytes.size());
  if (known < 16 || !readExactly(std::span(bytes).first(known))) {
    throw WaveFileError(notAWaveFile, path_);
  }
  file_.ignore(static_cast<std::streamsize>(size - known));

  auto tag = unsignedAt(bytes.data(), 2);
  if (tag == extensibleTag && known == bytes.size()) tag = unsignedAt(bytes.data() + 24, 2);
  channelCount_ = unsignedAt(bytes.data() + 2, 2);
  sampleRate_ = unsignedAt(bytes.data() + 4, 4);
  auto const frameSize = unsignedAt(bytes.data() + 12, 2);
  auto const bits = unsignedAt(bytes.data() + 14, 2);

  if (channelCount_ == 0 || channelCount_ > maximumChannels) {
    throw WaveFileError(unsupported, path_, fmt::format("{} channels", channelCount_));
  }
  if (sampleRate_ == 0 || sampleRate_ > maximumSampleRate) {
    throw WaveFileError(unsupported, path_, fmt::format("{} samples a second", sampleRate_));
  }
  bytesPerSample_ = frameSize / channelCount_;
  bool const isWhole = bytesPerSample_ * channelCount_ == frameSize &&
                       bits <= 8 * bytesPerSample_ && bits > 8 * (bytesPerSample_ - 1);
  if (tag == integerTag && isWhole && bytesPerSample_ >= 1 && bytesPerSample_ <= 4) {
    encoding_ = bytesPerSample_ == 1 ? Encoding::unsignedInteger : Encoding::integer;
  } else if (tag == floatTag && isWhole && (bits == 32 || bits == 64)) {
    encoding_ = Encoding::floatingPoint;
  } else {
    throw WaveFileError(unsupported, path_, fmt::format("encoding {} of {} bits", tag, bits));
  }
}

std::int16_t WaveFile::sample(unsigned char const* bytes) const {
  switch (encoding_) {
    case Encoding::unsignedInteger:
      return static_cast<std::int16_t>((bytes[0] - 128) * 256);
    case Encoding::integer:
      // The two highest bytes.
      return static_cast<std::int16_t>(
          static_cast<std::uint16_t>(bytes[bytesPerSample_ - 2] | bytes[bytesPerSample_ - 1] << 8));
    case Encoding::floatingPoint:
      break;
  }
  if (bytesPerSample_ == sizeof(float)) {
    float value = 0;
    std::memcpy(&value, bytes, sizeof value);
    return fromFloat(double{value});
  }
  double value = 0;
  std::memcpy(&value, bytes, sizeof value);
  return fromFloat(value);
}

std::size_t WaveFile::read(std::span<std::int16_t> samples) {
  static_assert(std::endian::native == std::endian::little);
  auto const frameSize = bytesPerSample_ * channelCount_;
  auto const frames = std::min<std::uint64_t>(samples.size() / channelCount_, framesLeft_);
  std::vector<char> bytes(frames * frameSize);
  file_.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  auto const framesRead = static_cast<std::size_t>(file_.gcount()) / frameSize;
  framesLeft_ = framesRead < frames ? 0 : framesLeft_ - framesRead;

  auto const count = framesRead * channelCount_;
  for (std::size_t i = 0; i < count; ++i) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): bytes as they are in the file.
    samples[i] = sample(reinterpret_cast<unsigned char const*>(&bytes[i * bytesPerSample_]));
  }
  return count;
}

}  // namespace vek
