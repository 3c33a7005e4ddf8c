// SPDX-License-Identifier: MIT
#include "platform/OnnxRuntime.hpp"

#include <dlfcn.h>

#include <utility>

namespace vek {
namespace {

enum ElementType : int { floatElement = 1, int64Element = 7, boolElement = 9 };
constexpr int errorLogLevel = 3;
constexpr int allOptimizations = 99;
constexpr int arenaAllocator = 1;
constexpr int defaultMemory = 0;

OrtApiBase const& apiBase(std::filesystem::path const& library) {
  void* handle = ::dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) throw OnnxError(::dlerror());
  void* symbol = ::dlsym(handle, "OrtGetApiBase");
  if (symbol == nullptr) throw OnnxError(library.string() + " is not a neural network engine");
  return *reinterpret_cast<OrtApiBase const* (*)()>(symbol)();
}

void* const* apiTable(OrtApiBase const& base) {
  void* const* table = base.getApi(OnnxApi::version);
  if (table == nullptr) throw OnnxError("The neural network engine is too old.");
  return table;
}

}  // namespace

OnnxRuntime::OnnxRuntime(std::filesystem::path const& library)
    : api_(apiTable(apiBase(library))), version_(apiBase(library).getVersionString()) {
  check(api_.createEnv(errorLogLevel, "vek", &environment_));
  check(api_.createCpuMemoryInfo(arenaAllocator, defaultMemory, &memory_));
}

OnnxRuntime::~OnnxRuntime() {
  api_.releaseMemoryInfo(memory_);
  api_.releaseEnv(environment_);
}

void OnnxRuntime::check(OrtStatus* status) const {
  if (status == nullptr) return;
  std::string message = api_.getErrorMessage(status);
  api_.releaseStatus(status);
  throw OnnxError(message);
}

OnnxTensor::OnnxTensor(OnnxRuntime const& runtime, void const* data, std::size_t bytes, Shape shape,
                       int type)
    : runtime_(&runtime) {
  // The engine reads through this pointer and never writes.
  runtime.check(runtime.api().createTensorWithData(runtime.memory(), const_cast<void*>(data), bytes,
                                                   shape.begin(), shape.size(), type, &value_));
}

OnnxTensor::OnnxTensor(OnnxRuntime const& runtime, std::span<float const> data, Shape shape)
    : OnnxTensor(runtime, data.data(), data.size_bytes(), shape, floatElement) {}

OnnxTensor::OnnxTensor(OnnxRuntime const& runtime, std::span<std::int64_t const> data, Shape shape)
    : OnnxTensor(runtime, data.data(), data.size_bytes(), shape, int64Element) {}

OnnxTensor::OnnxTensor(OnnxRuntime const& runtime, std::span<bool const> data, Shape shape)
    : OnnxTensor(runtime, data.data(), data.size_bytes(), shape, boolElement) {}

OnnxTensor::OnnxTensor(OnnxTensor&& other) noexcept
    : runtime_(other.runtime_), value_(std::exchange(other.value_, nullptr)) {}

OnnxTensor& OnnxTensor::operator=(OnnxTensor&& other) noexcept {
  std::swap(runtime_, other.runtime_);
  std::swap(value_, other.value_);
  return *this;
}

OnnxTensor::~OnnxTensor() {
  if (value_ != nullptr) runtime_->api().releaseValue(value_);
}

std::span<float const> OnnxTensor::floats() const {
  OnnxApi const& api = runtime_->api();
  OrtTensorInfo* info = nullptr;
  runtime_->check(api.getTensorInfo(value_, &info));
  std::size_t count = 0;
  OrtStatus* status = api.getElementCount(info, &count);
  api.releaseTensorInfo(info);
  runtime_->check(status);
  void* data = nullptr;
  runtime_->check(api.getTensorData(value_, &data));
  return {static_cast<float const*>(data), count};
}

OnnxSession::OnnxSession(std::shared_ptr<OnnxRuntime const> runtime,
                         std::filesystem::path const& model)
    : runtime_(std::move(runtime)) {
  OnnxApi const& api = runtime_->api();
  OrtSessionOptions* options = nullptr;
  runtime_->check(api.createSessionOptions(&options));
  std::unique_ptr<OrtSessionOptions, void (*)(OrtSessionOptions*)> owner(options,
                                                                         api.releaseSessionOptions);
  runtime_->check(api.setGraphOptimizationLevel(options, allOptimizations));
  runtime_->check(api.setIntraOpThreads(options, 1));
  runtime_->check(api.setInterOpThreads(options, 1));
  runtime_->check(api.addSessionConfigEntry(options, "session.intra_op.allow_spinning", "0"));
  runtime_->check(api.createSession(runtime_->environment(), model.c_str(), options, &session_));
}

OnnxSession::~OnnxSession() {
  runtime_->api().releaseSession(session_);
}

std::vector<OnnxTensor> OnnxSession::run(std::span<std::string const> inputNames,
                                         std::span<OnnxTensor const* const> inputs,
                                         std::span<std::string const> outputNames) const {
  std::vector<char const*> inputTexts;
  std::vector<OrtValue const*> inputValues;
  std::vector<char const*> outputTexts;
  for (std::string const& name : inputNames) inputTexts.push_back(name.c_str());
  for (OnnxTensor const* tensor : inputs) inputValues.push_back(tensor->value());
  for (std::string const& name : outputNames) outputTexts.push_back(name.c_str());
  std::vector<OrtValue*> outputValues(outputTexts.size(), nullptr);

  runtime_->check(runtime_->api().run(session_, nullptr, inputTexts.data(), inputValues.data(),
                                      inputValues.size(), outputTexts.data(), outputTexts.size(),
                                      outputValues.data()));
  std::vector<OnnxTensor> outputs;
  outputs.reserve(outputValues.size());
  for (OrtValue* value : outputValues) outputs.emplace_back(*runtime_, value);
  return outputs;
}

}  // namespace vek
