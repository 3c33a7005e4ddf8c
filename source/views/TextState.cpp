// SPDX-License-Identifier: MIT
#include "views/TextState.hpp"

namespace vek {

TextState::Value textState(TranscriptContentState const& state) {
  if (state.as<TranscriptContentState::loading>()) return TextState::Loading;
  if (state.as<TranscriptContentState::content>()) return TextState::Content;
  if (state.as<TranscriptContentState::error>()) return TextState::Error;
  return TextState::Initial;
}

}  // namespace vek
