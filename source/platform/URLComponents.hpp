// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vek {

struct URLQueryItem {
  std::string name;
  std::string value;
};

/// The parts of a URL, to be changed and joined again.
class URLComponents {
 public:
  /// Takes `text` apart; what belongs to no part of a URL makes `url()` give nothing.
  explicit URLComponents(std::string_view text);

  /// Replaces the query. An empty list leaves a query without items: a URL that ends in "?".
  void setQueryItems(std::vector<URLQueryItem> const& items);

  [[nodiscard]] std::string const& scheme() const { return scheme_; }
  /// What stands before the host, as it is written; empty when there is nothing.
  [[nodiscard]] std::string userInfo() const;
  /// Without user and port.
  [[nodiscard]] std::string host() const;
  /// The host as the system takes it: an address without its brackets.
  [[nodiscard]] std::string address() const;
  /// Nothing when none is given, or it is no port.
  [[nodiscard]] std::optional<std::uint16_t> port() const;
  /// Still percent-encoded.
  [[nodiscard]] std::string const& path() const { return path_; }
  /// Path and query as a request names them.
  [[nodiscard]] std::string target() const;
  /// Still percent-encoded, without its "#".
  [[nodiscard]] std::string_view fragment() const;
  /// Decoded; items without a value are left out. Nothing when one cannot be decoded.
  [[nodiscard]] std::optional<std::vector<URLQueryItem>> queryItems() const;

  /// The parts joined, whether or not they make a URL.
  [[nodiscard]] std::string text() const;

  /// The URL; nothing when the parts do not make one that names a server.
  [[nodiscard]] std::optional<std::string> url() const;

 private:
  [[nodiscard]] std::string_view hostAndPort() const;
  [[nodiscard]] std::string_view portText() const;

  std::string scheme_;
  std::string authority_;
  std::string path_;
  std::optional<std::string> query_;
  std::string fragment_;
};

/// `text` with all that has a meaning of its own in a query written as %XX.
[[nodiscard]] std::string percentEncoded(std::string_view text);

/// The text that `text` is the encoding of; nothing when a "%" is not followed by two digits.
[[nodiscard]] std::optional<std::string> percentDecoded(std::string_view text);

/// The pairs in "name=value&name=value", decoded. Parts without "=" are left out; a value reaches
/// up to the next "&". Nothing when one cannot be decoded.
[[nodiscard]] std::optional<std::vector<URLQueryItem>> queryItems(std::string_view query);

}  // namespace vek
