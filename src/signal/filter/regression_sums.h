// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "signal/filter/regression_transforms.h"
#include "signal/filter/weighted_parabola.h"

namespace texturon {

/// How far nodes lie apart, in points, a power of two; with more than one of those, polynomials go through `taps` of
/// them, and what stands at points is spread onto `spread`, as many or fewer.
struct RegressionNodes {
  std::size_t thinning = 1;
  std::size_t taps = 1;
  std::size_t spread = 1;
};

/// The weights of the distance, and the sums of all points of a record of n by transforms: the distance u is about 3 at
/// the farthest, s is scaled so that all of them add up to 1. The sums have next to no waves shorter than a third of g
/// cutoffs (regression_filter.h), and so has every single weight as a function of its place: they are worked with at
/// every so many points, the nodes, as it costs least.
class RegressionSums {
public:
  RegressionSums(std::size_t n, double spacingUM, double cutoffMM);

  /// Points from node to node.
  std::size_t Thinning() const { return form_.thinning; }
  /// The cell after point i x Thinning() is between nodes i + kBefore and i + kBefore + 1 of Sum(), i + 1 without
  /// thinning.
  std::size_t NodesBefore() const { return before_; }
  std::size_t Nodes() const { return nodes_; }
  /// With what Quotients reads behind them.
  std::size_t PaddedNodes() const { return nodes_ + kLaneQuantum; }

  /// The sums for the robust weights d and heights z, both of the order of 1, at all nodes.
  void Make(std::span<const double> d, std::span<const double> z);
  /// Of what Make made.
  std::span<const double> Sum(std::size_t sum) const { return transforms_.Sum(sum); }

  /// out[r] = the polynomial through values at the nodes, r points behind the first one of a cell; no more points than
  /// the cell has.
  void Between(std::span<const double> values, std::size_t cell, std::span<double> out) const;
  /// The quotients of two such polynomials at all points of the record. Some more values follow those of the nodes.
  void Quotients(std::span<const double> above, std::span<const double> below, std::span<double> out);

  /// The points that count at point k, with their weights and their distances in u from it.
  void PointsAround(std::size_t k, std::span<const double> d, std::span<const double> z,
                    std::vector<WeightedHeight>& points) const;

  /// Estimated time of Make, and of what is done between nodes, in the units of BatchFft::Cost.
  double Cost() const { return cost_; }

private:
  /// s u^j at the distances of nodes.
  RegressionTransforms::Factors FactorsOfNodes(double cutoffPoints) const;
  /// Adds what stands at the points of all cells to the nodes beside them.
  void Spread(std::span<const double> points, std::span<double> nodes);

  /// What the nodes beside a point of a cell count there.
  std::span<const double> RowOf(std::size_t point) const;
  std::span<const double> SpreadRowOf(std::size_t point) const;

  std::size_t reach_;
  double step_;  ///< u from point to point
  RegressionNodes form_;
  std::size_t before_;
  std::size_t cells_;
  std::size_t nodes_;
  double cost_;
  std::vector<double> weights_;
  std::vector<double> nodeWeights_, spreadWeights_;  ///< a row for every point of a cell
  RegressionTransforms transforms_;
  std::vector<double> points_, products_;  ///< of whole cells, with zeros behind the record
  // The first points of all cells, then the second ones ..; beside those that are spread lie zeros as far as nodes
  // reach and loops run on.
  std::size_t stride_ = 0;
  std::vector<double> phases_, quotients_, divisors_;
};

}  // namespace texturon
