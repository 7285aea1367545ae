// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/document.h"

namespace texturon {

/// A result of the instrument beside the one computed here, as texts (Windows-1252) in the instrument's unit.
struct ComparedValue {
  std::string name;
  std::string unit;
  std::string instrument;
  std::string here;        ///< empty: not computed, or in a unit that the instrument's does not go with
  std::string difference;  ///< here minus instrument
};

/// The same as numbers, in the instrument's unit.
struct InstrumentMatch {
  InstrumentValue instrument;
  std::optional<double> here;
};
/// Values whose name and unit the catalogue knows; without one here where the row is not selected or not computed.
std::vector<InstrumentMatch> MatchInstrument(const Document& document);

/// The results that the record's file carries, in its order, beside the selected rows of the same name (names of test
/// plans count: Rz is RzDIN). Both belong to settings of their own; equal ones are not looked for.
std::vector<ComparedValue> CompareWithInstrument(const Document& document);

}  // namespace texturon
