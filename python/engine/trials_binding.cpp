// SPDX-License-Identifier: Apache-2.0

#include <map>
#include <utility>

#include "analysis/practice.h"
#include "analysis/uncertainty_json.h"
#include "base/charset.h"
#include "base/ini_file.h"
#include "base/text.h"
#include "binding.h"
#include "platform/platform.h"
#include "settings/settings_file.h"
#include "settings/settings_text.h"

namespace texturon::binding {
namespace {

UncertaintyRequest TrialsOf(BudgetRead&& read, const std::string& name) {
  if (!read.budget) throw ReadRefusal(name + " " + Utf8FromWindows1252(read.reason) + ".");
  return {.budget = std::move(*read.budget)};
}

void SetInterval(UncertaintyRequest& request, const std::string& word) {
  const auto interval = FindInterval(word);
  if (!interval) throw Refusal("interval: \"" + word + "\" is neither symmetric nor shortest.");
  request.interval = *interval;
}

/// Settings as a way of evaluating, with the scope that their file tells beside them; empty: no file.
Practice PracticeOf(const Settings& settings, const std::string& file) {
  Practice practice{.settings = settings, .scope = {}};
  if (file.empty()) return practice;
  const std::string fault = TakeScope(IniFile(ReadIniFile(PathFromSystemText(file)).bytes), practice);
  if (!fault.empty()) throw Refusal(file + " is not used: " + Utf8FromWindows1252(fault) + ".");
  return practice;
}

/// A built-in practice over settings; None for an unknown name.
std::optional<Practice> NamedPractice(const Settings& settings, const std::string& name) {
  for (const EmbeddedFile& file : PracticeFiles()) {
    if (!EqualIgnoringCase(file.name, name)) continue;
    Practice practice{.settings = settings, .scope = {}};
    const IniFile ini{std::string(file.text)};
    LoadSettingsText(ini, practice.settings);
    TakeScope(ini, practice);
    return practice;
  }
  return std::nullopt;
}

/// Name, unit, a, b, difference, interaction and the steps (name, change, alone) of every row.
py::list Compare(const Record& record, const Practice& a, const Practice& b) {
  std::vector<ComparedRow> rows;
  Interrupts interrupts;
  WithoutLock(interrupts, [&] { rows = ComparePractices(record.profiles, a, b); });
  py::list told;
  for (const ComparedRow& row : rows) {
    py::list steps;
    for (const StepChange& step : row.steps) {
      steps.append(py::make_tuple(std::string(step.step), step.change, step.alone));
    }
    told.append(py::make_tuple(Text(row.name), Text(PrintedUnit(row.quantity.metricUnit)), row.a, row.b,
                               row.Difference(), row.Interaction(), steps));
  }
  return told;
}

}  // namespace

void BindTrials(py::module_& module) {
  py::class_<UncertaintyRequest>(module, "Trials")
      .def_readwrite("trials", &UncertaintyRequest::trials)
      .def_readwrite("seed", &UncertaintyRequest::seed)
      .def_readwrite("sensitivities", &UncertaintyRequest::wantsSensitivities)
      .def("set_interval", SetInterval);
  const py::class_<Practice> practice(module, "Practice");
  module.attr("most_trials") = kMostTrials;
  module.def("trials_of_entries", [](const std::map<std::string, std::string>& entries) {
    return TrialsOf(MakeBudget({entries.begin(), entries.end()}), "The budget");
  });
  module.def("trials_of_file",
             [](const std::string& file) { return TrialsOf(ReadBudget(PathFromSystemText(file)), file); });
  module.def("practice_of", PracticeOf);
  module.def("named_practice", NamedPractice);
  py::list names;
  for (const EmbeddedFile& file : PracticeFiles()) names.append(Text(file.name));
  module.attr("practice_names") = py::tuple(names);
  module.def("compare", Compare);
}

}  // namespace texturon::binding
