// SPDX-License-Identifier: MIT
#include "services/recogniser/ListenAudio.hpp"

#include <fmt/format.h>
#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <new>
#include <span>

namespace vek::services {

namespace {

/// Short enough that a client who sends much at once does not keep the recogniser from the others.
constexpr std::size_t buffersPerSecond = 4;

/// 16-bit samples, the low byte first.
std::vector<std::int16_t> samples(std::string_view bytes) {
  std::vector<std::int16_t> values(bytes.size() / 2);
  for (std::size_t i = 0; i < values.size(); ++i) {
    auto const low = static_cast<unsigned char>(bytes[2 * i]);
    auto const high = static_cast<unsigned char>(bytes[2 * i + 1]);
    values[i] = static_cast<std::int16_t>(low | high << 8);
  }
  return values;
}

}  // namespace

ListenAudio::ListenAudio(AudioFormat format)
    : format_(format),
      bytesPerFrame_(std::size_t{2} * format.channelCount()),
      digest_(EVP_MD_CTX_new()) {
  if (EVP_DigestInit_ex(digest_.get(), EVP_sha256(), nullptr) != 1) throw std::bad_alloc();
}

void ListenAudio::FreeDigest::operator()(evp_md_ctx_st* digest) const {
  EVP_MD_CTX_free(digest);
}

std::vector<AudioPCMBuffer> ListenAudio::take(std::string_view bytes) {
  EVP_DigestUpdate(digest_.get(), bytes.data(), bytes.size());
  std::string all = std::move(incompleteFrame_).append(bytes);
  auto const whole = all.size() / bytesPerFrame_ * bytesPerFrame_;
  incompleteFrame_ = all.substr(whole);
  frames_ += whole / bytesPerFrame_;

  auto const longest =
      static_cast<std::size_t>(format_.sampleRate()) / buffersPerSecond * bytesPerFrame_;
  std::vector<AudioPCMBuffer> buffers;
  auto rest = std::string_view(all).substr(0, whole);
  while (!rest.empty()) {
    auto const length = std::min(rest.size(), longest);
    buffers.emplace_back(format_, samples(rest.substr(0, length)));
    rest.remove_prefix(length);
  }
  return buffers;
}

std::string ListenAudio::sha256() {
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  unsigned length = 0;
  EVP_DigestFinal_ex(digest_.get(), digest.data(), &length);
  std::string text;
  for (auto const byte : std::span(digest).first(length)) text += fmt::format("{:02x}", byte);
  return text;
}

}  // namespace vek::services
