// SPDX-License-Identifier: MIT
#include "services/backend/ChatCompletions.hpp"

#include <fmt/format.h>

#include "platform/HTTPError.hpp"
#include "records/DecodingError.hpp"
#include "records/JSON.hpp"
#include "runtime/SyncWait.hpp"

namespace vek::services {

namespace {

constexpr std::size_t runningLimit = 32;

/// Rises with each change of the instructions.
constexpr int instructionsVersion = 1;
constexpr char instructions[] =
    "You are given the transcript of a conversation. Summarise it in Markdown: a short paragraph, "
    "the key points as bullets, the commitments that were made as a task list, and the figures "
    "and dates that were named as a table. Answer with the Markdown alone.";

struct Message {
  std::string role = {};
  std::string content = {};
  static constexpr auto fields() {
    return std::tuple{Field{"role", &Message::role}, Field{"content", &Message::content}};
  }
};

struct Question {
  std::string model = {};
  std::vector<Message> messages = {};
  static constexpr auto fields() {
    return std::tuple{Field{"model", &Question::model}, Field{"messages", &Question::messages}};
  }
};

struct Choice {
  Message message = {};
  static constexpr auto fields() { return std::tuple{Field{"message", &Choice::message}}; }
};

struct Completed {
  std::vector<Choice> choices = {};
  static constexpr auto fields() { return std::tuple{Field{"choices", &Completed::choices}}; }
};

std::string contentOf(std::string_view body) {
  try {
    auto const completed = json::decode<Completed>(body);
    if (!completed.choices.empty()) return completed.choices.front().message.content;
    throw AnalysisError("The chat-completions endpoint gave no choice.");
  } catch (DecodingError const& error) {
    throw AnalysisError(
        fmt::format("The chat-completions endpoint's answer is none: {}.", error.what()));
  }
}

}  // namespace

ChatCompletions::ChatCompletions(Configuration configuration)
    : configuration_(std::move(configuration)), client_(HTTPClient::make({})) {}

ChatCompletions::~ChatCompletions() {
  stop();
}

std::string ChatCompletions::maker() const {
  return fmt::format("{} at {}, instructions {}", configuration_.model, configuration_.url,
                     instructionsVersion);
}

void ChatCompletions::stop() {
  std::vector<TaskHandle> running;
  {
    std::lock_guard lock(mutex_);
    isStopped_ = true;
    running.swap(running_);
  }
  for (auto const& task : running) task.cancel();
  for (auto const& task : running) syncWait(task.wait());
}

void ChatCompletions::analyse(std::string transcript, Completion done) {
  std::unique_lock lock(mutex_);
  std::erase_if(running_, [](TaskHandle const& task) { return task.isDone(); });
  if (isStopped_ || running_.size() >= runningLimit) {
    auto const* reason =
        isStopped_ ? "The services are ending." : "Too many analyses are under way.";
    lock.unlock();
    return done(std::make_exception_ptr(AnalysisError(reason)));
  }
  running_.push_back(spawn(thread_, run(std::move(transcript), std::move(done))));
}

Task<> ChatCompletions::run(std::string transcript, Completion done) {
  done(co_await attempt(ask(std::move(transcript))));
}

Task<std::string> ChatCompletions::ask(std::string transcript) {
  Question const question{.model = configuration_.model,
                          .messages = {{"system", instructions}, {"user", std::move(transcript)}}};
  vek::HTTPRequest request{.method = "POST",
                           .url = configuration_.url,
                           .headers = {{"Content-Type", "application/json"}},
                           .body = json::encode(question)};
  if (!configuration_.key.empty()) {
    request.headers.push_back({"Authorization", "Bearer " + configuration_.key});
  }
  auto const answer = co_await attempt(client_.send(std::move(request)));
  if (!answer) {
    try {
      std::rethrow_exception(answer.error());
    } catch (HTTPError const& error) {
      throw AnalysisError(fmt::format("The chat-completions endpoint failed: {}", error.what()));
    }
  }
  if (answer.value().status / 100 != 2) {
    throw AnalysisError(
        fmt::format("The chat-completions endpoint answered {}.", answer.value().status));
  }
  co_return contentOf(answer.value().body);
}

}  // namespace vek::services
