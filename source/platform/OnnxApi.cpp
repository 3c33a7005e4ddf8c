// SPDX-License-Identifier: MIT
#include "platform/OnnxApi.hpp"

namespace vek {
namespace {

/// An entry of the table; it becomes the type of function that it is assigned to.
struct Entry {
  void* address;

  template <class Function>
  operator Function*() const {
    return reinterpret_cast<Function*>(address);
  }
};

}  // namespace

OnnxApi::OnnxApi(void* const* table)
    : getErrorMessage(Entry{table[2]}),
      createEnv(Entry{table[3]}),
      createSession(Entry{table[7]}),
      run(Entry{table[9]}),
      createSessionOptions(Entry{table[10]}),
      setGraphOptimizationLevel(Entry{table[23]}),
      setIntraOpThreads(Entry{table[24]}),
      setInterOpThreads(Entry{table[25]}),
      createTensorWithData(Entry{table[49]}),
      getTensorData(Entry{table[51]}),
      getElementCount(Entry{table[64]}),
      getTensorInfo(Entry{table[65]}),
      createCpuMemoryInfo(Entry{table[69]}),
      releaseEnv(Entry{table[92]}),
      releaseStatus(Entry{table[93]}),
      releaseMemoryInfo(Entry{table[94]}),
      releaseSession(Entry{table[95]}),
      releaseValue(Entry{table[96]}),
      releaseTensorInfo(Entry{table[99]}),
      releaseSessionOptions(Entry{table[100]}),
      addSessionConfigEntry(Entry{table[130]}) {}

}  // namespace vek
