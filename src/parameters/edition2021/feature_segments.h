// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// Hills and dales by watershed segmentation and their pruning (ISO 16610-45), on which the feature parameters of
// ISO 21920-2 rest. All functions work on dales; hills are the dales of the profile upside down.
namespace texturon {

/// A pit or a peak: a run of equal heights with lower (higher) ones on both sides.
struct TurningPoint {
  std::size_t first = 0;  ///< of the run
  std::size_t last = 0;   ///< inclusive
  double height = 0.0;    ///< um

  /// In points; the middle of the run, so x.5 is possible.
  double Place() const { return 0.5 * (static_cast<double>(first) + static_cast<double>(last)); }
};

/// A pit with the peaks on either side of it.
struct Dale {
  TurningPoint pit;
  TurningPoint left;
  TurningPoint right;
  bool lowerIsLeft = true;  ///< which of the peaks is the lower one

  const TurningPoint& Lower() const { return lowerIsLeft ? left : right; }
  const TurningPoint& Higher() const { return lowerIsLeft ? right : left; }
  double Depth() const { return Lower().height - pit.height; }
};

/// The dales of a record in order. Its ends are neither peak nor pit, and a pit outside the first and the last peak has
/// no dale. Of two equal peaks the left one is the lower. Heights must be finite.
std::vector<Dale> FindDales(std::span<const double> z);

/// What a dale is measured by.
enum class FeatureAttribute : std::uint8_t { kLocalDepth, kHeight, kWidth, kVolume, kLineLength, kCurvature, kCount };

/// Measures dales of one record. Its attributes take the level c of the lower peak at the place a.
class DaleMeasure {
public:
  /// `z` is the record that the dales were found in, upside down for hills; it must outlive the measure.
  DaleMeasure(std::span<const double> z, double spacingUM) : z_(z), spacingUM_(spacingUM) {}

  /// local depth, um; height: depth of the pit below the mean line, um; width from a to the crossing of c that is
  /// farthest from it, mm; volume: area between c and the profile below it as far as there, over the evaluation length,
  /// um; line length: of the profile as far as there, mm; curvature z'' / (1 + z'^2)^1.5 at the pit, 1/um, of a pit
  /// between two points the mean of both; count: 1.
  double Of(const Dale& dale, FeatureAttribute attribute) const;

private:
  struct Section;
  double Curvature(std::size_t i) const;
  Section FarSection(const Dale& dale) const;

  std::span<const double> z_;
  double spacingUM_;
};

/// Wolf pruning and its kin: while the smallest attribute (the first of equals) is below the threshold, that dale goes
/// with its pit and its lower peak. A dale beyond that peak reaches to the higher peak from then on and keeps its pit;
/// of two equal peaks its own old one is then the lower. A dale at the border goes alone.
///
/// In n log n where the attribute is the local depth: a heap whose outdated entries are passed over. Any other costs
/// the reach of the dales that merge as well.
void PruneDales(std::vector<Dale>& dales, const DaleMeasure& measure, FeatureAttribute attribute, double threshold);

/// The threshold that leaves the most even dales: pruning goes on while more than three are left; of the stages whose
/// mean attribute is more than three standard deviations (n - 1) the one with the largest ratio, the first of equals,
/// gives its smallest attribute. 100 where there is none.
double EvenestThreshold(std::span<const Dale> dales, const DaleMeasure& measure, FeatureAttribute attribute);

}  // namespace texturon
