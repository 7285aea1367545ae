// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

#include "settings/settings.h"

namespace texturon {

/// The note that a table appends to a row's name to show the setting behind the value, in Windows-1252; it begins with
/// three blanks. Empty for rows without one.
std::string RowLabel(std::string_view name, const AnalysisSettings& settings, bool metric);

/// Notes of the configurable material-ratio and height rows.
std::string MaterialRatioLabel(const MaterialRatioRow& row, bool metric);
std::string HtpLabel(const HtpRow& row);

}  // namespace texturon
