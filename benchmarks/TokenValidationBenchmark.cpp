// SPDX-License-Identifier: MIT
// Validates an ID token, its keys at hand, in turn with nothing but the verification of its RSA
// signature: with the key that was used last, and with one that is new each time. Then refuses the
// most costly tokens that a stranger can send.
//
//     TokenValidationBenchmark [VALIDATIONS]     exit status 1 when a bound is not kept

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <fstream>
#include <string>
#include <vector>

#include "identity/IDTokenValidator.hpp"
#include "platform/PublicKey.hpp"
#include "records/Base64URL.hpp"
#include "support/TokenSigner.hpp"

namespace vek {
namespace {

constexpr int rounds = 15;
constexpr double largestRatio = 1.5;
constexpr double largestSeconds = 0.1;
constexpr double largestGrowth = 32;

constexpr char const* body = R"({"iss":"https://provider.test/","sub":"user|0123456789abcdef",)"
                             R"("aud":"client","exp":1700086400,"iat":1700000000,)"
                             R"("name":"Ada Lovelace","nickname":"ada","email":"ada@example.com",)"
                             R"("picture":"https://provider.test/ada.png","email_verified":true,)"
                             R"("updated_at":"2024-01-01T00:00:00.000Z","sid":"0123456789abcdef"})";

IDTokenValidatorContext context() {
  return {.issuer = "https://provider.test/",
          .audience = "client",
          .jwksRequest = {{.session = {}, .url = {}, .method = "GET"},
                          [](Response const& response) { return response.decoded<JWKS>(); }}};
}

/// A provider with a key and a token that it has signed.
struct Provider {
  test::TokenSigner signer;
  std::string token = signer.token(R"({"alg":"RS256","typ":"JWT","kid":"k"})", body);
  JWKS keys{{{.keyType = "RSA",
              .keyId = "k",
              .modulus = Base64URL::encode(signer.modulus()),
              .exponent = Base64URL::encode(signer.exponent())}}};
  std::string modulus = signer.modulus();
  std::string exponent = signer.exponent();
  std::string signedPart = token.substr(0, token.rfind('.'));
  std::string signature = Base64URL::decode(token.substr(signedPart.size() + 1)).value();

  [[nodiscard]] bool verify() const {
    return PublicKey::createWithData(modulus, exponent)->verifySignature(signedPart, signature);
  }
};

/// Why the token is refused, if it is: all of the validation but the fetch.
IDTokenFault validate(std::string token, JWKS const& keys) {
  static auto const expected = context();
  JWT const jwt = decodedIDToken(std::move(token));
  if (auto fault = IDTokenSignatureValidator::validateAlgorithm(jwt)) return fault;
  if (auto fault = IDTokenSignatureValidator::validateSignature(jwt, keys)) return fault;
  auto const now = JWT::Time(std::chrono::seconds(1'700'000'000));
  return IDTokenClaimsValidator::make(expected, now).validate(jwt);
}

template <class Work>
double seconds(Work const& work) {
  auto const begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double median(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

bool compare(std::string_view name, std::vector<Provider> const& providers, std::size_t count) {
  std::vector<double> ratios;
  std::vector<double> micros;
  bool isRight = true;
  for (int round = 0; round < rounds; ++round) {
    double const verification = seconds([&] {
      for (std::size_t i = 0; i < count; ++i) isRight &= providers[i % providers.size()].verify();
    });
    double const validation = seconds([&] {
      for (std::size_t i = 0; i < count; ++i) {
        auto const& provider = providers[i % providers.size()];
        isRight &= !validate(provider.token, provider.keys);
      }
    });
    ratios.push_back(validation / verification);
    micros.push_back(validation / static_cast<double>(count) * 1e6);
  }
  fmt::print("{}: {:.1f} us a validation, {:.2f} times the verification (at most {})\n", name,
             median(micros), median(ratios), largestRatio);
  if (!isRight) fmt::print("A good token was refused.\n");
  return isRight && median(ratios) <= largestRatio;
}

/// A value of /proc/self/status in MiB.
double memory(std::string_view name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name)) return std::stod(line.substr(name.size() + 1)) / 1024;
  }
  return 0;
}

void forgetPeak() {
  std::ofstream("/proc/self/clear_refs") << 5;
}

/// A token of about `size` bytes whose body is full of `element`.
std::string filled(Provider const& provider, std::string_view element, std::size_t size) {
  std::string claims = "{\"a\":[";
  while (claims.size() < size * 3 / 4) claims += element;
  claims += "0]}";
  return provider.signer.token(R"({"alg":"RS256","kid":"k"})", claims);
}

bool refuse(Provider const& provider) {
  double slowest = 0;
  bool areRefused = true;
  std::array const tokens{filled(provider, "[],", 250'000), filled(provider, "{\"\":{}},", 250'000),
                          filled(provider, "1e-300,", 250'000), filled(provider, "0,", 10U << 20U),
                          std::string(10U << 20U, '.')};
  double const before = memory("VmRSS");
  forgetPeak();
  for (auto const& token : tokens) {
    slowest = std::max(slowest, seconds([&] {
                         try {
                           areRefused &= validate(token, provider.keys).has_value();
                         } catch (IDTokenDecodingError const&) {
                         }
                       }));
  }
  double const growth = memory("VmHWM") - before;
  fmt::print("refusals: {:.1f} ms at most ({}), {:.1f} MiB more memory ({})\n", slowest * 1000,
             largestSeconds * 1000, growth, largestGrowth);
  return areRefused && slowest <= largestSeconds && growth <= largestGrowth;
}

int run(std::size_t count) {
  std::vector<Provider> const one(1);
  std::vector<Provider> const two(2);
  bool const isKept = compare("a key known", one, count);
  bool const isKeptWithNewKeys = compare("a key not seen before", two, count);
  return isKept && isKeptWithNewKeys && refuse(one[0]) ? 0 : 1;
}

}  // namespace
}  // namespace vek

int main(int count, char** arguments) {
  try {
    return vek::run(count > 1 ? std::stoul(arguments[1]) : 1000);
  } catch (std::exception const& error) {
    fmt::print(stderr, "{}\n", error.what());
    return 1;
  }
}
