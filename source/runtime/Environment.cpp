// SPDX-License-Identifier: MIT
#include "runtime/Environment.hpp"

namespace vek {

namespace {
thread_local Environment const* currentEnvironment = nullptr;
}  // namespace

Environment const* Environment::current() {
  return currentEnvironment;
}

bool Environment::isCancelled() {
  return currentEnvironment && currentEnvironment->stopToken.stop_requested();
}

Environment::Scope::Scope(Environment const* environment)
    : outer_(std::exchange(currentEnvironment, environment)) {}

Environment::Scope::~Scope() {
  currentEnvironment = outer_;
}

}  // namespace vek
