#pragma once

#include <vector>

namespace texturon {

/// Sorts from the largest to the smallest, NaN nowhere in particular. Linear: digits of the numbers' bit patterns, six
/// passes; below a few thousand values a comparison sort. Needs as much memory again while it runs.
void SortDescending(std::vector<double>& values);

}  // namespace texturon
