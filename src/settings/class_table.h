// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "settings/analysis_settings.h"

namespace texturon {

/// A setting class of ISO 21920-3 for roughness.
struct SettingClass {
  std::string name;            ///< "Sc3"
  double longIndexMM = 0.0;    ///< Nic, the length of a section too
  double shortIndexUM = 0.0;   ///< Nis
  double mostSpacingUM = 0.0;  ///< of points
  double mostTipRadiusUM = 0.0;
  std::int32_t sections = 5;
  /// Upper limits (um) up to which a parameter has this class, by its name. A class without one takes what is above the
  /// limits of those before it.
  std::vector<std::pair<std::string, double>> limits;

  std::optional<double> LimitOf(std::string_view parameter) const;
};

using ClassTable = std::vector<SettingClass>;

/// Sc1 to Sc5, with limits for Ra and Rz; those of other parameters are not known.
const ClassTable& BuiltInClasses();

struct ClassTableResult {
  ClassTable classes;
  std::string reason;  ///< why there are none; goes on where the file's name stops
};

/// Reads a lab's own table, an INI file with a section a class from fine to coarse: Nic (mm), Nis, Spacing and
/// TipRadius (um), Sections, and a key with the limit (um) for each parameter that has one. Keys that it leaves out are
/// those of the built-in class of the same name.
ClassTableResult ReadClassTable(const std::filesystem::path& path);

/// By name in any case; null for none.
const SettingClass* FindClass(const ClassTable& classes, std::string_view name);
/// The class with this long-wave index; null for none.
const SettingClass* FindClassOfIndex(const ClassTable& classes, double longIndexMM);
/// The first class whose limit for the parameter is not below this one; null where the table has no limits for it.
const SettingClass* FindClassOfLimit(const ClassTable& classes, std::string_view parameter, double limitUM);

/// Length (mm) of so many sections, to the nanometre: 2.4 for three of 0.8.
double LengthOfSections(double sectionMM, std::int32_t sections);

/// Puts a class in force: indices, linear Gaussian filters, half an index cut off at both ends, an evaluation length of
/// its sections, or of as many as are asked for, in the middle; a record too short for it is refused.
void ApplyClass(const SettingClass& chosen, std::optional<std::int32_t> sections, AnalysisSettings& settings);

}  // namespace texturon
