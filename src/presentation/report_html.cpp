// SPDX-License-Identifier: Apache-2.0

#include "presentation/report_html.h"

#include <algorithm>
#include <string_view>

#include "base/charset.h"
#include "base/number_text.h"
#include "presentation/readable_text.h"

namespace texturon {
namespace {

constexpr std::string_view kStyle =
    "body{font:14px/1.4 sans-serif;color:#000;background:#fff;max-width:60em;margin:2em auto;padding:0 1em}"
    "h1{font-size:1.5em;margin:0 0 .5em}h2{font-size:1.05em;margin:1.4em 0 .3em}"
    "table{border-collapse:collapse;width:100%}th,td{text-align:left;padding:.1em .7em .1em 0;vertical-align:top}"
    "th{border-bottom:1px solid #888}.n{text-align:right;white-space:nowrap;font-variant-numeric:tabular-nums}"
    ".facts th{border:0;width:20%}.two{display:flex;gap:3em;align-items:flex-start}.two table{flex:1}"
    ".fail{background:#fbe3d6;font-weight:bold}.pass{background:#e2f0d9}.open{background:#fff2cc}.verdict{padding:.4em "
    ".7em;font-weight:bold}"
    "svg{width:100%;height:auto}img.logo{float:right;max-height:4em;max-width:33%}"
    "@page{size:A4;margin:15mm}@media print{body{max-width:none;margin:0;padding:0;font-size:9pt}"
    "h2{break-after:avoid}figure,tr{break-inside:avoid}.page{break-before:page}}figure{margin:0}";

/// UTF-8 as the text of an element or attribute.
std::string Escaped(std::string_view text) {
  std::string out;
  for (const char c : EscapedControls(text)) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

/// Windows-1252.
std::string Html(std::string_view text) {
  return Escaped(Utf8FromWindows1252(text));
}

std::string Cell(std::string_view text, bool isNumber = false) {
  return (isNumber ? "<td class=\"n\">" : "<td>") + Escaped(ReadableText(Utf8FromWindows1252(text))) + "</td>";
}

std::string Title(std::string_view text) {
  return "<h2>" + Html(text) + "</h2>\n";
}

std::string Lines(const std::vector<ReportLine>& lines) {
  std::string out = "<table class=\"facts\">\n";
  for (const auto& [name, text] : lines) {
    out += "<tr><th scope=\"row\">" + Html(name) + "</th>" + Cell(text) + "</tr>\n";
  }
  return out + "</table>\n";
}

std::string HeadRow(const std::vector<std::string>& titles, std::size_t firstNumber, std::size_t endOfNumbers) {
  std::string out = "<tr>";
  for (std::size_t i = 0; i < titles.size(); ++i) {
    const bool isNumber = i >= firstNumber && i < endOfNumbers;
    out += (isNumber ? "<th class=\"n\">" : "<th>") + Html(titles[i]) + "</th>";
  }
  return out + "</tr>\n";
}

std::string ValueOf(const ReportRow& row) {
  return row.value.empty() ? "\x96" : row.value;
}

std::string_view ClassOf(ReportOutcome outcome) {
  constexpr std::string_view kClasses[] = {"none", "pass", "open", "fail"};
  return kClasses[static_cast<std::size_t>(outcome)];
}

/// One block after the other.
class HtmlWriter {
public:
  HtmlWriter(const ReportTemplate& layout, const ReportTexts& texts, const ReportParts& parts)
      : layout_(layout), texts_(texts), parts_(parts) {}

  std::string File() {
    std::string body;
    for (const ReportBlock& block : layout_.blocks) body += Block(block);
    const std::string title = texts_.identification.empty() ? layout_.title : texts_.identification;
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>" + Html(title) +
           "</title>\n<style>" + std::string(kStyle) + "</style>\n</head>\n<body>\n" + body + "</body>\n</html>\n";
  }

private:
  std::string Block(const ReportBlock& block) {
    using Writer = std::string (HtmlWriter::*)(const ReportBlock&);
    static constexpr struct {
      ReportBlockKind kind;
      Writer write;
    } kWriters[] = {
        {ReportBlockKind::kHead, &HtmlWriter::Head},
        {ReportBlockKind::kVerdict, &HtmlWriter::VerdictBlock},
        {ReportBlockKind::kParameters, &HtmlWriter::Parameters},
        {ReportBlockKind::kStatistics, &HtmlWriter::Statistics},
        {ReportBlockKind::kInstrument, &HtmlWriter::Instrument},
        {ReportBlockKind::kSettings, &HtmlWriter::SettingsBlock},
        {ReportBlockKind::kText, &HtmlWriter::FreeText},
        {ReportBlockKind::kNewPage, &HtmlWriter::NewPage},
    };
    const auto* const writer = std::find_if(std::begin(kWriters), std::end(kWriters),
                                            [&block](const auto& row) { return row.kind == block.kind; });
    return writer != std::end(kWriters) ? (this->*writer->write)(block) : Picture(block);
  }

  std::string Head(const ReportBlock& /*block*/) {
    std::string out;
    if (!parts_.logo.empty()) out += "<img class=\"logo\" alt=\"\" src=\"" + parts_.logo + "\">\n";
    if (!texts_.company.empty()) out += "<p>" + Html(texts_.company) + "</p>\n";
    out += "<h1>" + Html(layout_.title) + "</h1>\n";
    std::vector<ReportLine> lines = texts_.facts;
    lines.insert(lines.begin(), {"Identification", texts_.identification});
    return out + Lines(lines);
  }

  std::string VerdictBlock(const ReportBlock& /*block*/) {
    if (texts_.summary.empty()) return "<p>" + std::string(kNoVerdict) + "</p>\n";
    std::string out =
        "<p class=\"verdict " + std::string(ClassOf(texts_.outcome)) + "\">" + Html(texts_.summary) + "</p>\n";
    return out + TolerancedRows();
  }

  std::string TolerancedRows() {
    std::string out = "<table>\n" + HeadRow(LimitTitles(), 1, 4);
    for (const ReportRow& row : texts_.rows) {
      if (!row.isToleranced) continue;
      out += row.verdict == Acceptance::kFail        ? "<tr class=\"fail\">"
             : row.verdict == Acceptance::kUndecided ? "<tr class=\"open\">"
                                                     : "<tr>";
      out += Cell(row.title) + Cell(ValueOf(row), true) + Cell(row.lower, true) + Cell(row.upper, true) +
             Cell(row.unit) + Cell(VerdictText(row)) + "</tr>\n";
    }
    return out + "</table>\n";
  }

  std::string Parameters(const ReportBlock& /*block*/) {
    std::string out = Title("Parameters");
    if (!layout_.Has(ReportBlockKind::kVerdict) && !texts_.summary.empty()) out += TolerancedRows();
    std::vector<const ReportRow*> rows;
    for (const ReportRow& row : texts_.rows) {
      if (!row.isToleranced && !row.value.empty()) rows.push_back(&row);
    }
    const std::size_t half = (rows.size() + 1) / 2;
    out += "<div class=\"two\">\n";
    for (const auto& [from, to] : {std::pair(std::size_t{0}, half), std::pair(half, rows.size())}) {
      out += "<table>\n" + HeadRow({"Parameter", "Value", "Unit"}, 1, 2);
      for (std::size_t i = from; i < to; ++i) {
        out += "<tr>" + Cell(rows[i]->title) + Cell(rows[i]->value, true) + Cell(rows[i]->unit) + "</tr>\n";
      }
      out += "</table>\n";
    }
    out += "</div>\n";
    if (!texts_.reasons.empty()) out += Title("Without a value") + Lines(texts_.reasons);
    if (!texts_.differences.empty())
      out += Title("Rows of 2021 that differ from those of the same name before") + Lines(texts_.differences);
    return out;
  }

  std::string Statistics(const ReportBlock& /*block*/) {
    if (parts_.several.rows.empty()) return {};
    constexpr std::size_t kFirstNumber = 1;
    constexpr std::size_t kEndOfNumbers = 6;
    std::string out =
        Title("Several profiles") + "<table>\n" + HeadRow(StatisticsTitles(), kFirstNumber, kEndOfNumbers);
    for (const auto& cells : StatisticsCells(parts_.several.rows, parts_.metric)) {
      out += "<tr>";
      for (std::size_t i = 0; i < cells.size(); ++i) out += Cell(cells[i], i >= kFirstNumber && i < kEndOfNumbers);
      out += "</tr>\n";
    }
    return out + "</table>\n" + (parts_.several.profiles.empty() ? std::string() : Lines(parts_.several.profiles));
  }

  std::string Instrument(const ReportBlock& /*block*/) {
    if (texts_.instrumentValues.empty()) return {};
    std::string out = Title("Results of the instrument") + "<table>\n" +
                      HeadRow({"Parameter", "Instrument", "Here", "Difference", "Unit"}, 1, 4);
    for (const ComparedValue& value : texts_.instrumentValues) {
      out += "<tr>" + Cell(value.name) + Cell(value.instrument, true) + Cell(value.here, true) +
             Cell(value.difference, true) + Cell(value.unit) + "</tr>\n";
    }
    return out + "</table>\n";
  }

  std::string SettingsBlock(const ReportBlock& /*block*/) {
    std::string out;
    if (!texts_.changedSettings.empty()) {
      out += Title("Settings that differ from the defaults") + Lines(texts_.changedSettings);
    }
    if (!texts_.origin.empty()) out += Title("Where this comes from") + Lines(texts_.origin);
    return out;
  }

  std::string FreeText(const ReportBlock& block) {
    std::string out = "<p>";
    for (std::size_t from = 0; from <= block.text.size();) {
      const std::size_t end = std::min(block.text.find('\n', from), block.text.size());
      out += (from > 0 ? "<br>\n" : "") + Html(std::string_view(block.text).substr(from, end - from));
      from = end + 1;
    }
    return out + "</p>\n";
  }

  std::string NewPage(const ReportBlock& /*block*/) { return "<div class=\"page\"></div>\n"; }

  std::string Picture(const ReportBlock& block) {
    const auto picture =
        std::find_if(parts_.pictures.begin(), parts_.pictures.end(),
                     [&block](const ReportPicture& candidate) { return candidate.kind == block.kind; });
    if (picture == parts_.pictures.end()) return {};
    return "<figure>\n" + Title(Windows1252FromUtf8(picture->title)) + picture->svg + "</figure>\n";
  }

  const ReportTemplate& layout_;
  const ReportTexts& texts_;
  const ReportParts& parts_;
};

}  // namespace

std::string ReportHtml(const ReportTemplate& layout, const ReportTexts& texts, const ReportParts& parts) {
  return HtmlWriter(layout, texts, parts).File();
}

}  // namespace texturon
