// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/SpeechModelFiles.hpp"
#include "platform/SpeechModels.hpp"

namespace vek {

/// Loads the models after a look at their sums; takes a second or two. Throws SpeechModelError.
std::unique_ptr<SpeechModels> loadOnnxSpeechModels(SpeechModelFiles const& files);

}  // namespace vek
