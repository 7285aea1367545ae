// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <vector>

namespace texturon {

/// Sorts from the largest to the smallest, 0 before -0, NaN somewhere. Linear: two passes that put the values into
/// equal cells of their range, many more cells than values, and one that orders the few in a cell; where single values
/// stretch the range, the digits of the bit patterns. Below a few thousand values a comparison sort. Needs as much
/// memory again while it runs.
void SortDescending(std::vector<double>& values);

}  // namespace texturon
