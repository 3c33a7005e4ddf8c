// SPDX-License-Identifier: MIT
#pragma once

#include <memory_resource>

struct cmark_mem;

namespace vek {

/// Where a parse by cmark-gfm on this thread takes its memory from while it lives. A document has
/// many small parts, which are given back all at once: none of them may outlive it.
class ParseArena {
 public:
  ParseArena();
  ParseArena(ParseArena const&) = delete;
  ParseArena& operator=(ParseArena const&) = delete;
  ~ParseArena();

  /// That of the innermost arena of this thread, or the usual one without any.
  static cmark_mem& memory();

  /// For the functions of the memory, which know nothing but their thread.
  static std::pmr::memory_resource& resource();

 private:
  std::pmr::monotonic_buffer_resource buffer_;
  ParseArena* outer_;
};

}  // namespace vek
