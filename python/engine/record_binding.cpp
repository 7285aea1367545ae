// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "analysis/analysis_run.h"
#include "analysis/file_clash.h"
#include "base/charset.h"
#include "base/number_text.h"
#include "binding.h"
#include "formats/companion_file.h"
#include "formats/even_spacing.h"
#include "formats/extension_table.h"
#include "formats/import.h"
#include "formats/unit_words.h"
#include "platform/platform.h"
#include "unattended/folder_files.h"

namespace texturon::binding {
namespace {

std::shared_ptr<Record> LoadRecordFrom(const std::string& file, std::optional<std::int32_t> profile,
                                       std::optional<double> spacingUM, std::optional<std::int32_t> column, bool slope,
                                       bool invert) {
  auto record = std::make_shared<Record>();
  record->file = file;
  RecordSource source{.path = PathFromSystemText(file), .invert = invert};
  source.import.profileChoice = profile;
  source.import.spacingUM = spacingUM;
  source.import.column = column.value_or(1);
  source.import.integratesSlopes = slope;
  source.import.marksInput = true;
  record->import = source.import;
  CallPrompts prompts;
  WithoutLock(prompts.interrupts(), [&] {
    Document document;
    const RunStep step = LoadRecord(document, source, prompts, SystemEnvironment());
    if (!step.ok()) throw ReadRefusal(file + " " + Utf8FromWindows1252(step.cause) + ".");
    record->profiles = std::move(document.profiles);
  });
  record->messages = prompts.messages();
  record->notices = prompts.notices();
  return record;
}

/// What is not finite is an invalid point, as in a file.
std::shared_ptr<Record> RecordOf(const Heights& heights, double spacingUM, const std::string& unit,
                                 const std::string& identification, const std::string& date,
                                 std::optional<double> tipRadiusMM) {
  const std::optional<double> factor = MicrometresPerUnit(Windows1252FromUtf8(unit));
  if (!factor) throw Refusal("unit: \"" + unit + "\" is no unit of length.");
  if (!(spacingUM > 0.0 && std::isfinite(spacingUM))) throw Refusal("spacing_um: must be a finite number above 0.");
  if (heights.size() > kPointCapacity) {
    throw Refusal("heights: a profile holds at most " + IntegerText(kPointCapacity) + " points, not " +
                  IntegerText(heights.size()) + ".");
  }
  auto record = std::make_shared<Record>();
  ImportedProfile profile{.identification = Windows1252FromUtf8(identification),
                          .date = Windows1252FromUtf8(date),
                          .spacingUM = spacingUM,
                          .heightsUM = {heights.data(), heights.data() + heights.size()},
                          .tipRadiusMM = tipRadiusMM.value_or(-1.0)};
  for (double& height : profile.heightsUM) {
    height *= *factor;
    if (!std::isfinite(height)) height = std::numeric_limits<double>::quiet_NaN();
  }
  FillInvalid(profile.heightsUM, record->notices);
  if (profile.heightsUM.empty()) throw Refusal("heights: not one of them is a number.");
  for (std::string* const text : {&profile.identification, &profile.date}) {
    std::replace(text->begin(), text->end(), ',', ';');
  }
  record->profiles = MakeProfileSet(std::move(profile), "");
  return record;
}

/// Throws where writing a file would destroy one that the record came from.
void RefuseClash(const ProfileSet& profiles, const std::filesystem::path& target) {
  RunFiles files{.reads = {profiles.sourceFile}, .writes = {target}};
  if (auto companion = CompanionOf(profiles.sourceFile)) files.reads.push_back(std::move(*companion));
  const std::string clash = FileClash(files);
  if (!clash.empty()) throw Refusal(Utf8FromWindows1252(clash));
}

/// Writes the record in the format of the name's extension. Returns the name that it got.
py::bytes Convert(const Record& record, const std::string& file) {
  std::filesystem::path path = PathFromSystemText(file);
  if (path.filename().empty()) throw Refusal(file + ": is no name of a file.");
  const WriterEntry& writer = WriterFor(path);
  RefuseClash(record.profiles, std::filesystem::path(path).replace_extension(writer.extension));
  CallPrompts prompts;
  const ProfileToWrite profile{.heightsUM = record.profiles.raw,
                               .spacingUM = record.profiles.spacingUM,
                               .identification = record.profiles.identification,
                               .savedAt = SystemEnvironment().localTime()};
  FileOutcome outcome;
  WithoutLock(prompts.interrupts(), [&] { outcome = writer.write(path, profile, prompts); });
  if (!outcome.ok()) throw Refusal(file + ": Could not write file. It " + outcome.reason + ".");
  return py::bytes(SystemTextFromPath(path));
}

void WriteText(const Record& record, const std::string& file, const py::bytes& text) {
  const std::filesystem::path path = PathFromSystemText(file);
  RefuseClash(record.profiles, path);
  const FileOutcome written = ReplaceFile(path, std::string_view(text));
  if (!written.ok()) throw Refusal(file + " " + written.reason + ".");
}

py::list FilesOf(const std::string& folder, const std::string& mask) {
  const FolderFiles listed = FilesToAnalyse(PathFromSystemText(folder), Windows1252FromUtf8(mask), {});
  if (!listed.reason.empty()) throw Refusal(folder + " " + listed.reason + ".");
  py::list files;
  for (const std::filesystem::path& path : listed.files) files.append(py::bytes(SystemTextFromPath(path)));
  return files;
}

}  // namespace

void BindRecord(py::module_& module) {
  py::class_<Record, std::shared_ptr<Record>>(module, "Record")
      .def_property_readonly("heights_um",
                             [](const py::object& self) { return View(self.cast<const Record&>().profiles.raw, self); })
      .def_property_readonly("spacing_um", [](const Record& record) { return record.profiles.spacingUM; })
      .def_property_readonly("identification",
                             [](const Record& record) { return Text(record.profiles.identification); })
      .def_property_readonly("date", [](const Record& record) { return Text(record.profiles.dateTime); })
      .def_property_readonly("tip_radius_mm",
                             [](const Record& record) -> std::optional<double> {
                               if (!(record.profiles.tipRadiusMM > 0.0)) return std::nullopt;
                               return record.profiles.tipRadiusMM;
                             })
      .def_property_readonly("file", [](const Record& record) { return py::bytes(record.file); })
      .def_property_readonly("messages", [](const Record& record) { return Texts(record.messages); })
      .def_property_readonly("notices", [](const Record& record) { return Texts(record.notices); });
  module.def("load_record", LoadRecordFrom);
  module.def("record_of", RecordOf);
  module.def("convert", Convert);
  module.def("write_text", WriteText);
  module.def("files_of", FilesOf);
  module.def("text_of", [](const py::bytes& windows1252) { return Text(std::string_view(windows1252)); });
}

}  // namespace texturon::binding
