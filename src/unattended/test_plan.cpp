// SPDX-License-Identifier: Apache-2.0

#include "unattended/test_plan.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <utility>

#include "analysis/compute_range.h"
#include "base/number_text.h"
#include "base/text.h"
#include "parameters/catalogue.h"
#include "parameters/suffix_table.h"
#include "settings/filter_table.h"

namespace texturon {
namespace {

constexpr double kDefaultCutoffMM = 0.8;
constexpr std::int32_t kMostHybrids = 50;

/// The keys of a plan's sections, whatever their names. The first of a name counts.
class PlanKeys {
public:
  explicit PlanKeys(const IniFile& plan) {
    const std::vector<IniSectionHeader> sections = plan.Sections();
    const std::size_t firstLine = sections.empty() ? 0 : sections.front().line;
    for (const IniEntry& entry : plan.Entries()) {
      if (!entry.shadowed && entry.line > firstLine) values_.emplace(LowerAscii(entry.key), entry.value);
    }
  }

  std::optional<std::string_view> Text(std::string_view key) const {
    const auto found = values_.find(LowerAscii(key));
    if (found == values_.end()) return std::nullopt;
    return found->second;
  }
  bool Has(std::string_view key) const { return Text(key).has_value(); }
  double Real(std::string_view key) const {
    const auto text = Text(key);
    if (!text) return -1.0;
    const ParsedDouble number = ParseDouble(*text);
    return number.usable() ? number.value : 0.0;
  }
  std::int32_t Integer(std::string_view key) const {
    const auto text = Text(key);
    return text ? ParseInt32(*text).value : -1;
  }

private:
  std::unordered_map<std::string, std::string_view> values_;
};

/// The keys from which a family takes its filter. An empty name: the family has no such key.
struct FilterKeys {
  std::string_view filter;
  std::string_view cutoff;
  std::string_view cutoffCount;
  std::string_view bandwidthRatio;
};

FilterKeys KeysOf(Family family) {
  switch (family) {
    case Family::kWaviness:
      return {"WavFilter", "WavCutOffLength", "WavNumOfCuttOffs", ""};
    case Family::kRk:
      return {"", "RKCutOffLength", "RKNumOfCuttOffs", "RKBandWidthRatio"};
    case Family::kMotif:
      return {"RoughFilter", "RoughCutOffLength", "", "RoughBandWidthRatio"};
    case Family::kStandard:
      break;
  }
  return {"RoughFilter", "RoughCutOffLength", "RoughNumOfCuttOffs", "RoughBandWidthRatio"};
}

std::int32_t FilterTypeOf(std::string_view text) {
  for (const FilterRow& filter : kFilterTable) {
    if (!filter.number) continue;
    if (EqualIgnoringCase(text, filter.word) || TrimBlanks(text) == IntegerText(*filter.number)) return *filter.number;
  }
  return kFilterGaussian;
}

void ReadFilterAndForm(const PlanKeys& keys, Family family, Document& document) {
  AnalysisSettings& settings = document.settings.analysis;
  const FilterKeys names = KeysOf(family);
  settings.FilterType =
      family == Family::kRk ? kFilterIso13565 : FilterTypeOf(keys.Text(names.filter).value_or(std::string_view()));
  const double cutoff = keys.Real(names.cutoff);
  settings.LcCutoffMM = cutoff > 0.0 ? cutoff : kDefaultCutoffMM;
  const double ratio = keys.Real(names.bandwidthRatio);
  settings.LsCutoffMM = ratio > 0.0 ? settings.LcCutoffMM / ratio : 0.0;
  const std::int32_t form = keys.Integer("FormOption");
  settings.FormRemovalType = FindForm(form) != nullptr ? form : kFormLine;
  const std::int32_t cutoffs = keys.Integer(names.cutoffCount);
  document.scope.region = cutoffs > 0 ? std::optional(RegionOfCutoffs(cutoffs, settings)) : std::nullopt;
  const auto lengths = keys.Text("ABLength");
  if (!lengths) return;
  const std::size_t comma = std::min(lengths->find_first_of(",;"), lengths->size());
  const ParsedDouble a = ParseDouble(lengths->substr(0, comma));
  const ParsedDouble b = ParseDouble(lengths->substr(std::min(comma + 1, lengths->size())));
  if (a.usable() && a.value > 0.0) settings.MotifAMM = a.value;
  if (b.usable() && b.value > 0.0) settings.MotifBMM = b.value;
}

/// A limit; a text that is not wholly a number counts as far as its digits go and is remarked on.
double LimitOf(const PlanKeys& keys, const std::string& key, std::vector<std::string>& remarks) {
  const std::string_view text = TrimBlanks(keys.Text(key).value_or(std::string_view()));
  const double limit = keys.Real(key);
  const ParsedDouble number = ParseDouble(text);
  if (!number.usable() || number.length != text.size()) {
    remarks.push_back(key + "=" + std::string(text) + " is read as " + ShortestText(limit));
  }
  return limit;
}

Tolerance ToleranceOf(const PlanKeys& keys, std::string_view planName, std::vector<std::string>& remarks) {
  const std::string name(planName);
  const bool hasMinimum = keys.Has(name + "_Min");
  const bool hasMaximum = keys.Has(name + "_Max");
  const bool upperAlone = keys.Has("UseMaxMinLimits") && keys.Integer("UseMaxMinLimits") == 0;
  Tolerance tolerance;
  tolerance.toleranced = hasMaximum && keys.Integer(name + "_Checked") > 0;
  tolerance.bilateral = hasMinimum && !upperAlone;
  if (hasMaximum) tolerance.upperLimit = LimitOf(keys, name + "_Max", remarks);
  if (hasMinimum) tolerance.lowerLimit = LimitOf(keys, name + "_Min", remarks);
  return tolerance;
}

std::vector<std::string_view> Names(std::string_view list) {
  std::vector<std::string_view> names;
  while (!list.empty()) {
    const std::size_t end = std::min(list.find_first_of(",;"), list.size());
    const std::string_view name = TrimBlanks(list.substr(0, end));
    if (!name.empty()) names.push_back(name);
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return names;
}

ResultList ListOf(Family family, std::string_view catalogueName) {
  switch (family) {
    case Family::kWaviness:
      return ResultList::kWaviness;
    case Family::kMotif:
      return ResultList::kMotif;
    case Family::kRk:
      return ResultList::kRk;
    case Family::kStandard:
      break;
  }
  return LowerAscii(catalogueName.front()) == 'r' ? ResultList::kRoughness : ResultList::kPrimary;
}

bool IsKnownParameter(std::string_view catalogueName) {
  if (FindWholeName(catalogueName) != nullptr) return true;
  const SuffixRow* const suffix = FindSuffix(catalogueName.substr(1));
  return suffix != nullptr && ContainsIgnoringCase(suffix->letters, catalogueName.substr(0, 1));
}

/// Fills the working list and the ten rows of a pass while it reads the plan.
class PassReader {
public:
  PassReader(const PlanKeys& keys, Family family, Document& document, const std::function<void(std::string_view)>& log)
      : keys_(keys), family_(family), settings_(document.settings.analysis), log_(log) {
    settings_.parameters.clear();
    settings_.primaryMaterialRatios.fill({});
    settings_.roughnessMaterialRatios.fill({});
    settings_.primaryHtps.fill({});
    settings_.roughnessHtps.fill({});
  }

  void ReadParameters() {
    for (const std::string_view name : Names(keys_.Text("Parameters").value_or(std::string_view()))) {
      const std::string catalogueName = ExternalToCatalogueName(name);
      if (FamilyOf(catalogueName) != family_) continue;
      if (IsKnownParameter(catalogueName)) {
        AddRow(CatalogueToExternalName(catalogueName), name, catalogueName);
      } else {
        AddUnknown(name, name, catalogueName);
      }
    }
  }

  void ReadHybrids(std::string_view list) {
    const std::int32_t count = std::clamp(keys_.Integer("MaxHybrids"), 0, kMostHybrids);
    for (std::int32_t i = 0; i < count; ++i) ReadHybrid(std::string(list) + "_" + IntegerText(i));
  }

  PassPlan TakePlan() { return std::move(plan_); }

private:
  struct Hybrid {
    std::string label;
    std::string_view type;
    bool relativeToMean = true;
    double first = 0.0;
    double second = 0.0;
  };

  void ReadHybrid(const std::string& entry) {
    const auto type = keys_.Text(entry + "_Type");
    if (!type || TrimBlanks(*type).empty()) return;
    Hybrid hybrid;
    hybrid.type = TrimBlanks(*type);
    hybrid.label = keys_.Text(entry + "_Label").value_or(hybrid.type);
    hybrid.relativeToMean = keys_.Integer(entry + "_Mode") <= 0;
    hybrid.first = keys_.Real(entry + "_Val1");
    hybrid.second = keys_.Real(entry + "_Val2");
    if (family_ == Family::kMotif && !EqualIgnoringCase(hybrid.type, "PHtp")) {
      return Refuse(hybrid, "WARNING: Only Primary profiles are supported for motif Htps");
    }
    AddHybrid(hybrid);
  }

  void AddHybrid(const Hybrid& hybrid) {
    const std::string_view kind = hybrid.type.substr(1);
    const char letter = LowerAscii(hybrid.type.front());
    const bool isPrimary = letter == 'p';
    const bool isSupported = isPrimary || letter == 'r';
    if (EqualIgnoringCase(kind, "mr")) {
      if (!isSupported) return Refuse(hybrid, "WARNING: Only Primary and Roughness bearing ratios are supported");
      AddMaterialRatio(hybrid, isPrimary);
    } else if (EqualIgnoringCase(kind, "Htp")) {
      if (!isSupported) return Refuse(hybrid, "WARNING: Only Primary and Roughness Htp's are supported");
      AddHtp(hybrid, isPrimary);
    } else if (EqualIgnoringCase(kind, "hsc")) {
      if (!isSupported) return Refuse(hybrid, "WARNING: Only Primary and Roughness hsc's are supported");
      AddLevelRow(hybrid, isPrimary ? "Phsc" : "Rhsc",
                  isPrimary ? settings_.PrimaryHSCHeight : settings_.RoughnessHSCHeight);
    } else if (EqualIgnoringCase(kind, "pc") && isSupported) {
      AddLevelRow(hybrid, isPrimary ? "Ppc" : "Rpc", isPrimary ? settings_.PrimaryPcLevel : settings_.RoughnessPcLevel);
    } else {
      AddUnknown(hybrid.label, hybrid.type, hybrid.type);
    }
  }

  void AddMaterialRatio(const Hybrid& hybrid, bool isPrimary) {
    MaterialRatioRows& rows = isPrimary ? settings_.primaryMaterialRatios : settings_.roughnessMaterialRatios;
    const PlannedSource source = isPrimary ? PlannedSource::kPrimaryRatio : PlannedSource::kRoughnessRatio;
    const auto index = FreeRow(rows, hybrid, isPrimary, source);
    if (!index) return;
    rows[*index] = {.selected = true,
                    .meanReferenced = hybrid.relativeToMean,
                    .depthUM = hybrid.first,
                    .offsetPercent = hybrid.second};
  }

  void AddHtp(const Hybrid& hybrid, bool isPrimary) {
    HtpRows& rows = isPrimary ? settings_.primaryHtps : settings_.roughnessHtps;
    const PlannedSource source = isPrimary ? PlannedSource::kPrimaryHtp : PlannedSource::kRoughnessHtp;
    const auto index = FreeRow(rows, hybrid, isPrimary, source);
    if (!index) return;
    rows[*index] = {.selected = true, .upperPercent = hybrid.second, .lowerPercent = hybrid.first};
  }

  /// The first unused of the ten rows, which the plan then names; nothing, with a result line that says so, when all
  /// are used.
  template <typename Rows>
  std::optional<std::size_t> FreeRow(const Rows& rows, const Hybrid& hybrid, bool isPrimary, PlannedSource source) {
    const auto free = std::find_if(rows.begin(), rows.end(), [](const auto& row) { return !row.selected; });
    if (free == rows.end()) {
      AddUnknown(hybrid.label, hybrid.label, hybrid.type);
      return std::nullopt;
    }
    const auto index = static_cast<std::size_t>(free - rows.begin());
    const ResultList list = family_ == Family::kMotif ? ResultList::kMotif
                            : isPrimary               ? ResultList::kPrimary
                                                      : ResultList::kRoughness;
    plan_.parameters.push_back({hybrid.label, list, source, index, ToleranceOf(keys_, hybrid.label, plan_.remarks)});
    ++plan_.detected;
    return index;
  }

  /// A count at a level: the row exists once a pass, so a second level cannot be had.
  void AddLevelRow(const Hybrid& hybrid, const std::string& name, double& level) {
    if (!hybrid.relativeToMean) return Refuse(hybrid, "WARNING: " + name + " - must be relative to meanline.");
    const bool isThere = std::any_of(settings_.parameters.begin(), settings_.parameters.end(),
                                     [&name](const ParameterSelection& row) { return row.name == name; });
    if (isThere && level != hybrid.first) return AddUnknown(hybrid.label, hybrid.label, name);
    level = hybrid.first;
    AddRow(hybrid.label, hybrid.label, name);
  }

  void AddRow(const std::string& shownName, std::string_view planName, const std::string& catalogueName) {
    if (settings_.parameters.size() == kMostParameters) return AddUnknown(shownName, planName, catalogueName);
    ParameterSelection row;
    row.name = catalogueName;
    row.tolerance = ToleranceOf(keys_, planName, plan_.remarks);
    row.selectionRef = static_cast<std::int32_t>(settings_.parameters.size());
    plan_.parameters.push_back({shownName, ListOf(family_, catalogueName), PlannedSource::kCatalogue,
                                settings_.parameters.size(), row.tolerance});
    settings_.parameters.push_back(std::move(row));
    ++plan_.detected;
  }

  void AddUnknown(std::string_view shownName, std::string_view planName, std::string_view catalogueName) {
    log_("WARNING:  '" + std::string(planName) + "' - Parameter not implemented.");
    AddUncomputed(shownName, catalogueName);
  }

  void Refuse(const Hybrid& hybrid, std::string_view warning) {
    log_(warning);
    AddUncomputed(hybrid.label, hybrid.type);
  }

  /// Named in the plan, but never computed: it keeps its lines in the results.
  void AddUncomputed(std::string_view shownName, std::string_view catalogueName) {
    plan_.parameters.push_back(
        {std::string(shownName), ListOf(family_, catalogueName), PlannedSource::kNone, 0, Tolerance{}});
  }

  const PlanKeys& keys_;
  Family family_;
  AnalysisSettings& settings_;
  const std::function<void(std::string_view)>& log_;
  PassPlan plan_;
};

std::string_view CounterName(Family family) {
  switch (family) {
    case Family::kWaviness:
      return "W";
    case Family::kMotif:
      return "MOTIF";
    case Family::kRk:
      return "RK";
    case Family::kStandard:
      break;
  }
  return "STD";
}

}  // namespace

Family FamilyOf(std::string_view catalogueName) {
  const ParameterFamily family = FamilyOfRow(catalogueName);
  if (family == ParameterFamily::kMotif) return Family::kMotif;
  if (family != ParameterFamily::kByLetter) return Family::kRk;
  return LowerAscii(catalogueName.front()) == 'w' ? Family::kWaviness : Family::kStandard;
}

std::optional<PassPlan> ReadTestPlan(const IniFile& plan, Family family, Document& document,
                                     const std::function<void(std::string_view)>& log) {
  if (plan.Sections().empty()) return std::nullopt;
  const PlanKeys keys(plan);
  ReadFilterAndForm(keys, family, document);
  PassReader reader(keys, family, document, log);
  reader.ReadParameters();
  if (family == Family::kStandard) reader.ReadHybrids("Hybrids");
  if (family == Family::kMotif) reader.ReadHybrids("Hybrid_2");
  PassPlan pass = reader.TakePlan();
  if (family == Family::kWaviness && pass.detected > 0 && !keys.Has("WavFilter")) {
    log("WARNING: Waviness analysis with no filter given");
  }
  log(std::string(CounterName(family)) + ": " + IntegerText(pass.detected) + " parameters detected");
  ApplySettings(document, document.settings);
  return pass;
}

}  // namespace texturon
