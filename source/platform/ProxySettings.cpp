// SPDX-License-Identifier: MIT
#include "platform/ProxySettings.hpp"

#include <arpa/inet.h>
#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <initializer_list>
#include <span>

#include "platform/Number.hpp"
#include "platform/URLComponents.hpp"

namespace vek {
namespace {

constexpr std::uint16_t usualProxyPort = 1080;

std::string firstOf(std::initializer_list<char const*> variables) {
  for (char const* variable : variables) {
    if (char const* value = std::getenv(variable); value && *value) return value;
  }
  return {};
}

struct Address {
  std::array<unsigned char, 16> bytes{};
  unsigned bits = 0;
};

std::optional<Address> addressOf(std::string_view text) {
  std::string const whole(text);
  Address address;
  if (inet_pton(AF_INET, whole.c_str(), address.bytes.data()) == 1) {
    address.bits = 32;
  } else if (inet_pton(AF_INET6, whole.c_str(), address.bytes.data()) == 1) {
    address.bits = 128;
  } else {
    return std::nullopt;
  }
  return address;
}

bool isInNetwork(std::string_view network, Address const& address) {
  auto const slash = network.find('/');
  auto const base = addressOf(network.substr(0, slash));
  if (!base || base->bits != address.bits) return false;
  auto const length =
      slash == network.npos ? base->bits : number<unsigned>(network.substr(slash + 1));
  if (!length || *length > base->bits) return false;
  auto const bits = *length;
  auto const whole = std::span(base->bytes).first(bits / 8);
  if (!std::ranges::equal(whole, std::span(address.bytes).first(bits / 8))) return false;
  unsigned const rest = bits % 8;
  return rest == 0 || (base->bytes[bits / 8] ^ address.bytes[bits / 8]) >> (8 - rest) == 0;
}

bool isSameHost(std::string_view one, std::string_view other) {
  auto const lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return std::ranges::equal(one, other, {}, lower, lower);
}

bool isInDomain(std::string_view domain, std::string_view host) {
  if (domain.starts_with('.')) domain.remove_prefix(1);
  if (domain.empty() || host.size() < domain.size()) return false;
  auto const before = host.size() - domain.size();
  return isSameHost(host.substr(before), domain) && (before == 0 || host[before - 1] == '.');
}

/// The header's value for a user and a password as they stand in a URL.
std::string basicAuthorization(std::string_view userInfo) {
  if (userInfo.empty()) return {};
  auto const colon = std::min(userInfo.find(':'), userInfo.size());
  auto const user = percentDecoded(userInfo.substr(0, colon));
  auto const password = percentDecoded(userInfo.substr(std::min(colon + 1, userInfo.size())));
  std::string const plain = user.value_or("") + ":" + password.value_or("");
  std::string encoded(plain.size() * 2 + 4, '\0');
  int const size = EVP_EncodeBlock(reinterpret_cast<unsigned char*>(encoded.data()),
                                   reinterpret_cast<unsigned char const*>(plain.data()),
                                   static_cast<int>(plain.size()));
  encoded.resize(static_cast<std::size_t>(size));
  return "Basic " + encoded;
}

}  // namespace

std::string hostsWithoutProxy() {
  std::string const hosts = "localhost,127.0.0.1,::1";
  std::string others = firstOf({"no_proxy", "NO_PROXY"});
  // The star counts only where it stands alone.
  if (others == "*") return others;
  return others.empty() ? hosts : hosts + "," + others;
}

bool isAmong(std::string_view hosts, std::string_view host) {
  if (hosts == "*") return true;
  auto const address = addressOf(host);
  while (!hosts.empty()) {
    auto const end = std::min(hosts.find_first_of(", "), hosts.size());
    auto const entry = hosts.substr(0, end);
    if (address ? isInNetwork(entry, *address) : isInDomain(entry, host)) return true;
    hosts.remove_prefix(std::min(end + 1, hosts.size()));
  }
  return false;
}

std::optional<Proxy> proxyFor(std::string_view host, bool isSecure) {
  // HTTP_PROXY in capitals may be a header that somebody sent to a server program.
  std::string text = isSecure ? firstOf({"https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"})
                              : firstOf({"http_proxy", "all_proxy", "ALL_PROXY"});
  if (text.empty() || isAmong(hostsWithoutProxy(), host)) return std::nullopt;
  if (text.find("://") == std::string::npos) text = "http://" + text;
  URLComponents const url(text);
  return Proxy{.scheme = url.scheme(),
               .host = url.address(),
               .port = url.port().value_or(usualProxyPort),
               .authorization = basicAuthorization(url.userInfo())};
}

}  // namespace vek
