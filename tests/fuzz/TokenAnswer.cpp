// SPDX-License-Identifier: MIT
// What the token endpoint answers, with success after "+" and with a refusal else.
#include "identity/TokenAnswer.hpp"

#include "FuzzInput.hpp"
#include "identity/Response.hpp"

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace vek;
  auto const input = test::text(data, size);
  bool const isSuccess = input.starts_with('+');
  Response const response{.data = std::string(input.substr(isSuccess ? 1 : 0)),
                          .response = HTTPResponse{.status = isSuccess ? 200 : 403}};
  try {
    auto const credentials = response.decoded<TokenAnswer>().credentials();
    test::expect(isSuccess);
    auto const life = std::chrono::abs(credentials.expiresIn() - std::chrono::system_clock::now());
    test::expect(life < std::chrono::years(101));
  } catch (AuthenticationError const& error) {
    test::expect(error.statusCode() == response.statusCode());
  }
  return 0;
}
