// SPDX-License-Identifier: MIT
#include "features/Application.hpp"

namespace vek {

Application& Application::shared() {
  static auto* const instance = new Application;
  return *instance;
}

}  // namespace vek
