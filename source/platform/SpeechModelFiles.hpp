// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vek {

/// The files of the speech engine and its models in a folder, as `scripts/fetch-models` installs
/// them.
class SpeechModelFiles {
 public:
  struct File {
    std::string_view name;
    std::uintmax_t size;
    std::string_view sha256;
  };

  static constexpr File engine{"libonnxruntime.so", 27026609,
                               "4b3607aebd1784b26b6f9b20e4bd974c7ab8287043e4d095cb7d2cb40b5e566e"};
  static constexpr File encoder{"moonshine-base-encoder.onnx", 20513063,
                                "1dd9ab0a7f987113d30affcba5a068d11c8f90fa0223caa3e491ade431ad9751"};
  static constexpr File decoder{"moonshine-base-decoder.onnx", 42498870,
                                "cc9f3cd6698a369c6008b41aa60aa3fb3322e7f03c9bdf19d8e6b7200afca4f3"};
  static constexpr File detector{
      "silero-vad-v5.onnx", 2327524,
      "2623a2953f6ff3d2c1e61740c6cdb7168133479b267dfef114a4a3cc5bdd788f"};
  static constexpr File vocabulary{
      "vocabulary.bin", 242918, "0f97b4337921e6e7e9b4620fc73338ee570aecd3c16038bc23870a887e995045"};
  static constexpr std::array all{engine, encoder, decoder, detector, vocabulary};

  explicit SpeechModelFiles(std::filesystem::path folder) : folder_(std::move(folder)) {}

  [[nodiscard]] std::filesystem::path path(File const& file) const { return folder_ / file.name; }

  /// What is wrong with the files as far as a look at the folder shows, and what to do about it.
  [[nodiscard]] std::optional<std::string> problem() const;

  /// Reads all files and compares their sums. Throws SpeechModelError.
  void verify() const;

  /// Changes when one of the files does.
  [[nodiscard]] std::string fingerprint() const;

 private:
  [[nodiscard]] std::string describe(File const& file, std::string_view fault) const;

  std::filesystem::path folder_;
};

/// The speech models cannot be used. The text says why and what to do about it.
class SpeechModelError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace vek
