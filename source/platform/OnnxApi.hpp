// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace vek {

// The engine hands out these by pointer and never shows what is in them.
struct OrtAllocator;
struct OrtEnv;
struct OrtMemoryInfo;
struct OrtRunOptions;
struct OrtSession;
struct OrtSessionOptions;
struct OrtStatus;
struct OrtTensorInfo;
struct OrtValue;

/// What the library exports: the door to its table of functions.
struct OrtApiBase {
  void* const* (*getApi)(std::uint32_t version);
  char const* (*getVersionString)();
};

/// The functions of the engine's C interface that are used here. The table only ever grows at
/// its end, so that a position keeps its meaning in every later version. A function that gives
/// an OrtStatus gives null for success; a status must be released.
struct OnnxApi {
  /// The version of the table that holds the last of these positions.
  static constexpr std::uint32_t version = 11;

  explicit OnnxApi(void* const* table);

  char const* (*getErrorMessage)(OrtStatus const*);
  OrtStatus* (*createEnv)(int logLevel, char const* name, OrtEnv**);
  OrtStatus* (*createSession)(OrtEnv const*, char const* path, OrtSessionOptions const*,
                              OrtSession**);
  OrtStatus* (*run)(OrtSession*, OrtRunOptions const*, char const* const* inputNames,
                    OrtValue const* const* inputs, std::size_t inputCount,
                    char const* const* outputNames, std::size_t outputCount, OrtValue** outputs);
  OrtStatus* (*createSessionOptions)(OrtSessionOptions**);
  OrtStatus* (*setGraphOptimizationLevel)(OrtSessionOptions*, int level);
  OrtStatus* (*setIntraOpThreads)(OrtSessionOptions*, int threads);
  OrtStatus* (*setInterOpThreads)(OrtSessionOptions*, int threads);
  OrtStatus* (*createTensorWithData)(OrtMemoryInfo const*, void* data, std::size_t bytes,
                                     std::int64_t const* shape, std::size_t dimensions, int type,
                                     OrtValue**);
  OrtStatus* (*getTensorData)(OrtValue*, void** data);
  OrtStatus* (*getElementCount)(OrtTensorInfo const*, std::size_t*);
  OrtStatus* (*getTensorInfo)(OrtValue const*, OrtTensorInfo**);
  OrtStatus* (*createCpuMemoryInfo)(int allocator, int memory, OrtMemoryInfo**);
  void (*releaseEnv)(OrtEnv*);
  void (*releaseStatus)(OrtStatus*);
  void (*releaseMemoryInfo)(OrtMemoryInfo*);
  void (*releaseSession)(OrtSession*);
  void (*releaseValue)(OrtValue*);
  void (*releaseTensorInfo)(OrtTensorInfo*);
  void (*releaseSessionOptions)(OrtSessionOptions*);
  OrtStatus* (*addSessionConfigEntry)(OrtSessionOptions*, char const* key, char const* value);
};

}  // namespace vek
