// SPDX-License-Identifier: Apache-2.0

#include "settings/class_table.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "base/ini_file.h"
#include "base/number_text.h"
#include "base/text.h"
#include "base/units.h"
#include "settings/settings_file.h"

namespace texturon {
namespace {

template <typename Condition>
const SettingClass* FirstWith(const ClassTable& classes, Condition condition) {
  const auto found = std::find_if(classes.begin(), classes.end(), condition);
  return found != classes.end() ? &*found : nullptr;
}

struct ClassKey {
  std::string_view key;
  double SettingClass::*field;
};
constexpr ClassKey kKeys[] = {{"Nic", &SettingClass::longIndexMM},
                              {"Nis", &SettingClass::shortIndexUM},
                              {"Spacing", &SettingClass::mostSpacingUM},
                              {"TipRadius", &SettingClass::mostTipRadiusUM}};
constexpr std::string_view kSectionsKey = "Sections";

/// Whether the limit of a parameter may fix its class; for all others a drawing names class or index.
bool FixesClass(std::string_view parameter) {
  constexpr std::string_view kParameters[] = {"Ra", "Rq", "Rz", "Rp", "Rv", "Rzx", "Rt", "Pt"};
  return std::any_of(std::begin(kParameters), std::end(kParameters),
                     [parameter](std::string_view each) { return EqualIgnoringCase(each, parameter); });
}

void SetLimit(SettingClass& row, std::string_view parameter, double limitUM) {
  std::erase_if(row.limits, [parameter](const auto& limit) { return EqualIgnoringCase(limit.first, parameter); });
  row.limits.emplace_back(parameter, limitUM);
}

/// Takes a key of a class or the limit of a parameter; what is wrong with it otherwise, a clause.
std::string_view TakeEntry(const IniEntry& entry, SettingClass& row) {
  const ParsedDouble number = ParseDouble(entry.value);
  if (!number.usable() || number.length == 0 || number.length != entry.value.size() || !(number.value > 0.0)) {
    return "is no number above 0";
  }
  for (const ClassKey& key : kKeys) {
    if (!EqualIgnoringCase(key.key, entry.key)) continue;
    row.*key.field = number.value;
    return {};
  }
  if (!EqualIgnoringCase(entry.key, kSectionsKey)) {
    if (!FixesClass(entry.key)) return "is under no key of a class";
    SetLimit(row, entry.key, number.value);
    return {};
  }
  constexpr double kMostSections = 1000.0;
  if (number.value != std::floor(number.value) || number.value > kMostSections) {
    return "is no number of sections from 1 to 1000";
  }
  row.sections = RoundToIndex(number.value);
  return {};
}

/// What keeps a class from standing behind those before it, a clause: indices and limits rise from fine to coarse.
std::string FaultBehind(const ClassTable& before, const SettingClass& row) {
  if (!(row.longIndexMM > 0.0 && row.shortIndexUM > 0.0)) return "gives no Nic or no Nis for the class " + row.name;
  if (!(row.shortIndexUM * kMillimetresPerMicrometre < row.longIndexMM)) {
    return "has a Nis (um) that is not below Nic (mm) in the class " + row.name;
  }
  if (!before.empty() && !(row.longIndexMM > before.back().longIndexMM)) {
    return "has the class " + row.name + " behind " + before.back().name + ", where a larger Nic belongs";
  }
  for (const auto& [parameter, limit] : row.limits) {
    for (const SettingClass& finer : before) {
      const auto limitBefore = finer.LimitOf(parameter);
      if (limitBefore && !(limit > *limitBefore)) {
        return "has a limit of " + parameter + " for " + row.name + " that is not above that for " + finer.name;
      }
    }
  }
  return {};
}

}  // namespace

std::optional<double> SettingClass::LimitOf(std::string_view parameter) const {
  for (const auto& [held, limit] : limits) {
    if (EqualIgnoringCase(held, parameter)) return limit;
  }
  return std::nullopt;
}

const ClassTable& BuiltInClasses() {
  static const ClassTable classes = {
      {"Sc1", 0.08, 2.5, 0.5, 2.0, 5, {{"Ra", 0.02}, {"Rz", 0.16}}},
      {"Sc2", 0.25, 2.5, 0.5, 2.0, 5, {{"Ra", 0.1}, {"Rz", 0.8}}},
      {"Sc3", 0.8, 2.5, 0.5, 2.0, 5, {{"Ra", 2.0}, {"Rz", 16.0}}},
      {"Sc4", 2.5, 8.0, 1.5, 5.0, 5, {{"Ra", 10.0}, {"Rz", 80.0}}},
      {"Sc5", 8.0, 25.0, 5.0, 10.0, 5, {}},
  };
  return classes;
}

ClassTableResult ReadClassTable(const std::filesystem::path& path) {
  const FileBytes bytes = ReadIniFile(path);
  if (!bytes.ok()) return {{}, bytes.reason};
  const IniFile file(bytes.bytes);
  ClassTableResult result;
  const std::vector<IniSectionHeader> headers = file.Sections();
  for (const IniSectionHeader& header : headers) {
    if (header.shadowed) return {{}, "has the class " + std::string(header.name) + " twice"};
  }
  for (const IniSectionHeader& header : headers) {
    const SettingClass* const known = FindClass(BuiltInClasses(), header.name);
    SettingClass row = known != nullptr ? *known : SettingClass{};
    row.name = header.name;
    for (const IniEntry& entry : file.Entries()) {
      if (!EqualIgnoringCase(entry.section, header.name)) continue;
      if (entry.shadowed) return {{}, "has " + std::string(entry.key) + " in " + row.name + " twice"};
      const std::string_view fault = TakeEntry(entry, row);
      if (fault.empty()) continue;
      return {{},
              "holds " + Quoted(entry.value) + " for " + std::string(entry.key) + " of " + row.name + ", which " +
                  std::string(fault)};
    }
    if (std::string fault = FaultBehind(result.classes, row); !fault.empty()) return {{}, std::move(fault)};
    result.classes.push_back(std::move(row));
  }
  if (result.classes.empty()) result.reason = "holds no class";
  return result;
}

const SettingClass* FindClass(const ClassTable& classes, std::string_view name) {
  return FirstWith(classes, [name](const SettingClass& row) { return EqualIgnoringCase(row.name, name); });
}

const SettingClass* FindClassOfIndex(const ClassTable& classes, double longIndexMM) {
  constexpr double kRounding = 1e-9;
  return FirstWith(classes, [longIndexMM](const SettingClass& row) {
    return std::abs(row.longIndexMM - longIndexMM) <= kRounding * longIndexMM;
  });
}

const SettingClass* FindClassOfLimit(const ClassTable& classes, std::string_view parameter, double limitUM) {
  const auto hasLimit = [parameter](const SettingClass& row) { return row.LimitOf(parameter).has_value(); };
  if (FirstWith(classes, hasLimit) == nullptr) return nullptr;
  bool isBehindLimits = false;
  for (const SettingClass& row : classes) {
    const auto limit = row.LimitOf(parameter);
    if (limit ? limitUM <= *limit : isBehindLimits) return &row;
    isBehindLimits = isBehindLimits || limit.has_value();
  }
  return nullptr;
}

double LengthOfSections(double sectionMM, std::int32_t sections) {
  constexpr double kNanometres = 1e6;
  return std::round(sectionMM * sections * kNanometres) / kNanometres;
}

void ApplyClass(const SettingClass& chosen, std::optional<std::int32_t> sections, AnalysisSettings& settings) {
  StandardSettings& standard = settings.standard;
  settings.LcCutoffMM = chosen.longIndexMM;
  settings.LsCutoffMM = chosen.shortIndexUM * kMillimetresPerMicrometre;
  settings.FilterType = kFilterGaussian;
  settings.UserDiscardType = kDiscardHalfCutoff;
  standard.LongWaveFilter.clear();
  standard.ShortWaveFilter = "gaussian";
  standard.Sections = sections.value_or(chosen.sections);
  standard.EvaluationLengthMM = LengthOfSections(chosen.longIndexMM, standard.Sections);
  standard.CompleteSections = true;
  standard.Class = chosen.name;
  standard.MostSpacingUM = chosen.mostSpacingUM;
  standard.MostTipRadiusUM = chosen.mostTipRadiusUM;
}

}  // namespace texturon
