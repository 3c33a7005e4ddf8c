// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <optional>
#include <string>

#include <boost/json/value.hpp>

#include "identity/AuthenticationError.hpp"
#include "platform/HTTPClient.hpp"
#include "records/Coding.hpp"
#include "records/DecodingError.hpp"

namespace vek {

/// What came of a request to the identity provider.
struct Response {
  /// The body, which has moved out of `response`; absent when it was empty.
  std::optional<std::string> data = {};
  std::optional<HTTPResponse> response = {};
  std::exception_ptr error = {};

  [[nodiscard]] int statusCode() const { return response ? response->status : 0; }

  /// The JSON of an answer of success. Throws AuthenticationError for all that is none.
  [[nodiscard]] boost::json::value json() const;

  /// The record in an answer of success. Throws AuthenticationError.
  template <class Record>
  [[nodiscard]] Record decoded() const {
    auto const value = json();
    try {
      return json::Coding<Record>::decode(value, json::Path());
    } catch (DecodingError const&) {
      throw AuthenticationError(std::current_exception(), statusCode());
    }
  }
};

}  // namespace vek
