// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "base/number_text.h"

namespace texturon {

/// The text of a native file with a saw-tooth of `points` heights whose teeth are `heightUM` high.
inline std::string SmallProfile(int points, double heightUM) {
  std::string text =
      "Lumetrace_Data 1.0\nIDENTIFICATION: small\nDATE: d\nSPACING_UM: 10\nNUMBER_OF_POINTS: " + IntegerText(points) +
      "\nPROFILE_UM:\n";
  for (int i = 0; i < points; ++i) text += FixedText(heightUM * (i % 7) / 6.0, 4) + "\n";
  return text;
}

}  // namespace texturon
