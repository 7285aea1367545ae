// SPDX-License-Identifier: Apache-2.0

#include "unattended/plan_results.h"

#include <algorithm>
#include <filesystem>
#include <span>
#include <utility>

#include "analysis/decision.h"
#include "base/number_text.h"
#include "base/units.h"
#include "parameters/motif_finder.h"
#include "platform/platform.h"
#include "settings/filter_table.h"
#include "unattended/pass_families.h"

namespace texturon {
namespace {

std::vector<std::string>& ListIn(ResultLines& lines, ResultList list) {
  return lines[static_cast<std::size_t>(list)];
}

/// An unknown filter goes by the first one's name.
std::string FilterWord(const FilterRow* filter) {
  return std::string((filter != nullptr ? *filter : kFilterTable.front()).word) + "/";
}

std::string PrimaryFilterText(const Document& document) {
  const auto& shortMM = document.profiles.shortCutoffMM;
  if (!shortMM) return "GAUSSIAN/ none";
  return FilterWord(&ShortWaveFilter(document.settings.analysis)) + " - " + FixedText(*shortMM, 4) + " mm";
}

std::string LongFilterText(const Document& document) {
  const auto& longMM = document.profiles.longCutoffMM;
  if (!longMM) return "GAUSSIAN/ none";
  std::string text = FilterWord(LongWaveFilter(document.settings.analysis)) + FixedText(*longMM, 4) + " - ";
  const auto& shortMM = document.profiles.shortCutoffMM;
  text += shortMM ? FixedText(*shortMM, 4) + " mm" : "   mm";
  return text;
}

std::string MotifFilterText(const Document& document) {
  const AnalysisSettings& settings = document.settings.analysis;
  const auto& shortMM = document.profiles.shortCutoffMM;
  const std::string start = shortMM ? "GAUSSIAN/ " + FixedText(*shortMM, 4) + " -    mm" : "GAUSSIAN/ none         ";
  return start + "    A:  " + FixedText(settings.MotifAMM, 4) + "   B: " + FixedText(settings.MotifBMM, 4);
}

void AppendFilterLines(const Document& document, Family family, ResultLines& lines) {
  switch (family) {
    case Family::kStandard:
      ListIn(lines, ResultList::kPrimary).push_back("PRIMARY : " + PrimaryFilterText(document));
      ListIn(lines, ResultList::kRoughness).push_back("ROUGHNESS : " + LongFilterText(document));
      break;
    case Family::kWaviness:
      ListIn(lines, ResultList::kWaviness).push_back("WAVINESS : " + LongFilterText(document));
      break;
    case Family::kRk:
      ListIn(lines, ResultList::kRk).push_back("RK : " + LongFilterText(document));
      break;
    case Family::kMotif:
      ListIn(lines, ResultList::kMotif).push_back("MOTIF : " + MotifFilterText(document));
      break;
  }
}

/// A planned parameter with its value.
struct PlannedValue {
  bool valid = false;
  double value = 0.0;
  std::string unit;
};

PlannedValue RatioValue(const RatioRowResults& results, std::size_t index, const char* unit) {
  return {results[index].valid, results[index].value, unit};
}

PlannedValue ValueOf(const Document& document, const PlannedParameter& parameter) {
  const AnalysisResults& results = document.results;
  switch (parameter.source) {
    case PlannedSource::kPrimaryRatio:
      return RatioValue(results.primaryMaterialRatios, parameter.index, "%");
    case PlannedSource::kRoughnessRatio:
      return RatioValue(results.roughnessMaterialRatios, parameter.index, "%");
    case PlannedSource::kPrimaryHtp:
      return RatioValue(results.primaryHtps, parameter.index, "um");
    case PlannedSource::kRoughnessHtp:
      return RatioValue(results.roughnessHtps, parameter.index, "um");
    case PlannedSource::kNone:
      return {};
    case PlannedSource::kCatalogue:
      break;
  }
  const ParameterDef& row = document.catalogue.rows[parameter.index];
  std::string unit = PrintedUnit(row.quantity.metricUnit);
  if (unit == "\xB5m") unit = "um";
  if (parameter.name == "CV") unit = "um3/um2";
  return {row.valid, row.value, std::move(unit)};
}

/// Where a parameter stands among ShownRows: a plan selects all rows of its list, and of the ten the first ones.
std::size_t PlaceOf(const Document& document, const PlannedParameter& parameter) {
  const auto selected = [](const auto& rows) {
    return static_cast<std::size_t>(
        std::count_if(rows.begin(), rows.end(), [](const auto& row) { return row.selected; }));
  };
  const AnalysisSettings& settings = document.settings.analysis;
  const std::pair<PlannedSource, std::size_t> lists[] = {
      {PlannedSource::kCatalogue, selected(document.catalogue.rows)},
      {PlannedSource::kPrimaryRatio, selected(settings.primaryMaterialRatios)},
      {PlannedSource::kRoughnessRatio, selected(settings.roughnessMaterialRatios)},
      {PlannedSource::kPrimaryHtp, selected(settings.primaryHtps)},
      {PlannedSource::kRoughnessHtp, selected(settings.roughnessHtps)}};
  std::size_t before = 0;
  for (const auto& [source, count] : lists) {
    if (source == parameter.source) break;
    before += count;
  }
  return before + parameter.index;
}

void AppendParameterLines(const Document& document, const PlannedParameter& parameter,
                          std::vector<std::string>& lines) {
  const PlannedValue planned = ValueOf(document, parameter);
  if (!planned.valid) {
    lines.emplace_back("Result = ?");
    lines.push_back(parameter.name + " = ****");
    return;
  }
  const ParameterDef row{.valid = true, .tolerance = parameter.tolerance, .value = planned.value};
  const auto decision = Decide(document, row, PlaceOf(document, parameter));
  lines.push_back("Result = " + (decision ? std::string(AcceptanceWord(decision->verdict)) : "?"));
  lines.push_back(parameter.name + " = " + FixedText(planned.value, 3) + " " + planned.unit);
}

/// Heights at the indices from `firstIndex` on.
std::string PointsText(std::span<const double> heightsUM, std::int32_t firstIndex, double spacingUM) {
  constexpr std::size_t kRowLength = 24;
  std::string text =
      "Talyseries Surface\r\nNumPoints=" + IntegerText(static_cast<std::int64_t>(heightsUM.size())) + "\r\nmm mm\r\n";
  text.reserve(text.size() + heightsUM.size() * kRowLength);
  double index = firstIndex;
  for (const double height : heightsUM) {
    AppendFixed(text, index * spacingUM * kMillimetresPerMicrometre, 6);
    text += ' ';
    AppendFixed(text, height * kMillimetresPerMicrometre, 6);
    text += "\r\n";
    index += 1.0;
  }
  return text;
}

std::string ProfileText(const Document& document, ProfileKind kind) {
  if (!document.profiles.Has(kind)) return PointsText({}, 0, 0.0);
  const Profile profile = document.profiles.View(kind);
  return PointsText(profile.Heights(), profile.range.first, profile.spacingUM);
}

/// The motif lines run from the first peak of the motifs to the last one.
void AppendMotifFiles(const Document& document, std::vector<PassProfileFile>& files) {
  const ProfileSet& profiles = document.profiles;
  const double spacingUM = profiles.residualSpacingUM;
  if (!profiles.wavinessMotifs.empty()) {
    files.push_back(
        {std::string(kWavinessMotifPrefix), PointsText(UpperEnvelope(profiles.primary, profiles.roughnessMotifs),
                                                       profiles.roughnessMotifs.front().firstPeak, spacingUM)});
  }
  if (!profiles.roughnessMotifs.empty()) {
    files.push_back(
        {std::string(kRoughnessMotifPrefix), PointsText(MotifLine(profiles.primary, profiles.roughnessMotifs),
                                                        profiles.roughnessMotifs.front().firstPeak, spacingUM)});
  }
}

}  // namespace

void AppendPassLines(const Document& document, Family family, const PassPlan& plan, ResultLines& lines) {
  AppendFilterLines(document, family, lines);
  AppendParameterLines(document, plan, lines);
}

void AppendParameterLines(const Document& document, const PassPlan& plan, ResultLines& lines) {
  for (const PlannedParameter& parameter : plan.parameters) {
    AppendParameterLines(document, parameter, ListIn(lines, parameter.list));
  }
}

std::vector<std::string> FilterRemarks(const Document& document, Family family) {
  std::vector<std::string> remarks;
  const AnalysisSettings& settings = document.settings.analysis;
  const auto add = [&](std::string_view filter, double cutoffMM, std::string_view consequence) {
    remarks.push_back("The " + std::string(filter) + "-wave filter of the " + std::string(PassFamilyOf(family).name) +
                      " pass cannot run with a cut-off of " + ShortestText(cutoffMM) + " mm over " +
                      ShortestText(document.profiles.LengthMM()) + " mm: " + std::string(consequence));
  };
  if (settings.LsCutoffMM > 0.0 && !document.profiles.shortCutoffMM) {
    add("short", settings.LsCutoffMM, "short waves stay in the profiles");
  }
  if (family != Family::kMotif && !document.profiles.longCutoffMM) {
    add("long", settings.LcCutoffMM, "waviness is the primary profile, roughness is 0");
  }
  return remarks;
}

std::vector<PassProfileFile> PassProfileFiles(const Document& document, Family family) {
  std::vector<PassProfileFile> files;
  for (const auto& [prefix, kind] : PassFamilyOf(family).profiles) {
    if (!prefix.empty()) files.push_back({std::string(prefix), ProfileText(document, kind)});
  }
  if (family == Family::kMotif) AppendMotifFiles(document, files);
  return files;
}

std::string OutputExtension(const std::filesystem::path& dataFile) {
  const std::string name = SystemTextFromPath(dataFile.stem());
  if (name.empty()) return {};
  // Characters of UTF-8; bytes that are none stand for themselves.
  const auto continues = [&name](std::size_t at) { return (static_cast<unsigned char>(name[at]) & 0xC0U) == 0x80U; };
  std::size_t firstEnd = 1;
  while (firstEnd < name.size() && continues(firstEnd)) ++firstEnd;
  std::size_t lastBegin = name.size() - 1;
  while (lastBegin > 0 && continues(lastBegin)) --lastBegin;
  return name.substr(0, firstEnd) + name.substr(lastBegin);
}

}  // namespace texturon
