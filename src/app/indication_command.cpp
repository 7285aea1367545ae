// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cmath>
#include <iostream>
#include <utility>
#include <vector>

#include "analysis/analysis_json.h"
#include "analysis/analysis_run.h"
#include "analysis/document_export.h"
#include "analysis/pipeline.h"
#include "app/analysis_table.h"
#include "app/commands.h"
#include "app/edition_output.h"
#include "app/indication_output.h"
#include "app/provenance_output.h"
#include "app/qdas_output.h"
#include "app/uncertainty_output.h"
#include "base/charset.h"
#include "base/date_text.h"
#include "base/number_text.h"
#include "base/quantity.h"
#include "base/units.h"
#include "export/parameter_file.h"
#include "platform/interrupt.h"
#include "platform/platform.h"

namespace texturon {
namespace {

/// "5,7,6.1". Throws where one is no number.
ValueSeries ValuesOf(const std::string& text) {
  ValueSeries values;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(',', begin), text.size());
    const std::string piece = text.substr(begin, end - begin);
    const ParsedDouble number = ParseDouble(piece);
    if (!number.usable() || number.length == 0 || number.length != piece.size()) {
      throw UsageError{"--values " + text + ": numbers with decimal points, separated by commas, belong here."};
    }
    values.emplace_back(number.value);
    begin = end + 1;
  }
  return values;
}

/// Requirements that are measured in the same way: one analysis does for all of them.
struct MeasuredTogether {
  Document start;
  std::vector<std::size_t> requirements;
};

std::vector<MeasuredTogether> Group(const std::vector<Requirement>& requirements, const Document& start) {
  std::vector<MeasuredTogether> groups;
  for (std::size_t i = 0; i < requirements.size(); ++i) {
    if (!requirements[i].missing.empty()) continue;
    Settings settings;
    auto group = std::find_if(groups.begin(), groups.end(), [&](const MeasuredTogether& other) {
      settings = other.start.settings;
      return AddRequirement(requirements[i], start.settings.analysis, settings.analysis);
    });
    if (group == groups.end()) {
      groups.push_back({.start = start, .requirements = {}});
      group = groups.end() - 1;
      settings = start.settings;
      ApplyRequirement(requirements[i], settings.analysis);
    }
    ApplySettings(group->start, std::move(settings));
    group->requirements.push_back(i);
  }
  return groups;
}

/// One record measured in several ways as one: the rows of all, told apart by class or cut-off, with all else of the
/// first.
Document Together(std::vector<Document> measured) {
  if (measured.size() == 1) return std::move(measured.front());
  std::vector<ParameterDef> rows;
  for (const Document& document : measured) {
    const AnalysisSettings& settings = document.settings.analysis;
    const std::string way = settings.standard.Class.empty()
                                ? "Lc " + LengthText(settings.LcCutoffMM, document.settings.display.Metric)
                                : settings.standard.Class;
    for (const ParameterDef& row : document.catalogue.rows) {
      rows.push_back(row);
      rows.back().name += " " + way;
    }
  }
  measured.front().catalogue.rows = std::move(rows);
  return std::move(measured.front());
}

/// A requirement's row; null where it has no value.
const ParameterDef* RowIn(const Document& document, const Requirement& requirement) {
  for (const ParameterDef& row : document.catalogue.rows) {
    if (row.name == requirement.rowName && row.edition == requirement.edition && row.valid) return &row;
  }
  return nullptr;
}

class IndicatedAnalysis {
public:
  IndicatedAnalysis(const AnalyzeOptions& analyze, const RunSetup& setup, const RunRequest& request,
                    const std::vector<Requirement>& requirements, std::optional<UncertaintyRequest> uncertainty)
      : analyze_(analyze),
        setup_(setup),
        request_(request),
        uncertaintyRequest_(std::move(uncertainty)),
        groups_(Group(requirements, setup.document)) {
    const std::int32_t rule = setup.document.settings.decision.DecisionRule;
    for (const Requirement& requirement : requirements) judged_.push_back({requirement, ValueSeries(), {}, rule});
  }

  int Run(const std::vector<InputFile>& files, ConsolePrompts& prompts) {
    int status = setup_.settingsHadProblems ? kExitRefused : kExitDone;
    for (const JudgedRequirement& judged : judged_) {
      if (judged.requirement.missing.empty()) continue;
      Complain(Utf8FromWindows1252(judged.requirement.source + ": " + judged.requirement.missing + "."));
      status = kExitRefused;
    }
    const bool isOneObject = files.size() == 1 && groups_.size() == 1;
    for (const InputFile& file : files) {
      isUnreadable_ = false;
      hasResult_ = false;
      measured_.clear();
      for (const MeasuredTogether& group : groups_) {
        if (!Measure(file, group, prompts, isOneObject)) status = kExitRefused;
      }
      const bool isForFiles = hasResult_ && !measured_.empty();
      if (isForFiles && !PassOn(Together(std::move(measured_)))) status = kExitRefused;
    }
    if (analyze_.form == OutputForm::kJson && !(isOneObject && isFirstShown_)) {
      JsonWriter json(JsonWriter::Layout::kOneLine, &std::cout);
      json.BeginObject();
      WriteRequirements(json, judged_);
      json.EndObject();
      json.Finish();
      std::cout << "\n";
    }
    if (analyze_.form == OutputForm::kTable) std::cout << (isFirstShown_ ? "\n\n" : "") << RequirementsText(judged_);
    if (analyze_.form == OutputForm::kCsv) PrintVerdictLines();
    return FinishOutput(status);
  }

private:
  bool Measure(const InputFile& file, const MeasuredTogether& group, ConsolePrompts& prompts, bool isOneObject) {
    Document document = group.start;
    document.wanted = {.spectrum = analyze_.withProfiles, .heightCurves = false, .coreRoughness = false};
    prompts.BeginFile(file.name);
    const Environment environment = SystemEnvironment();
    const bool isLoaded = !isUnreadable_ && LoadInto(document, file, setup_, prompts, environment);
    isUnreadable_ = !isLoaded;
    const RunStep run = isLoaded ? AnalyseRecord(document, prompts, environment) : RunStep{.cause = "not loaded"};
    if (isLoaded && !run.ok()) Complain(file.name + ": not analysed, " + run.cause + ".");
    if (run.ok()) TellOtherLengths(document, group, prompts);
    uncertainty_.reset();
    if (run.ok() && uncertaintyRequest_) {
      uncertainty_ = FindUncertainty(document, *uncertaintyRequest_, file.name, prompts);
    }
    const bool isTried = uncertainty_.has_value() == uncertaintyRequest_.has_value();
    for (const std::size_t i : group.requirements) {
      const ParameterDef* const row = run.ok() ? RowIn(document, judged_[i].requirement) : nullptr;
      judged_[i].values->push_back(row != nullptr ? std::optional(row->value) : std::nullopt);
      judged_[i].expanded.push_back(ExpandedOf(document, row));
    }
    if (!isLoaded || !run.loaded) return false;
    Show(document, file, prompts, isOneObject);
    const bool isDone = run.ok() && isTried;
    hasResult_ = hasResult_ || isDone;
    if (!analyze_.appendTo.empty() || !analyze_.qdas.empty()) measured_.push_back(std::move(document));
    return isDone;
  }

  /// Primary profile and motifs have the length of what is computed over, whatever the drawing says.
  void TellOtherLengths(const Document& document, const MeasuredTogether& group, ConsolePrompts& prompts) const {
    const ProfileSet& profiles = document.profiles;
    const bool metric = document.settings.display.Metric;
    const double stepMM = profiles.residualSpacingUM * kMillimetresPerMicrometre;
    const double lengthMM = LengthOfPoints(profiles.View(ProfileKind::kPrimary).range.count, stepMM);
    for (const std::size_t i : group.requirements) {
      const Requirement& requirement = judged_[i].requirement;
      if (!requirement.lengthMM || requirement.longIndexMM) continue;
      if (std::abs(lengthMM - *requirement.lengthMM) <= 2.0 * stepMM) continue;
      prompts.Notice(requirement.source + ": evaluated over " + LengthText(lengthMM, metric) + " in place of " +
                     LengthText(*requirement.lengthMM, metric) + ".");
    }
  }

  void Show(const Document& document, const InputFile& file, const ConsolePrompts& prompts, bool isOneObject) {
    switch (analyze_.form) {
      case OutputForm::kTable:
        std::cout << (isFirstShown_ ? "\n\n" : "") << AnalysisTable(document, file.name, false);
        if (uncertainty_) std::cout << UncertaintyTable(document, *uncertaintyRequest_, *uncertainty_);
        break;
      case OutputForm::kCsv:
        std::cout << CsvHeader(document) << CsvRow(document, file.name);
        break;
      case OutputForm::kJson: {
        AnalysisJsonOptions options{
            .layout = isOneObject ? JsonWriter::Layout::kIndented : JsonWriter::Layout::kOneLine,
            .withProfiles = analyze_.withProfiles,
            .request = &request_,
            .uncertaintyRequest = uncertainty_ ? &*uncertaintyRequest_ : nullptr,
            .uncertainty = uncertainty_ ? &*uncertainty_ : nullptr};
        if (isOneObject) options.more = [this](JsonWriter& json) { WriteRequirements(json, judged_); };
        WriteAnalysisJson(std::cout, document, file.name, prompts.Messages(), options);
        std::cout << "\n";
        break;
      }
    }
    isFirstShown_ = true;
  }

  /// Adds the results of a file to files.
  bool PassOn(const Document& document) const {
    const Environment environment = SystemEnvironment();
    bool isDone = true;
    if (!analyze_.appendTo.empty()) {
      const ParameterFileText text = ParameterFileTextOf(document, DateText(environment.localTime()));
      CollectingPrompts messages;
      isDone = AppendParameters(PathFromSystemText(analyze_.appendTo), text.header, text.row, messages).written;
      for (const std::string& message : messages.messages()) Complain(Utf8FromWindows1252(message));
    }
    const bool isPassedOn = analyze_.qdas.empty() ||
                            AppendQdas(QdasTextOf(document, environment.localTime()), analyze_.qdas, InUse::kRetryOnce);
    return isDone && isPassedOn;
  }

  void PrintVerdictLines() const {
    for (const JudgedRequirement& judged : judged_) {
      const AcceptanceResult result = judged.Verdict();
      std::cout << "Requirement,\"" << Utf8FromWindows1252(judged.requirement.source) << "\","
                << ConformityWord(result.verdict) << "," << result.by << "\n";
    }
  }

  const AnalyzeOptions& analyze_;
  const RunSetup& setup_;
  const RunRequest& request_;
  const std::optional<UncertaintyRequest> uncertaintyRequest_;
  std::optional<UncertaintyResult> uncertainty_;  ///< of the analysis at hand
  std::vector<MeasuredTogether> groups_;
  std::vector<JudgedRequirement> judged_;
  bool isFirstShown_ = false;
  bool isUnreadable_ = false;       ///< the file at hand: said once
  bool hasResult_ = false;          ///< one way of measuring it at least gave one
  std::vector<Document> measured_;  ///< it in every way, where files are added to
};

/// The drawing says which edition a requirement is of, whatever the command line says.
void TellOtherEdition(const std::vector<Requirement>& requirements, const CommonOptions& common) {
  if (common.edition.empty() || common.quiet) return;
  for (const Requirement& requirement : requirements) {
    if (NameOf(requirement.edition) == common.edition) continue;
    Complain("--edition " + common.edition + ": " + Utf8FromWindows1252(requirement.source) + " is of the edition of " +
             std::string(NameOf(requirement.edition)) + ", which is followed.");
  }
}

}  // namespace

int RunIndication(const IndicationOptions& options) {
  std::vector<JudgedRequirement> judged;
  for (Requirement& requirement : RequirementsOf(options.text, ClassesFrom(options.classTable))) {
    judged.push_back({std::move(requirement), std::nullopt});
    if (!options.values.empty()) judged.back().values = ValuesOf(options.values);
  }
  if (options.asJson) {
    JsonWriter json(JsonWriter::Layout::kIndented, &std::cout);
    json.BeginObject();
    WriteRequirements(json, judged);
    json.EndObject();
    json.Finish();
    std::cout << "\n";
  } else {
    std::cout << RequirementsText(judged);
  }
  return FinishOutput(kExitDone);
}

int RunIndicatedAnalysis(const AnalyzeOptions& analyze, const CommonOptions& common) {
  const std::vector<InputFile> files = InputFiles(analyze.files, common);
  ConsolePrompts prompts({.answersYes = common.answer == "yes", .isQuiet = common.quiet});
  auto setup = PrepareRun(common, prompts, SectionsOf::kDrawing);
  if (!setup) return kExitRefused;
  const std::string& ownTable = setup->document.settings.analysis.standard.ClassTable;
  const ClassTable classes = ClassesFrom(SystemTextFromPath(PathFromText(ownTable)));
  std::vector<Requirement> requirements = RequirementsOf(analyze.indication, classes);
  ApplyDecisionRule(analyze, setup->document.settings.decision);
  RunFiles clashing{.reads = PathsOf(files),
                    .writes = {PathFromSystemText(analyze.appendTo), PathFromSystemText(analyze.qdas)}};
  const Environment environment = SystemEnvironment();
  for (auto& file : FilesOfBudget(PathFromSystemText(analyze.budget))) clashing.reads.push_back(std::move(file));
  if (WritesTraceFile(setup->document, environment)) clashing.writes.push_back(environment.traceFile);
  RefuseClash(std::move(clashing), common);
  // What the command line says of class and sections completes what the drawing leaves open.
  const SettingClass* const chosen = FindClass(classes, Windows1252FromUtf8(common.settingClass));
  for (Requirement& requirement : requirements) {
    CompleteRequirement(requirement, chosen, common.sections > 0 ? std::optional(common.sections) : std::nullopt);
  }
  TellOtherEdition(requirements, common);
  setup->import.marksInput = analyze.form == OutputForm::kJson;
  std::optional<UncertaintyRequest> uncertainty;
  if (!analyze.budget.empty()) {
    uncertainty = UncertaintyRequestOf(analyze);
    if (!uncertainty) return kExitRefused;
    CatchInterrupts();
  }
  const RunRequest request = RequestOf(common, *setup);
  return IndicatedAnalysis(analyze, *setup, request, requirements, std::move(uncertainty)).Run(files, prompts);
}

}  // namespace texturon
