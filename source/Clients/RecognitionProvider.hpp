// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace vek {

/// Who turns speech into text.
enum class RecognitionProvider { apple, deepgram };

inline constexpr std::array allRecognitionProviders{RecognitionProvider::apple,
                                                    RecognitionProvider::deepgram};

/// The name under which a choice is stored and typed.
constexpr std::string_view rawValue(RecognitionProvider provider) {
  return provider == RecognitionProvider::apple ? "apple" : "deepgram";
}

constexpr std::optional<RecognitionProvider> recognitionProvider(std::string_view rawText) {
  for (auto const provider : allRecognitionProviders) {
    if (rawValue(provider) == rawText) return provider;
  }
  return std::nullopt;
}

/// The user's choice, read from the settings at each call.
[[nodiscard]] RecognitionProvider recognitionProviderSetting();

/// Changes the user's choice, for recordings that start from now on.
void setRecognitionProviderSetting(RecognitionProvider provider);

}  // namespace vek
