// SPDX-License-Identifier: MIT
// A token as it came, or, after "+", header, body and signature on three lines: a fuzzer would
// hardly find its way through base64 to what is inside.
#include "identity/JWT.hpp"

#include "FuzzInput.hpp"
#include "identity/IDTokenValidator.hpp"
#include "records/Base64URL.hpp"

namespace vek {
namespace {

using test::expect;

std::string tokenOfLines(std::string_view lines) {
  auto const header = lines.substr(0, lines.find('\n'));
  lines.remove_prefix(std::min(header.size() + 1, lines.size()));
  auto const body = lines.substr(0, lines.find('\n'));
  lines.remove_prefix(std::min(body.size() + 1, lines.size()));
  return Base64URL::encode(header) + "." + Base64URL::encode(body) + "." + Base64URL::encode(lines);
}

IDTokenValidatorContext context() {
  return {.issuer = "https://provider.test/",
          .audience = "client",
          .jwksRequest = {{.session = {}, .url = {}, .method = "GET"},
                          [](Response const& response) { return response.decoded<JWKS>(); }},
          .leeway = 60000,
          .maxAge = 60,
          .nonce = "n",
          .organization = "org_1"};
}

void read(std::string const& token) {
  static auto const validators =
      IDTokenClaimsValidator::make(context(), JWT::Time(std::chrono::seconds(1'700'000'000)));
  try {
    JWT const jwt(token);
    expect(std::string(jwt.signedPart()) + "." + jwt.signature().value_or("") == token);
    auto const part = std::string(jwt.signedPart().substr(jwt.signedPart().find('.') + 1));
    expect(Base64URL::encode(Base64URL::decode(part).value()) == part);
    for (auto const& validator : validators.validators) (void)validator(jwt);
    (void)IDTokenSignatureValidator::validateAlgorithm(jwt);
    JWKS const keys{{{.keyType = "RSA", .keyId = "k", .modulus = part, .exponent = "AQAB"}}};
    expect(IDTokenSignatureValidator::validateSignature(jwt, keys).has_value());
  } catch (JWTDecodingError const&) {
  }
}

}  // namespace
}  // namespace vek

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  auto const input = vek::test::text(data, size);
  vek::read(input.starts_with('+') ? vek::tokenOfLines(input.substr(1)) : std::string(input));
  return 0;
}
