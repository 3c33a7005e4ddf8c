// SPDX-License-Identifier: MIT
// The key set of an identity provider, held against a token that none of its keys has signed.
#include "FuzzInput.hpp"
#include "identity/IDTokenSignatureValidator.hpp"
#include "identity/Response.hpp"

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace vek;
  // {"alg":"RS256","kid":"k"} and 256 bytes of nothing.
  static JWT const token("eyJhbGciOiJSUzI1NiIsImtpZCI6ImsifQ.e30." + std::string(342, 'A'));
  Response const response{.data = std::string(test::text(data, size)),
                          .response = HTTPResponse{.status = 200}};
  try {
    auto const keys = response.decoded<JWKS>();
    test::expect(IDTokenSignatureValidator::validateSignature(token, keys).has_value());
  } catch (AuthenticationError const&) {
  }
  return 0;
}
