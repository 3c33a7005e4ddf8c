// SPDX-License-Identifier: MIT
#include "Clients/CurlFormImpl.hpp"

#include "records/UTF8.hpp"

namespace vek {

std::string curlForm(HTTPRequest const& request) {
  constexpr char const* separator = " \\\n\t";
  std::string form = "curl \"" + request.url + "\"";
  if (request.method == "HEAD") {
    form += " --head";
  } else if (request.method != "GET") {
    form.append(separator).append("-X ").append(request.method);
  }
  for (auto const& [name, value] : request.headers) {
    if (name == "Cookie") continue;
    form.append(separator).append("-H '").append(name).append(": ").append(value).append("'");
  }
  if (request.body && isUTF8(*request.body)) {
    form.append(separator).append("-d '").append(*request.body).append("'");
  }
  return form;
}

}  // namespace vek
