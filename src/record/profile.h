// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>
#include <string>

#include "base/index_range.h"

namespace texturon {

enum class ProfileKind { kRaw, kFormSuppressed, kPrimary, kWaviness, kRoughness, kClosing, kOpening };

/// One profile of a record: all samples, the range in which they mean something, and the sample spacing (um). The
/// samples belong to a ProfileSet that must outlive the view.
struct Profile {
  ProfileKind kind = ProfileKind::kRaw;
  std::span<const double> samples;
  IndexRange range;
  double spacingUM = 0.0;

  /// Heights (um) of the valid range.
  std::span<const double> Heights() const {
    return samples.subspan(static_cast<std::size_t>(range.first), static_cast<std::size_t>(range.count));
  }
};

/// Display and export title. The two envelopes name their ball radius, handed in as millimetres and shown in metres;
/// the other kinds ignore it.
std::string ProfileTitle(ProfileKind kind, double ballRadiusMM = 0.0);

}  // namespace texturon
