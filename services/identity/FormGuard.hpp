// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "services/support/HTTPMessage.hpp"
#include "services/support/Secret.hpp"

namespace vek::services {

/// Accepts a form only from the browser that was given it. The browser keeps a random cookie that
/// other sites can neither read nor send; the form holds a code that only this process can make for
/// that cookie. Any thread.
class FormGuard {
 public:
  /// What to give the browser that sent `request`: the value for the form, and the header
  /// "Set-Cookie".
  struct Ticket {
    std::string formValue;
    std::string cookieHeader;
  };
  [[nodiscard]] Ticket ticketFor(Request const& request) const;

  [[nodiscard]] bool accepts(Request const& request, std::string_view formValue) const;

 private:
  [[nodiscard]] std::string codeFor(std::string_view cookie) const;

  std::string key_ = randomBytes(32);
};

}  // namespace vek::services
