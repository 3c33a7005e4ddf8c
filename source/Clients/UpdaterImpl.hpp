// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "Clients/Updater.hpp"
#include "platform/StandardUpdaterController.hpp"

namespace vek {

/// The operations of an updater's controller.
struct UpdaterImpl {
  static Updater client(std::shared_ptr<StandardUpdaterController> const& controller);
};

}  // namespace vek
