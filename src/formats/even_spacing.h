// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "formats/profile_reader.h"

namespace texturon {

/// Positions (um) and heights (um) of a trace as the file gives them, in file order.
struct Trace {
  std::vector<double> xUM;
  std::vector<double> zUM;  ///< NaN marks an invalid point
  /// Value of the last printed digit of the positions, 0 where it is not known; asked where they are not even without.
  std::function<double()> lastDigitUM;
  bool resamplesToMean = false;  ///< to the mean step instead of the median
};

/// What was wrong, and with which point of the trace as it came, from 0; without a reason all went well.
struct EvenOutcome {
  std::string reason;
  std::size_t point = 0;

  bool ok() const { return reason.empty(); }
};

/// Makes a profile of equal spacing. Positions that deviate from their mean step by no more than 1e-6 of it, or than
/// their printed digits allow, are taken as even; others are resampled to their median step by linear interpolation,
/// with a warning. A falling sequence is turned round. Invalid points at the ends are cut off, others interpolated
/// between the positions of their neighbours, with a warning. Positions that go back and forth or repeat, and fewer
/// than two points, are wrong, and so is a trace most of which lies in gaps.
EvenOutcome MakeEven(Trace&& trace, ImportedProfile& profile);

/// Replaces NaN inside by linear interpolation and cuts it off at the ends; warns when there was any.
void FillInvalid(std::vector<double>& heightsUM, std::vector<std::string>& warnings);

}  // namespace texturon
