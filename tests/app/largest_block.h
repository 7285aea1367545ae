// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>

namespace texturon {

/// As long as it lives the program is given no block of memory above `bytes`. One at a time.
class LargestBlock {
public:
  explicit LargestBlock(std::size_t bytes);
  ~LargestBlock();
  LargestBlock(const LargestBlock&) = delete;
  LargestBlock& operator=(const LargestBlock&) = delete;
};

}  // namespace texturon
