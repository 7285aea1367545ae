// SPDX-License-Identifier: Apache-2.0

#include "presentation/report_texts.h"

#include <algorithm>
#include <cstdint>

#include "analysis/captions.h"
#include "analysis/cautions.h"
#include "analysis/decision.h"
#include "analysis/region_choice.h"
#include "base/number_text.h"
#include "base/program_version.h"
#include "base/quantity.h"
#include "parameters/edition2021/edition_table.h"
#include "presentation/head_texts.h"
#include "presentation/profile_marks.h"
#include "presentation/requirement_texts.h"
#include "settings/setting_choices.h"
#include "settings/settings_table.h"

namespace texturon {
namespace {

std::string Count(std::size_t count) {
  return IntegerText(static_cast<std::int64_t>(count));
}

std::string Length(double lengthUM, bool metric) {
  return LengthText(lengthUM * kMillimetresPerMicrometre, metric);
}

std::string RecordText(const ProfileSet& profiles, bool metric) {
  return IntegerText(profiles.pointCount) + " points, spacing " + HeightText(profiles.spacingUM, metric) + ", length " +
         Length(profiles.LengthUM(), metric);
}

/// The drawing's requirements over all profiles, or by the one of the document.
std::vector<JudgedRequirement> DrawingOf(const Document& document, const SeveralReport& several) {
  return several.rows.empty() ? RequirementsOf(document) : several.requirements;
}

std::vector<ReportLine> Facts(const Document& document, std::string_view time, const SeveralReport& several) {
  const ProfileSet& profiles = document.profiles;
  const bool metric = document.settings.display.Metric;
  std::vector<ReportLine> facts = {{"File", profiles.sourcePath},
                                   {"Measured", profiles.dateTime},
                                   {"Analysed", std::string(time)},
                                   {"Record", RecordText(profiles, metric)}};
  if (profiles.computeRange) facts.emplace_back("Form", FormDescription(document));
  facts.emplace_back("Filter", FilterDescription(document));
  facts.emplace_back("Edition", EditionDescription(document));
  if (!document.results.uncertainties.empty()) {
    facts.emplace_back("Uncertainty", "\xB1 U with k = 2, by trials with the instrument's budget");
  }
  if (const DecisionRuleName& rule = DecisionRuleOf(document.settings.decision.DecisionRule); IsGuarded(rule.number)) {
    facts.emplace_back("Decision rule", std::string(rule.name) + ": " + std::string(rule.meaning));
  }
  if (profiles.evaluationRange) {
    facts.emplace_back("Evaluated", EvaluatedForReaders(document));
    for (const Caution& caution : CautionsOf(document)) facts.emplace_back("Caution", caution.sentence);
  }
  if (const auto excluded = HeededExclusion(document)) {
    facts.emplace_back("Not in the form fit",
                       DescribeStretch(*excluded, profiles.spacingUM, profiles.spacingUM, metric));
  }
  for (const JudgedRequirement& judged : DrawingOf(document, several)) {
    facts.emplace_back("Drawing", judged.requirement.source + ": " + RequirementVerdict(document, judged));
  }
  std::erase_if(facts, [](const ReportLine& line) { return line.second.empty(); });
  return facts;
}

std::string LimitText(double limit, const ParameterDef& row, bool metric) {
  return ShownNumber(row.quantity, limit, metric, row.format.decimals);
}

ReportRow MakeRow(const ShownRow& shown, bool metric) {
  ReportRow row{.title = shown.row.difference.empty() ? shown.title + shown.label : shown.title,
                .value = shown.ValueAndUncertainty(),
                .unit = shown.unit,
                .verdict = shown.verdict,
                .doubt = shown.doubt,
                .isToleranced = shown.row.tolerance.toleranced};
  const LimitsInForce limits = LimitsOf(shown.row.tolerance);
  if (limits.lower) row.lower = LimitText(*limits.lower, shown.row, metric);
  if (limits.upper) row.upper = LimitText(*limits.upper, shown.row, metric);
  return row;
}

/// Rows of which the same is said share a line.
void AddOf(std::vector<ReportLine>& lines, const std::string& title, std::string_view text) {
  const auto same =
      std::find_if(lines.begin(), lines.end(), [text](const ReportLine& line) { return line.second == text; });
  if (same == lines.end()) {
    lines.emplace_back(title, text);
  } else {
    same->first += ", " + title;
  }
}

void Summarise(ReportTexts& texts) {
  std::size_t judged = 0;
  std::size_t failed = 0;
  std::size_t missing = 0;
  std::size_t undecided = 0;
  std::size_t doubted = 0;  // by a rule that lets what is undecided fail
  std::string_view doubt;
  for (const ReportRow& row : texts.rows) {
    if (row.verdict) ++judged;
    if (row.verdict == Acceptance::kFail) ++failed;
    if (row.verdict == Acceptance::kFail && !row.doubt.empty() && doubted++ == 0) doubt = row.doubt;
    if (row.verdict == Acceptance::kUndecided && undecided++ + doubted == 0) doubt = row.doubt;
    if (row.isToleranced && !row.verdict) ++missing;
  }
  if (failed > 0) {
    texts.summary = Count(failed) + " of " + Count(judged) + " toleranced parameters out of tolerance.";
    if (doubted > 0) texts.summary += " " + Count(doubted) + " of them undecided: " + std::string(doubt) + ".";
  } else if (judged == 1 && undecided == 0) {
    texts.summary = "The toleranced parameter is within tolerance.";
  } else if (judged > 0 && undecided == 0) {
    texts.summary = "All " + Count(judged) + " toleranced parameters are within tolerance.";
  }
  if (undecided > 0) {
    texts.summary += (failed > 0 ? " " : "") + Count(undecided) + " of " + Count(judged) +
                     " toleranced parameters undecided: " + std::string(doubt) + ".";
  }
  if (missing > 0) {
    texts.summary += (judged > 0 ? " " : "") + Count(missing) +
                     (missing == 1 ? " parameter with limits has no value." : " parameters with limits have no value.");
  }
  texts.outcome = failed > 0                ? ReportOutcome::kFail
                  : missing + undecided > 0 ? ReportOutcome::kOpen
                  : judged > 0              ? ReportOutcome::kPass
                                            : ReportOutcome::kNoLimits;
}

/// The drawing may ask for more than its rows do: for more profiles, or for settings that nobody has said.
void SummariseDrawing(const std::vector<JudgedRequirement>& drawing, ReportTexts& texts) {
  std::string worst;
  for (const JudgedRequirement& judged : drawing) {
    const AcceptanceResult result = judged.Verdict();
    if (result.verdict == Acceptance::kPass) continue;
    const bool isOpen = result.verdict == Acceptance::kUndecided;
    const ReportOutcome outcome = isOpen ? ReportOutcome::kOpen : ReportOutcome::kFail;
    if (outcome <= texts.outcome) continue;
    texts.outcome = outcome;
    worst = "Drawing " + std::string(ConformityWord(result.verdict)) + " (" + judged.requirement.source + ": " +
            std::string(result.by) + ").";
  }
  if (!worst.empty()) texts.summary += (texts.summary.empty() ? "" : " ") + worst;
}

/// A verdict on too little, or on a profile with its form, is none to rely on.
void SummariseCautions(const std::vector<Caution>& cautions, ReportTexts& texts) {
  if (cautions.empty() || texts.summary.empty()) return;
  for (const Caution& caution : cautions) texts.summary += " " + caution.sentence;
  if (texts.outcome == ReportOutcome::kPass) texts.outcome = ReportOutcome::kOpen;
}

std::vector<ReportLine> ChangedSettings(const Settings& settings) {
  const Settings defaults;
  std::vector<ReportLine> lines;
  for (const SettingKey& key : SettingsTable()) {
    const SettingBinding& binding = key.binding;
    const bool isOfAnalysis = binding.section != "DISPLAY" && binding.section != "AUTO_LOADING";
    if (!isOfAnalysis || binding.rows != nullptr) continue;
    const SettingValue value = binding.get(settings, 0);
    if (value != binding.get(defaults, 0)) lines.emplace_back(key.meaning, DescribeValue(key, value));
  }
  return lines;
}

/// Program, file, and what of the request no settings file carries.
std::vector<ReportLine> Origin(const Document& document) {
  const InputMark& input = document.profiles.input;
  if (input.sha256.empty()) return {};
  std::vector<ReportLine> lines = {{"Program", "Texturon " + ProgramVersionText()},
                                   {"SHA-256 of the file", input.sha256},
                                   {"Bytes", IntegerText(static_cast<std::int64_t>(input.bytes))},
                                   {"Reader", input.reader}};
  if (!input.companionSha256.empty()) lines.emplace_back("SHA-256 of its second file", input.companionSha256);
  if (document.profiles.inverted) lines.emplace_back("Heights", "turned upside down");
  if (document.scope.wholeCutoffs) lines.emplace_back("Evaluation length", "a whole number of cut-offs");
  if (document.scope.allDataForForm) lines.emplace_back("Form", "fitted to the whole record");
  return lines;
}

}  // namespace

std::vector<std::string> LimitTitles() {
  return {"Parameter", "Value", "Lower limit", "Upper limit", "Unit", "Verdict"};
}

std::string VerdictText(const ReportRow& row) {
  if (!row.verdict) return row.value.empty() ? "no value" : "";
  return std::string(VerdictWord(*row.verdict));
}

ReportTexts MakeReportTexts(const Document& document, std::string_view time, const SeveralReport& several) {
  const DisplaySettings& display = document.settings.display;
  ReportTexts texts{.company = display.CompanyName,
                    .identification = document.profiles.identification,
                    .facts = Facts(document, time, several),
                    .instrumentValues = CompareWithInstrument(document),
                    .changedSettings = ChangedSettings(document.settings),
                    .origin = Origin(document)};
  for (const ShownRow& row : ShownRows(document)) {
    texts.rows.push_back(MakeRow(row, display.Metric));
    if (row.value.empty()) AddOf(texts.reasons, row.title, row.reason);
    const std::string_view difference = row.row.difference;
    if (!difference.empty() && difference != kSameDefinition) AddOf(texts.differences, row.row.name, difference);
  }
  Summarise(texts);
  SummariseDrawing(DrawingOf(document, several), texts);
  SummariseCautions(CautionsOf(document), texts);
  return texts;
}

}  // namespace texturon
