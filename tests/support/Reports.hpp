// SPDX-License-Identifier: MIT
#pragma once

#include <fmt/core.h>

#include <cstdio>
#include <mutex>
#include <string>
#include <vector>

#include "runtime/Report.hpp"

namespace vek::test {

/// Collects the warnings that are reported while it lives.
class Reports {
 public:
  Reports() {
    setReportHandler([this](std::string_view warning) {
      std::lock_guard lock(mutex_);
      texts_.emplace_back(warning);
    });
  }
  Reports(Reports const&) = delete;
  Reports& operator=(Reports const&) = delete;
  ~Reports() {
    setReportHandler(
        [](std::string_view warning) { fmt::print(stderr, "warning: {}\n", warning); });
  }

  [[nodiscard]] std::vector<std::string> texts() const {
    std::lock_guard lock(mutex_);
    return texts_;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> texts_;
};

}  // namespace vek::test
