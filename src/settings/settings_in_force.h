// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <vector>

#include "settings/settings_table.h"

namespace texturon {

/// A setting as it stands in a file: ANALYSIS.LcCutoffMM, PARAMETERS.Name03.
struct SettingInForce {
  std::string name;
  SettingValue value;
};

/// Whether a value of an analysis, or a verdict, can follow from this key with these settings. What only shows, names
/// or exports does not count, nor do the numbers of a form that is not removed.
bool ResultsDependOn(const SettingKey& key, const Settings& settings);

/// Every setting that results depend on, so that SetOne of each, in this order, on default settings with an empty
/// parameter list makes settings that give the same results. Of the lists only rows that are selected, numbered anew
/// where the list has no fixed length, and of those what differs from a new row.
std::vector<SettingInForce> SettingsInForce(const Settings& settings);

}  // namespace texturon
