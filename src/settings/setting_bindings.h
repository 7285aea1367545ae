// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

#include "settings/settings_table.h"

// What the rows of the settings table are made of: a key with the field that it stands for.
namespace texturon {

inline constexpr double kFileVersion = 2.0;

// object.*First.*Rest...
template <auto First, auto... Rest, typename Object>
constexpr auto& Follow(Object& object) {
  if constexpr (sizeof...(Rest) == 0) {
    return object.*First;
  } else {
    return Follow<Rest...>(object.*First);
  }
}

template <auto... Path>
using MemberType = std::remove_cvref_t<decltype(Follow<Path...>(std::declval<Settings&>()))>;

template <typename Member>
constexpr SettingType TypeOf() {
  if constexpr (std::is_same_v<Member, std::string>) return SettingType::kText;
  if constexpr (std::is_same_v<Member, std::int32_t>) return SettingType::kInteger;
  if constexpr (std::is_same_v<Member, bool>) return SettingType::kFlag;
  return SettingType::kNumber;
}

template <auto... Path>
constexpr SettingBinding Bind(std::string_view section, std::string_view key,
                              KeyWritten written = KeyWritten::kAlways) {
  using Member = MemberType<Path...>;
  return {section,
          key,
          TypeOf<Member>(),
          [](const Settings& settings, std::size_t) -> SettingValue { return Follow<Path...>(settings); },
          [](Settings& settings, std::size_t, const SettingValue& value) {
            Follow<Path...>(settings) = std::get<Member>(value);
          },
          nullptr,
          written,
          {}};
}

/// A key of section STANDARD. One that may only be one of some words keeps what it is where it would be another.
template <auto Field>
constexpr SettingBinding BindStandard(std::string_view key, std::string_view words = {}) {
  SettingBinding binding =
      Bind<&Settings::analysis, &AnalysisSettings::standard, Field>("STANDARD", key, KeyWritten::kWhereChanged);
  binding.words = words;
  return binding;
}

template <auto List>
constexpr SettingRows RowsOf(std::size_t least, std::size_t most, std::size_t numberStep) {
  return {least, most, numberStep, [](const Settings& settings) { return (settings.analysis.*List).size(); },
          [](Settings& settings, std::size_t count) {
            auto& list = settings.analysis.*List;
            if constexpr (requires { list.resize(count); }) list.resize(count);
          }};
}

using Analysis = AnalysisSettings;

inline constexpr SettingRows kParameterRows = RowsOf<&Analysis::parameters>(0, kMostParameters, 1);
inline constexpr SettingRows kPrimaryRatioRows = RowsOf<&Analysis::primaryMaterialRatios>(kRatioRows, kRatioRows, 1);
inline constexpr SettingRows kRoughnessRatioRows =
    RowsOf<&Analysis::roughnessMaterialRatios>(kRatioRows, kRatioRows, 1);
inline constexpr SettingRows kPrimaryHtpRows = RowsOf<&Analysis::primaryHtps>(kRatioRows, kRatioRows, 1);
inline constexpr SettingRows kRoughnessHtpRows = RowsOf<&Analysis::roughnessHtps>(kRatioRows, kRatioRows, 1);
inline constexpr SettingRows kCoefficientRows = RowsOf<&Analysis::asphereCoefficients>(0, kMostAsphereCoefficients, 2);
inline constexpr SettingRows kFreeFormRows = RowsOf<&Analysis::freeFormPoints>(0, kMostFreeFormPoints, 2);

template <const SettingRows& Rows>
constexpr SettingBinding BindCount(std::string_view section, std::string_view key) {
  return {section,
          key,
          SettingType::kCount,
          [](const Settings& settings, std::size_t) -> SettingValue {
            return static_cast<std::int32_t>(Rows.count(settings));
          },
          [](Settings& settings, std::size_t, const SettingValue& value) {
            const auto wanted = static_cast<std::size_t>(std::max(std::get<std::int32_t>(value), 0));
            Rows.resize(settings, std::clamp(wanted, Rows.least, Rows.most));
          },
          &Rows};
}

template <auto List, auto... Path>
constexpr SettingBinding BindRow(std::string_view section, std::string_view key, const SettingRows& rows) {
  using Row = std::remove_cvref_t<decltype((std::declval<Settings&>().analysis.*List)[0])>;
  using Member = std::remove_cvref_t<decltype(Follow<Path...>(std::declval<Row&>()))>;
  return {section,
          key,
          TypeOf<Member>(),
          [](const Settings& settings, std::size_t row) -> SettingValue {
            return Follow<Path...>((settings.analysis.*List)[row]);
          },
          [](Settings& settings, std::size_t row, const SettingValue& value) {
            Follow<Path...>((settings.analysis.*List)[row]) = std::get<Member>(value);
          },
          &rows};
}

constexpr SettingBinding BindCoefficient() {
  return {"ASPHERIC_PARAMETERS",
          "A%d",
          SettingType::kCoefficient,
          [](const Settings& settings, std::size_t row) -> SettingValue {
            return settings.analysis.asphereCoefficients[row];
          },
          [](Settings& settings, std::size_t row, const SettingValue& value) {
            settings.analysis.asphereCoefficients[row] = std::get<double>(value);
          },
          &kCoefficientRows};
}

inline constexpr SettingRows kFeatureRows = {
    0, kMostFeatures, 1, [](const Settings& settings) { return settings.analysis.standard.features.size(); },
    [](Settings& settings, std::size_t count) { settings.analysis.standard.features.resize(count); }};

/// As other lists, but written only where there are features.
constexpr SettingBinding BindFeatureCount() {
  SettingBinding binding = BindCount<kFeatureRows>("STANDARD", "Features");
  binding.written = KeyWritten::kWhereChanged;
  return binding;
}

constexpr SettingBinding BindFeature() {
  return {"STANDARD",
          "Feature%02d",
          SettingType::kText,
          [](const Settings& settings, std::size_t row) -> SettingValue {
            return settings.analysis.standard.features[row];
          },
          [](Settings& settings, std::size_t row, const SettingValue& value) {
            settings.analysis.standard.features[row] = std::get<std::string>(value);
          },
          &kFeatureRows,
          KeyWritten::kWhereChanged};
}

constexpr SettingBinding BindVersion() {
  return {"TEXTURON",
          "IniVersion",
          SettingType::kVersion,
          [](const Settings&, std::size_t) -> SettingValue { return kFileVersion; },
          [](Settings&, std::size_t, const SettingValue&) {},
          nullptr};
}

}  // namespace texturon
