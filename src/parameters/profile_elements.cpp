// SPDX-License-Identifier: Apache-2.0

#include "parameters/profile_elements.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

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
    for (std::size_t i = 0; i < heights_.size(); ++i) {
      const double z = heights_[i];
      if (i > 0 && heights_[i - 1] < 0.0 && z >= 0.0) {
        const double before = heights_[i - 1];
        CrossUpward(static_cast<double>(i - 1) + before / (before - z));
      }
      if (element_ && z > half_) SeeHill(z);
      if (element_ && z < -half_) SeeDale(-z);
    }
    return Measure();
  }

private:
  bool StartsRising() const {
    const auto first = std::find_if(heights_.begin(), heights_.end(), [](double z) { return z != 0.0; });
    return first != heights_.begin() && first != heights_.end() && *first > 0.0;
  }

  void CrossUpward(double position) {
    if (!element_) {
      element_ = OpenElement{position, {}, false, false};
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
    element_ = OpenElement{position, {}, false, false};
  }

  void SeeHill(double height) {
    Extend(true, height);
    if (!element_->firstHill) element_->firstHill = excursions_.size() - 1;
  }

  void SeeDale(double depth) {
    Extend(false, depth);
    if (element_->firstHill) element_->hasDale = true;
  }

  void Extend(bool isHill, double extent) {
    if (excursions_.empty() || excursions_.back().isHill != isHill) excursions_.push_back({isHill, 0.0});
    excursions_.back().extentUM = std::max(excursions_.back().extentUM, extent);
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
