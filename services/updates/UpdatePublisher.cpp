// SPDX-License-Identifier: MIT
#include "services/updates/UpdatePublisher.hpp"

#include <fmt/format.h>
#include <openssl/pem.h>

#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>
#include <chrono>
#include <utility>

#include "platform/Bundle.hpp"
#include "platform/Files.hpp"
#include "services/support/OpenSSL.hpp"

namespace vek::services {

namespace {

constexpr std::string_view pagePath = "/updates";
constexpr std::string_view listPath = "/updates/feed.json";
constexpr std::string_view signaturePath = "/updates/feed.json.signature";

constexpr std::int64_t secondsOfAYear = 365 * 24 * 60 * 60;

std::string publicPEM(EVP_PKEY* key) {
  Memory const memory(checked(BIO_new(BIO_s_mem()), "writing a key"));
  checked(PEM_write_bio_PUBKEY(memory.get(), key) == 1, "writing a key");
  return contents(memory);
}

Key signingKey(DataFolder const& folder) {
  auto const file = folder / "update-signing-key.pem";
  if (auto const text = readFile(file)) return checked(keyFromPEM(*text), "the key of updates");
  Key key(checked(EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519"), "making a key"));
  replaceFile(file, pem(key.get()));
  return key;
}

unsigned char const* bytes(std::string const& text) {
  return reinterpret_cast<unsigned char const*>(text.data());
}

std::string sign(EVP_PKEY* key, std::string const& text) {
  Owned<EVP_MD_CTX, EVP_MD_CTX_free> const context(checked(EVP_MD_CTX_new(), "signing"));
  std::string signature(64, '\0');
  auto size = signature.size();
  checked(EVP_DigestSignInit(context.get(), nullptr, nullptr, nullptr, key) == 1 &&
              EVP_DigestSign(context.get(), reinterpret_cast<unsigned char*>(signature.data()),
                             &size, bytes(text), text.size()) == 1,
          "signing the list of updates");
  return signature;
}

/// The time is a serial that grows over restarts, with another key as well.
std::int64_t secondsNow() {
  auto const now = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::seconds>(now).count();
}

}  // namespace

UpdatePublisher::UpdatePublisher(DataFolder const& folder, std::string version,
                                 std::string const& url)
    : version_(std::move(version)),
      list_(boost::json::serialize(boost::json::value{
          {"product", *Bundle::main().bundleIdentifier},
          {"serial", secondsNow()},
          {"expires", secondsNow() + secondsOfAYear},
          {"version", version_},
          {"notes", "A version that exists to try updates with. There is nothing new in it."},
          {"link", url + std::string(pagePath)}})) {
  auto const key = signingKey(folder);
  replaceFile(folder / "update-key.pem", publicPEM(key.get()));
  signature_ = sign(key.get(), list_);
}

bool UpdatePublisher::serves(std::string_view path) {
  return path == pagePath || path.starts_with("/updates/");
}

Response UpdatePublisher::answer(Request const& request) const {
  if (request.method != "GET") return Response::refusal(405, "Updates can only be read.");
  if (request.path == listPath) return {.body = list_};
  if (request.path == signaturePath) {
    return {.body = signature_, .contentType = "application/octet-stream"};
  }
  if (request.path == pagePath) {
    return {.body = fmt::format("Here would be the download of VEK {}.\n", version_),
            .contentType = "text/plain; charset=utf-8"};
  }
  return Response::refusal(404, "There is no such update.");
}

}  // namespace vek::services
