// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace texturon {

/// Makes elements that hold anything until they are written.
template <typename T>
struct UnwrittenAllocator : std::allocator<T> {
  UnwrittenAllocator() = default;
  template <typename U>
  UnwrittenAllocator(const UnwrittenAllocator<U>&) noexcept {}
  template <typename U>
  struct rebind {
    using other = UnwrittenAllocator<U>;
  };

  template <typename U>
  void construct(U* place) noexcept {
    ::new (static_cast<void*>(place)) U;
  }
  template <typename U, typename... Arguments>
  void construct(U* place, Arguments&&... arguments) {
    ::new (static_cast<void*>(place)) U(std::forward<Arguments>(arguments)...);
  }
};

/// Heights and the like, for arrays of millions that are written as a whole: Samples(n) and resize(n) leave new
/// elements unwritten, where a vector would write zeros over memory that is written again at once. Samples(n, 0.0) and
/// resize(n, 0.0) are as ever.
using Samples = std::vector<double, UnwrittenAllocator<double>>;

}  // namespace texturon
