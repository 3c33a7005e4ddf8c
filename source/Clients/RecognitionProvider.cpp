// SPDX-License-Identifier: MIT
#include "Clients/RecognitionProvider.hpp"

#include <string>

#include "platform/UserDefaults.hpp"
#include "records/DecodingError.hpp"
#include "records/JSON.hpp"

namespace vek {
namespace {

std::optional<RecognitionProvider> deserialize(std::string_view text) {
  try {
    return recognitionProvider(json::decode<std::string>(text));
  } catch (DecodingError const&) {
    return std::nullopt;
  }
}

UserDefaultsKey<RecognitionProvider> const& key() {
  static auto const* const instance = new UserDefaultsKey<RecognitionProvider>{
      .name = "recognitionProvider",
      .defaultValue = RecognitionProvider::apple,
      .serialize = [](auto provider) { return json::encode(std::string(rawValue(provider))); },
      .deserialize = deserialize};
  return *instance;
}

}  // namespace

RecognitionProvider recognitionProviderSetting() {
  return key().read(UserDefaults::standard());
}

void setRecognitionProviderSetting(RecognitionProvider provider) {
  key().write(UserDefaults::standard(), provider);
}

}  // namespace vek
