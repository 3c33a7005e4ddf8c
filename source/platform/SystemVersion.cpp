// SPDX-License-Identifier: MIT
#include "platform/SystemVersion.hpp"

#include <sys/utsname.h>

#include <string_view>

namespace vek {

std::string systemVersion() {
  utsname name{};
  uname(&name);
  std::string_view const release(static_cast<char const*>(name.release));
  auto const minor = release.find('.');
  return std::string(release.substr(0, release.find_first_not_of("0123456789", minor + 1)));
}

}  // namespace vek
