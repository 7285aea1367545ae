// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string_view>

namespace texturon {

/// Micrometres in one unit of length: m, cm, mm, um, nm, pm, Angstrom (A with any prefix, too), inch, mil and microinch
/// as symbols or words, in the singular or the plural, in any case; the micro sign as Windows-1252, UTF-8 or DOS code
/// page byte. Empty for what is no such unit.
std::optional<double> MicrometresPerUnit(std::string_view unit);

/// Radians in one unit of angle: radians with a prefix, degrees, minutes and seconds of arc. Empty for what is none.
std::optional<double> RadiansPerUnit(std::string_view unit);

/// What a heading's cell says of a unit.
struct UnitStatement {
  enum class Kind { kNone, kLength, kOther };  ///< kOther: a unit, but no length, or one with a factor before it
  Kind kind = Kind::kNone;
  double micrometres = 0.0;  ///< in one unit; 0 unless it is a length
  std::string_view text;     ///< the unit as the cell gives it
  bool isAlone = false;      ///< the cell is the unit and nothing else
  bool hasBrackets = false;  ///< of whatever content
};

/// The unit in a heading's cell: "[mm]", "x (um)", "Lateral um", "x in mm", "z_nm", "X/mm", "mm". What stands in
/// brackets and is no known unit is part of the name.
UnitStatement UnitOfCell(std::string_view cell);

}  // namespace texturon
