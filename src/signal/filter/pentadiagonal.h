// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>

namespace texturon {

/// Solves the symmetric five-band system A x = rhs of n = main.size() equations by Gaussian elimination without
/// pivoting. `main` holds A[i][i] (n values), `first` A[i][i+1] (n - 1), `second` A[i][i+2] (n - 2, none for n < 2).
/// `x` takes n values and may be the same array as `rhs`; nothing else of the caller's is changed.
///
/// Elimination runs from both ends at once and meets in a 2 x 2 block in the middle: two independent chains of
/// divisions in place of one, about twice as fast. For a positive definite matrix the relative error is of the order
/// of 1e-16 times the condition number; an indefinite one may lose more, because rows are never exchanged.
///
/// False, and x unspecified, when a pivot is zero or not finite or the sizes do not fit. n = 0 succeeds.
bool SolvePentadiagonal(std::span<const double> main, std::span<const double> first, std::span<const double> second,
                        std::span<const double> rhs, std::span<double> x);

}  // namespace texturon
