// SPDX-License-Identifier: Apache-2.0

#include "parameters/profile_elements.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace texturon {
namespace {

/// A hill or dale: all significant excursions of one side up to the next of the other side.
struct Excursion {
  bool isHill = false;
  double extentUM = 0.0;  // height of a hill, depth of a dale; positive
};

/// An element while the scan is in it, and afterwards the excursions that it owns.
struct OpenElement {
  double start = 0.0;
  std::optional<std::size_t> firstHill;  // index into the excursions
  bool hasDale = false;
  bool wasTooNarrow = false;
};

struct ClosedElement {
  double start = 0.0;
  double width = 0.0;
  std::size_t firstHill = 0;
  std::size_t end = 0;  // one past the last excursion that it owns
};

class ElementScan {
public:
  ElementScan(std::span<const double> heights, const ElementThresholds& thresholds)
      : heights_(heights), half_(0.5 * thresholds.heightUM), leastWidth_(thresholds.widthPoints) {}

  std::vector<ProfileElement> Run() {
    if (StartsRising()) element_ = OpenElement{};
    const double half = half_;
    // As long as heights stay beyond the threshold nothing but the extent changes: no crossing lies there, unless the
    // threshold is on the wrong side of 0.
    const double most = half >= 0.0 ? half : std::numeric_limits<double>::infinity();
    double before = 0.0;
    double extent = 0.0;  // of the last excursion, so far
    const double* const heights = heights_.data();
    const std::size_t count = heights_.size();
    for (std::size_t i = 0; i < count; ++i) {
      const double z = heights[i];
      if (before < 0.0 && z >= 0.0) CrossUpward(static_cast<double>(i - 1) + before / (before - z));
      before = z;
      if (!element_) continue;
      if (z > half) {
        if (!isAtHill_) extent = SeeHill(extent);
        extent = std::max(extent, z);
        for (; i + 1 < count && heights[i + 1] > most; ++i) extent = std::max(extent, heights[i + 1]);
        before = heights[i];
      }
      if (z < -half) {
        if (!isAtDale_) extent = SeeDale(extent);
        extent = std::max(extent, -z);
        for (; i + 1 < count && heights[i + 1] < -most; ++i) extent = std::max(extent, -heights[i + 1]);
        before = heights[i];
      }
    }
    if (!excursions_.empty()) excursions_.back().extentUM = extent;
    return Measure();
  }

private:
  bool StartsRising() const {
    const auto first = std::find_if(heights_.begin(), heights_.end(), [](double z) { return z != 0.0; });
    return first != heights_.begin() && first != heights_.end() && *first > 0.0;
  }

  void CrossUpward(double position) {
    if (!element_) {
      Open(position);
      return;
    }
    if (!element_->hasDale) return;
    const double width = position - element_->start;
    if (width < leastWidth_) {
      element_->wasTooNarrow = true;
      return;
    }
    const std::size_t firstHill = *element_->firstHill;
    closed_.push_back({element_->start, width, firstHill, element_->wasTooNarrow ? excursions_.size() : firstHill + 2});
    Open(position);
  }

  void Open(double position) {
    element_ = OpenElement{position, {}, false, false};
    isAtHill_ = false;
    isAtDale_ = false;
  }

  double SeeHill(double extent) {
    extent = Enter(true, extent);
    if (!element_->firstHill) element_->firstHill = excursions_.size() - 1;
    isAtHill_ = true;
    isAtDale_ = false;
    return extent;
  }

  double SeeDale(double extent) {
    extent = Enter(false, extent);
    if (element_->firstHill) element_->hasDale = true;
    isAtHill_ = false;
    isAtDale_ = true;
    return extent;
  }

  /// The hill or dale that the last excursion is, or begins the next one; its extent so far.
  double Enter(bool isHill, double extent) {
    if (!excursions_.empty() && excursions_.back().isHill == isHill) return extent;
    if (!excursions_.empty()) excursions_.back().extentUM = extent;
    excursions_.push_back({isHill, 0.0});
    return 0.0;
  }

  std::vector<ProfileElement> Measure() const {
    std::vector<ProfileElement> elements;
    elements.reserve(closed_.size());
    for (const ClosedElement& element : closed_) {
      double hill = 0.0;
      double dale = 0.0;
      for (std::size_t e = element.firstHill; e < element.end; ++e) {
        double& extreme = excursions_[e].isHill ? hill : dale;
        extreme = std::max(extreme, excursions_[e].extentUM);
      }
      elements.push_back({element.width, hill + dale, element.start});
    }
    return elements;
  }

  std::span<const double> heights_;
  double half_;
  double leastWidth_;
  std::optional<OpenElement> element_;
  std::vector<Excursion> excursions_;
  bool isAtHill_ = false;  // the element knows of the hill, or of the dale, that the scan is at
  bool isAtDale_ = false;
  std::vector<ClosedElement> closed_;
};

}  // namespace

std::vector<ProfileElement> FindProfileElements(std::span<const double> heights, const ElementThresholds& thresholds) {
  return ElementScan(heights, thresholds).Run();
}

std::optional<ElementStatistics> SummariseElements(std::span<const ProfileElement> elements) {
  if (elements.empty()) return std::nullopt;
  const auto n = static_cast<double>(elements.size());
  ElementStatistics summary;
  for (const ProfileElement& element : elements) {
    summary.meanWidthPoints += element.widthPoints / n;
    summary.meanHeightUM += element.heightUM / n;
    summary.greatestHeightUM = std::max(summary.greatestHeightUM, element.heightUM);
  }
  if (elements.size() > 1) {
    double squares = 0.0;
    for (const ProfileElement& element : elements) {
      const double deviation = element.widthPoints - summary.meanWidthPoints;
      squares += deviation * deviation;
    }
    summary.widthDeviationPoints = std::sqrt(squares / (n - 1.0));
  }
  return summary;
}

}  // namespace texturon
