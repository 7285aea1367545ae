// SPDX-License-Identifier: Apache-2.0

#include "unattended/test_plan.h"

#include <algorithm>
#include <array>
#include <utility>

#include "analysis/compute_range.h"
#include "base/number_text.h"
#include "base/text.h"
#include "parameters/catalogue.h"
#include "parameters/edition2021/edition_list.h"
#include "parameters/letter_settings.h"
#include "parameters/suffix_table.h"
#include "settings/filter_table.h"
#include "unattended/pass_families.h"

namespace texturon {
namespace {

constexpr double kDefaultCutoffMM = 0.8;
constexpr std::int32_t kMostHybrids = 50;

std::int32_t FilterTypeOf(PlanKeys& keys, std::string_view key) {
  const auto text = keys.Text(key);
  if (!text) return kFilterGaussian;
  for (const FilterRow& filter : kFilterTable) {
    if (!filter.number) continue;
    if (EqualIgnoringCase(TrimBlanks(*text), filter.word) || TrimBlanks(*text) == IntegerText(*filter.number)) {
      return *filter.number;
    }
  }
  keys.RemarkReadAs(key, kFilterTable.front().word);
  return kFilterGaussian;
}

double CutoffMM(PlanKeys& keys, std::string_view key) {
  const auto text = keys.Text(key);
  if (!text) return kDefaultCutoffMM;
  const ParsedDouble number = ParseDouble(TrimBlanks(*text));
  const double cutoffMM = number.usable() && number.value > 0.0 ? number.value : kDefaultCutoffMM;
  if (!number.usable() || number.length != TrimBlanks(*text).size()) {
    keys.RemarkReadAs(key, ShortestText(cutoffMM) + " mm");
  }
  return cutoffMM;
}

/// Two lengths; one that is no number above 0 leaves what is in force.
void ReadMotifLengths(PlanKeys& keys, AnalysisSettings& settings) {
  const auto lengths = keys.Text("ABLength");
  if (!lengths) return;
  const std::size_t comma = std::min(lengths->find_first_of(",;"), lengths->size());
  const std::string_view texts[] = {TrimBlanks(lengths->substr(0, comma)),
                                    TrimBlanks(lengths->substr(std::min(comma + 1, lengths->size())))};
  double* const targets[] = {&settings.MotifAMM, &settings.MotifBMM};
  bool isWhole = true;
  for (std::size_t i = 0; i < std::size(texts); ++i) {
    const ParsedDouble number = ParseDouble(texts[i]);
    if (number.usable() && number.value > 0.0) *targets[i] = number.value;
    isWhole = isWhole && number.usable() && number.value > 0.0 && number.length == texts[i].size();
  }
  if (!isWhole) {
    keys.RemarkReadAs("ABLength", ShortestText(settings.MotifAMM) + " and " + ShortestText(settings.MotifBMM) + " mm");
  }
}

/// The edition that the plan's names are of; without the key that of the settings, which cannot be both here.
void ReadEdition(PlanKeys& keys, StandardSettings& standard) {
  const auto text = keys.Text("Edition");
  const std::string_view edition = text ? TrimBlanks(*text) : std::string_view(standard.Edition);
  standard.Edition = NameOf(edition == NameOf(Edition::k2021) ? Edition::k2021 : Edition::k1997);
  if (text && edition != standard.Edition) keys.RemarkReadAs("Edition", standard.Edition);
}

bool IsOf2021(const AnalysisSettings& settings) {
  return ChosenEdition(settings) == EditionChoice::k2021;
}

/// The pass of a name of the edition of 2021: the core rows of R have their own filter.
Family FamilyOf2021(std::string_view name) {
  const EditionName read = ParseEditionName(name);
  if (read.row != nullptr && read.row->ofCore && read.letter == 'R') return Family::kRk;
  return read.letter == 'W' ? Family::kWaviness : Family::kStandard;
}

void ReadFilterAndForm(PlanKeys& keys, Family family, Document& document) {
  AnalysisSettings& settings = document.settings.analysis;
  const PassFamily& pass = PassFamilyOf(family);
  settings.standard.LongWaveFilter.clear();
  settings.FilterType = family == Family::kRk ? kFilterIso13565 : FilterTypeOf(keys, pass.filterKey);
  if (family == Family::kRk && IsOf2021(settings)) {
    if (CoreFilter(settings) != nullptr) {
      settings.standard.LongWaveFilter = settings.standard.CoreFilter;
    } else {
      settings.FilterType = FilterTypeOf(keys, PassFamilyOf(Family::kStandard).filterKey);
    }
  }
  settings.LcCutoffMM = CutoffMM(keys, pass.cutoffKey);
  const double ratio = keys.Real(pass.bandwidthRatioKey);
  settings.LsCutoffMM = ratio > 0.0 ? settings.LcCutoffMM / ratio : 0.0;
  const std::int32_t form = keys.Integer("FormOption");
  const bool isForm = FindForm(form) != nullptr;
  settings.FormRemovalType = isForm ? form : kFormLine;
  if (!isForm) keys.RemarkReadAs("FormOption", IntegerText(kFormLine));
  const std::int32_t cutoffs = keys.Integer(pass.cutoffCountKey);
  document.scope.region = cutoffs > 0 ? std::optional(RegionOfCutoffs(cutoffs, settings)) : std::nullopt;
  ReadMotifLengths(keys, settings);
}

Tolerance ToleranceOf(PlanKeys& keys, const PlanKeys::ListedName& listed) {
  const std::string name(listed.name);
  const bool hasMinimum = keys.Has(name + "_Min", listed.section);
  const bool hasMaximum = keys.Has(name + "_Max", listed.section);
  const bool upperAlone = keys.Integer("UseMaxMinLimits") == 0;
  Tolerance tolerance;
  tolerance.toleranced = keys.Integer(name + "_Checked", listed.section) > 0 && hasMaximum;
  tolerance.bilateral = hasMinimum && !upperAlone;
  if (hasMaximum) tolerance.upperLimit = keys.Real(name + "_Max", listed.section);
  if (hasMinimum) tolerance.lowerLimit = keys.Real(name + "_Min", listed.section);
  return tolerance;
}

ResultList ListOf(Family family, std::string_view catalogueName) {
  if (const auto& list = PassFamilyOf(family).list) return *list;
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
  PassReader(PlanKeys& keys, Family family, Document& document, const std::function<void(std::string_view)>& log)
      : keys_(keys), family_(family), settings_(document.settings.analysis), log_(log) {
    settings_.parameters.clear();
    settings_.primaryMaterialRatios.fill({});
    settings_.roughnessMaterialRatios.fill({});
    settings_.primaryHtps.fill({});
    settings_.roughnessHtps.fill({});
  }

  void ReadParameters() {
    for (const PlanKeys::ListedName& listed : keys_.ParameterNames()) {
      if (IsOf2021(settings_)) {
        if (FamilyOf2021(listed.name) == family_) ReadNameOf2021(listed);
        continue;
      }
      const std::string catalogueName = ExternalToCatalogueName(listed.name);
      if (FamilyOf(catalogueName) != family_) continue;
      if (IsKnownParameter(catalogueName)) {
        AddRow(CatalogueToExternalName(catalogueName), listed, catalogueName);
      } else {
        AddUnknown(listed.name, listed.name, catalogueName);
      }
    }
  }

  void ReadHybrids(std::string_view list) {
    const std::int32_t count = std::clamp(keys_.Integer("MaxHybrids"), 0, kMostHybrids);
    for (std::int32_t i = 0; i < count; ++i) ReadHybrid(std::string(list) + "_" + IntegerText(i));
  }

  /// The feature parameters of the settings. They stand behind the rows of the list, so this comes last.
  void ReadFeatures() {
    std::size_t index = settings_.parameters.size();
    for (const std::string& text : settings_.standard.features) {
      if (TrimBlanks(text).empty()) continue;
      const std::size_t own = index++;
      const EditionName read = ParseEditionName(text);
      const bool isOfPass = (read.letter == 'W' ? Family::kWaviness : Family::kStandard) == family_;
      if (!isOfPass || !read.feature) continue;
      plan_.parameters.push_back({MakeEditionRow(text).NameWithEdition(), ListOf(family_, {&read.letter, 1}),
                                  PlannedSource::kCatalogue, own, Tolerance{}});
      ++plan_.detected;
    }
  }

  PassPlan TakePlan() { return std::move(plan_); }

private:
  void ReadNameOf2021(const PlanKeys::ListedName& listed) {
    const ParameterDef row = MakeEditionRow(listed.name);
    if (ParseEditionName(listed.name).fault.empty()) {
      AddRow(row.NameWithEdition(), listed, row.name);
    } else {
      AddUnknown(row.NameWithEdition(), listed.name, row.name);
    }
  }

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
    const LetterSettings& own = SettingsOfLetter(UpperAscii(letter));
    if (EqualIgnoringCase(kind, "mr")) {
      if (!isSupported) return Refuse(hybrid, "WARNING: Only Primary and Roughness bearing ratios are supported");
      AddMaterialRatio(hybrid, isPrimary);
    } else if (EqualIgnoringCase(kind, "Htp")) {
      if (!isSupported) return Refuse(hybrid, "WARNING: Only Primary and Roughness Htp's are supported");
      AddHtp(hybrid, isPrimary);
    } else if (IsOf2021(settings_) && (EqualIgnoringCase(kind, "hsc") || EqualIgnoringCase(kind, "pc"))) {
      // Its Rpc is no count of peaks, and it has no count of high spots.
      Refuse(hybrid, "WARNING: Counts at a level are no parameters of the edition of 2021");
    } else if (EqualIgnoringCase(kind, "hsc")) {
      if (!isSupported) return Refuse(hybrid, "WARNING: Only Primary and Roughness hsc's are supported");
      AddLevelRow(hybrid, isPrimary ? "Phsc" : "Rhsc", settings_.*own.highSpotLevelUM);
    } else if (EqualIgnoringCase(kind, "pc") && isSupported) {
      AddLevelRow(hybrid, isPrimary ? "Ppc" : "Rpc", settings_.*own.peakBandUM);
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
                    .offsetPercent = hybrid.second,
                    .tolerance = plan_.parameters.back().tolerance};
  }

  void AddHtp(const Hybrid& hybrid, bool isPrimary) {
    HtpRows& rows = isPrimary ? settings_.primaryHtps : settings_.roughnessHtps;
    const PlannedSource source = isPrimary ? PlannedSource::kPrimaryHtp : PlannedSource::kRoughnessHtp;
    const auto index = FreeRow(rows, hybrid, isPrimary, source);
    if (!index) return;
    rows[*index] = {.selected = true,
                    .upperPercent = hybrid.second,
                    .lowerPercent = hybrid.first,
                    .tolerance = plan_.parameters.back().tolerance};
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
    plan_.parameters.push_back({hybrid.label, list, source, index, ToleranceOf(keys_, {hybrid.label})});
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
    AddRow(hybrid.label, {hybrid.label}, name);
  }

  void AddRow(const std::string& shownName, const PlanKeys::ListedName& listed, const std::string& catalogueName) {
    if (settings_.parameters.size() == kMostParameters) return AddUnknown(shownName, listed.name, catalogueName);
    ParameterSelection row;
    row.name = catalogueName;
    row.tolerance = ToleranceOf(keys_, listed);
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

  PlanKeys& keys_;
  Family family_;
  AnalysisSettings& settings_;
  const std::function<void(std::string_view)>& log_;
  PassPlan plan_;
};

}  // namespace

Family FamilyOf(std::string_view catalogueName) {
  const ParameterFamily family = FamilyOfRow(catalogueName);
  if (family == ParameterFamily::kMotif) return Family::kMotif;
  if (family != ParameterFamily::kByLetter) return Family::kRk;
  return LowerAscii(catalogueName.front()) == 'w' ? Family::kWaviness : Family::kStandard;
}

std::optional<PassPlan> ReadTestPlan(PlanKeys& keys, Family family, Document& document,
                                     const std::function<void(std::string_view)>& log) {
  if (!keys.hasSections()) return std::nullopt;
  ReadEdition(keys, document.settings.analysis.standard);
  ReadFilterAndForm(keys, family, document);
  PassReader reader(keys, family, document, log);
  reader.ReadParameters();
  const PassFamily& row = PassFamilyOf(family);
  if (!row.hybridKeys.empty()) reader.ReadHybrids(row.hybridKeys);
  reader.ReadFeatures();
  PassPlan pass = reader.TakePlan();
  if (family == Family::kWaviness && pass.detected > 0 && !keys.Has("WavFilter")) {
    log("WARNING: Waviness analysis with no filter given");
  }
  pass.remarks = keys.TakeRemarks();
  log(std::string(row.counter) + ": " + IntegerText(pass.detected) + " parameters detected");
  ApplySettings(document, document.settings);
  return pass;
}

}  // namespace texturon
