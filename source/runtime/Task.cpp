// SPDX-License-Identifier: MIT
#include "runtime/Task.hpp"

namespace vek {

namespace {
thread_local PromiseBase* next = nullptr;
}  // namespace

void PromiseBase::resume() {
  auto* const outer = std::exchange(next, nullptr);
  for (auto* promise = this; promise; promise = std::exchange(next, nullptr)) {
    Environment::Scope scope(promise->environment);
    promise->handle.resume();
  }
  next = outer;
}

void PromiseBase::resumeNext() {
  next = this;
}

void PromiseBase::post() {
  environment->executor->post([this] { resume(); });
}

void PromiseBase::finish() const {
  if (!continuation) return;
  if (hopsBack) {
    continuation->post();
  } else {
    continuation->resumeNext();
  }
}

}  // namespace vek
