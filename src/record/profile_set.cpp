// SPDX-License-Identifier: Apache-2.0

#include "record/profile_set.h"

#include <utility>

namespace texturon {

Profile ProfileSet::View(ProfileKind kind) const {
  switch (kind) {
    case ProfileKind::kRaw:
      break;
    case ProfileKind::kFormSuppressed:
      return {kind, formSuppressed, computeRange, residualSpacingUM};
    case ProfileKind::kPrimary:
      return {kind, primary, primaryRange, residualSpacingUM};
    case ProfileKind::kWaviness:
      return {kind, waviness, evaluationRange, residualSpacingUM};
    case ProfileKind::kRoughness:
      return {kind, roughness, evaluationRange, residualSpacingUM};
    case ProfileKind::kClosing:
      return {kind, closing, evaluationRange, residualSpacingUM};
    case ProfileKind::kOpening:
      return {kind, opening, evaluationRange, residualSpacingUM};
  }
  return {ProfileKind::kRaw, raw, IndexRange::FromCount(0, pointCount), spacingUM};
}

ProfileSet MakeProfileSet(std::vector<double> heightsUM, double spacingUM) {
  ProfileSet set;
  set.pointCount = static_cast<std::int32_t>(heightsUM.size());
  set.spacingUM = spacingUM;
  set.residualSpacingUM = spacingUM;
  set.raw = std::move(heightsUM);
  const std::size_t n = set.raw.size();
  for (std::vector<double>* derived : {&set.form, &set.formSuppressed, &set.primary, &set.waviness, &set.roughness}) {
    derived->assign(n, 0.0);
  }
  return set;
}

}  // namespace texturon
