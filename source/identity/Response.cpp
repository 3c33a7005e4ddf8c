// SPDX-License-Identifier: MIT
#include "identity/Response.hpp"

#include <boost/json/parse.hpp>

#include "identity/Secrets.hpp"

namespace vek {
namespace {

AuthenticationError internalError(std::string const& kind, std::string const& description,
                                  int status) {
  return AuthenticationError(
      boost::json::object{{"code", "a0.sdk.internal_error." + kind}, {"description", description}},
      status);
}

}  // namespace

boost::json::value Response::json() const {
  int const status = statusCode();
  if (error) throw AuthenticationError(error);
  if (!data) throw internalError("empty", "Empty response body.", status);

  bool const isSuccess = status >= 200 && status <= 299;
  boost::system::error_code fault;
  auto value = boost::json::parse(*data, fault);
  if (fault && isSuccess && namesSecret(*data)) {
    // Tokens that were damaged on their way: the body must not become a text.
    throw AuthenticationError(
        std::make_exception_ptr(DecodingError("$: not JSON: " + fault.message())), status);
  }
  if (!fault && isSuccess) return value;
  if (!fault && value.is_object()) throw AuthenticationError(value.as_object(), status);
  throw internalError("plain", *data, status);
}

}  // namespace vek
