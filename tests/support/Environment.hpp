// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace vek::test {

/// Sets a variable of the process's environment and puts the old value back.
class EnvironmentVariable {
 public:
  EnvironmentVariable(std::string name, std::string const& value) : name_(std::move(name)) {
    if (char const* previous = std::getenv(name_.c_str())) previous_ = previous;
    setenv(name_.c_str(), value.c_str(), 1);
  }
  EnvironmentVariable(EnvironmentVariable const&) = delete;
  EnvironmentVariable& operator=(EnvironmentVariable const&) = delete;
  ~EnvironmentVariable() {
    if (previous_) {
      setenv(name_.c_str(), previous_->c_str(), 1);
    } else {
      unsetenv(name_.c_str());
    }
  }

 private:
  std::string name_;
  std::optional<std::string> previous_;
};

}  // namespace vek::test
