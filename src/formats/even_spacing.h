// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>
#include <string>
#include <vector>

#include "formats/profile_reader.h"

namespace texturon {

/// Positions (um) and heights (um) of a trace as the file gives them, in file order.
struct Trace {
  std::vector<double> xUM;
  std::vector<double> zUM;   ///< NaN marks an invalid point
  double lastDigitUM = 0.0;  ///< value of the last printed digit of the positions; 0: not known
};

/// Makes a profile of equal spacing: the mean step. Positions that deviate from it by no more than 1e-6 of the step, or
/// than their printed digits allow, are taken as even; others are resampled by linear interpolation, with a warning. A
/// falling sequence is turned round. Invalid points at the ends are cut off, others interpolated, with a warning.
/// Returns what was wrong (positions that go back and forth, fewer than two points), or nothing.
std::string MakeEven(Trace&& trace, ImportedProfile& profile);

/// Replaces NaN inside by linear interpolation and cuts it off at the ends; warns when there was any.
void FillInvalid(std::vector<double>& heightsUM, std::vector<std::string>& warnings);

}  // namespace texturon
