// SPDX-License-Identifier: Apache-2.0

#include "analysis/practice.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "analysis/pipeline.h"
#include "base/number_text.h"
#include "base/text.h"
#include "settings/settings_text.h"

namespace texturon {
namespace {

/// So many finite numbers between commas; empty for anything else.
std::optional<std::vector<double>> Numbers(std::string_view text, std::size_t count) {
  std::vector<double> numbers;
  while (numbers.size() < count) {
    const std::size_t comma = std::min(text.find(','), text.size());
    const std::string_view word = TrimBlanks(text.substr(0, comma));
    const ParsedDouble number = ParseDouble(word);
    if (!number.usable() || number.length != word.size()) return std::nullopt;
    numbers.push_back(number.value);
    if (comma == text.size()) break;
    text.remove_prefix(comma + 1);
  }
  return numbers.size() == count ? std::optional(numbers) : std::nullopt;
}

std::optional<double> NumberAboveZero(std::string_view text) {
  const auto numbers = Numbers(text, 1);
  return numbers && numbers->front() > 0.0 ? std::optional(numbers->front()) : std::nullopt;
}

std::optional<std::int32_t> WholeOf(double number) {
  if (number != std::trunc(number) || std::abs(number) > 2147483647.0) return std::nullopt;
  return static_cast<std::int32_t>(number);
}

std::optional<bool> FlagOf(std::string_view text) {
  if (text == "1" || EqualIgnoringCase(text, "true")) return true;
  if (text == "0" || EqualIgnoringCase(text, "false")) return false;
  return std::nullopt;
}

bool SetRegion(Practice& practice, std::string_view text) {
  practice.scope.region.reset();
  if (text.empty()) return true;
  const auto numbers = Numbers(text, 4);
  const auto mode = numbers ? WholeOf((*numbers)[0]) : std::nullopt;
  if (mode) practice.scope.region = RegionChoice{*mode, (*numbers)[1], (*numbers)[2], (*numbers)[3]};
  return mode.has_value();
}

bool SetExclusion(Practice& practice, std::string_view text) {
  practice.scope.exclusion.reset();
  if (text.empty()) return true;
  const auto numbers = Numbers(text, 2);
  const auto first = numbers ? WholeOf((*numbers)[0]) : std::nullopt;
  const auto last = numbers ? WholeOf((*numbers)[1]) : std::nullopt;
  if (!first || !last) return false;
  practice.scope.exclusion = IndexRange::FromEnds(*first, *last);
  if (!practice.scope.region) practice.scope.region = RegionChoice{.mode = kFromStart};
  return true;
}

bool SetWholeCutoffsOf(Practice& practice, std::string_view text) {
  const auto flag = FlagOf(text);
  if (!flag) return false;
  const AnalysisSettings& settings = practice.settings.analysis;
  practice.scope.wholeCutoffs.reset();
  if (*flag) practice.scope.wholeCutoffs = DiscardSetting{settings.UserDiscardType, settings.UserDiscardLengthMM};
  return true;
}

struct ScopeKey {
  std::string_view key;
  std::string_view form;
  bool (*set)(Practice& practice, std::string_view text);
};

constexpr ScopeKey kScopeKeys[] = {
    {"SpacingUM", "a number above 0",
     [](Practice& practice, std::string_view text) {
       practice.spacingUM = NumberAboveZero(text);
       return practice.spacingUM.has_value();
     }},
    {"HeightFactor", "a number above 0",
     [](Practice& practice, std::string_view text) {
       practice.heightFactor = NumberAboveZero(text).value_or(0.0);
       return practice.heightFactor > 0.0;
     }},
    {"Invert", "0 or 1",
     [](Practice& practice, std::string_view text) {
       practice.invert = FlagOf(text).value_or(false);
       return FlagOf(text).has_value();
     }},
    {"Region", "of the form MODE,START,END,LENGTH", SetRegion},
    {"Exclude", "of the form FIRST,LAST", SetExclusion},
    {"WholeCutoffs", "0 or 1", SetWholeCutoffsOf},
    {"AllDataForForm", "0 or 1",
     [](Practice& practice, std::string_view text) {
       practice.scope.allDataForForm = FlagOf(text).value_or(false);
       return FlagOf(text).has_value();
     }},
};

bool IsOf(const SettingKey& key, std::initializer_list<SettingGroup> groups) {
  return std::find(groups.begin(), groups.end(), key.entry.group) != groups.end();
}

bool IsKey(const SettingKey& key, std::initializer_list<std::string_view> keys) {
  return std::find(keys.begin(), keys.end(), key.binding.key) != keys.end();
}

using enum SettingGroup;

constexpr PracticeStep kSteps[] = {
    {"spacing and unit", [](const SettingKey&) { return false; },
     [](Practice& to, const Practice& from) {
       to.spacingUM = from.spacingUM;
       to.heightFactor = from.heightFactor;
       to.invert = from.invert;
     }},
    {"region",
     [](const SettingKey& key) { return IsOf(key, {kClearAperture}) && key.binding.key != "AsphereSlopeWindowMM"; },
     [](Practice& to, const Practice& from) { to.scope = from.scope; }},
    {"form",
     [](const SettingKey& key) {
       return IsOf(key, {kForm, kFitPoints}) || key.binding.section == "ASPHERIC_PARAMETERS" ||
              key.binding.section == "FREE_FORM";
     },
     nullptr},
    {"short-wave filter",
     [](const SettingKey& key) {
       return IsKey(key, {"LsCutoffMM", "ShortWaveFilter"});
     },
     nullptr},
    {"filter kind", [](const SettingKey& key) { return IsOf(key, {kFilter}) || IsKey(key, {"LongWaveFilter"}); },
     nullptr},
    {"cut-off", [](const SettingKey& key) { return key.binding.key == "LcCutoffMM"; }, nullptr},
    {"discard", [](const SettingKey& key) { return IsOf(key, {kEnds}); }, nullptr},
    {"edition", [](const SettingKey& key) { return IsKey(key, {"Edition"}); }, nullptr},
    {"evaluation rule",
     [](const SettingKey& key) {
       return IsOf(key, {kElementHeights, kElementWidths}) ||
              IsKey(key, {"Sections", "EvaluationLengthMM", "CompleteSections", "HillThresholdPercent",
                          "DaleThresholdPercent", "PruningPercent"});
     },
     nullptr},
    {"parameter definition", [](const SettingKey&) { return true; }, nullptr},
};

bool IsOfResults(const SettingKey& key) {
  constexpr std::string_view kElsewhere[] = {"TEXTURON", "DISPLAY", "AUTO_LOADING", "DECISION", "PARAMETERS"};
  const SettingType type = key.binding.type;
  return type != SettingType::kVersion &&
         std::find(std::begin(kElsewhere), std::end(kElsewhere), key.binding.section) == std::end(kElsewhere);
}

std::vector<ParameterSelection> SelectedOf(const Practice& a, const Practice& b) {
  std::vector<ParameterSelection> rows;
  for (const Practice* const practice : {&a, &b}) {
    for (const ParameterSelection& row : practice->settings.analysis.parameters) {
      const auto isSame = [&row](const ParameterSelection& other) { return EqualIgnoringCase(other.name, row.name); };
      if (row.selected && std::none_of(rows.begin(), rows.end(), isSame)) rows.push_back(row);
    }
  }
  return rows;
}

bool IsSame(const Practice& a, const Practice& b) {
  return a.settings.analysis == b.settings.analysis && a.scope == b.scope && a.spacingUM == b.spacingUM &&
         a.heightFactor == b.heightFactor && a.invert == b.invert;
}

class Comparison {
public:
  Comparison(const ProfileSet& record, Practice a, Practice b) : record_(record), a_(std::move(a)), b_(std::move(b)) {
    std::vector<ParameterSelection> rows = SelectedOf(a_, b_);
    if (rows.size() > kMostParameters) rows.resize(kMostParameters);
    a_.settings.analysis.parameters = rows;
    b_.settings.analysis.parameters = std::move(rows);
    a_.settings.display = b_.settings.display = {};
  }

  std::vector<ComparedRow> Run() {
    std::vector<ComparedRow> rows;
    for (const Practice* const practice : {&a_, &b_}) {
      Document document = MakeDocument();
      ApplySettings(document, practice->settings);
      for (const ParameterDef& row : document.catalogue.rows) {
        const bool isNew = std::find(names_.begin(), names_.end(), row.name) == names_.end();
        if (!row.selected || !isNew) continue;
        names_.push_back(row.name);
        rows.push_back({.name = row.name, .quantity = row.quantity});
      }
    }
    const Values a = ValuesBy(a_);
    Put(rows, a, &ComparedRow::a);
    Practice sofar = a_;
    Values before = a;
    for (const PracticeStep& step : kSteps) {
      const Practice former = sofar;
      TakeStep(step, sofar, b_);
      if (IsSame(former, sofar)) continue;
      Practice single = a_;
      TakeStep(step, single, b_);
      const Values after = ValuesBy(sofar);
      const Values alone = ValuesBy(single);
      for (std::size_t i = 0; i < rows.size(); ++i) {
        rows[i].steps.push_back({step.name, Minus(after[i], before[i]), Minus(alone[i], a[i])});
      }
      before = after;
    }
    Put(rows, before, &ComparedRow::b);
    return rows;
  }

private:
  using Values = std::vector<std::optional<double>>;

  static std::optional<double> Minus(const std::optional<double>& a, const std::optional<double>& b) {
    return a && b ? std::optional(*a - *b) : std::nullopt;
  }

  static void Put(std::vector<ComparedRow>& rows, const Values& values, std::optional<double> ComparedRow::*member) {
    for (std::size_t i = 0; i < rows.size(); ++i) rows[i].*member = values[i];
  }

  /// In the order of the names: another edition has other rows, some under a name that both have.
  Values ValuesBy(const Practice& practice) const {
    Document document = MakeDocument();
    ApplyPractice(practice, record_, document);
    document.quietMode = true;
    document.writesTraceFile = false;
    document.wanted = kNoCurves;
    SilentPrompts nobody;
    const bool isDone = Compute(document, nobody, {}) == ComputeOutcome::kDone;
    Values values(names_.size());
    for (std::size_t i = 0; i < names_.size() && isDone; ++i) {
      const auto row = std::find_if(document.catalogue.rows.begin(), document.catalogue.rows.end(),
                                    [&](const ParameterDef& other) { return other.name == names_[i]; });
      const bool isDefined = row != document.catalogue.rows.end() && row->valid && std::isfinite(row->value);
      if (isDefined) values[i] = row->value;
    }
    return values;
  }

  const ProfileSet& record_;
  Practice a_;
  Practice b_;
  std::vector<std::string> names_;
};

}  // namespace

std::string SetScope(Practice& practice, std::string_view key, std::string_view value) {
  for (const ScopeKey& row : kScopeKeys) {
    if (!EqualIgnoringCase(row.key, key)) continue;
    if (row.set(practice, value)) return {};
    return "SCOPE." + std::string(row.key) + ": " + Quoted(value) + " is not " + std::string(row.form);
  }
  return "there is no key " + Quoted(key) + " in the section \"SCOPE\"";
}

std::string TakeScope(const IniFile& file, Practice& practice) {
  for (const IniEntry& entry : file.Entries()) {
    if (!EqualIgnoringCase(entry.section, kScopeSection) || entry.shadowed) continue;
    std::string fault = SetScope(practice, entry.key, entry.value);
    if (!fault.empty()) return fault;
  }
  return {};
}

std::string TakePractice(const EmbeddedFile& file, Practice& practice) {
  const IniFile ini{std::string(file.text)};
  for (const IniEntry& entry : ini.Entries()) {
    if (EqualIgnoringCase(entry.section, kScopeSection)) continue;
    const std::string name = std::string(entry.section) + "." + std::string(entry.key);
    if (auto refusal = SetOne(practice.settings, name, entry.value)) return *refusal;
  }
  // A filter that is chosen by its word would stand before the number.
  if (ini.Find("ANALYSIS", "FilterType")) practice.settings.analysis.standard.LongWaveFilter = {};
  return TakeScope(ini, practice);
}

void ApplyPractice(const Practice& practice, const ProfileSet& record, Document& document) {
  ApplySettings(document, practice.settings);
  document.scope = practice.scope;
  ProfileSet profiles = MakeProfileSet(record.raw, practice.spacingUM.value_or(record.spacingUM));
  const double factor = practice.invert ? -practice.heightFactor : practice.heightFactor;
  if (factor != 1.0) {
    for (double& height : profiles.raw) height *= factor;
  }
  profiles.tipRadiusMM = record.tipRadiusMM;
  profiles.instrumentValues = record.instrumentValues;
  SetProfile(document, std::move(profiles));
}

PracticeTitle TitleOf(const EmbeddedFile& file) {
  std::string lines[2];
  std::string_view rest = file.text;
  for (std::string& line : lines) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    std::string_view text = TrimBlanks(rest.substr(0, end));
    if (text.starts_with(';')) line = TrimBlanks(text.substr(1));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return {lines[0], lines[1]};
}

std::span<const PracticeStep> PracticeSteps() {
  return kSteps;
}

const PracticeStep* StepOf(const SettingKey& key) {
  if (!IsOfResults(key)) return nullptr;
  return std::find_if(std::begin(kSteps), std::end(kSteps),
                      [&key](const PracticeStep& step) { return step.holds(key); });
}

void TakeStep(const PracticeStep& step, Practice& to, const Practice& from) {
  for (const SettingKey& key : SettingsTable()) {
    if (StepOf(key) != &step) continue;
    const SettingBinding& binding = key.binding;
    const std::size_t count = binding.isRepeated() ? binding.rows->count(from.settings) : 1;
    if (binding.isRepeated() && binding.rows->count(to.settings) != count) binding.rows->resize(to.settings, count);
    for (std::size_t row = 0; row < count; ++row) {
      binding.set(to.settings, row, binding.get(from.settings, row));
    }
  }
  if (step.takeScope != nullptr) step.takeScope(to, from);
}

std::optional<double> ComparedRow::Difference() const {
  return a && b ? std::optional(*b - *a) : std::nullopt;
}

std::optional<double> ComparedRow::Interaction() const {
  std::optional<double> rest = Difference();
  for (const StepChange& step : steps) {
    if (!rest || !step.alone) return std::nullopt;
    *rest -= *step.alone;
  }
  return rest;
}

std::vector<ComparedRow> ComparePractices(const ProfileSet& record, const Practice& a, const Practice& b) {
  return Comparison(record, a, b).Run();
}

}  // namespace texturon
