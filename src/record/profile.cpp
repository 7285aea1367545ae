// SPDX-License-Identifier: Apache-2.0

#include "record/profile.h"

#include "base/number_text.h"

namespace texturon {

std::string ProfileTitle(ProfileKind kind, double ballRadiusMM) {
  const auto withRadius = [ballRadiusMM](const char* start) {
    return start + FixedText(ballRadiusMM * 0.001, 1) + " m)";
  };
  switch (kind) {
    case ProfileKind::kRaw:
      return "Raw Data";
    case ProfileKind::kFormSuppressed:
      return "Form Suppressed Data";
    case ProfileKind::kPrimary:
      return "Primary Profile";
    case ProfileKind::kWaviness:
      return "Waviness Profile";
    case ProfileKind::kRoughness:
      return "Roughness Profile";
    case ProfileKind::kClosing:
      return withRadius("Morphological Closing Profile (Radius = ");
    case ProfileKind::kOpening:
      return withRadius("Morphological Opening Profile (Radius = ");
  }
  return {};
}

}  // namespace texturon
