// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

#include "runtime/ErrorObject.hpp"

namespace vek {

/// What a view shows of an error; nothing without one.
inline QString text(std::optional<ErrorObject> const& error) {
  return error ? QString::fromStdString(error->localizedDescription()) : QString();
}

}  // namespace vek
