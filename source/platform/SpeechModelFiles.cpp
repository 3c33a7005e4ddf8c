// SPDX-License-Identifier: MIT
#include "platform/SpeechModelFiles.hpp"

#include <fmt/format.h>
#include <openssl/evp.h>

#include <fstream>
#include <memory>
#include <vector>

namespace vek {
namespace {

std::string sha256(std::filesystem::path const& file) {
  std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> const context(EVP_MD_CTX_new(),
                                                                        EVP_MD_CTX_free);
  EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr);
  std::ifstream input(file, std::ios::binary);
  std::vector<char> block(1 << 18);
  while (input.read(block.data(), static_cast<std::streamsize>(block.size())), input.gcount() > 0) {
    EVP_DigestUpdate(context.get(), block.data(), static_cast<std::size_t>(input.gcount()));
  }
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  unsigned length = 0;
  EVP_DigestFinal_ex(context.get(), digest.data(), &length);
  std::string text;
  for (unsigned index = 0; index < length; ++index) text += fmt::format("{:02x}", digest[index]);
  return text;
}

}  // namespace

std::optional<std::string> SpeechModelFiles::problem() const {
  for (File const& file : all) {
    std::error_code error;
    auto const size = std::filesystem::file_size(path(file), error);
    if (error) return describe(file, "is missing");
    if (size != file.size) return describe(file, "is damaged");
  }
  return std::nullopt;
}

void SpeechModelFiles::verify() const {
  if (auto const found = problem()) throw SpeechModelError(*found);
  for (File const& file : all) {
    if (sha256(path(file)) != file.sha256) throw SpeechModelError(describe(file, "is damaged"));
  }
}

std::string SpeechModelFiles::fingerprint() const {
  std::string text;
  for (File const& file : all) {
    std::error_code error;
    auto const time = std::filesystem::last_write_time(path(file), error);
    text += fmt::format("{}:{};", file.name, time.time_since_epoch().count());
  }
  return text;
}

std::string SpeechModelFiles::describe(File const& file, std::string_view fault) const {
  return fmt::format(
      "The speech model file {} {}. Run scripts/install-dependencies to install the speech models.",
      path(file).string(), fault);
}

}  // namespace vek
