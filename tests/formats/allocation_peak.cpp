// SPDX-License-Identifier: Apache-2.0

#include "formats/allocation_peak.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace texturon {
namespace {

thread_local std::size_t held = 0;
thread_local std::size_t heldAtStart = 0;
thread_local std::size_t peak = 0;

// Each block begins with its size, in as many bytes as keep it aligned.
constexpr std::size_t kPrefix = alignof(std::max_align_t);

void* Take(std::size_t size) {
  void* const block = std::malloc(size + kPrefix);
  if (block == nullptr) throw std::bad_alloc();
  *static_cast<std::size_t*>(block) = size;
  held += size;
  peak = std::max(peak, held);
  return static_cast<char*>(block) + kPrefix;
}

void GiveBack(void* memory) {
  if (memory == nullptr) return;
  void* const block = static_cast<char*>(memory) - kPrefix;
  held -= *static_cast<std::size_t*>(block);
  std::free(block);
}

}  // namespace

AllocationPeak::AllocationPeak() {
  heldAtStart = held;
  peak = held;
}

std::size_t AllocationPeak::Bytes() const {
  return peak - heldAtStart;
}

}  // namespace texturon

void* operator new(std::size_t size) {
  return texturon::Take(size);
}
void* operator new[](std::size_t size) {
  return texturon::Take(size);
}
// The library's own calls the first; a sanitizer's does not, and what it gives would come back to us.
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return texturon::Take(size);
}
void operator delete(void* memory) noexcept {
  texturon::GiveBack(memory);
}
void operator delete[](void* memory) noexcept {
  texturon::GiveBack(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
  texturon::GiveBack(memory);
}
void operator delete[](void* memory, std::size_t /*size*/) noexcept {
  texturon::GiveBack(memory);
}
