// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/pentadiagonal.h"

#include <cmath>
#include <cstddef>
#include <memory>

namespace texturon {
namespace {

// The two rows that an elimination has reached, the nearer one first: what is left of their diagonal entries, of the
// entry that couples them, and of their right-hand sides.
struct Front {
  double nearDiagonal;
  double farDiagonal;
  double coupling;
  double nearRhs;
  double farRhs;
};

// Row i of the factor: the eliminated unknown is reduced - toNear * x[near] - toFar * x[far].
struct Row {
  double toNear;
  double toFar;
};

bool Usable(double pivot) {
  return std::isfinite(pivot) && pivot != 0.0;
}

// Eliminates the near row; the far one becomes the near one and the row behind it comes in with the matrix's values.
// `toNear` and `toFar` are the eliminated row's entries: front.coupling and the second off-diagonal.
inline double Eliminate(Front& front, double toFar, double nextDiagonal, double nextCoupling, double nextRhs,
                        Row& row) {
  const double pivot = front.nearDiagonal;
  const double inverse = 1.0 / pivot;
  row = {front.coupling * inverse, toFar * inverse};
  const double reduced = front.nearRhs * inverse;
  front = {front.farDiagonal - front.coupling * row.toNear, nextDiagonal - toFar * row.toFar,
           nextCoupling - row.toNear * toFar, front.farRhs - row.toNear * front.nearRhs,
           nextRhs - row.toFar * front.nearRhs};
  return reduced;
}

}  // namespace

bool SolvePentadiagonal(std::span<const double> main, std::span<const double> first, std::span<const double> second,
                        std::span<const double> rhs, std::span<double> x) {
  const std::size_t n = main.size();
  if (rhs.size() != n || x.size() != n) return false;
  if (n == 0) return true;
  if (first.size() != n - 1 || second.size() != (n < 2 ? 0 : n - 2)) return false;
  if (n == 1) {
    if (!Usable(main[0])) return false;
    x[0] = rhs[0] / main[0];
    return std::isfinite(x[0]);
  }

  // The rows `middle` and `middle + 1` stay; `middle` rows go from the front, one more or as many from the back. A
  // front may not read a right-hand side that the other has overwritten, and never does: each reads no further than
  // the middle rows, which are written last.
  const std::size_t middle = (n - 2) / 2;
  const std::size_t fromBack = n - 2 - middle;
  const auto rows = std::make_unique_for_overwrite<Row[]>(n);
  Front left{main[0], main[1], first[0], rhs[0], rhs[1]};
  Front right{main[n - 1], main[n - 2], first[n - 2], rhs[n - 1], rhs[n - 2]};
  bool usable = true;
  const auto stepLeft = [&](std::size_t k) {
    usable &= Usable(left.nearDiagonal);
    x[k] = Eliminate(left, second[k], main[k + 2], first[k + 1], rhs[k + 2], rows[k]);
  };
  const auto stepRight = [&](std::size_t k) {
    const std::size_t i = n - 1 - k;
    usable &= Usable(right.nearDiagonal);
    x[i] = Eliminate(right, second[i - 2], main[i - 2], first[i - 2], rhs[i - 2], rows[i]);
  };
  for (std::size_t k = 0; k < middle; ++k) {
    stepLeft(k);
    stepRight(k);
  }
  if (fromBack > middle) stepRight(middle);

  // Both fronts now hold the middle rows, each with the matrix's own values in them: one share is taken off again.
  const double d0 = left.nearDiagonal + (right.farDiagonal - main[middle]);
  const double d1 = right.nearDiagonal + (left.farDiagonal - main[middle + 1]);
  const double b = left.coupling + (right.coupling - first[middle]);
  const double r0 = left.nearRhs + (right.farRhs - rhs[middle]);
  const double r1 = right.nearRhs + (left.farRhs - rhs[middle + 1]);

  // Inwards out again: the middle rows by elimination of the first, then each side from its own two last unknowns.
  const double ratio = b / d0;
  const double lastPivot = d1 - ratio * b;
  if (!usable || !Usable(d0) || !Usable(lastPivot)) return false;
  x[middle + 1] = (r1 - ratio * r0) / lastPivot;
  x[middle] = r0 / d0 - ratio * x[middle + 1];
  double nearLeft = x[middle], farLeft = x[middle + 1];
  double nearRight = farLeft, farRight = nearLeft;
  const auto backLeft = [&](std::size_t k) {
    const double value = (x[k] - rows[k].toFar * farLeft) - rows[k].toNear * nearLeft;
    farLeft = nearLeft;
    x[k] = nearLeft = value;
  };
  const auto backRight = [&](std::size_t i) {
    const double value = (x[i] - rows[i].toFar * farRight) - rows[i].toNear * nearRight;
    farRight = nearRight;
    x[i] = nearRight = value;
  };
  for (std::size_t k = 0; k < middle; ++k) {
    backLeft(middle - 1 - k);
    backRight(middle + 2 + k);
  }
  if (fromBack > middle) backRight(n - 1);
  return true;
}

}  // namespace texturon
