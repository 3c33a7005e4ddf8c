// SPDX-License-Identifier: MIT
#include "records/CaseFolding.hpp"

#include <unicode/bytestream.h>
#include <unicode/normalizer2.h>
#include <unicode/stringpiece.h>

#include <cstdint>

namespace vek {

std::string caseFolded(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  auto const* const folding = icu::Normalizer2::getNFKCCasefoldInstance(status);
  std::string folded;
  icu::StringByteSink sink(&folded, static_cast<std::int32_t>(text.size()));
  icu::StringPiece const source(text.data(), static_cast<std::int32_t>(text.size()));
  if (U_SUCCESS(status)) folding->normalizeUTF8(0, source, sink, nullptr, status);
  return U_SUCCESS(status) ? folded : std::string(text);
}

}  // namespace vek
