// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>

namespace texturon {

/// How the limits of several profiles' values are kept; any other number is the first.
enum AcceptanceNumber : std::int32_t { kAcceptMaximum = 0, kAccept16Percent = 1, kAcceptMedian = 2 };

/// How an uncertainty enters a verdict; any other number is the first.
enum DecisionNumber : std::int32_t {
  kDecideSimple = 0,       // the value alone
  kDecideGuarded = 1,      // limits moved inward and outward by U; between them undecided
  kDecideGuardedFail = 2,  // the same, where undecided fails
};

/// How values become verdicts.
struct DecisionSettings {
  std::int32_t AcceptanceRule = kAcceptMaximum;
  std::int32_t DecisionRule = kDecideSimple;

  friend bool operator==(const DecisionSettings&, const DecisionSettings&) = default;
};

}  // namespace texturon
