// SPDX-License-Identifier: MIT
#include "runtime/Report.hpp"

#include <fmt/core.h>

#include <cstdio>
#include <memory>
#include <mutex>
#include <utility>

namespace vek {

namespace {

using Handler = std::function<void(std::string_view)>;

struct Reporter {
  std::mutex mutex;
  std::shared_ptr<Handler const> handler = std::make_shared<Handler const>(
      [](std::string_view warning) { fmt::print(stderr, "warning: {}\n", warning); });
};

Reporter& reporter() {
  static auto& instance = *new Reporter();
  return instance;
}

}  // namespace

void report(std::string_view warning) {
  std::unique_lock lock(reporter().mutex);
  auto const handler = reporter().handler;
  lock.unlock();
  (*handler)(warning);
}

void setReportHandler(Handler handler) {
  std::lock_guard lock(reporter().mutex);
  reporter().handler = std::make_shared<Handler const>(std::move(handler));
}

}  // namespace vek
