// SPDX-License-Identifier: MIT
#include "identity/AuthenticationError.hpp"

#include <optional>
#include <string_view>

#include <boost/json/serialize.hpp>

#include "identity/Secrets.hpp"
#include "runtime/ErrorObject.hpp"

namespace vek {
namespace {

constexpr char const* unknown = "a0.sdk.internal_error.unknown";

std::optional<std::string> textIn(boost::json::object const& info, std::string_view key) {
  auto const* value = info.if_contains(key);
  auto const* text = value ? value->if_string() : nullptr;
  return text ? std::optional<std::string>(*text) : std::nullopt;
}

std::string description(boost::json::object const& info, std::string const& code) {
  if (auto text = textIn(info, "description")) return *text;
  if (auto text = textIn(info, "error_description")) return *text;
  if (code != unknown) return "Received error with code " + code + ".";
  return "Failed with unknown error " + boost::json::serialize(withoutSecrets(info)) + ".";
}

}  // namespace

AuthenticationError::AuthenticationError(boost::json::object info, int statusCode)
    : info_(std::move(info)), statusCode_(statusCode), description_(description(info_, code())) {}

AuthenticationError::AuthenticationError(std::exception_ptr cause, int statusCode)
    : info_{{"code", "a0.sdk.internal_error.plain"},
            {"description", "Unable to complete the operation."}},
      statusCode_(statusCode),
      cause_(std::move(cause)),
      description_("Unable to complete the operation. CAUSE: " +
                   ErrorObject(cause_).localizedDescription()) {}

std::string AuthenticationError::code() const {
  if (auto text = textIn(info_, "error")) return *text;
  return textIn(info_, "code").value_or(unknown);
}

}  // namespace vek
