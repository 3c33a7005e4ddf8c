// SPDX-License-Identifier: MIT
#include "services/support/Options.hpp"

#include <fmt/format.h>

#include <optional>

#include "platform/Number.hpp"
#include "platform/Version.hpp"

namespace vek::services {

namespace {

std::uint16_t port(std::string_view text) {
  if (auto const port = number<std::uint16_t>(text)) return *port;
  throw UsageError(fmt::format("'{}' is no port: it is a number from 0 to 65535", text));
}

std::chrono::seconds lifetime(std::string_view text) {
  constexpr std::chrono::seconds longest = std::chrono::days(30);
  auto const count = number<std::uint32_t>(text);
  if (count && *count > 0 && *count <= longest.count()) return std::chrono::seconds(*count);
  throw UsageError(
      fmt::format("'{}' is no lifetime: it is a number from 1 to {}", text, longest.count()));
}

std::string url(std::string_view text) {
  if (!text.starts_with("https://") && !text.starts_with("http://")) {
    throw UsageError(fmt::format("'{}' is no URL of a chat-completions endpoint", text));
  }
  return std::string(text);
}

std::string version(std::string_view text) {
  if (Version::parse(text)) return std::string(text);
  throw UsageError(fmt::format("'{}' is no version", text));
}

/// The arguments one after the other, where "--name=value" is the same as "--name value".
class Arguments {
 public:
  explicit Arguments(std::span<char const* const> arguments) : rest_(arguments) {}

  /// The next option's name; nothing at the end.
  std::optional<std::string_view> next() {
    if (value_) throw UsageError(fmt::format("{} takes no value", name_));
    if (rest_.empty()) return std::nullopt;
    name_ = take();
    auto const equals = name_.find('=');
    if (name_.starts_with("--") && equals != std::string_view::npos) {
      value_ = name_.substr(equals + 1);
      name_ = name_.substr(0, equals);
    }
    return name_;
  }

  std::string_view value() {
    if (!value_ && !rest_.empty()) value_ = take();
    if (!value_ || value_->empty()) throw UsageError(fmt::format("{} needs a value", name_));
    auto const value = *value_;
    value_.reset();
    return value;
  }

 private:
  std::string_view take() {
    std::string_view const first = rest_.front();
    rest_ = rest_.subspan(1);
    return first;
  }

  std::span<char const* const> rest_;
  std::string_view name_;
  std::optional<std::string_view> value_;
};

}  // namespace

Options Options::parse(std::span<char const* const> arguments) {
  Options options;
  Arguments rest(arguments);
  while (auto const name = rest.next()) {
    if (*name == "--data") {
      options.data = rest.value();
    } else if (*name == "--port") {
      options.port = services::port(rest.value());
    } else if (*name == "--chat-completions") {
      options.chatCompletions = url(rest.value());
    } else if (*name == "--chat-model") {
      options.chatModel = rest.value();
    } else if (*name == "--access-token-lifetime") {
      options.accessTokenLifetime = lifetime(rest.value());
    } else if (*name == "--key-lifetime") {
      options.keyLifetime = lifetime(rest.value());
    } else if (*name == "--update-version") {
      options.updateVersion = version(rest.value());
    } else if (*name == "--help" || *name == "-h") {
      options.asksForHelp = true;
    } else {
      throw UsageError(fmt::format("unknown argument '{}'", *name));
    }
  }
  if (options.data.empty() && !options.asksForHelp) throw UsageError("--data FOLDER is missing");
  return options;
}

std::string_view Options::help() {
  return R"(usage: vek-services --data FOLDER [OPTION...]

Runs VEK's local services for this machine alone: the identity provider and the transcripts backend
over HTTPS, the hosted recogniser over WebSockets on the same port, and a list of updates of VEK.

  --data FOLDER   where everything is kept; made if it is missing
  --port N        the port to listen on (8443; 0 for any free one)
  --chat-completions URL
                  an endpoint that makes the analyses; without one they are made by rules
  --chat-model NAME
                  the model to ask for (default)
  --access-token-lifetime SECONDS
                  how long access tokens hold (3600)
  --key-lifetime SECONDS
                  how long a key signs tokens before a new one does (86400)
  --update-version VERSION
                  what the list of updates offers (the version that this is)
  --help          this text

FOLDER/authority.pem is the certificate authority that clients have to trust, FOLDER/Auth0.plist
says where they sign in, and FOLDER/update-key.pem is the key that proves the list of updates
genuine. The first start makes an account and prints its name and password, once;
FOLDER/first-account keeps them for the owner of FOLDER. The key for the chat-completions endpoint
is taken from the environment variable VEK_CHAT_KEY. Prints "Listening on URL" when it is ready.
Ends on SIGTERM or Ctrl-C.
)";
}

}  // namespace vek::services
