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
  /// The cell after point i x Thinning() is between nodes i + NodesBefore() and the next one; without thinning its
  /// node is i.
  std::size_t NodesBefore() const { return before_; }

  // Where the caller leaves the robust weights d of all points and d z, both of the order of 1; they stay as they are.

  std::span<double> Weights() { return (form_.thinning == 1 ? transforms_.Weights() : std::span(points_)).first(n_); }
  std::span<double> Products() {
    return (form_.thinning == 1 ? transforms_.Heights() : std::span(products_)).first(n_);
  }

  /// The sums of what stands there at all nodes, and their solutions.
  void Make();
  // Of what Make made:

  std::span<const double> Determinants() const { return transforms_.Determinants().first(nodes_); }
  /// The quotients of the polynomials through the numerators and the determinants, at all points of the record. How
  /// many determinants at the nodes beside them are not above `least`.
  std::size_t Quotients(double least, std::span<double> out);
  /// out[r] = the polynomials through all sums at the nodes, r points behind the first one of a cell; no more points
  /// than the cell has.
  void SumsOf(std::size_t cell, std::span<RegressionPoint> out) const;

  /// The points of heights z that count at point k, with their weights and their distances in u from it.
  void PointsAround(std::size_t k, std::span<const double> z, std::vector<WeightedHeight>& points);

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

  std::size_t n_;
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
