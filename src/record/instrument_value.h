// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

namespace texturon {

/// A result that a file carries of the instrument itself. Texts are Windows-1252, as the file gives them.
struct InstrumentValue {
  std::string name;
  double value = 0.0;
  std::string unit;  ///< empty: none stated
};

}  // namespace texturon
