// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/HTTPClient.hpp"
#include "runtime/Result.hpp"
#include "runtime/Task.hpp"
#include "runtime/TaskHandle.hpp"
#include "runtime/ThreadPool.hpp"

namespace vek::services {

/// Why no analysis could be made.
struct AnalysisError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Has analyses made by a language model behind a chat-completions endpoint.
class ChatCompletions {
 public:
  struct Configuration {
    /// The whole URL of the endpoint; empty for none.
    std::string url;
    std::string model = "default";
    /// The bearer token for the endpoint; empty for none.
    std::string key;
  };
  using Completion = std::function<void(Result<std::string>)>;

  explicit ChatCompletions(Configuration configuration);
  ChatCompletions(ChatCompletions const&) = delete;
  ChatCompletions& operator=(ChatCompletions const&) = delete;
  /// Stops.
  ~ChatCompletions();

  /// Who makes the analyses: model, endpoint and what it is told to do.
  [[nodiscard]] std::string maker() const;

  /// Has the transcript analysed and calls `done` with the Markdown or the error, on a thread of
  /// its own, which waits for `done`. Any thread may call.
  void analyse(std::string transcript, Completion done);

  /// Ends what is under way with an error and returns when its completions have run. What comes
  /// later fails at once.
  void stop();

 private:
  Task<> run(std::string transcript, Completion done);
  Task<std::string> ask(std::string transcript);

  Configuration const configuration_;
  HTTPClient const client_;
  ThreadPool thread_{1};
  std::mutex mutex_;
  std::vector<TaskHandle> running_;
  bool isStopped_ = false;
};

}  // namespace vek::services
