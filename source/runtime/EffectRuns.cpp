// SPDX-License-Identifier: MIT
#include "runtime/EffectRuns.hpp"

#include <fmt/format.h>

#include <string_view>

namespace vek {

std::string describe(std::source_location const& location) {
  std::string_view file = location.file_name();
  auto const slash = file.rfind('/');
  auto const folder = slash == std::string_view::npos ? slash : file.rfind('/', slash - 1);
  if (folder != std::string_view::npos) file = file.substr(folder + 1);
  return fmt::format("{}:{}", file, location.line());
}

void reportUnhandledError(std::source_location const& location, std::exception_ptr const& error) {
  if (isCancellation(error)) return;
  report(fmt::format(
      "An \"Effect.run\" returned from \"{}\" threw an unhandled error. …\n\n    {}\n\n"
      "All non-cancellation errors must be explicitly handled via the \"catch\" parameter on "
      "\"Effect.run\", or via a \"do\" block.",
      describe(location), ErrorObject(error).localizedDescription()));
}

}  // namespace vek
