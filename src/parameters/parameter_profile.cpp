// SPDX-License-Identifier: Apache-2.0

#include "parameters/parameter_profile.h"

#include "parameters/peak_to_valley.h"
#include "signal/sort_descending.h"

namespace texturon {

std::span<const double> ParameterProfile::SortedHeights() const {
  if (sorted_.empty() && !heights_.empty()) {
    ownSorted_.assign(heights_.begin(), heights_.end());
    SortDescending(ownSorted_);
    sorted_ = ownSorted_;
  }
  return sorted_;
}

const HeightExtremes& ParameterProfile::Extremes() const {
  if (!extremes_) extremes_ = FindExtremes(heights_);
  return *extremes_;
}

const HeightMoments& ParameterProfile::Moments() const {
  if (!moments_) moments_ = ComputeMoments(heights_);
  return *moments_;
}

const std::vector<HeightExtremes>& ParameterProfile::SegmentExtremes(double samplingLengthMM) const {
  const auto [entry, isNew] = segments_.try_emplace(samplingLengthMM);
  if (isNew) {
    const auto lengths =
        DivideIntoSamplingLengths(heights_.size(), SpacingMM(), samplingLengthMM, ShortProfile::kIsOneSamplingLength);
    if (lengths) entry->second = ExtremesPerSamplingLength(heights_, *lengths);
  }
  return entry->second;
}

NoValue ParameterProfile::WhyNotDivided(double samplingLengthMM) const {
  return WhyNotDividedIntoLengths(heights_.size(), SpacingMM(), samplingLengthMM);
}

const Defined<std::vector<ProfileElement>>& ParameterProfile::Elements(double heightPercent,
                                                                       double widthPercent) const {
  const auto [entry, isNew] = elements_.try_emplace({heightPercent, widthPercent});
  if (isNew) {
    const auto height = MeanPeakToValley(SegmentExtremes(lengths_.samplingLengthMM));
    if (!height) entry->second = WhyNotDivided(lengths_.samplingLengthMM);
    if (height) {
      const ElementThresholds thresholds{heightPercent * 0.01 * *height,
                                         lengths_.samplingLengthMM / SpacingMM() * widthPercent * 0.01};
      entry->second = FindProfileElements(heights_, thresholds);
    }
  }
  return entry->second;
}

}  // namespace texturon
