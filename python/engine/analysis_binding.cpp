// SPDX-License-Identifier: Apache-2.0

#include <limits>
#include <sstream>
#include <tuple>
#include <utility>

#include "analysis/analysis_json.h"
#include "analysis/analysis_run.h"
#include "analysis/curve_step.h"
#include "analysis/decision.h"
#include "analysis/document_export.h"
#include "analysis/ratio_row_list.h"
#include "base/charset.h"
#include "base/number_text.h"
#include "binding.h"
#include "parameters/edition2021/edition_list.h"
#include "platform/platform.h"

namespace texturon::binding {
namespace {

struct Analysis {
  Document document;
  std::string file;
  RunRequest request;
  std::optional<UncertaintyRequest> trials;  ///< none: uncertainties were not asked for
  UncertaintyResult uncertainty;
  std::vector<std::string> messages;
  std::vector<std::string> notices;

  const UncertaintyResult* KnownUncertainty() const { return trials ? &uncertainty : nullptr; }
};

Document DocumentFor(const Settings& settings, const Scope& scope) {
  Document document = MakeDocument();
  ApplySettings(document, settings);
  SetWholeCutoffs(document, scope.wholeCutoffs);
  document.scope.allDataForForm = scope.allDataForForm;
  if (scope.region) {
    const auto& [mode, start, end, length] = *scope.region;
    document.scope.region = RegionChoice{mode, start, end, length};
  }
  if (scope.exclude) ExcludeFromForm(document, scope.exclude->first, scope.exclude->second);
  document.writesTraceFile = false;
  document.wanted = {.spectrum = false, .heightCurves = false, .coreRoughness = true};
  return document;
}

void Try(Analysis& analysis, Interrupts& interrupts, const std::string& name) {
  if (!analysis.trials) return;
  std::string reason;
  const auto advances = [&](int /*percent*/) { return !interrupts.Pressed(); };
  analysis.uncertainty = TryUncertainty(analysis.document, *analysis.trials, advances, reason);
  if (!reason.empty()) throw Refusal(name + ": no uncertainty, " + Utf8FromWindows1252(reason) + ".");
  analysis.document.results.uncertainties = analysis.uncertainty.rows;  // what its verdicts go by
}

std::shared_ptr<Analysis> Analyze(const Record& record, const Settings& settings, const Scope& scope,
                                  const std::string& settingsFile, const std::optional<UncertaintyRequest>& trials) {
  auto analysis = std::make_shared<Analysis>();
  analysis->document = DocumentFor(settings, scope);
  analysis->file = record.file;
  analysis->request = {.settingsFile = settingsFile, .import = record.import};
  analysis->trials = trials;
  CallPrompts prompts;
  WithoutLock(prompts.interrupts(), [&] {
    SetProfile(analysis->document, record.profiles);
    const RunStep run = AnalyseRecord(analysis->document, prompts, SystemEnvironment());
    const std::string name = record.file.empty() ? "the profile" : record.file;
    if (!run.loaded) throw Refusal(name + " " + Utf8FromWindows1252(run.cause) + ".");
    if (!run.ok()) throw Refusal(name + ": not analysed, " + Utf8FromWindows1252(run.cause) + ".");
    Try(*analysis, prompts.interrupts(), name);
  });
  analysis->messages = record.messages;
  analysis->messages.insert(analysis->messages.end(), prompts.messages().begin(), prompts.messages().end());
  analysis->notices = record.notices;
  analysis->notices.insert(analysis->notices.end(), prompts.notices().begin(), prompts.notices().end());
  return analysis;
}

ProfileKind KindOf(const std::string& name) {
  int kind = 0;  // in their order
  for (const std::string_view known :
       {"raw", "form_suppressed", "primary", "waviness", "roughness", "closing", "opening"}) {
    if (known == name) return static_cast<ProfileKind>(kind);
    ++kind;
  }
  throw Refusal("\"" + name + "\" is none of the profiles.");
}

/// A profile as long as the record, or its valid range alone; None where there is none.
py::object SamplesOf(const py::object& self, const std::string& name, bool validRangeAlone) {
  const Profile profile = self.cast<const Analysis&>().document.profiles.View(KindOf(name));
  if (profile.samples.empty()) return py::none();
  return View(validRangeAlone ? profile.Heights() : profile.samples, self);
}

py::tuple RowOf(const Document& document, std::size_t place, const ParameterDef& row, const std::string& name,
                const std::string& label) {
  const auto decision = Decide(document, row, place);
  const py::object word = decision ? py::object(py::str(std::string(AcceptanceWord(decision->verdict)))) : py::none();
  return py::make_tuple(Text(name), row.valid ? row.value : std::numeric_limits<double>::quiet_NaN(),
                        Text(PrintedUnit(row.quantity.metricUnit)), row.valid,
                        Text(ReasonOf(row, document.settings.display.Metric)), word, Text(label));
}

/// Name, value, unit, valid, reason, verdict, label of every row in its order; configurable rows
/// bear their number, those of two editions theirs.
py::list RowsOf(const Analysis& analysis) {
  const Document& document = analysis.document;
  const AnalysisSettings& settings = document.settings.analysis;
  const bool metric = document.settings.display.Metric;
  const bool isBoth = ChosenEdition(settings) == EditionChoice::kBoth;
  py::list rows;
  for (const ParameterDef& row : document.catalogue.rows) {
    if (!row.selected) continue;
    const bool hasLabel = row.edition == Edition::k1997;
    const std::string name = isBoth && !hasLabel ? row.name + "/2021" : row.name;
    rows.append(RowOf(document, rows.size(), row, name, hasLabel ? RowLabel(row.name, settings, metric) : ""));
  }
  for (const auto& entries : {SelectedMaterialRatios(document), SelectedHtps(document)}) {
    for (const RatioRowEntry& entry : entries) {
      const std::string number = IntegerText(static_cast<std::int64_t>(entry.index) + 1);
      rows.append(RowOf(document, rows.size(), entry.row, entry.row.name + " " + number, entry.label));
    }
  }
  return rows;
}

py::bytes JsonOf(const Analysis& analysis, bool withProfiles, bool indented) {
  std::ostringstream text;
  Interrupts interrupts;
  WithoutLock(interrupts, [&] {
    const AnalysisJsonOptions options{.layout = indented ? JsonWriter::Layout::kIndented : JsonWriter::Layout::kOneLine,
                                      .withProfiles = withProfiles,
                                      .request = &analysis.request,
                                      .uncertaintyRequest = analysis.trials ? &*analysis.trials : nullptr,
                                      .uncertainty = analysis.KnownUncertainty()};
    if (!withProfiles) {
      WriteAnalysisJson(text, analysis.document, analysis.file, analysis.messages, options);
      return;
    }
    Document whole = analysis.document;
    whole.wanted.spectrum = true;
    ComputeMissingCurves(whole);
    WriteAnalysisJson(text, whole, analysis.file, analysis.messages, options);
  });
  return py::bytes(text.str());
}

/// Windows-1252 as in files.
py::bytes ExportOf(const Analysis& analysis, const std::string& name, bool asMod) {
  const ExportKind* const kind = FindExportKind(name);
  if (kind == nullptr) {
    std::string known;
    for (const ExportKind& other : ExportKinds()) known += (known.empty() ? "" : ", ") + std::string(other.name);
    throw Refusal("\"" + name + "\" is none of " + known + ".");
  }
  const ExportFunction make = asMod ? kind->makeMod : kind->make;
  if (make == nullptr) throw Refusal("\"" + name + "\" cannot be written as form data (mod).");
  CallPrompts prompts;
  ExportResult result;
  WithoutLock(prompts.interrupts(), [&] { result = make(analysis.document, prompts); });
  if (!result.ok()) throw Refusal("\"" + name + "\" is not exported, " + Utf8FromWindows1252(result.reason) + ".");
  return py::bytes(result.text);
}

}  // namespace

void BindAnalysis(py::module_& module) {
  py::class_<Analysis, std::shared_ptr<Analysis>>(module, "Analysis")
      .def("samples", SamplesOf)
      .def("rows", RowsOf)
      .def("json", JsonOf)
      .def("export", ExportOf)
      .def_property_readonly("spacing_um",
                             [](const Analysis& self) { return self.document.profiles.residualSpacingUM; })
      .def_property_readonly("messages", [](const Analysis& self) { return Texts(self.messages); })
      .def_property_readonly("notices", [](const Analysis& self) { return Texts(self.notices); });
  py::class_<Scope>(module, "Scope")
      .def(py::init<>())
      .def_readwrite("region", &Scope::region)
      .def_readwrite("exclude", &Scope::exclude)
      .def_readwrite("whole_cutoffs", &Scope::wholeCutoffs)
      .def_readwrite("all_data_for_form", &Scope::allDataForForm);
  module.def("analyze", Analyze);
}

}  // namespace texturon::binding
