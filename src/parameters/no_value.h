// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace texturon {

/// Why there is no value. The sentences stand in one table, in this order.
enum class Why : std::uint8_t {
  kNotComputed,
  kPlaceholder,
  kUnknownLetter,
  kUnknownName,
  kNoProfile,
  kNotOfThisLetter,
  kNotFinite,
  kInfinite,
  kZeroByZero,
  kFewPoints,
  kShortSamplingLength,
  kFewSamplingLengths,
  kNoElement,
  kFewElements,
  kNoElementWithin,
  kFewPeaks,
  kNoThirdPoint,
  kZeroDivisor,
  kNoCore,
  kNoRoughnessMotif,
  kNoWavinessMotif,
  kNoVoid,
  kNoBump,
  kMemoryFull,
  kShortWindow,
  kLongWindow,
  kNoEndRegion,
  kFewPointsBetween,
  kFewPlotPoints,
  kFlatPlot,
  kNoBend,
  kBendOutside,
  kFewValleys,
  kParallelLines,
  kFewForSections,
  kNoCrossingElement,
  kFewCrossingElements,
  kNoSpacing,
  kNoDecay,
  kRatioOutside,
  kRatiosReversed,
  kNoCoreProfile,
  kNoFeature,
  kNoFeatureLeft,
  kFewFeatures,
  kManyValues,
};

/// The reason that a value is not defined, with the figures that its sentence names.
struct NoValue {
  Why why = Why::kNotComputed;
  std::array<double, 3> figures = {};

  bool operator==(const NoValue&) const = default;
};

/// "needs seven sampling lengths; this profile has five": no capital, no full stop; Windows-1252.
std::string ReasonText(const NoValue& reason, bool metric);

/// The sentence before its figures are put in, of every reason: what a window translates.
std::string_view ReasonPattern(Why why);

/// A value, or why there is none.
template <typename T>
class Defined {
public:
  Defined() = default;
  Defined(T value) : value_(std::move(value)) {}
  Defined(const NoValue& reason) : reason_(reason) {}

  bool has_value() const { return value_.has_value(); }
  explicit operator bool() const { return has_value(); }
  operator std::optional<T>() const { return value_; }
  const T& operator*() const { return *value_; }
  const T* operator->() const { return &*value_; }
  const T& value() const { return value_.value(); }
  T value_or(T other) const { return value_.value_or(std::move(other)); }
  /// Of no meaning where there is a value.
  const NoValue& Reason() const { return reason_; }
  bool operator==(const Defined&) const = default;

private:
  std::optional<T> value_;
  NoValue reason_;
};

}  // namespace texturon
