// SPDX-License-Identifier: MIT
#include "platform/LateLibrary.hpp"

#include <dlfcn.h>

#include "platform/FatalError.hpp"

namespace vek {

void* LateLibrary::symbol(char const* name) {
  // Opened twice by two threads it is still one library.
  if (!handle_) handle_ = ::dlopen(file_, RTLD_NOW | RTLD_LOCAL);
  void* found = handle_ ? ::dlsym(handle_, name) : nullptr;
  if (!found) fatalError(::dlerror());
  return found;
}

}  // namespace vek
