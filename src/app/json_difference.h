// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "base/json_value.h"

namespace texturon {

/// Where two result objects are not the same. Texts are UTF-8.
struct JsonDifference {
  std::string place;  ///< parameters.Ra.value
  std::string former;
  std::string now;
};

struct JsonComparison {
  std::size_t figures = 0;  ///< numbers, flags and texts that were compared
  std::vector<JsonDifference> differences;
};

/// Compares what analyses came to, numbers to the bit: every member of `former` that says what was measured or found.
/// What only says where, by whom or in which words (names of files, program, request, captions, labels) is passed over,
/// and so is what `now` has besides.
JsonComparison CompareResults(const JsonValue& former, const JsonValue& now);

}  // namespace texturon
