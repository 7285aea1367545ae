// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <fstream>
#include <iostream>
#include <streambuf>

#include "analysis/document.h"
#include "analysis/uncertainty_budget.h"
#include "app/command_line.h"
#include "app/json_difference.h"
#include "app/result_request.h"
#include "base/ini_file.h"
#include "fuzz/fuzz_targets.h"
#include "presentation/report_template.h"
#include "settings/settings_check.h"
#include "settings/settings_file.h"
#include "settings/settings_text.h"
#include "unattended/command_line_run.h"
#include "unattended/test_plan.h"
#include "unattended/watch_journal.h"

namespace texturon {
namespace {

void WriteSeed(const std::filesystem::path& folder, const std::string& name, std::string_view bytes) {
  std::ofstream(folder / name, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

void RunPlan(std::string_view bytes) {
  const IniFile file{std::string(bytes)};
  PlanKeys plan(file);
  for (const Family family : {Family::kStandard, Family::kWaviness, Family::kRk, Family::kMotif}) {
    Document document = MakeDocument();
    const auto pass = ReadTestPlan(plan, family, document, [](std::string_view) {});
    Expect(pass.has_value() == plan.hasSections());
    if (!pass) continue;
    Expect(document.catalogue.rows.size() <= kMostParameters);
    Expect(pass->detected >= 0 && static_cast<std::size_t>(pass->detected) <= pass->parameters.size());
    Expect(document.settings.analysis.LcCutoffMM > 0.0);
  }
  Expect(plan.UnreadKeys().size() <= file.Entries().size());
}

/// What was read and written is read again as the same.
void RunSettings(std::string_view bytes) {
  const IniFile file(UpgradeSettingsText(std::string(bytes)));
  Settings settings;
  LoadSettingsText(file, settings);
  (void)CheckSettings(file);
  IniFile written;
  SaveSettingsText(written, settings);
  Settings again;
  LoadSettingsText(IniFile(written.Bytes()), again);
  IniFile rewritten;
  SaveSettingsText(rewritten, again);
  Expect(written.Bytes() == rewritten.Bytes());
}

void RunTemplate(std::string_view bytes) {
  const ReportTemplateRead read = ReadReportTemplate(bytes);
  Expect(read.report.has_value() == read.reason.empty());
  if (!read.report) return;
  const auto again = ReadReportTemplate(ReportTemplateText(*read.report));
  Expect(again.report == read.report);
}

void RunJournal(std::string_view bytes) {
  const auto entry = ParseWatchEntry(bytes);
  if (entry) Expect(ParseWatchEntry(WatchEntryText(*entry)).has_value());
}

/// What a budget becomes is one again.
void RunBudget(std::string_view bytes) {
  const IniFile file{std::string(bytes)};
  BudgetEntries entries;
  for (const IniEntry& entry : file.Entries()) entries.emplace_back(entry.key, entry.value);
  const BudgetRead read = MakeBudget(entries);
  Expect(read.budget.has_value() == read.reason.empty());
  if (!read.budget) return;
  const BudgetEntries kept = EntriesOf(*read.budget);
  const BudgetRead again = MakeBudget(kept);
  Expect(again.budget.has_value() && EntriesOf(*again.budget) == kept);
}

/// A value differs from itself nowhere; what it asks for is understood or refused.
void RunResultObject(std::string_view bytes) {
  const JsonRead read = ReadJson(bytes);
  Expect(read.value.has_value() == read.reason.empty());
  if (!read.value) return;
  Expect(CompareResults(*read.value, *read.value).differences.empty());
  (void)RequestOfObject(*read.value);
}

/// Swallows what a command prints.
class Silence : public std::streambuf {
protected:
  int overflow(int c) override { return c == traits_type::eof() ? 0 : c; }
  std::streamsize xsputn(const char* /*text*/, std::streamsize n) override { return n; }
};

/// A line an argument. Only names in the target's own folder, and only commands that end by themselves on one thread.
void RunConsole(std::string_view bytes) {
  std::string text(bytes.substr(0, bytes.find('\0')));
  std::replace(text.begin(), text.end(), '/', '_');
  (void)CommandLineArguments(text);
  std::vector<std::string> arguments = {"texturon"};
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    arguments.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  if (arguments[1].starts_with("watch") || arguments[1].starts_with("batch") || arguments[1].starts_with("verify")) {
    return;
  }
  if (std::any_of(arguments.begin(), arguments.end(), [](const std::string& a) { return a.find("..") != a.npos; }))
    return;
  std::filesystem::current_path(FuzzFolder());
  Silence silence;
  std::streambuf* const out = std::cout.rdbuf(&silence);
  std::streambuf* const err = std::cerr.rdbuf(&silence);
  const int status = RunProgram(arguments);
  std::cout.rdbuf(out);
  std::cerr.rdbuf(err);
  std::cout.clear();
  std::cerr.clear();
  Expect(status >= 0 && status <= 2);
}

constexpr std::string_view kPlan =
    "[a]\r\nParameters=Ra,Rz;Wa,Rk,R,Rfoo\r\nRa_Checked=1\r\nRa_Max=0.8\r\nRa_Min=0\r\nUseMaxMinLimits=0\r\nFormOption="
    "2\r\n"
    "RoughFilter=SPLINE\r\nRoughCutOffLength=0.8\r\nRoughBandWidthRatio=300\r\nRoughNumOfCuttOffs=4\r\nABLength=0.5,"
    "2\r\n"
    "MaxHybrids=2\r\n[b]\r\nParameters=Pt\r\nHybrids_0_Type=Rmr\r\nHybrids_0_Label=x\r\nHybrids_0_Val1=1\r\n"
    "Hybrids_1_Type=Ppc\r\nHybrid_2_0_Type=PHtp\r\nHybrid_2_0_Mode=1\r\n";

}  // namespace

void AddTextTargets(std::vector<FuzzTarget>& targets) {
  targets.push_back({"test_plan", RunPlan, [](const auto& folder) { WriteSeed(folder, "plan", kPlan); }});
  targets.push_back({"settings", RunSettings, [](const auto& folder) {
                       IniFile file;
                       SaveSettingsText(file, Settings());
                       WriteSeed(folder, "defaults", file.Bytes());
                       WriteSeed(folder, "old", "[TEXTURON]\r\nIniVersion=1\r\n[PARAMETERS]\r\nSelectionRef=1\r\n");
                     }});
  targets.push_back({"report_template", RunTemplate, [](const auto& folder) {
                       WriteSeed(folder, "default", ReportTemplateText(DefaultReportTemplate()));
                       WriteSeed(folder, "text", "[REPORT]\r\nTitle=a\r\nBlock7=text\r\nText07=b\\nc\\\\\r\n");
                     }});
  targets.push_back({"journal", RunJournal, [](const auto& folder) {
                       WatchEntry entry;
                       entry.file = "a.lmt";
                       entry.rowText = "1, 2\r\n";
                       entry.parameterFile = "rows.csv";
                       WriteSeed(folder, "entry", WatchEntryText(entry));
                     }});
  targets.push_back({"budget", RunBudget, [](const auto& folder) {
                       WriteSeed(folder, "lines",
                                 "[UNCERTAINTY_BUDGET]\nHeightNoiseSpectrum=0.5 0.1, 0.2 0.3\nSpacingPercent=0.1\n"
                                 "SpacingPercent.Distribution=uniform\nRepeatabilityPercent.Ra=1\nTipRadiusUM=2\n");
                     }});
  targets.push_back({"result_object", RunResultObject, [](const auto& folder) {
                       WriteSeed(
                           folder, "object",
                           "{\"parameters\": [{\"name\": \"Ra\", \"value\": 1.5e-3, \"valid\": true}], \"settings\": "
                           "{\"in_force\": {\"ANALYSIS.LcCutoffMM\": 0.8}}, \"request\": {\"region\": null, "
                           "\"exclusion\": [1, 2]}, \"uncertainty_budget\": {\"entries\": {}, \"seed\": 1}}");
                     }});
  targets.push_back({"command_line", RunConsole, [](const auto& folder) {
                       std::ofstream(FuzzFolder() / "a.txt") << "1\n2\n3\n2\n1\n2\n3\n2\n1\n2\n";
                       WriteSeed(folder, "analyze",
                                 "analyze\n--json\n--region\n1,0,4,0\n--set\nANALYSIS.LcCutoffMM=0.8\na.txt");
                       WriteSeed(folder, "export", "export\na.txt\nprimary\n-o\nb.csv");
                       WriteSeed(folder, "convert", "convert\n--spacing\n1\na.txt\nb.lmt");
                       WriteSeed(folder, "settings", "settings\n--check\na.txt");
                     }});
}

}  // namespace texturon
