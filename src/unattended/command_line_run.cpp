// SPDX-License-Identifier: Apache-2.0

#include "unattended/command_line_run.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include "analysis/analysis_run.h"
#include "analysis/decision.h"
#include "analysis/file_clash.h"
#include "analysis/pipeline.h"
#include "analysis/verdict_trials.h"
#include "base/date_text.h"
#include "base/ini_file.h"
#include "base/number_text.h"
#include "base/text.h"
#include "formats/companion_file.h"
#include "platform/platform.h"
#include "platform/prompts.h"
#include "settings/settings_file.h"
#include "unattended/event_log.h"
#include "unattended/pass_families.h"
#include "unattended/plan_results.h"
#include "unattended/test_plan.h"

namespace texturon {
namespace {

constexpr std::size_t kPlanPiece = 0;
constexpr std::size_t kDataPiece = 2;
constexpr std::size_t kFolderPiece = 4;
constexpr std::string_view kSettingsName = "Texturon.ini";
constexpr std::string_view kResultsPrefix = "RESULTS.";

/// One run from start to end. Every failure is a reason for the caller; what others read stands in log and status file.
class PlanRun {
public:
  explicit PlanRun(const Environment& environment)
      : environment_(environment),
        document_(StartDocument(environment, startRemarks_)),
        log_(environment, document_.settings.autoLoading.LogEventsWhenAutoLoading) {}

  RunOutcome Run(std::string_view commandLine) {
    RunOutcome outcome = RunSteps(commandLine);
    outcome.remarks = std::move(remarks_);
    if (!statusFailure_.empty() && !outcome.done) outcome.remarks.push_back(statusFailure_);
    // Results are there, but who waits for the status does not learn of them.
    if (!statusFailure_.empty() && outcome.done) outcome = {false, statusFailure_, std::move(outcome.remarks)};
    return outcome;
  }

private:
  RunOutcome RunSteps(std::string_view commandLine) {
    const std::vector<std::string> pieces = CommandLineArguments(commandLine);
    FindClash(pieces);
    LogPieces(pieces);
    for (const std::string& remark : startRemarks_) Remark(remark);
    if (pieces.size() <= kFolderPiece) return Refuse("Not enough command line arguements");
    const std::filesystem::path planFile = PathFromSystemText(pieces[kPlanPiece]);
    if (!EqualIgnoringCase(TextFromPath(planFile.extension()), ".INI")) {
      return Refuse("First command line argument was not an INI.");
    }
    WriteStatus("Processing INI file...");
    LogEvent("INI detected in command line. Reading settings...");
    const FileBytes planBytes = ReadIniFile(planFile);
    const IniFile planIni(planBytes.bytes);
    LogSections(planIni);
    PlanKeys plan(planIni);
    if (!plan.hasSections()) {
      return {false, FileSentence(planFile, planBytes.ok() ? "has no section" : planBytes.reason)};
    }
    PassPlan standard;
    if (!ReadPass(plan, Family::kStandard, standard)) {
      LogEvent("Could not read settings from command line.");
      WriteStatus("ERROR: Could not read INI settings");
      return {false, "Could not read settings from command line."};
    }
    LogEvent("Settings successfully read from command line.");
    document_.quietMode = true;
    SetFiles(pieces);
    RunOutcome outcome;
    if (clash_.empty() && !ReadDecision(plan, planFile)) {
      FailData();
      outcome = FailPass();
    } else if (clash_.empty()) {
      outcome = RunPasses(plan, standard);
    } else {
      reason_ = clash_;
      FailData();
      outcome = FailPass();
    }
    document_.quietMode = false;
    return outcome;
  }

  /// What would be destroyed is known before anything is written; log and status file are left alone where it is they.
  void FindClash(const std::vector<std::string>& pieces) {
    RunFiles files{.reads = {environment_.programFolder / kSettingsName}, .writes = {}};
    for (const std::size_t piece : {kPlanPiece, kDataPiece}) {
      if (piece < pieces.size()) files.reads.push_back(PathFromSystemText(pieces[piece]));
    }
    if (const auto companion = CompanionOf(files.reads.back())) files.reads.push_back(*companion);
    const std::filesystem::path planFile =
        kPlanPiece < pieces.size() ? PathFromSystemText(pieces[kPlanPiece]) : std::filesystem::path();
    for (auto& file : FilesOfBudget(BudgetOf(planFile))) files.reads.push_back(std::move(file));
    const std::filesystem::path log = environment_.workingFolder / EventLog::kName;
    if (!FileClash({files.reads, {log}}).empty()) log_.SwitchOff();
    writesStatus_ = FileClash({files.reads, {StatusFile()}}).empty();
    files.writes = {StatusFile(), log};
    if (pieces.size() > kFolderPiece) {
      const std::filesystem::path folder = PathFromSystemText(pieces[kFolderPiece]);
      const std::string extension = OutputExtension(PathFromSystemText(pieces[kDataPiece]));
      const auto add = [&](std::string_view prefix) {
        files.writes.push_back(folder / PathFromSystemText(std::string(prefix) + extension));
      };
      add(kResultsPrefix);
      for (const PassFamily& pass : kPassFamilies) {
        for (const PassProfile& profile : pass.profiles) {
          if (!profile.prefix.empty()) add(profile.prefix);
        }
      }
      add(kWavinessMotifPrefix);
      add(kRoughnessMotifPrefix);
    }
    if (WritesTraceFile(document_, environment_)) files.writes.push_back(environment_.traceFile);
    clash_ = FileClash(files);
  }

  /// Beside the plan; empty where it names none.
  static std::filesystem::path BudgetNamedBy(PlanKeys& plan, const std::filesystem::path& planFile) {
    const auto name = plan.Text("BudgetFile");
    if (!name || TrimBlanks(*name).empty()) return {};
    return planFile.parent_path() / PathFromText(TrimBlanks(*name));
  }
  static std::filesystem::path BudgetOf(const std::filesystem::path& planFile) {
    if (!EqualIgnoringCase(TextFromPath(planFile.extension()), ".INI")) return {};
    const FileBytes bytes = ReadIniFile(planFile);
    const IniFile ini(bytes.bytes);
    PlanKeys plan(ini);
    return BudgetNamedBy(plan, planFile);
  }

  /// With the settings file beside the program, if there is one. What of it was not taken is remarked on.
  static Document StartDocument(const Environment& environment, std::vector<std::string>& remarks) {
    Document document = MakeDocument();
    document.wanted = kNoCurves;
    CollectingPrompts prompts;
    Settings settings = document.settings;
    const std::filesystem::path file = environment.programFolder / kSettingsName;
    const SettingsFileResult loaded = LoadSettings(file, settings, prompts);
    remarks = prompts.notices();
    if (loaded.found && !loaded.ok()) remarks.push_back(FileSentence(file, loaded.reason));
    for (std::string& remark : remarks) {
      if (remark.ends_with('.')) remark.pop_back();
    }
    ApplySettings(document, std::move(settings));
    return document;
  }

  void LogEvent(std::string_view text) const { log_.LogEvent(text); }

  RunOutcome Refuse(const std::string& text) const {
    LogEvent(text);
    return {false, text};
  }

  void LogPieces(const std::vector<std::string>& pieces) const {
    LogEvent(IntegerText(static_cast<std::int64_t>(pieces.size())) + " arguments");
    LogEvent("Command line arguments:");
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      LogEvent(IntegerText(static_cast<std::int64_t>(i)) + ": " + TextFromPath(PathFromSystemText(pieces[i])));
    }
  }

  void LogSections(const IniFile& plan) const {
    const std::vector<IniSectionHeader> sections = plan.Sections();
    LogEvent(IntegerText(static_cast<std::int64_t>(sections.size())) + " sections found in INI.");
    for (std::size_t i = 0; i < sections.size(); ++i) {
      LogEvent("Section " + IntegerText(static_cast<std::int64_t>(i)) + ": " + std::string(sections[i].name) + "...");
    }
  }

  void SetFiles(const std::vector<std::string>& pieces) {
    outputFolder_ = PathFromSystemText(pieces[kFolderPiece]);
    dataFile_ = PathFromSystemText(pieces[kDataPiece]);
    LogEvent("OutputFolder: " + TextFromPath(outputFolder_));
    LogEvent("Opening DataFile: " + TextFromPath(dataFile_) + "...");
    extension_ = OutputExtension(dataFile_);
    LogEvent("OutputExtension: " + TextFromPath(PathFromSystemText(extension_)));
  }

  bool ReadPass(PlanKeys& plan, Family family, PassPlan& pass) {
    auto read = ReadTestPlan(plan, family, document_, [this](std::string_view text) { LogEvent(text); });
    if (!read) return false;
    pass = std::move(*read);
    for (const std::string& remark : pass.remarks) Remark("The plan's " + remark);
    return true;
  }

  /// The rule of verdicts and the budget that it goes by; of a plan that names neither, the settings' rule. False, with
  /// the reason, where the budget is none.
  bool ReadDecision(PlanKeys& plan, const std::filesystem::path& planFile) {
    std::int32_t& rule = document_.settings.decision.DecisionRule;
    if (const auto word = plan.Text("DecisionRule")) {
      const auto rules = DecisionRules();
      const auto known = std::find_if(rules.begin(), rules.end(), [&word](const DecisionRuleName& each) {
        return EqualIgnoringCase(each.name, TrimBlanks(*word));
      });
      if (known != rules.end()) rule = known->number;
      if (known == rules.end()) plan.RemarkReadAs("DecisionRule", DecisionRuleOf(rule).name);
    }
    if (const std::filesystem::path file = BudgetNamedBy(plan, planFile); !file.empty()) {
      BudgetRead read = ReadBudget(file);
      if (!read.budget) {
        reason_ = FileSentence(file, read.reason);
        return false;
      }
      uncertainty_ = {.budget = std::move(*read.budget)};
    }
    for (const std::string& remark : plan.TakeRemarks()) Remark("The plan's " + remark);
    std::string remark = RemarkOnRule(document_.settings.decision, uncertainty_.has_value());
    if (remark.ends_with('.')) remark.pop_back();
    if (!remark.empty()) Remark(remark);
    return true;
  }

  /// What is done otherwise than it was asked, for whoever started the run and for who reads the log.
  void Remark(const std::string& text) {
    LogEvent("WARNING: " + text);
    remarks_.push_back(text + ".");
  }

  RunOutcome RunPasses(PlanKeys& plan, const PassPlan& standard) {
    bool firstPass = true;
    if (standard.detected > 0) {
      if (!ProcessDataSet(Family::kStandard, standard, firstPass)) return FailPass();
      firstPass = false;
    } else {
      AppendParameterLines(document_, standard, lines_);
    }
    for (const Family family : {Family::kWaviness, Family::kRk, Family::kMotif}) {
      PassPlan pass;
      if (!ReadPass(plan, family, pass)) return FailPass();
      if (pass.detected == 0) {
        AppendParameterLines(document_, pass, lines_);
        continue;
      }
      if (!ProcessDataSet(family, pass, firstPass)) return FailPass();
      firstPass = false;
    }
    for (const std::string& unread : plan.UnreadKeys()) Remark("The plan's " + unread);
    LogEvent("Writing results...");
    if (!WriteResults()) return {false, reason_};
    LogEvent("Output written...");
    WriteStatus("File processed.  Results written.");
    return {true, {}};
  }

  RunOutcome FailPass() const {
    LogEvent("ERROR: Cannot process data file");
    return {false, reason_.empty() ? "ERROR: Cannot process data file" : reason_};
  }

  /// Loads in the first pass, computes in each, and writes the family's profiles and lines.
  bool ProcessDataSet(Family family, const PassPlan& pass, bool firstPass) {
    CollectingPrompts prompts;
    if (firstPass) LoadData(prompts);
    if (document_.profiles.IsEmpty()) return FailData();
    const RunStep step = AnalyseRecord(document_, prompts, environment_);
    if (!step.ok()) {
      reason_ = FileSentence(dataFile_, step.Reason());
      return FailData();
    }
    for (const std::string& remark : FilterRemarks(document_, family)) Remark(remark);
    if (uncertainty_) {
      const std::string open =
          TryForVerdicts(document_, &*uncertainty_, std::max(1U, std::thread::hardware_concurrency()));
      if (!open.empty()) Remark("The " + std::string(PassFamilyOf(family).name) + " pass has no uncertainty: " + open);
    }
    LogEvent("Writing profiles...");
    if (!WriteProfiles(family)) return FailData();
    AppendPassLines(document_, family, pass, lines_);
    return true;
  }

  bool FailData() {
    WriteStatus("ERROR: Could not process data set.");
    return false;
  }

  void LoadData(Prompts& prompts) {
    const RunStep step =
        LoadRecord(document_, {.path = dataFile_, .import = {.knownExtensionsOnly = true}}, prompts, environment_);
    if (!step.ok()) reason_ = FileSentence(dataFile_, step.Reason());
    LogEvent(step.ok() ? "Data loaded" : "Could not load data");
  }

  std::filesystem::path OutputFile(std::string_view prefix) const {
    return outputFolder_ / PathFromSystemText(std::string(prefix) + extension_);
  }

  bool Write(const std::filesystem::path& path, std::string_view text, FlushFile flush) {
    const FileOutcome outcome = ReplaceSideFile(path, text, flush);
    if (!outcome.ok()) reason_ = FileSentence(path, outcome.reason);
    return outcome.ok();
  }

  /// Where that fails, the first file written says why.
  void MakeOutputFolder() const {
    std::error_code ignored;
    std::filesystem::create_directories(outputFolder_, ignored);
  }

  bool WriteProfiles(Family family) {
    MakeOutputFolder();
    for (const PassProfileFile& file : PassProfileFiles(document_, family)) {
      if (!Write(OutputFile(file.prefix), file.text, FlushFile::kNo)) return false;
    }
    return true;
  }

  bool WriteResults() {
    std::string text = ResultsTimeText(environment_.localTime()) + "\r\n";
    for (const std::vector<std::string>& list : lines_) {
      for (const std::string& line : list) text += line + "\r\n";
    }
    MakeOutputFolder();
    return Write(OutputFile(kResultsPrefix), text, FlushFile::kYes) || FailData();
  }

  std::filesystem::path StatusFile() const { return environment_.workingFolder / "TexturonCommandLine-Status.txt"; }

  /// One line without an end. In place where the folder takes no new file, so that no earlier status outlives its run;
  /// where that fails as well the run goes on and says so at its end.
  void WriteStatus(std::string_view text) {
    if (!writesStatus_) return;
    const FileOutcome replaced = ReplaceSideFile(StatusFile(), text, FlushFile::kNo);
    const bool isWritten = replaced.ok() || OverwriteInPlace(StatusFile(), text).ok();
    statusFailure_ = isWritten ? std::string() : FileSentence(StatusFile(), replaced.reason);
  }

  const Environment& environment_;
  std::vector<std::string> startRemarks_;  // made with the document, before there is a log
  Document document_;
  EventLog log_;
  std::filesystem::path outputFolder_;
  std::filesystem::path dataFile_;
  std::string extension_;
  ResultLines lines_;
  std::optional<UncertaintyRequest> uncertainty_;  ///< none: no budget
  std::string reason_;
  std::string clash_;          ///< two files of the run that are one
  bool writesStatus_ = true;   ///< false: the status file is one of them
  std::string statusFailure_;  ///< why the last status is not written
  std::vector<std::string> remarks_;
};

}  // namespace

std::vector<std::string> CommandLineArguments(std::string_view text) {
  std::vector<std::string> pieces;
  for (;;) {
    const std::size_t quote = text.find('"');
    pieces.emplace_back(text.substr(0, quote));
    if (quote == std::string_view::npos) break;
    text.remove_prefix(quote + 1);
  }
  while (!pieces.empty() && pieces.back().empty()) pieces.pop_back();
  const auto first =
      std::find_if(pieces.begin(), pieces.end(), [](const std::string& piece) { return !piece.empty(); });
  pieces.erase(pieces.begin(), first);
  return pieces;
}

std::string CommandLineText(const std::vector<std::string>& arguments) {
  std::string text;
  for (const std::string& argument : arguments) text += (text.empty() ? "\"" : " \"") + argument + "\"";
  return text;
}

bool NamesTestPlan(std::string_view argument) {
  constexpr std::string_view kExtension = ".ini";
  return argument.size() >= kExtension.size() &&
         EqualIgnoringCase(argument.substr(argument.size() - kExtension.size()), kExtension);
}

RunOutcome RunCommandLine(std::string_view commandLine, const Environment& environment) {
  return PlanRun(environment).Run(commandLine);
}

}  // namespace texturon
