// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <span>

namespace texturon {

/// The box of a sheet's page that a setting stands in.
enum class SettingGroup : std::uint8_t {
  kNone,  // no sheet shows it, or one with a widget of its own
  kForm,
  kFitPoints,
  kStylus,
  kFilter,
  kEnds,
  kStandard,
  kStandardRows,
  kLevels,
  kEnvelopes,
  kElementHeights,
  kElementWidths,
  kProbability,
  kMotifs,
  kAsphereTerms,
  kVertex,
  kClearAperture,
  kSagTable,
  kAsphericResidual,
  kModFiles,
  kPlacing,
  kNominalFilter,
  kWindow,
  kProfile,
  kParameterTable,
  kCurves,
  kReport,
  kProfileScale,
  kSpectrumScale,
  kWatchedFiles,
  kAfterLoading,
};

struct SettingGroupTitles {
  SettingGroup group;
  const char* page;
  const char* title;
};

/// Every group but kNone, in the order in which the pages show them.
std::span<const SettingGroupTitles> SettingGroups();

}  // namespace texturon
