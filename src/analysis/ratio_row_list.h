// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "analysis/document.h"

namespace texturon {

/// A configurable row with its last result, as tables and exports show it.
struct RatioRowEntry {
  ParameterDef row;       ///< named Pmr, Rmr, PHtp or RHtp
  std::size_t index = 0;  ///< among the ten of its name
  std::string label;      ///< in the document's units
};

/// The selected material-ratio rows, primary first.
std::vector<RatioRowEntry> SelectedMaterialRatios(const Document& document);

/// The selected rows of heights between two material ratios, primary first.
std::vector<RatioRowEntry> SelectedHtps(const Document& document);

}  // namespace texturon
