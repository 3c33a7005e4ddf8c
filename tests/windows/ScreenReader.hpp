// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "support/Desktop.hpp"

namespace vek::test {

/// What reads the program aloud and presses its buttons for those who see no screen and use no
/// mouse. The program is started after it.
class ScreenReader {
 public:
  explicit ScreenReader(Desktop& desktop);
  ScreenReader(ScreenReader const&) = delete;
  ScreenReader& operator=(ScreenReader const&) = delete;
  ~ScreenReader();

  /// A line `role: name` for each thing on the screen.
  [[nodiscard]] std::string tree() const;
  /// Whether a thing of that role and name comes to be on the screen.
  [[nodiscard]] bool shows(std::string const& thing) const;
  /// Whether that comes to be read, as a part of what a thing says.
  [[nodiscard]] bool reads(std::string const& words) const;
  /// Whether there is a thing of that name that can be pressed.
  [[nodiscard]] bool press(std::string const& name) const;

 private:
  Desktop const& desktop_;
  std::unique_ptr<ChildProcess> bus_;
};

}  // namespace vek::test
