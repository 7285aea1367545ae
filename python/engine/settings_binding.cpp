// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <set>
#include <utility>
#include <variant>

#include "analysis/document.h"
#include "base/charset.h"
#include "base/text.h"
#include "binding.h"
#include "parameters/catalogue.h"
#include "parameters/edition2021/edition_list.h"
#include "platform/platform.h"
#include "settings/settings_file.h"
#include "settings/settings_table.h"
#include "settings/settings_text.h"

namespace texturon::binding {
namespace {

/// Every place that a name may mean, in full: "ANALYSIS.LcCutoffMM" is one, "LcCutoffMM" stands for it where only one
/// section has it. With the names of its numbers ("0 none, 1 line").
py::list PlacesOf(const std::string& name) {
  const std::string text = Windows1252FromUtf8(name);
  const std::size_t point = text.find('.');
  const std::string_view key = std::string_view(text).substr(point == std::string::npos ? 0 : point + 1);
  std::set<std::string_view> asked;
  py::list places;
  for (const SettingKey& row : SettingsTable()) {
    const std::string_view section = row.binding.section;
    if (point != std::string::npos && !EqualIgnoringCase(section, std::string_view(text).substr(0, point))) continue;
    if (!asked.insert(section).second) continue;
    if (const auto place = FindSetting(section, key)) {
      const std::string fullName = std::string(section) + "." + KeyOfRow(place->key->binding, place->row);
      places.append(py::make_tuple(Text(fullName), Text(place->key->choices)));
    }
  }
  return places;
}

py::object ValueOf(const Settings& settings, const std::string& fullName) {
  const std::size_t point = fullName.find('.');
  const auto place = FindSetting(fullName.substr(0, point), fullName.substr(point + 1));
  if (!place) throw Refusal(fullName + ": there is no such setting.");
  const SettingBinding& binding = place->key->binding;
  if (binding.isRepeated() && place->row >= binding.rows->count(settings)) {
    throw Refusal(fullName + ": does not exist, the list has no such row.");
  }
  return std::visit(
      [](const auto& value) -> py::object {
        if constexpr (std::is_same_v<std::decay_t<decltype(value)>, std::string>) return Text(value);
        return py::cast(value);
      },
      binding.get(settings, place->row));
}

void SetValue(Settings& settings, const std::string& fullName, const std::string& text) {
  const auto refusal = SetOne(settings, Windows1252FromUtf8(fullName), Windows1252FromUtf8(text));
  if (refusal) throw Refusal(Utf8FromWindows1252(*refusal) + ".");
}

/// Every key that the settings have, rows of lists one by one.
py::list KeysOf(const Settings& settings) {
  py::list keys;
  for (const SettingKey& row : SettingsTable()) {
    const SettingBinding& binding = row.binding;
    if (binding.type == SettingType::kVersion) continue;
    const std::size_t count = binding.isRepeated() ? binding.rows->count(settings) : 1;
    for (std::size_t i = 0; i < count; ++i) {
      keys.append(Text(std::string(binding.section) + "." + KeyOfRow(binding, i)));
    }
  }
  return keys;
}

/// The settings of a file over `settings`, with the remarks on what it holds.
py::tuple ReadFile(Settings& settings, const std::string& file) {
  CallPrompts prompts;
  const SettingsFileResult result = LoadSettings(PathFromSystemText(file), settings, prompts);
  if (!result.ok()) throw ReadRefusal(file + " " + result.reason + ".");
  return py::make_tuple(result.understoodAll, Texts(prompts.notices()));
}

void WriteFile(const Settings& settings, const std::string& file) {
  const SettingsFileResult result = SaveSettings(PathFromSystemText(file), settings);
  if (!result.ok()) throw Refusal(file + " " + result.reason + ".");
}

/// Asks for these rows in this order. A row that the settings have keeps its limits.
void Select(Settings& settings, const std::vector<std::string>& names) {
  if (names.size() > kMostParameters) throw Refusal("parameters: there are too many of them.");
  std::vector<ParameterSelection> wanted;
  for (const std::string& utf8 : names) {
    const std::string name = Windows1252FromUtf8(utf8);
    const auto& rows = settings.analysis.parameters;
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const auto& other) { return other.name == name; });
    wanted.push_back(row == rows.end() ? ParameterSelection{.name = name} : *row);
    wanted.back().selected = true;
  }
  settings.analysis.parameters = std::move(wanted);
}

/// Of the edition in force.
bool IsKnownParameter(const Settings& settings, const std::string& name) {
  const EditionChoice edition = ChosenEdition(settings.analysis);
  const std::string text = Windows1252FromUtf8(name);
  return (edition != EditionChoice::k2021 && FindMasterRow(text) != nullptr) ||
         (edition != EditionChoice::k1997 && ParseEditionName(text).fault.empty());
}

}  // namespace

void BindSettings(py::module_& module) {
  py::class_<Settings>(module, "Settings")
      .def(py::init([] { return MakeDocument().settings; }))
      .def(py::init<const Settings&>())
      .def("get", ValueOf)
      .def("set", SetValue)
      .def("keys", KeysOf)
      .def("read", ReadFile)
      .def("write", WriteFile)
      .def("select", Select)
      .def("is_known_parameter", IsKnownParameter)
      .def("equals", [](const Settings& one, const Settings& other) { return one == other; });
  module.def("places_of", PlacesOf);
  py::list catalogue;
  for (const MasterRow& row : MasterCatalogue()) catalogue.append(Text(row.name));
  for (const EditionRow& row : EditionTable()) catalogue.append(Text("R" + std::string(row.suffix)));
  module.attr("parameter_names") = py::tuple(catalogue);
}

}  // namespace texturon::binding
