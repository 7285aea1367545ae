// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace texturon {

// Taylor Hobson form data as text, ".MOD": positions and heights of a profile with what is known of its form. The
// bytes are for ReplaceFile.

/// The points of either kind: position i is (firstIndex + i) x spacing - offset.
struct ModPoints {
  std::span<const double> heightsUM;
  double spacingUM = 0.0;
  std::int32_t firstIndex = 0;  ///< of the first height in the record
  double xOffsetMM = 0.0;       ///< of the fitted form
};

/// A waviness profile. `isArc`: the form setting is an arc or a fixed radius; else the offset is not taken off.
struct WavinessMod {
  ModPoints points;
  bool isArc = false;
  double assessmentLengthMM = 0.0;
};

/// One coefficient of an asphere, with the number under which it is written.
struct ModCoefficient {
  double number = 0.0;
  double value = 0.0;
};

/// The residual of an asphere. The name keeps six characters of the identification, blanks and full stops as
/// underscores, and is filled up with blanks, so that the number behind it stands where a reader looks for it.
struct AsphereMod {
  ModPoints points;
  std::string_view identification;
  double version = 0.0;  ///< the number behind the name
  double assessmentLengthMM = 0.0;
  std::span<const ModCoefficient> coefficients;  ///< at most 20
  double radiusMM = 0.0;
  double conic = 0.0;
  std::string_view comment;
};

/// The bytes of a file, or why there are none: a sentence that goes on where the file's name stops.
struct ModText {
  std::string bytes;
  std::string reason;

  bool ok() const { return reason.empty(); }
};

/// Refused: no points, a spacing that is not above 0, a number that is not finite, too many coefficients. Numbers keep
/// seven significant digits; positions are therefore even only to these.
ModText WavinessModText(const WavinessMod& record);
ModText AsphereModText(const AsphereMod& record);

}  // namespace texturon
