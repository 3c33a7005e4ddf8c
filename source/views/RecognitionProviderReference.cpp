// SPDX-License-Identifier: MIT
#include "views/RecognitionProviderReference.hpp"

#include <fmt/format.h>

#include <system_error>

#include "Clients/RecognitionProvider.hpp"
#include "platform/Log.hpp"

namespace vek {

int RecognitionProviderReference::value() const {
  return recognitionProviderSetting() == RecognitionProvider::apple ? Apple : Deepgram;
}

void RecognitionProviderReference::setValue(int value) {
  try {
    setRecognitionProviderSetting(value == Apple ? RecognitionProvider::apple
                                                 : RecognitionProvider::deepgram);
  } catch (std::system_error const& error) {
    Logger("windows").error(fmt::format("The text provider was not saved: {}", error.what()));
  }
  Q_EMIT valueChanged();
}

}  // namespace vek
