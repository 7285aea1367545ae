// SPDX-License-Identifier: Apache-2.0

#include "app/statistics_output.h"

#include <algorithm>
#include <limits>
#include <ostream>
#include <string_view>

#include "app/table_text.h"
#include "base/charset.h"
#include "base/json_writer.h"
#include "base/number_text.h"

namespace texturon {
namespace {

std::vector<std::string> TableLine(const SeveralRow& row, bool metric) {
  std::vector<std::string> cells = {Utf8FromWindows1252(row.title)};
  ValueSeries figures = row.values;
  figures.insert(figures.end(), {row.statistics.mean, row.statistics.standardDeviation, row.statistics.Range()});
  for (const std::optional<double>& figure : figures) {
    const std::string text = row.Shown(figure, metric);
    cells.push_back(text.empty() ? "-" : Utf8FromWindows1252(text));
  }
  cells.push_back(Utf8FromWindows1252(PrintedUnit(row.row.quantity.Unit(metric))));
  std::string verdict;
  if (row.acceptance) {
    verdict = std::string(VerdictWord(row.acceptance->verdict)) + " (" + std::string(row.acceptance->by) + ")";
  }
  cells.push_back(verdict);
  return cells;
}

}  // namespace

std::string StatisticsTable(const std::vector<SeveralRow>& rows, const std::vector<std::string>& files, bool metric) {
  std::string out;
  std::vector<std::string> head = {"Parameter"};
  for (std::size_t i = 0; i < files.size(); ++i) {
    const std::string number = IntegerText(static_cast<std::int64_t>(i) + 1);
    out += PadRight("File " + number, 16) + EscapedControls(files[i]) + "\n";
    head.push_back(number);
  }
  head.insert(head.end(), {"Mean", "Std. dev.", "Range", "Unit", "Verdict"});
  std::vector<std::vector<std::string>> lines = {std::move(head)};
  for (const SeveralRow& row : rows) lines.push_back(TableLine(row, metric));
  std::vector<std::size_t> widths(lines.front().size());
  for (const auto& line : lines) {
    for (std::size_t i = 0; i < line.size(); ++i) widths[i] = std::max(widths[i], ShownWidth(line[i]));
  }
  out += "\n";
  const std::size_t firstText = files.size() + 4;  // behind name and figures
  for (const auto& cells : lines) {
    std::string line = PadRight(cells.front(), widths.front());
    for (std::size_t i = 1; i < cells.size(); ++i) {
      line += "  " + (i < firstText ? PadLeft(cells[i], widths[i]) : PadRight(cells[i], widths[i]));
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out += line + "\n";
  }
  return out;
}

std::string StatisticsCsv(const std::vector<SeveralRow>& rows, bool metric) {
  const struct {
    std::string_view title;
    std::optional<double> (*figure)(const SeveralRow&);
  } kLines[] = {
      {"Mean", [](const SeveralRow& row) { return row.statistics.mean; }},
      {"Standard deviation", [](const SeveralRow& row) { return row.statistics.standardDeviation; }},
      {"Range", [](const SeveralRow& row) { return row.statistics.Range(); }},
  };
  std::string out;
  for (const auto& [title, figure] : kLines) {
    out += std::string(title) + ",,";
    for (const SeveralRow& row : rows) {
      const std::optional<double> value = figure(row);
      out += value ? "," + ShortestText(row.row.quantity.Shown(*value, metric)) : ",";
    }
    out += "\n";
  }
  out += "Verdict,,";
  for (const SeveralRow& row : rows) {
    out += ",";
    if (row.acceptance) out += AcceptanceWord(row.acceptance->verdict);
  }
  return out + "\n";
}

std::string MeanUncertaintyTable(const std::vector<SeveralRow>& rows,
                                 const std::vector<std::optional<MeanUncertainty>>& means, bool metric) {
  if (means.empty()) return {};
  std::string out = "\nUncertainty of the means:\n" + PadRight("Parameter", 12) + PadLeft("U (k = 2)", 14) +
                    PadLeft("Type A (1s)", 14) + PadLeft("Type B (1s)", 14) + "  Unit\n";
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (!means[i]) continue;
    const auto& quantity = rows[i].row.quantity;
    const auto shown = [&](double value) { return PadLeft(SignificantText(quantity.Shown(value, metric), 3), 14); };
    out += PadRight(Utf8FromWindows1252(rows[i].title), 12) + shown(kCoverageFactor * means[i]->Standard()) +
           shown(means[i]->typeA) + shown(means[i]->typeB) + "  " +
           Utf8FromWindows1252(PrintedUnit(quantity.Unit(metric))) + "\n";
  }
  return out;
}

void WriteStatisticsJson(std::ostream& out, const std::vector<SeveralRow>& rows,
                         const std::vector<std::optional<MeanUncertainty>>& means) {
  JsonWriter json(JsonWriter::Layout::kOneLine, &out);
  const auto number = [&json](std::string_view key, const std::optional<double>& value) {
    json.Key(key);
    value ? json.Number(*value) : json.Null();
  };
  json.BeginObject();
  json.Key("statistics");
  json.BeginArray();
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const SeveralRow& row = rows[i];
    json.BeginObject();
    json.Key("name");
    json.Text(Utf8FromWindows1252(row.title));
    json.Key("unit");
    json.Text(Utf8FromWindows1252(PrintedUnit(row.row.quantity.metricUnit)));
    std::vector<double> values;
    for (const auto& value : row.values) values.push_back(value.value_or(std::numeric_limits<double>::quiet_NaN()));
    json.Key("values");
    json.Numbers(values);
    number("mean", row.statistics.mean);
    number("standard_deviation", row.statistics.standardDeviation);
    number("range", row.statistics.Range());
    json.Key("verdict");
    row.acceptance ? json.Text(AcceptanceWord(row.acceptance->verdict)) : json.Null();
    if (i < means.size() && means[i]) {
      json.Key("uncertainty");
      json.BeginObject();
      number("standard", means[i]->Standard());
      number("expanded", kCoverageFactor * means[i]->Standard());
      number("type_a", means[i]->typeA);
      number("type_b", means[i]->typeB);
      json.EndObject();
    }
    json.EndObject();
  }
  json.EndArray();
  json.EndObject();
  json.Finish();
}

}  // namespace texturon
