// SPDX-License-Identifier: MIT
// The redirect at the end of a login, which any page in the browser can forge.
#include "FuzzInput.hpp"
#include "identity/AuthenticationError.hpp"
#include "identity/WebAuthError.hpp"
#include "platform/CallbackValues.hpp"
#include "platform/URLComponents.hpp"

namespace vek {
namespace {

using test::expect;

void read(std::string_view url) {
  auto const values = callbackValues(url);
  expect(percentDecoded(percentEncoded(url)) == url);
  if (!values) return;
  (void)WebAuthError::noAuthorizationCode(*values);

  // What the values are written as reads the same again.
  std::vector<URLQueryItem> items;
  for (auto const& [name, value] : *values) items.push_back({name, value});
  URLComponents components("com.vek.app://host/callback");
  components.setQueryItems(items);
  expect(callbackValues(components.url().value()) == values);
}

}  // namespace
}  // namespace vek

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  vek::read(vek::test::text(data, size));
  return 0;
}
