// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include <boost/json/object.hpp>

#include "identity/Response.hpp"
#include "identity/Telemetry.hpp"
#include "platform/HTTPClient.hpp"
#include "platform/Log.hpp"
#include "runtime/Result.hpp"
#include "runtime/Task.hpp"
#include "runtime/TaskHandle.hpp"
#include "runtime/ThreadPool.hpp"

namespace vek {

/// What is sent, whatever the answer may be.
struct RequestFields {
  HTTPClient session;
  std::string url;
  std::string method;
  /// The query items of a GET, the JSON body of any other method.
  boost::json::object parameters = {};
  std::map<std::string, std::string> headers = {};
  std::optional<Logger> logger = {};
  Telemetry telemetry = {};
};

/// Sends it as it stands. What the transport throws becomes the response's error.
Task<Response> send(RequestFields fields);

/// A request to the identity provider that gives a `Value` or fails with an `Error`. A value that
/// never changes; copies may be started on any thread, and more than once.
template <class Value, class Error>
class Request {
 public:
  /// `handle` turns the response into a value or throws an `Error`.
  Request(RequestFields fields, std::function<Value(Response const&)> handle)
      : fields_(std::move(fields)), handle_(std::move(handle)) {}

  /// A copy with these entries too; they win over those of the same name.
  [[nodiscard]] Request parameters(boost::json::object const& entries) const {
    Request copy = *this;
    for (auto const& [key, value] : entries) copy.fields_.parameters.insert_or_assign(key, value);
    return copy;
  }
  [[nodiscard]] Request headers(std::map<std::string, std::string> entries) const {
    Request copy = *this;
    entries.merge(std::move(copy.fields_.headers));
    copy.fields_.headers = std::move(entries);
    return copy;
  }

  /// Sends the request. `callback` gets the value or the `Error` once, on a thread of the pool.
  void start(std::function<void(Result<Value>)> callback) const {
    spawn(ThreadPool::shared(), answer(value(), std::move(callback)));
  }

  /// Sends the request, for work that awaits. Throws `Error`. Stopping the task ends the exchange.
  [[nodiscard]] Task<Value> value() const { return run(fields_, handle_); }

 private:
  static Task<Value> run(RequestFields fields, std::function<Value(Response const&)> handle) {
    co_return handle(co_await send(std::move(fields)));
  }

  static Task<> answer(Task<Value> task, std::function<void(Result<Value>)> callback) {
    callback(co_await attempt(std::move(task)));
  }

  RequestFields fields_;
  std::function<Value(Response const&)> handle_;
};

}  // namespace vek
