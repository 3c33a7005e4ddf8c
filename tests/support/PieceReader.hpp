// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <exception>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "records/RecordingTranscript.hpp"
#include "runtime/Stream.hpp"
#include "runtime/TaskHandle.hpp"

namespace vek::test {

/// Reads a stream of pieces on the test's own thread, whenever the test says so.
class PieceReader {
 public:
  explicit PieceReader(Stream<RecordingTranscript> stream)
      : reading_(spawn(queue_, read(std::move(stream)))) {
    run();
  }
  PieceReader(PieceReader const&) = delete;
  PieceReader& operator=(PieceReader const&) = delete;
  ~PieceReader() {
    reading_.cancel();
    run();
  }

  /// All pieces so far: partial ones end in "...", then "end" or the error's text.
  std::vector<std::string> const& read() {
    run();
    return texts_;
  }
  /// The error that the stream ended with; none while it goes on and after a good end.
  [[nodiscard]] std::exception_ptr const& error() const { return error_; }
  bool hasEnded() {
    run();
    return hasEnded_;
  }

 private:
  struct Queue : Executor {
    void post(UniqueFunction<void()> item) override {
      std::lock_guard const lock(mutex);
      work.push_back(std::move(item));
    }
    std::mutex mutex;
    std::deque<UniqueFunction<void()>> work;
  };

  Task<> read(Stream<RecordingTranscript> stream) {
    try {
      while (auto piece = co_await stream.next())
        texts_.push_back(piece->text + (piece->isPartial ? "..." : ""));
      texts_.emplace_back("end");
    } catch (std::exception const& error) {
      texts_.emplace_back(error.what());
      error_ = std::current_exception();
    }
    hasEnded_ = true;
  }
  void run() {
    std::unique_lock lock(queue_.mutex);
    while (!queue_.work.empty()) {
      auto const item = std::move(queue_.work.front());
      queue_.work.pop_front();
      lock.unlock();
      item();
      lock.lock();
    }
  }

  Queue queue_;
  std::vector<std::string> texts_;
  std::exception_ptr error_;
  bool hasEnded_ = false;
  TaskHandle reading_;
};

}  // namespace vek::test
