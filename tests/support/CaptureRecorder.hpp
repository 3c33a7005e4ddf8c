// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/AudioPCMBuffer.hpp"
#include "runtime/Stream.hpp"
#include "runtime/SyncWait.hpp"
#include "runtime/TaskHandle.hpp"
#include "runtime/ThreadPool.hpp"

namespace vek::test {

/// Reads a stream of captured buffers in the background and keeps what it gives.
class CaptureRecorder {
 public:
  using Buffer = std::shared_ptr<AudioPCMBuffer const>;

  explicit CaptureRecorder(Stream<Buffer> stream)
      : reader_(spawn(ThreadPool::shared(), read(std::move(stream), state_))) {}
  CaptureRecorder(CaptureRecorder const&) = delete;
  CaptureRecorder& operator=(CaptureRecorder const&) = delete;
  ~CaptureRecorder() {
    reader_.cancel();
    syncWait(reader_.wait());
  }

  [[nodiscard]] std::vector<Buffer> buffers() const {
    std::lock_guard lock(state_->mutex);
    return state_->buffers;
  }
  [[nodiscard]] std::size_t bufferCount() const {
    std::lock_guard lock(state_->mutex);
    return state_->buffers.size();
  }
  /// All samples of the buffers from this one on.
  [[nodiscard]] std::vector<std::int16_t> samples(std::size_t firstBuffer = 0) const {
    std::vector<std::int16_t> all;
    auto const captured = buffers();
    for (auto i = firstBuffer; i < captured.size(); ++i) {
      auto const part = captured[i]->samples();
      all.insert(all.end(), part.begin(), part.end());
    }
    return all;
  }
  [[nodiscard]] bool hasEnded() const {
    std::lock_guard lock(state_->mutex);
    return state_->hasEnded;
  }
  [[nodiscard]] std::exception_ptr error() const {
    std::lock_guard lock(state_->mutex);
    return state_->error;
  }
  /// The text of the error that ended the stream.
  [[nodiscard]] std::string errorText() const {
    try {
      if (auto const failure = error()) std::rethrow_exception(failure);
    } catch (std::exception const& failure) {
      return failure.what();
    }
    return {};
  }

  /// Whether the stream ends in time.
  [[nodiscard]] bool waitForEnd(std::chrono::milliseconds time = std::chrono::seconds(20)) const {
    return wait(time, [](State const& state) { return state.hasEnded; });
  }
  /// Whether so many buffers come in time.
  [[nodiscard]] bool waitForBuffers(
      std::size_t count, std::chrono::milliseconds time = std::chrono::seconds(20)) const {
    return wait(time, [count](State const& state) { return state.buffers.size() >= count; });
  }
  /// Whether the latest buffer comes to be such a one in time.
  template <class Predicate>
  [[nodiscard]] bool waitForBuffer(
      Predicate predicate, std::chrono::milliseconds time = std::chrono::seconds(20)) const {
    return wait(time, [&](State const& state) {
      return !state.buffers.empty() && predicate(*state.buffers.back());
    });
  }

 private:
  struct State {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Buffer> buffers;
    bool hasEnded = false;
    std::exception_ptr error;
  };

  static Task<> read(Stream<Buffer> stream, std::shared_ptr<State> state) {
    while (true) {
      auto next = co_await attempt(stream.next());
      std::lock_guard lock(state->mutex);
      state->changed.notify_all();
      if (next && next.value()) {
        state->buffers.push_back(std::move(*next.value()));
        continue;
      }
      state->hasEnded = true;
      if (!next) state->error = next.error();
      break;
    }
  }

  template <class Predicate>
  bool wait(std::chrono::milliseconds time, Predicate predicate) const {
    std::unique_lock lock(state_->mutex);
    return state_->changed.wait_for(lock, time, [&] { return predicate(*state_); });
  }

  std::shared_ptr<State> state_ = std::make_shared<State>();
  TaskHandle reader_;
};

}  // namespace vek::test
