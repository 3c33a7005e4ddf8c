// SPDX-License-Identifier: MIT
#include "views/RecognitionProviderReference.hpp"

#include <fmt/format.h>

#include <filesystem>
#include <system_error>
#include <utility>

#include "Clients/RecognitionProvider.hpp"
#include "platform/Log.hpp"
#include "platform/UserDefaults.hpp"

namespace vek {

namespace {

int stored() {
  return recognitionProviderSetting() == RecognitionProvider::apple
             ? RecognitionProviderReference::Apple
             : RecognitionProviderReference::Deepgram;
}

}  // namespace

RecognitionProviderReference::RecognitionProviderReference() : value_(stored()) {
  // The folder, since the file is another one after each change.
  auto const folder = UserDefaults::standard().file().parent_path();
  std::error_code ignored;
  if (std::filesystem::create_directories(folder, ignored))
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all, ignored);
  settings_.addPath(QString::fromStdString(folder.string()));
  connect(&settings_, &QFileSystemWatcher::directoryChanged, this,
          &RecognitionProviderReference::read);
}

void RecognitionProviderReference::read() {
  auto const now = stored();
  if (std::exchange(value_, now) != now) Q_EMIT valueChanged();
}

void RecognitionProviderReference::setValue(int value) {
  try {
    setRecognitionProviderSetting(value == Apple ? RecognitionProvider::apple
                                                 : RecognitionProvider::deepgram);
  } catch (std::system_error const& error) {
    Logger("windows").error(fmt::format("The text provider was not saved: {}", error.what()));
  }
  value_ = stored();
  // Told also when it stayed as it was: the view shows something else by now.
  Q_EMIT valueChanged();
}

}  // namespace vek
