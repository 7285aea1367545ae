// SPDX-License-Identifier: Apache-2.0

#include "analysis/uncertainty_json.h"

#include <algorithm>
#include <string_view>
#include <thread>
#include <utility>

namespace texturon {
namespace {

void WriteNumber(JsonWriter& json, std::string_view key, double value) {
  json.Key(key);
  json.Number(value);
}

void WriteSensitivities(JsonWriter& json, const std::vector<Sensitivity>& lines) {
  const double combined = CombinedOf(lines);
  WriteNumber(json, "first_order", combined);
  json.Key("sensitivities");
  json.BeginArray();
  for (const Sensitivity& line : lines) {
    json.BeginObject();
    json.Key("line");
    json.Text(BudgetItems()[static_cast<std::size_t>(line.item)].key);
    WriteNumber(json, "contribution", line.contribution);
    const double ratio = combined > 0.0 ? line.contribution / combined : 0.0;
    WriteNumber(json, "share", ratio * ratio);
    json.EndObject();
  }
  json.EndArray();
}

}  // namespace

const std::optional<ParameterUncertainty>& UncertaintyResult::Of(std::size_t row) const {
  static const std::optional<ParameterUncertainty> kNone;
  return row < rows.size() ? rows[row] : kNone;
}

UncertaintyResult TryUncertainty(const Document& document, const UncertaintyRequest& request,
                                 const std::function<bool(int percent)>& advances, std::string& reason) {
  const TrialOptions options{.trials = request.trials,
                             .seed = request.seed,
                             .interval = request.interval,
                             .jobs = std::max(1U, std::thread::hardware_concurrency()),
                             .advances = advances};
  TrialOutcome trials = RunTrials(document, request.budget, options);
  UncertaintyResult result{.rows = std::move(trials.rows), .sensitivities = {}};
  reason = std::move(trials.reason);
  if (reason.empty() && request.wantsSensitivities) {
    SensitivityOutcome sensitivities = FindSensitivities(document, request.budget, options);
    result.sensitivities = std::move(sensitivities.rows);
    reason = std::move(sensitivities.reason);
  }
  return result;
}

void WriteUncertainty(JsonWriter& json, const UncertaintyResult& result, std::size_t row) {
  json.Key("uncertainty");
  const auto& uncertainty = result.Of(row);
  if (!uncertainty) return json.Null();
  json.BeginObject();
  WriteNumber(json, "standard", uncertainty->standard);
  WriteNumber(json, "expanded", uncertainty->Expanded());
  WriteNumber(json, "coverage", kCoverage);
  WriteNumber(json, "low", uncertainty->low);
  WriteNumber(json, "high", uncertainty->high);
  WriteNumber(json, "bias", uncertainty->bias);
  json.Key("trials");
  json.Integer(static_cast<std::int64_t>(uncertainty->trials));
  WriteNumber(json, "undefined", uncertainty->undefined);
  json.EndObject();
  if (row < result.sensitivities.size()) WriteSensitivities(json, result.sensitivities[row]);
}

void WriteUncertaintyBudget(JsonWriter& json, const UncertaintyRequest& request) {
  json.Key("uncertainty_budget");
  json.BeginObject();
  json.Key("entries");
  json.BeginObject();
  for (const auto& [key, value] : EntriesOf(request.budget)) {
    json.Key(key);
    json.Text(value);
  }
  json.EndObject();
  json.Key("trials");
  json.Integer(request.trials);
  json.Key("seed");
  json.Integer(static_cast<std::int64_t>(request.seed));
  json.Key("interval");
  json.Text(IntervalWord(request.interval));
  json.Key("sensitivities");
  json.Bool(request.wantsSensitivities);
  json.EndObject();
}

}  // namespace texturon
