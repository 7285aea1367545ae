// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/document.h"

namespace texturon {

/// What the display settings call the material ratios.
struct MaterialRatioTitles {
  std::string_view primary;    ///< Pmr or Tpa
  std::string_view roughness;  ///< Rmr or Tpi
};
MaterialRatioTitles MaterialRatioTitlesOf(const DisplaySettings& display);

/// A configurable row with its last result, as tables and exports show it.
struct RatioRowEntry {
  ParameterDef row;        ///< named Pmr, Rmr, PHtp or RHtp
  std::string_view title;  ///< the name, or what the display settings call it instead
  std::size_t index = 0;   ///< among the ten of its name
  std::string label;       ///< in the document's units
};

/// The selected material-ratio rows, primary first.
std::vector<RatioRowEntry> SelectedMaterialRatios(const Document& document);

/// The selected rows of heights between two material ratios, primary first.
std::vector<RatioRowEntry> SelectedHtps(const Document& document);

}  // namespace texturon
