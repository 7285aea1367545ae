// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <span>
#include <vector>

namespace texturon {

/// One profile element: a hill with the dale that follows it.
struct ProfileElement {
  double widthPoints = 0.0;  ///< between its two upward mean-line crossings, in point spacings
  double heightUM = 0.0;     ///< hill height plus dale depth
  double startPoints = 0.0;  ///< its first crossing, counted in point spacings from the first point
};

struct ElementThresholds {
  double heightUM = 0.0;     ///< full width of a band about the mean line that an excursion must leave to count
  double widthPoints = 0.0;  ///< least width of an element, in point spacings
};

/// Splits a profile (heights in um about its mean line) into elements in one scan from left to right.
///
/// Upward crossings of the mean line (z[i-1] < 0 <= z[i], placed by linear interpolation) bound the elements; a record
/// that starts at 0 and rises starts with one. An excursion above +heightUM/2 is a significant hill, one below
/// -heightUM/2 a significant dale. An element begins at an upward crossing, needs a significant hill and after it a
/// significant dale, and ends at the first upward crossing after these at which it is at least widthPoints wide. The
/// next one begins there; what stays open at the end of the record is dropped.
///
/// Heights follow significant excursions alone: those of one side with only insignificant ones between them are one
/// hill or one dale, also across an element's end. An element takes its first hill and the dale after that; one that
/// had to go on for its width takes its highest hill and its deepest dale.
std::vector<ProfileElement> FindProfileElements(std::span<const double> heights, const ElementThresholds& thresholds);

struct ElementStatistics {
  double meanWidthPoints = 0.0;
  double meanHeightUM = 0.0;
  double greatestHeightUM = 0.0;
  std::optional<double> widthDeviationPoints;  ///< standard deviation with n - 1; needs two elements
};

/// Empty for no elements.
std::optional<ElementStatistics> SummariseElements(std::span<const ProfileElement> elements);

}  // namespace texturon
