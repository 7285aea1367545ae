// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "settings/analysis_settings.h"

namespace texturon {

struct PointTable {
  std::vector<FreeFormPoint> points;
  std::string reason;  ///< a sentence without its full stop; empty: all went well

  bool ok() const { return reason.empty(); }
};

/// Points from a text of two columns, X in mm and height in um, between tabs, blanks, semicolons or commas; what stands
/// in further columns is passed over. The decimal sign may be a comma where commas do not separate. At most 100 lines
/// of heading; after the first point every line that is not blank must be one.
PointTable ReadPointTable(std::string_view text);

}  // namespace texturon
