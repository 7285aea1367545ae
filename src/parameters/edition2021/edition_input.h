// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <span>

#include "parameters/parameter_profile.h"

namespace texturon {

/// What a row of the edition of 2021 is computed from: the profile of its letter, the settings and the arguments that
/// stand in brackets behind its name.
struct EditionInput {
  const ParameterProfile& profile;
  const AnalysisSettings& settings;
  std::span<const double> arguments = {};

  const StandardSettings& Standard() const { return settings.standard; }
  double Argument(std::size_t index, double otherwise) const {
    return index < arguments.size() ? arguments[index] : otherwise;
  }
  /// Evaluation length: points times spacing.
  double LengthMM() const { return static_cast<double>(profile.Heights().size()) * profile.SpacingMM(); }
};

using EditionRoutine = RowResult (*)(const EditionInput&);

/// A row that the older edition computes in the same way.
template <RowRoutine Routine>
RowResult AsBefore(const EditionInput& row) {
  return Routine({row.profile, row.settings});
}

}  // namespace texturon
