// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <iostream>
#include <sstream>

#include "app/commands.h"
#include "app/table_text.h"
#include "base/charset.h"
#include "base/json_writer.h"
#include "base/text.h"
#include "platform/interrupt.h"
#include "platform/platform.h"
#include "verification/verification_report.h"

namespace texturon {
namespace {

void WriteStandard(JsonWriter& json, const VerifiedStandard& standard) {
  json.BeginObject();
  json.Key("family");
  json.Text(standard.family);
  json.Key("standard");
  json.Text(standard.title);
  json.Key("points");
  json.Integer(static_cast<std::int64_t>(standard.points));
  json.Key("verdict");
  json.Text(standard.Passes() ? "PASS" : "FAIL");
  json.Key("faults");
  json.BeginArray();
  for (const std::string& fault : standard.faults) json.Text(Utf8FromWindows1252(fault));
  json.EndArray();
  json.Key("values");
  json.BeginArray();
  for (const VerifiedValue& value : standard.values) {
    json.BeginObject();
    json.Key("name");
    json.Text(value.name);
    json.Key("unit");
    json.Text(Utf8FromWindows1252(value.unit));
    json.Key("from");
    json.Text(value.format);
    json.Key("value");
    value.found ? json.Number(*value.found) : json.Null();
    json.Key("true_value");
    json.Number(value.known);
    json.Key("difference");
    value.found ? json.Number(value.Difference()) : json.Null();
    json.Key("tolerance");
    json.Number(value.tolerance);
    json.Key("verdict");
    json.Text(value.passes ? "PASS" : "FAIL");
    json.Key("formula");
    json.Text(value.formula);
    json.EndObject();
  }
  json.EndArray();
  json.EndObject();
}

std::string JsonOf(const OriginLines& origin, std::span<const VerifiedStandard> verified) {
  JsonWriter json(JsonWriter::Layout::kOneLine);
  const VerificationCount count = CountOf(verified);
  json.BeginObject();
  json.Key("origin");
  json.BeginObject();
  for (const auto& [name, text] : origin) {
    json.Key(name);
    json.Text(text);
  }
  json.EndObject();
  json.Key("verdict");
  json.Text(count.missed == 0 ? "PASS" : "FAIL");
  json.Key("standards");
  json.BeginArray();
  for (const VerifiedStandard& standard : verified) WriteStandard(json, standard);
  json.EndArray();
  json.EndObject();
  return json.Result() + "\n";
}

std::string TableOf(std::span<const VerifiedStandard> verified) {
  const std::vector<std::vector<std::string>> lines = VerificationCells(verified);
  std::vector<std::size_t> widths(lines.front().size());
  for (const auto& line : lines) {
    for (std::size_t i = 0; i < line.size(); ++i) widths[i] = std::max(widths[i], ShownWidth(line[i]));
  }
  std::string out;
  for (const auto& cells : lines) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      const bool isFigure = i == 1 || i == 2 || i == 4;
      line += (i > 0 ? "  " : "") + (isFigure ? PadLeft(cells[i], widths[i]) : PadRight(cells[i], widths[i]));
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out += line + "\n";
  }
  for (const VerifiedStandard& standard : verified) {
    for (const std::string& fault : standard.faults) out += standard.title + ": " + Utf8FromWindows1252(fault) + "\n";
  }
  return out;
}

/// The text of a report by the ending of its name; nothing for another.
std::optional<std::string> ReportText(const std::string& file, const OriginLines& origin,
                                      std::span<const VerifiedStandard> verified) {
  const auto endsWith = [&file](std::string_view ending) {
    return file.size() > ending.size() && EqualIgnoringCase(file.substr(file.size() - ending.size()), ending);
  };
  if (endsWith(".md")) return VerificationMarkdown(origin, verified);
  if (endsWith(".html")) return VerificationHtml(origin, verified);
  if (endsWith(".json")) return JsonOf(origin, verified);
  return std::nullopt;
}

}  // namespace

int RunVerify(const VerifyOptions& options) {
  const Environment environment = SystemEnvironment();
  const OriginLines origin = VerificationOrigin(environment);
  if (!options.report.empty() && !ReportText(options.report, origin, {})) {
    throw UsageError{"verify: " + options.report + " ends in none of .md, .html and .json."};
  }
  const StandardsRead standards = ReadStandards(VerificationFiles());
  if (!standards.reason.empty()) {
    Complain("the standards are not understood: " + Utf8FromWindows1252(standards.reason) + ".");
    return kExitRefused;
  }
  const VerificationFolder folder(environment.temporaryFolder);
  if (folder.Path().empty()) {
    ComplainOf(SystemTextFromPath(environment.temporaryFolder), "holds no folder of ours");
    return kExitRefused;
  }
  CatchInterrupts();
  const std::vector<VerifiedStandard> verified =
      VerifyStandards(standards.standards, folder.Path(), [](std::size_t) { return !Interrupted(); });
  if (verified.size() < standards.standards.size()) {
    Complain("the verification was stopped.");
    return kExitRefused;
  }
  const VerificationCount count = CountOf(verified);
  if (options.asJson) {
    std::cout << JsonOf(origin, verified);
  } else {
    std::cout << TableOf(verified) << "\n" << VerificationSentence(count) << "\n";
  }
  int status = count.missed == 0 ? kExitDone : kExitRefused;
  if (status != kExitDone) Complain("the verification failed: " + VerificationSentence(count));
  if (!options.report.empty()) {
    const FileOutcome written =
        ReplaceFile(PathFromSystemText(options.report), *ReportText(options.report, origin, verified));
    if (!written.ok()) {
      ComplainOf(options.report, written.reason);
      status = kExitRefused;
    }
  }
  return FinishOutput(status);
}

}  // namespace texturon
