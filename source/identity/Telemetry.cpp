// SPDX-License-Identifier: MIT
#include "identity/Telemetry.hpp"

#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include "platform/Bundle.hpp"
#include "platform/SystemVersion.hpp"
#include "records/Base64URL.hpp"

namespace vek {

std::optional<std::string> Telemetry::value() const {
  if (!enabled) return std::nullopt;
  if (info) return info;
  boost::json::object const told{{"name", "vek"},
                                 {"version", Bundle::main().version},
                                 {"env", boost::json::object{{"macOS", systemVersion()}}}};
  return Base64URL::encode(boost::json::serialize(told));
}

}  // namespace vek
