// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>

#include "parameters/edition2021/edition_input.h"

// Rows of the material ratio curve of ISO 21920-2: heights from the highest to the lowest, point k = 1 .. n at the
// ratio 100 k / n percent.
namespace texturon {

/// Height (um) at a ratio p: that of the point with the smallest k for which 100 k / n >= p, with a slack of 1e-9
/// points so that p = 100 k / n finds k itself; at least the first. Nothing for p outside 0 .. 100 and for no points.
Defined<double> HeightAtMaterialRatio(std::span<const double> sorted, double percent);

/// mr(c), %: share of the points at or above the height c about the mean line. mr(p, dc): at or above the height at
/// ratio p less dc.
RowResult MaterialRatio(const EditionInput& row);
RowResult HeightAtRatioBelowTop(const EditionInput& row);  ///< cm(p), um: about the highest point, so at most 0
RowResult HeightAtRatioOfMean(const EditionInput& row);    ///< mc(p), um: about the mean line
RowResult HeightBetweenRatios(const EditionInput& row);    ///< dc(p, q), um: height at p less height at q, p < q

// Volumes in um, the same number as ml/m2: means over all points of what is above (m) or missing below (v) the height
// at a ratio. p and q are VolumeUpperPercent and VolumeLowerPercent unless given.
RowResult MaterialVolume(const EditionInput& row);      ///< vm(p)
RowResult VoidVolume(const EditionInput& row);          ///< vv(p)
RowResult PeakMaterialVolume(const EditionInput& row);  ///< vmp(p) = vm(p)
RowResult CoreMaterialVolume(const EditionInput& row);  ///< vmc(p, q) = vm(q) - vm(p)
RowResult CoreVoidVolume(const EditionInput& row);      ///< vvc(p, q) = vv(p) - vv(q)
RowResult ValleyVoidVolume(const EditionInput& row);    ///< vvv(q) = vv(q)

/// Core of the material ratio curve. The line is that of FitCoreLine with the ratios 100 k / n.
struct CoreCurve {
  double upper = 0.0;       ///< c1: the line at 0 %
  double lower = 0.0;       ///< c2: the line at 100 %
  double upperRatio = 0.0;  ///< %, where the curve, straight between its points, passes c1; 0: no point lies above it
  double lowerRatio = 0.0;  ///< %, where it passes c2; 100: no point lies at or below it
  double upperArea = 0.0;   ///< um %, between curve and c1 from 0 % on; before its first point the curve is level
  double lowerArea = 0.0;   ///< um %, between c2 and curve up to 100 %
};
Defined<CoreCurve> ComputeCoreCurve(std::span<const double> sorted);

RowResult CoreHeight(const EditionInput& row);             ///< k, um
RowResult UpperCoreRatio(const EditionInput& row);         ///< mrk1, %
RowResult LowerCoreRatio(const EditionInput& row);         ///< mrk2, %
RowResult HillArea(const EditionInput& row);               ///< ak1, um %
RowResult DaleArea(const EditionInput& row);               ///< ak2, um %
RowResult ReducedHillHeight(const EditionInput& row);      ///< pk = 2 ak1 / mrk1, um; 0 without width
RowResult ReducedDaleDepth(const EditionInput& row);       ///< vk = 2 ak2 / (100 - mrk2), um; 0 without width
RowResult GreatestHillAboveCore(const EditionInput& row);  ///< pkx, um
RowResult GreatestDaleBelowCore(const EditionInput& row);  ///< vkx, um

}  // namespace texturon
