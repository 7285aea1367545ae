// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

#include "base/double_double.h"

namespace texturon {

/// Gaussian elimination with row exchanges and 32 digits: the plain route beside which the fits are held.
inline std::vector<DoubleDouble> SolveDense(std::vector<std::vector<DoubleDouble>> matrix,
                                            std::vector<DoubleDouble> rhs) {
  const std::size_t n = rhs.size();
  for (std::size_t k = 0; k < n; ++k) {
    std::size_t pivot = k;
    for (std::size_t row = k + 1; row < n; ++row) {
      if (std::abs(matrix[row][k].hi) > std::abs(matrix[pivot][k].hi)) pivot = row;
    }
    std::swap(matrix[k], matrix[pivot]);
    std::swap(rhs[k], rhs[pivot]);
    for (std::size_t row = k + 1; row < n; ++row) {
      const DoubleDouble factor = matrix[row][k] / matrix[k][k];
      for (std::size_t column = k; column < n; ++column) matrix[row][column] -= factor * matrix[k][column];
      rhs[row] -= factor * rhs[k];
    }
  }
  for (std::size_t k = n; k-- > 0;) {
    for (std::size_t column = k + 1; column < n; ++column) rhs[k] -= matrix[k][column] * rhs[column];
    rhs[k] = rhs[k] / matrix[k][k];
  }
  return rhs;
}

/// Square root to 32 digits by one step of Newton's.
inline DoubleDouble SquareRoot(DoubleDouble value) {
  const DoubleDouble root = std::sqrt(value.hi);
  return root + (value - root * root) / (root * 2.0);
}

}  // namespace texturon
