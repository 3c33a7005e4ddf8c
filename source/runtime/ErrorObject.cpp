// SPDX-License-Identifier: MIT
#include "runtime/ErrorObject.hpp"

#include <utility>

namespace vek {

namespace {
std::string describe(std::exception_ptr const& error) {
  try {
    std::rethrow_exception(error);
  } catch (std::exception const& exception) {
    return exception.what();
  } catch (...) {
    return "An unknown error occurred.";
  }
}
}  // namespace

ErrorObject::ErrorObject(std::exception_ptr error)
    : content_(std::make_shared<Content const>(Content{error, describe(error)})) {}

}  // namespace vek
