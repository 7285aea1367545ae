// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "signal/fft/fft.h"

namespace texturon {

inline constexpr std::size_t kRegressionMoments = 5;  ///< sums of d s u^j, j = 0 .. 4
inline constexpr std::size_t kRegressionHeights = 3;  ///< sums of d z s u^j, j = 0 .. 2
inline constexpr std::size_t kRegressionSums = kRegressionMoments + kRegressionHeights;

/// The sums of one point's equations; u is the distance, about 3 at the farthest, s is scaled so that all of them add
/// up to 1.
using RegressionPoint = std::array<double, kRegressionSums>;

/// The weights of the distance, and the sums of all points of a record of n by transforms. The sums have next to no
/// waves shorter than a third of g cutoffs (regression_filter.h), and so has every single weight as a function of its
/// place: they are worked with at every so many points, the nodes, a power of two.
class RegressionSums {
public:
  RegressionSums(std::size_t n, double spacingUM, double cutoffMM);

  /// Points from node to node.
  std::size_t Thinning() const { return thinning_; }
  /// The cell after point i x Thinning() is between nodes i + kBefore and i + kBefore + 1 of Sum(), i + 1 without
  /// thinning.
  std::size_t NodesBefore() const { return before_; }
  std::size_t Nodes() const { return nodes_; }

  /// The sums for the robust weights d and heights z, both of the order of 1, at all nodes.
  void Make(std::span<const double> d, std::span<const double> z);
  /// Of what Make made.
  std::span<const double> Sum(std::size_t sum) const { return sums_[sum]; }

  /// out[r] = the polynomial through values at the nodes, r points behind the first one of a cell; no more points than
  /// the cell has.
  void Between(std::span<const double> values, std::size_t cell, std::span<double> out) const;
  /// The quotients of two such polynomials at all points of the record.
  void Quotients(std::span<const double> above, std::span<const double> below, std::span<double> out);

  /// The sums of a point by definition.
  RegressionPoint AddUp(std::size_t k, std::span<const double> d, std::span<const double> z) const;
  /// Points on either side that AddUp looks at.
  std::size_t Reach() const { return reach_; }

private:
  /// Real and imaginary parts.
  struct Pair {
    std::vector<double> re, im;
  };

  void MakeFactors(double stepInReaches, double weightsSum, std::size_t extent);
  void Spread(std::span<const double> d, std::span<const double> z);
  void SpreadOnEverySecond(std::span<const double> d, std::span<const double> z);
  /// The transform back of product_ is two sums.
  void TransformBack(std::size_t realSum, std::size_t imaginarySum);

  std::size_t reach_;
  double step_;  ///< u from point to point
  std::size_t thinning_;
  std::size_t before_;
  std::size_t nodes_;
  std::vector<double> weights_;
  std::vector<double> nodeWeights_;    ///< a row for every point of a cell
  std::vector<double> nodeWeightsOf_;  ///< a row for every node
  FftPlan plan_;
  // Even weights have real transforms and odd ones imaginary ones: the transform of one plus i times the next is real,
  // and so two sums come from a product by real numbers and one transform.
  std::vector<double> factor01_, factor23_, factor2_, factor4_;
  std::array<std::vector<double>, kRegressionSums> sums_;
  Pair spread_;  ///< weights, and heights times weights, at the nodes
  Pair weightsSpectrum_, heightsSpectrum_, product_;
  std::vector<double> odd_, oddAbove_, oddBelow_;  ///< of the points between nodes
};

}  // namespace texturon
