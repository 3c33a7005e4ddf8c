// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>

#include "records/TranscriptContentState.hpp"

namespace vek {

/// How far the fetch of a text is, as QML names it: `TextState.Loading`.
namespace TextState {
Q_NAMESPACE
QML_ELEMENT
enum Value { Initial, Loading, Content, Error };
Q_ENUM_NS(Value)
}  // namespace TextState

[[nodiscard]] TextState::Value textState(TranscriptContentState const& state);

}  // namespace vek
