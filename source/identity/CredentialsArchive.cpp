// SPDX-License-Identifier: MIT
#include "identity/CredentialsArchive.hpp"

#include <chrono>
#include <cstdint>
#include <tuple>
#include <utility>

#include "records/DecodingError.hpp"
#include "records/JSON.hpp"

namespace vek {
namespace {

constexpr char const* className = "A0Credentials";
constexpr std::int64_t version = 1;
/// How far from 1970 a date may be: near the ends of what a date can hold there is no counting.
constexpr Date::duration farthest = std::chrono::years(200);

struct Archived {
  std::string className = {};
  std::int64_t version = 0;
  std::optional<std::string> accessToken = {};
  std::optional<std::string> tokenType = {};
  std::optional<std::string> idToken = {};
  std::optional<std::string> refreshToken = {};
  /// In ticks of a date.
  std::optional<std::int64_t> expiresIn = {};
  std::optional<std::string> scope = {};
  std::optional<std::string> recoveryCode = {};

  static constexpr auto fields() {
    return std::tuple{Field{"class", &Archived::className},
                      Field{"version", &Archived::version},
                      Field{"accessToken", &Archived::accessToken},
                      Field{"tokenType", &Archived::tokenType},
                      Field{"idToken", &Archived::idToken},
                      Field{"refreshToken", &Archived::refreshToken},
                      Field{"expiresIn", &Archived::expiresIn},
                      Field{"scope", &Archived::scope},
                      Field{"recoveryCode", &Archived::recoveryCode}};
  }
};

}  // namespace

std::optional<std::string> CredentialsArchive::archive(Credentials const& credentials) {
  auto bytes =
      json::encode(Archived{.className = className,
                            .version = version,
                            .accessToken = credentials.accessToken(),
                            .tokenType = credentials.tokenType(),
                            .idToken = credentials.idToken(),
                            .refreshToken = credentials.refreshToken(),
                            .expiresIn = credentials.expiresIn().time_since_epoch().count(),
                            .scope = credentials.scope(),
                            .recoveryCode = credentials.recoveryCode()});
  return unarchive(bytes) ? std::optional(std::move(bytes)) : std::nullopt;
}

std::optional<Credentials> CredentialsArchive::unarchive(std::string_view bytes) {
  if (bytes.size() > largestSize) return std::nullopt;
  try {
    auto archived = json::decode<Archived>(bytes);
    if (archived.className != className || archived.version != version) return std::nullopt;
    auto const expiresIn = archived.expiresIn ? Date(Date::duration(*archived.expiresIn))
                                              : std::chrono::system_clock::now();
    if (expiresIn < Date(-farthest) || expiresIn > Date(farthest)) return std::nullopt;
    return Credentials({.accessToken = std::move(archived.accessToken).value_or(""),
                        .tokenType = std::move(archived.tokenType).value_or(""),
                        .expiresIn = expiresIn,
                        .refreshToken = std::move(archived.refreshToken),
                        .idToken = std::move(archived.idToken).value_or(""),
                        .scope = std::move(archived.scope),
                        .recoveryCode = std::move(archived.recoveryCode)});
  } catch (DecodingError const&) {
    return std::nullopt;
  }
}

}  // namespace vek
