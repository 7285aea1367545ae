// SPDX-License-Identifier: Apache-2.0

#include "app/largest_block.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace texturon {
namespace {

std::atomic<std::size_t> largest = ~std::size_t{0};

}  // namespace

LargestBlock::LargestBlock(std::size_t bytes) {
  largest = bytes;
}

LargestBlock::~LargestBlock() {
  largest = ~std::size_t{0};
}

}  // namespace texturon

// The library's own others call the first of each; a sanitizer's do not, and what they give would come back to us.
void* operator new(std::size_t size) {
  void* const block = size > texturon::largest ? nullptr : std::malloc(size > 0 ? size : 1);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return size > texturon::largest ? nullptr : std::malloc(size > 0 ? size : 1);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}
