// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/OnnxApi.hpp"

namespace vek {

/// The neural network engine or one of its models could not do what was asked.
class OnnxError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The neural network engine, loaded from its shared library. Shared by all sessions.
class OnnxRuntime {
 public:
  /// Loads `library`. Throws OnnxError. The library stays loaded for the life of the process.
  explicit OnnxRuntime(std::filesystem::path const& library);
  OnnxRuntime(OnnxRuntime const&) = delete;
  OnnxRuntime& operator=(OnnxRuntime const&) = delete;
  ~OnnxRuntime();

  [[nodiscard]] OnnxApi const& api() const { return api_; }
  [[nodiscard]] std::string const& version() const { return version_; }
  [[nodiscard]] OrtEnv const* environment() const { return environment_; }
  [[nodiscard]] OrtMemoryInfo const* memory() const { return memory_; }

  /// Throws OnnxError unless `status` means success, and releases it.
  void check(OrtStatus* status) const;

 private:
  OnnxApi api_;
  std::string version_;
  OrtEnv* environment_ = nullptr;
  OrtMemoryInfo* memory_ = nullptr;
};

/// A tensor, made over data of the caller, who keeps that data alive and in place, or given by a
/// session.
class OnnxTensor {
 public:
  using Shape = std::initializer_list<std::int64_t>;

  OnnxTensor(OnnxRuntime const& runtime, OrtValue* value) : runtime_(&runtime), value_(value) {}
  OnnxTensor(OnnxRuntime const& runtime, std::span<float const> data, Shape shape);
  OnnxTensor(OnnxRuntime const& runtime, std::span<std::int64_t const> data, Shape shape);
  OnnxTensor(OnnxRuntime const& runtime, std::span<bool const> data, Shape shape);
  OnnxTensor(OnnxTensor&& other) noexcept;
  OnnxTensor& operator=(OnnxTensor&& other) noexcept;
  ~OnnxTensor();

  [[nodiscard]] OrtValue const* value() const { return value_; }
  [[nodiscard]] std::span<float const> floats() const;

 private:
  OnnxTensor(OnnxRuntime const& runtime, void const* data, std::size_t bytes, Shape shape,
             int type);

  OnnxRuntime const* runtime_;
  OrtValue* value_ = nullptr;
};

/// A model in memory. It computes on the calling thread alone.
class OnnxSession {
 public:
  /// Reads `model`. Throws OnnxError.
  OnnxSession(std::shared_ptr<OnnxRuntime const> runtime, std::filesystem::path const& model);
  OnnxSession(OnnxSession const&) = delete;
  OnnxSession& operator=(OnnxSession const&) = delete;
  ~OnnxSession();

  [[nodiscard]] OnnxRuntime const& runtime() const { return *runtime_; }

  /// Computes the outputs of these names. `inputs` are in the order of `inputNames`.
  [[nodiscard]] std::vector<OnnxTensor> run(std::span<std::string const> inputNames,
                                            std::span<OnnxTensor const* const> inputs,
                                            std::span<std::string const> outputNames) const;

 private:
  std::shared_ptr<OnnxRuntime const> runtime_;
  OrtSession* session_ = nullptr;
};

}  // namespace vek
