// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/Deployment.hpp"
#include "platform/URLSessionWebSocketTask.hpp"
#include "records/DeepgramResultDTO.hpp"
#include "records/JSON.hpp"

namespace vek::test {

/// A client of the hosted recogniser, which keeps what it is sent.
class ListenClient {
 public:
  static constexpr char standardQuery[] =
      "model=nova-2-meeting&diarize=true&interim_results=true&endpointing=true&sample_rate=16000"
      "&channels=1&encoding=linear16";

  ListenClient(std::string const& server, std::filesystem::path const& authority)
      : session_(URLSession::make({.trustedAuthority = authority}, {})),
        task_(session_->webSocketTask(
            {.url = server + "/v1/listen?" + standardQuery,
             .headers = {{"Authorization", "Token " + deployment().recogniserKey}}})) {
    task_->resume();
    receive(task_, heard_);
  }
  ListenClient(ListenClient const&) = delete;
  ListenClient& operator=(ListenClient const&) = delete;
  ~ListenClient() { task_->cancel(URLSessionWebSocketTask::CloseCode::goingAway, std::nullopt); }

  void text(std::string const& text) const {
    task_->send({WebSocketMessage::Kind::text, text}, [](auto const&) {});
  }
  void audio(std::string bytes) const {
    task_->send({WebSocketMessage::Kind::binary, std::move(bytes)}, [](auto const&) {});
  }
  /// As fast as it is spoken, in messages of an odd length.
  void speak(std::vector<std::int16_t> const& samples) const {
    std::string const bytes(reinterpret_cast<char const*>(samples.data()), samples.size() * 2);
    auto next = std::chrono::steady_clock::now();
    for (std::size_t at = 0; at < bytes.size(); at += messageLength) {
      audio(bytes.substr(at, messageLength));
      next += std::chrono::milliseconds(messageLength / 32);
      std::this_thread::sleep_until(next);
    }
  }

  /// Whether a message with this in it comes, in time and before the end.
  [[nodiscard]] bool waitFor(std::string const& part) const {
    bool hasCome = false;
    heard_->wait([&](Heard const& heard) {
      hasCome = std::ranges::any_of(heard.messages, [&](std::string const& message) {
        return message.find(part) != std::string::npos;
      });
      return hasCome || heard.end;
    });
    return hasCome;
  }

  /// What the end of the connection is put down to, once it has come.
  [[nodiscard]] std::string end() const {
    heard_->wait([](Heard const& heard) { return heard.end.has_value(); });
    std::lock_guard const lock(heard_->mutex);
    return heard_->end.value_or("");
  }

  [[nodiscard]] std::vector<std::string> messages() const {
    std::lock_guard const lock(heard_->mutex);
    return heard_->messages;
  }

  /// The final texts, with a space behind each.
  [[nodiscard]] std::string finalText() const {
    std::string text;
    for (auto const& message : messages()) {
      if (message.find(R"("is_final":true)") == std::string::npos) continue;
      text += json::decode<Deepgram::ResultDTO>(message).channel.alternatives[0].transcript + ' ';
    }
    return text;
  }

 private:
  static constexpr std::size_t messageLength = 1601;

  struct Heard {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::string> messages;
    std::optional<std::string> end;

    template <class Predicate>
    bool wait(Predicate predicate) {
      std::unique_lock lock(mutex);
      return changed.wait_for(lock, std::chrono::seconds(60), [&] { return predicate(*this); });
    }
  };

  static void receive(std::shared_ptr<URLSessionWebSocketTask> const& task,
                      std::shared_ptr<Heard> const& heard) {
    task->receive([weak = std::weak_ptr(task), heard](Result<WebSocketMessage> const& message) {
      {
        std::lock_guard const lock(heard->mutex);
        if (message) {
          heard->messages.push_back(message.value().bytes);
        } else {
          heard->end = describe(message.error());
        }
      }
      heard->changed.notify_all();
      auto const socket = weak.lock();
      if (message && socket) receive(socket, heard);
    });
  }

  static std::string describe(std::exception_ptr const& error) {
    try {
      std::rethrow_exception(error);
    } catch (std::exception const& known) {
      return known.what();
    }
  }

  std::shared_ptr<Heard> heard_ = std::make_shared<Heard>();
  std::shared_ptr<URLSession> session_;
  std::shared_ptr<URLSessionWebSocketTask> task_;
};

}  // namespace vek::test
