// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>

namespace texturon {

/// Watches the memory that this thread takes from the heap: how much more than at its start it held at most. One at a
/// time; the program must link allocation_peak.cpp.
class AllocationPeak {
public:
  AllocationPeak();
  std::size_t Bytes() const;
};

}  // namespace texturon
