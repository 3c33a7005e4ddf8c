// SPDX-License-Identifier: MIT
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>

#include <string>

#include "app/Commands.hpp"

namespace vek {

int provider(CommandLine::Provider const& options, bool asJSON, Terminal& terminal) {
  if (options.choice) setRecognitionProviderSetting(*options.choice);
  std::string const setting(rawValue(recognitionProviderSetting()));
  terminal.printLine(asJSON ? boost::json::serialize(boost::json::object{{"provider", setting}})
                            : setting);
  return 0;
}

}  // namespace vek
