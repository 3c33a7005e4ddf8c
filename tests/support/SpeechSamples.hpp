// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/AudioPCMBuffer.hpp"
#include "platform/Deployment.hpp"

namespace vek::test {

/// A recording and what is said in it.
struct SpeechSample {
  std::string name;
  std::string transcript;
  std::vector<std::int16_t> samples;  // 16 kHz mono
};

/// The samples of a 16-bit WAV file with a plain header.
inline std::vector<std::int16_t> waveSamples(std::filesystem::path const& file) {
  constexpr std::size_t headerLength = 44;
  std::ifstream input(file, std::ios::binary);
  std::string const content(std::istreambuf_iterator<char>(input), {});
  if (content.size() < headerLength) throw std::runtime_error("no sound in " + file.string());
  std::vector<std::int16_t> samples((content.size() - headerLength) / sizeof(std::int16_t));
  std::memcpy(samples.data(), content.data() + headerLength, samples.size() * sizeof(std::int16_t));
  return samples;
}

/// All recordings of a folder with a `transcripts.tsv`.
inline std::vector<SpeechSample> speechSamples(std::filesystem::path const& folder) {
  std::vector<SpeechSample> found;
  std::ifstream input(folder / "transcripts.tsv");
  for (std::string line; std::getline(input, line);) {
    std::size_t const tab = line.find('\t');
    if (tab == std::string::npos) continue;
    std::string const name = line.substr(0, tab);
    found.push_back({name, line.substr(tab + 1), waveSamples(folder / name)});
  }
  if (found.empty()) throw std::runtime_error("no transcripts in " + folder.string());
  return found;
}

/// Where the models are installed: VEK_MODELS_FOLDER, or else as deployed.
inline std::filesystem::path modelsFolder() {
  char const* const folder = std::getenv("VEK_MODELS_FOLDER");
  return folder != nullptr ? folder : deployment().modelsFolder;
}

/// Mono audio in buffers as a capture device gives them.
inline std::vector<std::shared_ptr<AudioPCMBuffer const>> buffersOf(
    std::vector<std::int16_t> const& samples, double sampleRate = 16000,
    std::size_t framesPerBuffer = 1024) {
  AudioFormat const format(AudioCommonFormat::pcmFormatInt16, sampleRate, 1, true);
  std::vector<std::shared_ptr<AudioPCMBuffer const>> buffers;
  for (std::size_t begin = 0; begin < samples.size(); begin += framesPerBuffer) {
    std::size_t const end = std::min(begin + framesPerBuffer, samples.size());
    buffers.push_back(std::make_shared<AudioPCMBuffer const>(
        format, std::vector(samples.begin() + static_cast<std::ptrdiff_t>(begin),
                            samples.begin() + static_cast<std::ptrdiff_t>(end))));
  }
  return buffers;
}

}  // namespace vek::test
