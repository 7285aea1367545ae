// SPDX-License-Identifier: Apache-2.0

#include "analysis/acceptance.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "parameters/catalogue.h"

namespace texturon {
namespace {

constexpr AcceptanceRuleName kRules[] = {
    {AcceptanceRule::kMaximum, "max"}, {AcceptanceRule::k16Percent, "16%"}, {AcceptanceRule::kMedian, "median"}};

constexpr std::size_t kFewestForShare = 3;
constexpr AcceptanceResult kNoValue = {Acceptance::kUndecided, "no value"};
constexpr AcceptanceResult kTooFew = {Acceptance::kUndecided, "fewer than three values"};

/// One limit of a row and the values that are held against it.
struct Side {
  std::span<const double> values;
  double limit;
  bool isUpper;

  bool IsBeyond(double value) const { return !(isUpper ? value <= limit : value >= limit); }
  std::size_t BeyondOfFirst(std::size_t count) const {
    const auto first = values.first(count);
    return static_cast<std::size_t>(
        std::count_if(first.begin(), first.end(), [this](double value) { return IsBeyond(value); }));
  }
};

bool KeepsShortProcedure(const Side& side) {
  constexpr double kSmallShare = 0.7;
  constexpr double kRounding = 1e-12;  // 0.7 of 3 is a little less than 2.1
  if (side.isUpper && side.limit > 0.0 && side.values.front() <= kSmallShare * side.limit * (1.0 + kRounding)) {
    return true;
  }
  constexpr struct { std::size_t first, mayBeBeyond; } kStages[] = {{3, 0}, {6, 1}, {12, 2}};
  return std::any_of(std::begin(kStages), std::end(kStages), [&side](const auto& stage) {
    return side.values.size() >= stage.first && side.BeyondOfFirst(stage.first) <= stage.mayBeBeyond;
  });
}

AcceptanceResult By(bool passes, std::string_view by) {
  return {passes ? Acceptance::kPass : Acceptance::kFail, by};
}

AcceptanceResult AcceptByMaximum(const Side& side) {
  return By(side.BeyondOfFirst(side.values.size()) == 0, "maximum");
}

AcceptanceResult AcceptByShare(const Side& side) {
  constexpr std::size_t kMostPercent = 16;
  const std::size_t n = side.values.size();
  const bool keepsShare = 100 * side.BeyondOfFirst(n) <= kMostPercent * n;
  if (n >= kFewestForShare && keepsShare) return By(true, "share");
  if (KeepsShortProcedure(side)) return By(true, "short procedure");
  return n < kFewestForShare ? kTooFew : By(false, "share");
}

AcceptanceResult AcceptByMedian(const Side& side) {
  const std::size_t n = side.values.size();
  if (n < kFewestForShare) return kTooFew;
  std::vector<double> sorted(side.values.begin(), side.values.end());
  // A value that is no number is beyond every limit, on whichever side that lies.
  for (double& value : sorted) {
    if (std::isnan(value)) value = side.isUpper ? INFINITY : -INFINITY;
  }
  std::sort(sorted.begin(), sorted.end());
  const double median = n % 2 == 1 ? sorted[n / 2] : 0.5 * sorted[n / 2 - 1] + 0.5 * sorted[n / 2];
  return By(!side.IsBeyond(median), "median");
}

AcceptanceResult AcceptSide(const Side& side, AcceptanceRule rule) {
  switch (rule) {
    case AcceptanceRule::kMaximum:
      break;
    case AcceptanceRule::k16Percent:
      return AcceptByShare(side);
    case AcceptanceRule::kMedian:
      return AcceptByMedian(side);
  }
  return AcceptByMaximum(side);
}

/// The values that there are.
struct Measured {
  explicit Measured(std::span<const std::optional<double>> values) {
    for (const std::optional<double>& value : values) {
      if (value) present.push_back(*value);
    }
    isMissing = present.size() < values.size();
  }
  /// What would pass is undecided where a value is missing.
  AcceptanceResult Allowing(const AcceptanceResult& result) const {
    const bool isOpen = isMissing && result.verdict == Acceptance::kPass;
    return isOpen ? AcceptanceResult{Acceptance::kUndecided, "a value is missing"} : result;
  }

  std::vector<double> present;
  bool isMissing = false;
};

}  // namespace

std::span<const AcceptanceRuleName> AcceptanceRules() {
  return kRules;
}

AcceptanceRule AcceptanceRuleOf(std::int32_t number) {
  const bool isKnown = number >= 0 && number < static_cast<std::int32_t>(std::size(kRules));
  return kRules[isKnown ? static_cast<std::size_t>(number) : 0].rule;
}

std::string_view AcceptanceWord(Acceptance verdict) {
  switch (verdict) {
    case Acceptance::kPass:
      return "PASS";
    case Acceptance::kFail:
      return "FAIL";
    case Acceptance::kUndecided:
      break;
  }
  return "UNDECIDED";
}

std::string_view VerdictWord(Acceptance verdict) {
  switch (verdict) {
    case Acceptance::kPass:
      return "within tolerance";
    case Acceptance::kFail:
      return "out of tolerance";
    case Acceptance::kUndecided:
      break;
  }
  return "undecided";
}

AcceptanceResult AcceptLimit(std::span<const std::optional<double>> values, double limit, bool isUpper,
                             AcceptanceRule rule) {
  const Measured measured(values);
  if (measured.present.empty()) return kNoValue;
  return measured.Allowing(AcceptSide({measured.present, limit, isUpper}, rule));
}

std::optional<AcceptanceResult> Accept(std::span<const std::optional<double>> values, const Tolerance& tolerance,
                                       AcceptanceRule rule) {
  if (!tolerance.toleranced) return std::nullopt;
  const Measured measured(values);
  if (measured.present.empty()) return kNoValue;
  const LimitsInForce limits = LimitsOf(tolerance);
  AcceptanceResult result{Acceptance::kPass, "no limit"};
  for (const auto& [limit, isUpper] : {std::pair(limits.upper, true), std::pair(limits.lower, false)}) {
    if (!limit || result.verdict == Acceptance::kFail) continue;
    const AcceptanceResult side = AcceptSide({measured.present, *limit, isUpper}, rule);
    if (side.verdict != Acceptance::kPass || result.verdict == Acceptance::kPass) result = side;
  }
  return measured.Allowing(result);
}

}  // namespace texturon
