// SPDX-License-Identifier: MIT
#include "markdown/ParseArena.hpp"

#include <cmark-gfm.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace vek {

namespace {

constexpr std::size_t firstBuffer = std::size_t{64} << 10U;

thread_local ParseArena* innermost = nullptr;

/// Before each piece, for those that grow.
struct alignas(std::max_align_t) Header {
  std::size_t size = 0;
};

// Without memory the program ends, as cmark-gfm itself has it.

void* allocate(std::size_t size) noexcept {
  auto* header =
      static_cast<Header*>(ParseArena::resource().allocate(sizeof(Header) + size, alignof(Header)));
  header->size = size;
  return header + 1;
}

void* allocateZeroes(std::size_t count, std::size_t size) noexcept {
  return std::memset(allocate(count * size), 0, count * size);
}

void* grow(void* piece, std::size_t size) noexcept {
  auto const before = piece ? (static_cast<Header*>(piece) - 1)->size : 0;
  if (size <= before) return piece;
  auto* larger = allocate(size);
  if (before > 0) std::memcpy(larger, piece, before);
  return larger;
}

void keep(void* /*piece*/) noexcept {}

cmark_mem arenaMemory = {allocateZeroes, grow, keep};

}  // namespace

ParseArena::ParseArena() : buffer_(firstBuffer), outer_(innermost) {
  innermost = this;
}

ParseArena::~ParseArena() {
  innermost = outer_;
}

cmark_mem& ParseArena::memory() {
  return innermost ? arenaMemory : *cmark_get_default_mem_allocator();
}

std::pmr::memory_resource& ParseArena::resource() {
  return innermost->buffer_;
}

}  // namespace vek
