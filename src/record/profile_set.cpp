// SPDX-License-Identifier: Apache-2.0

#include "record/profile_set.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace texturon {

bool ProfileSet::Has(ProfileKind kind) const {
  return (kind != ProfileKind::kClosing || !closing.empty()) && (kind != ProfileKind::kOpening || !opening.empty()) &&
         View(kind).range.count > 0;
}

Profile ProfileSet::View(ProfileKind kind) const {
  const auto derived = [&](const Samples& samples, const std::optional<IndexRange>& range) {
    return Profile{kind, samples, range.value_or(IndexRange{}), residualSpacingUM};
  };
  switch (kind) {
    case ProfileKind::kRaw:
      break;
    case ProfileKind::kFormSuppressed:
      return derived(formSuppressed, computeRange);
    case ProfileKind::kPrimary:
      return derived(primary, primaryRange);
    case ProfileKind::kWaviness:
      return derived(waviness, evaluationRange);
    case ProfileKind::kRoughness:
      return derived(roughness, evaluationRange);
    case ProfileKind::kClosing:
      return derived(closing, evaluationRange);
    case ProfileKind::kOpening:
      return derived(opening, evaluationRange);
  }
  return {ProfileKind::kRaw, raw, IndexRange::FromCount(0, pointCount), spacingUM};
}

ProfileSet MakeProfileSet(std::vector<double> heightsUM, double spacingUM) {
  ProfileSet set;
  set.pointCount = static_cast<std::int32_t>(heightsUM.size());
  set.spacingUM = spacingUM;
  set.residualSpacingUM = spacingUM;
  set.raw = std::move(heightsUM);
  return set;
}

void MakeRoom(Samples& derived, std::int32_t pointCount, const IndexRange& written) {
  const auto count = static_cast<std::size_t>(pointCount);
  if (derived.size() == count) return;
  derived.clear();
  derived.resize(count);
  const auto before = derived.begin() + written.first;
  std::fill(derived.begin(), before, 0.0);
  std::fill(before + written.count, derived.end(), 0.0);
}

void FillEmpty(ProfileSet& profiles) {
  for (Samples* derived :
       {&profiles.form, &profiles.formSuppressed, &profiles.primary, &profiles.waviness, &profiles.roughness}) {
    if (derived->empty()) derived->assign(profiles.raw.size(), 0.0);
  }
}

}  // namespace texturon
