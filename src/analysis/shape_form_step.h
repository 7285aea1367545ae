// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>

#include "platform/prompts.h"
#include "settings/settings.h"
#include "signal/form/form_asphere.h"
#include "signal/form/form_fixed_radius.h"
#include "signal/form/form_free.h"

namespace texturon {

// The forms that are positioned by the minimiser, with what they show and ask: a progress window "Optimization" for the
// time of the fit, and the minimiser's messages afterwards. All X of the results count from the first height of the
// input.

/// Asks whether to switch the radius' sign where the data bend the other way, unless `isQuiet`.
std::optional<FixedRadiusFit> RemoveFixedRadius(const FormInput& input, const AnalysisSettings& settings, bool isQuiet,
                                                Prompts& prompts, FormOutput output);

/// `firstMM` is the X of the input's first point in the record, from which AsphereXStartMM counts.
std::optional<AsphereFit> RemoveAsphere(const FormInput& input, const AnalysisSettings& settings, double firstMM,
                                        Prompts& prompts, FormOutput output);

std::optional<FreeFormFit> RemoveFreeForm(const FormInput& input, const AnalysisSettings& settings, Prompts& prompts,
                                          FormOutput output);

}  // namespace texturon
