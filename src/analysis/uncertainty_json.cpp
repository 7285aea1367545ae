// SPDX-License-Identifier: Apache-2.0

#include "analysis/uncertainty_json.h"

#include <string_view>

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
