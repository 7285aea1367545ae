// SPDX-License-Identifier: Apache-2.0

#include "app/analysis_table.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "analysis/captions.h"
#include "analysis/region_choice.h"
#include "app/table_text.h"
#include "base/charset.h"
#include "base/number_text.h"
#include "base/quantity.h"
#include "parameters/catalogue.h"
#include "presentation/instrument_comparison.h"
#include "presentation/shown_rows.h"

namespace texturon {
namespace {

constexpr std::size_t kLineWidth = 100;

void AppendFact(std::string& out, std::string_view title, const std::string& text) {
  if (text.empty()) return;
  out += PadRight(std::string(title), 16) + EscapedControls(Utf8FromWindows1252(text)) + "\n";
}

std::string CutoffText(const Document& document) {
  const AnalysisSettings& settings = document.settings.analysis;
  const bool metric = document.settings.display.Metric;
  std::string text = FilterLabel(settings) + ", long-wave cutoff " + LengthText(settings.LcCutoffMM, metric);
  if (const auto& shortMM = document.profiles.shortCutoffMM) {
    text += ", short-wave cutoff " + LengthText(*shortMM, metric);
  } else {
    text += ", no short-wave filter";
  }
  return text;
}

void AppendFacts(std::string& out, const Document& document, std::string_view file) {
  const ProfileSet& profiles = document.profiles;
  const bool metric = document.settings.display.Metric;
  out += PadRight("File", 16) + EscapedControls(file) + "\n";
  AppendFact(out, "Identification", profiles.identification);
  AppendFact(out, "Date", profiles.dateTime);
  AppendFact(out, "Record",
             IntegerText(profiles.pointCount) + " points at " + ShortestText(profiles.spacingUM) +
                 " \xB5m = " + LengthText(profiles.LengthMM(), metric));
  if (profiles.tipRadiusMM > 0.0) {
    AppendFact(out, "Stylus tip", FixedText(profiles.tipRadiusMM * kMicrometresPerMillimetre, 2) + " \xB5m radius");
  }
  if (!document.profiles.primaryRange) return;
  out += PadRight("Form", 16) + Utf8FromWindows1252(FormDescription(document));
  const std::int32_t requested = document.settings.analysis.FormRemovalType;
  if (requested != kFormNone && document.results.formApplied == kNoFormApplied) {
    out += "   (the form asked for, type " + IntegerText(requested) + ", could not be fitted)";
  }
  out += "\n";
  AppendFact(out, "Filter", CutoffText(document));
  AppendFact(out, "Edition", EditionDescription(document));
  for (const auto& [title, range] : {std::pair("Primary", *profiles.primaryRange),
                                     std::pair("Evaluated", profiles.evaluationRange.value_or(IndexRange{}))}) {
    AppendFact(out, title, DescribeStretch(range, profiles.spacingUM, profiles.residualSpacingUM, metric));
  }
}

/// The rows under the table that have no value, by name.
void AppendUndefined(std::string& out, const std::vector<std::string>& names) {
  if (names.empty()) return;
  std::string line = "\nNo value:";
  for (const std::string& name : names) {
    if (line.size() + 1 + name.size() > kLineWidth) {
      out += line + "\n";
      line = "         ";
    }
    line += " " + name;
  }
  out += line + "\n";
}

void AppendParameters(std::string& out, const Document& document) {
  out += "\n" + PadRight("Parameter", 12) + PadLeft("Value", 16) + "  Unit\n";
  out += std::string(40, '-') + "\n";
  std::vector<std::string> undefined;
  for (const ShownRow& shown : ShownRows(document)) {
    const std::string title = Utf8FromWindows1252(shown.title);
    if (shown.value.empty()) {
      undefined.push_back(title);
      continue;
    }
    std::string line = PadRight(title, 12) + PadLeft(shown.value, 16) + "  " +
                       PadRight(Utf8FromWindows1252(shown.unit), 5) + Utf8FromWindows1252(shown.label);
    if (shown.verdict) line += "   " + std::string(VerdictWord(*shown.verdict));
    line.erase(line.find_last_not_of(' ') + 1);
    out += line + "\n";
  }
  AppendUndefined(out, undefined);
}

/// The instrument's results beside those computed here.
void AppendComparison(std::string& out, const Document& document) {
  const std::vector<ComparedValue> values = CompareWithInstrument(document);
  out += "\n" + PadRight("Parameter", 12) + PadLeft("Instrument", 16) + PadLeft("Here", 16) +
         PadLeft("Difference", 16) + "  Unit\n" + std::string(66, '-') + "\n";
  for (const ComparedValue& value : values) {
    std::string line = PadRight(EscapedControls(Utf8FromWindows1252(value.name)), 12) + PadLeft(value.instrument, 16) +
                       PadLeft(value.here, 16) + PadLeft(value.difference, 16) + "  " +
                       EscapedControls(Utf8FromWindows1252(value.unit));
    line.erase(line.find_last_not_of(' ') + 1);
    out += line + "\n";
  }
  if (values.empty()) out += "The file holds no results of the instrument.\n";
}

/// A text that a spreadsheet would take for a formula gets an apostrophe before it, which makes it a text there.
std::string CsvCell(std::string_view bytes) {
  const ParsedDouble number = ParseDouble(bytes);
  const bool isFormula = !bytes.empty() && std::string_view("=+-@\t\r").find(bytes.front()) != std::string_view::npos &&
                         !(number.usable() && number.length == bytes.size());
  if (!isFormula && bytes.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(bytes);
  std::string cell = isFormula ? "\"'" : "\"";
  for (const char c : bytes) {
    if (c == '"') cell += '"';
    cell += c;
  }
  return cell + "\"";
}

}  // namespace

std::string AnalysisTable(const Document& document, std::string_view file, bool besideInstrument) {
  std::string out;
  AppendFacts(out, document, file);
  if (document.profiles.primaryRange) AppendParameters(out, document);
  if (besideInstrument) AppendComparison(out, document);
  return out;
}

std::string CsvHeader(const Document& document) {
  std::string titles = "File,Identification,Date";
  std::string units = ",,";
  for (const ShownRow& shown : ShownRows(document)) {
    const bool isNew = shown.row.edition != Edition::k1997;
    titles += "," + CsvCell(Utf8FromWindows1252(isNew ? shown.row.NameWithEdition() : shown.title));
    units += "," + CsvCell(Utf8FromWindows1252(shown.unit));
  }
  return titles + "\n" + units + "\n";
}

std::string CsvRow(const Document& document, std::string_view file) {
  std::string line = CsvCell(file) + "," + CsvCell(Utf8FromWindows1252(document.profiles.identification)) + "," +
                     CsvCell(Utf8FromWindows1252(document.profiles.dateTime));
  const bool metric = document.settings.display.Metric;
  for (const ShownRow& shown : ShownRows(document)) {
    line += ",";
    if (shown.row.valid) line += ShortestText(shown.row.quantity.Shown(shown.row.value, metric));
  }
  return line + "\n";
}

}  // namespace texturon
