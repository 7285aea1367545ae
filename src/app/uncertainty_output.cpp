// SPDX-License-Identifier: Apache-2.0

#include "app/uncertainty_output.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "analysis/verdict_trials.h"
#include "app/commands.h"
#include "app/run_options.h"
#include "app/table_text.h"
#include "base/charset.h"
#include "base/number_text.h"
#include "platform/interrupt.h"
#include "platform/platform.h"
#include "presentation/shown_rows.h"
#include "presentation/value_place.h"

namespace texturon {
namespace {

/// Lines of cells under each other: the first column and those from `firstText` on begin, the others end together.
std::string Aligned(const std::vector<std::vector<std::string>>& lines, std::size_t firstText) {
  std::vector<std::size_t> widths;
  for (const auto& line : lines) {
    widths.resize(std::max(widths.size(), line.size()));
    for (std::size_t i = 0; i < line.size(); ++i) widths[i] = std::max(widths[i], ShownWidth(line[i]));
  }
  std::string out;
  for (const auto& cells : lines) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      const bool isText = i == 0 || i >= firstText;
      line += (i == 0 ? "" : "  ") + (isText ? PadRight(cells[i], widths[i]) : PadLeft(cells[i], widths[i]));
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out += line + "\n";
  }
  return out;
}

std::string VerdictCell(const std::optional<Decision>& decision) {
  if (!decision) return {};
  std::string text(VerdictWord(decision->verdict));
  if (decision->conformity) text += " (" + FixedText(100.0 * *decision->conformity, 1) + " % within)";
  return text;
}

std::string SensitivityTable(const std::vector<ShownRow>& rows, const UncertaintyResult& result, bool metric) {
  std::vector<std::vector<std::string>> lines(1, {"Contribution"});
  const auto used = std::find_if(result.sensitivities.begin(), result.sensitivities.end(),
                                 [](const auto& row) { return !row.empty(); });
  if (used == result.sensitivities.end()) return {};
  for (const Sensitivity& line : *used) {
    lines.front().emplace_back(BudgetItems()[static_cast<std::size_t>(line.item)].key);
  }
  lines.front().insert(lines.front().end(), {"First order", "Trials", "Unit"});
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto& uncertainty = result.Of(i);
    if (!uncertainty) continue;
    const Quantity& quantity = rows[i].row.quantity;
    const auto shown = [&](double value) { return SignificantText(quantity.Shown(value, metric), 3); };
    std::vector<std::string> cells = {Utf8FromWindows1252(rows[i].title)};
    for (const Sensitivity& line : result.sensitivities[i]) cells.push_back(shown(line.contribution));
    cells.insert(cells.end(), {shown(CombinedOf(result.sensitivities[i])), shown(uncertainty->standard),
                               Utf8FromWindows1252(rows[i].unit)});
    lines.push_back(std::move(cells));
  }
  return "\nStandard uncertainty by each line of the budget alone:\n" + Aligned(lines, lines.front().size() - 1);
}

/// The budget that a call names. Empty, with a sentence on standard error, where it is none.
std::optional<UncertaintyRequest> ReadBudgetOf(const BudgetOptions& options) {
  BudgetRead read = ReadBudget(PathFromSystemText(options.budget));
  if (!read.budget) {
    ComplainOf(options.budget, read.reason);
    return std::nullopt;
  }
  return UncertaintyRequest{
      .budget = std::move(*read.budget), .trials = options.trials, .seed = static_cast<std::uint64_t>(options.seed)};
}

}  // namespace

std::optional<UncertaintyResult> FindUncertainty(Document& document, const UncertaintyRequest& request,
                                                 const std::string& file, ConsolePrompts& prompts) {
  const auto progress = prompts.OpenProgress("Trials", "Trials");
  int shown = -1;
  const auto advances = [&](int percent) {
    if (percent != shown && !progress->Advance(shown = percent)) return false;
    return !Interrupted();
  };
  std::string reason;
  UncertaintyResult result = TryUncertainty(document, request, advances, reason);
  if (reason.empty()) {
    document.results.uncertainties = result.rows;
    return result;
  }
  Complain(file + ": no uncertainty, " + Utf8FromWindows1252(reason) + ".");
  return std::nullopt;
}

void ApplyDecisionRule(const BudgetOptions& options, DecisionSettings& decision) {
  if (options.decisionRule) decision.DecisionRule = *options.decisionRule;
  if (IsGuarded(decision.DecisionRule) && options.budget.empty()) {
    throw UsageError{"analyze: a guarded decision rule needs an uncertainty: give --budget."};
  }
}

std::optional<UncertaintyRequest> UncertaintyRequestOf(const AnalyzeOptions& analyze) {
  std::optional<UncertaintyRequest> request = ReadBudgetOf(analyze);
  if (!request) return request;
  request->interval = FindInterval(analyze.interval).value_or(CoverageInterval::kSymmetric);
  request->wantsSensitivities = analyze.sensitivities;
  return request;
}

bool TakeBudget(const BudgetOptions& options, DecisionSettings& decision, std::optional<UncertaintyRequest>& request,
                bool isQuiet) {
  if (options.decisionRule) decision.DecisionRule = *options.decisionRule;
  if (!options.budget.empty()) {
    request = ReadBudgetOf(options);
    if (!request) return false;
  }
  const std::string remark = RemarkOnRule(decision, request.has_value());
  if (!remark.empty() && !isQuiet) Complain(Utf8FromWindows1252(remark));
  return true;
}

std::string UncertaintyTable(const Document& document, const UncertaintyRequest& request,
                             const UncertaintyResult& result) {
  const bool metric = document.settings.display.Metric;
  const std::vector<ShownRow> rows = ShownRows(document);
  std::vector<std::vector<std::string>> lines = {
      {"Parameter", "Value", "U (k = 2)", "Low", "High", "Bias", "Undefined", "Unit", "Verdict"}};
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto& uncertainty = result.Of(i);
    if (!uncertainty) continue;
    const UncertaintyTexts texts = TextsOf(rows[i].row, *uncertainty, metric);
    lines.push_back({Utf8FromWindows1252(rows[i].title), texts.value, texts.expanded, texts.low, texts.high, texts.bias,
                     FixedText(100.0 * uncertainty->undefined, 1) + " %", Utf8FromWindows1252(rows[i].unit),
                     VerdictCell(Decide(document, rows[i].row, i))});
  }
  std::string out = "\nUncertainty by " + IntegerText(request.trials) + " trials, seed " +
                    IntegerText(static_cast<std::int64_t>(request.seed)) + "; " +
                    std::string(IntervalWord(request.interval)) + " interval of 95 %:\n";
  return out + Aligned(lines, 7) + SensitivityTable(rows, result, metric);
}

double MeanUncertainty::Standard() const {
  return std::sqrt(typeA * typeA + typeB * typeB);
}

std::optional<MeanUncertainty> UncertaintyOfMean(const SeveralRow& row, const std::vector<UncertaintyResult>& files,
                                                 std::size_t index) {
  if (!row.statistics.standardDeviation) return std::nullopt;
  double squares = 0.0;
  double count = 0.0;
  for (const UncertaintyResult& file : files) {
    if (const auto& uncertainty = file.Of(index)) {
      squares += uncertainty->standard * uncertainty->standard;
      count += 1.0;
    }
  }
  if (count == 0.0) return std::nullopt;
  return MeanUncertainty{
      .typeA = *row.statistics.standardDeviation / std::sqrt(static_cast<double>(row.statistics.count)),
      .typeB = std::sqrt(squares / count)};
}

}  // namespace texturon
