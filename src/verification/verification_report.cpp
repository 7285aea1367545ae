// SPDX-License-Identifier: Apache-2.0

#include "verification/verification_report.h"

#include <algorithm>
#include <cmath>

#include "base/charset.h"
#include "base/date_text.h"
#include "base/number_text.h"
#include "base/program_version.h"
#include "base/sha256.h"
#include "platform/machine.h"
#include "platform/platform.h"

namespace texturon {
namespace {

using Cells = std::vector<std::string>;

std::string Count(std::size_t number) {
  return IntegerText(static_cast<std::int64_t>(number));
}

std::string VerdictOf(bool passes) {
  return passes ? "PASS" : "FAIL";
}

std::string ShareText(const VerifiedValue& value) {
  return value.found ? SignificantText(100.0 * value.Share(), 2) + " %" : "no value";
}

Cells CellsOf(const VerifiedValue& value) {
  return {value.name,
          Utf8FromWindows1252(value.unit),
          value.format,
          value.found ? ShortestText(*value.found) : "-",
          ShortestText(value.known),
          value.found ? SignificantText(value.Difference(), 3) : "-",
          SignificantText(value.tolerance, 3),
          VerdictOf(value.passes),
          value.formula};
}

/// A text in a page: what the page would take for itself is escaped.
std::string Markdown(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (std::string_view("|*_<>[]`\\").find(c) != std::string_view::npos) out += '\\';
    out += c;
  }
  return out;
}

std::string Html(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (c == '&') {
      out += "&amp;";
    } else if (c == '<') {
      out += "&lt;";
    } else if (c == '>') {
      out += "&gt;";
    } else {
      out += c;
    }
  }
  return out;
}

std::string MarkdownTable(const std::vector<Cells>& lines) {
  std::string out;
  for (std::size_t n = 0; n < lines.size(); ++n) {
    for (const std::string& cell : lines[n]) out += "| " + Markdown(cell) + " ";
    out += "|\n";
    if (n > 0) continue;
    for (std::size_t i = 0; i < lines[n].size(); ++i) out += "|---";
    out += "|\n";
  }
  return out;
}

std::string HtmlTable(const std::vector<Cells>& lines) {
  std::string out = "<table>\n";
  for (std::size_t n = 0; n < lines.size(); ++n) {
    const std::string tag = n == 0 ? "th" : "td";
    out += "<tr>";
    for (const std::string& cell : lines[n]) out += "<" + tag + ">" + Html(cell) + "</" + tag + ">";
    out += "</tr>\n";
  }
  return out + "</table>\n";
}

}  // namespace

OriginLines VerificationOrigin(const Environment& environment) {
  const FileBytes program = ReadRegularFile(RunningProgram());
  return {{"Program", "texturon " + std::string(ProgramVersion())},
          {"SHA-256 of the program", program.ok() ? Sha256Of(program.bytes) : "not known"},
          {"Machine", MachineText()},
          {"Date", Utf8FromWindows1252(DateText(environment.localTime()))}};
}

VerificationCount CountOf(std::span<const VerifiedStandard> verified) {
  VerificationCount count{.standards = verified.size()};
  for (const VerifiedStandard& standard : verified) {
    count.missed += standard.Passes() ? 0 : 1;
    count.values += standard.values.size();
  }
  return count;
}

std::string VerificationSentence(const VerificationCount& count) {
  return Count(count.standards) + " standards, " + Count(count.values) + " values, " +
         (count.missed == 0 ? "all within their tolerances." : Count(count.missed) + " standards missed.");
}

std::vector<Cells> VerificationCells(std::span<const VerifiedStandard> verified) {
  std::vector<Cells> lines = {{"Standard", "Points", "Values", "Nearest to its tolerance", "Takes of it", "Verdict"}};
  for (const VerifiedStandard& standard : verified) {
    const VerifiedValue* const worst = standard.Worst();
    lines.push_back({standard.title, Count(standard.points), Count(standard.values.size()),
                     worst != nullptr ? worst->name + " from " + worst->format : "",
                     worst != nullptr ? ShareText(*worst) : "", VerdictOf(standard.Passes())});
  }
  return lines;
}

std::vector<Cells> ValueCells(const VerifiedStandard& standard) {
  std::vector<Cells> lines = {
      {"Parameter", "Unit", "From", "Value", "True value", "Difference", "Tolerance", "Verdict", "Formula"}};
  for (const VerifiedValue& value : standard.values) {
    if (value.format != "memory") continue;
    lines.push_back(CellsOf(value));
    const VerifiedValue* worst = nullptr;
    for (const VerifiedValue& other : standard.values) {
      const bool isFile = other.name == value.name && other.format != "memory";
      if (isFile && (worst == nullptr || other.Share() > worst->Share())) worst = &other;
    }
    if (worst == nullptr) continue;
    lines.push_back(CellsOf(*worst));
    lines.back().back().clear();
  }
  return lines;
}

std::string VerificationMarkdown(const OriginLines& origin, std::span<const VerifiedStandard> verified) {
  std::string out = "# Verification\n\n" + VerificationSentence(CountOf(verified)) + "\n\n| | |\n|---|---|\n";
  for (const auto& [name, text] : origin) out += "| " + Markdown(name) + " | " + Markdown(text) + " |\n";
  out += "\n" + MarkdownTable(VerificationCells(verified));
  for (const VerifiedStandard& standard : verified) {
    out += "\n## " + Markdown(standard.title) + "\n\n";
    for (const std::string& fault : standard.faults) out += "- " + Markdown(Utf8FromWindows1252(fault)) + "\n";
    if (!standard.faults.empty()) out += "\n";
    out += MarkdownTable(ValueCells(standard));
  }
  return out;
}

std::string VerificationHtml(const OriginLines& origin, std::span<const VerifiedStandard> verified) {
  std::string out =
      "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>Verification</title>\n<style>body "
      "{font: 10pt sans-serif} table {border-collapse: collapse; margin: 8px 0} td, th {border: 1px solid #888; "
      "padding: 2px 6px; text-align: left}</style>\n</head>\n<body>\n<h1>Verification</h1>\n<p>" +
      Html(VerificationSentence(CountOf(verified))) + "</p>\n<table>\n";
  for (const auto& [name, text] : origin) {
    out += "<tr><th>" + Html(name) + "</th><td>" + Html(text) + "</td></tr>\n";
  }
  out += "</table>\n" + HtmlTable(VerificationCells(verified));
  for (const VerifiedStandard& standard : verified) {
    out += "<h2>" + Html(standard.title) + "</h2>\n";
    for (const std::string& fault : standard.faults) out += "<p>" + Html(Utf8FromWindows1252(fault)) + "</p>\n";
    out += HtmlTable(ValueCells(standard));
  }
  return out + "</body>\n</html>\n";
}

}  // namespace texturon
