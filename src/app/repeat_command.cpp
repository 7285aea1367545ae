// SPDX-License-Identifier: Apache-2.0

#include "app/repeat_command.h"

#include <algorithm>
#include <iostream>
#include <sstream>
#include <utility>

#include "analysis/analysis_json.h"
#include "app/json_difference.h"
#include "app/result_request.h"
#include "app/table_text.h"
#include "base/charset.h"
#include "base/number_text.h"
#include "base/program_version.h"
#include "base/sha256.h"
#include "platform/interrupt.h"
#include "platform/platform.h"

namespace texturon {
namespace {

const std::string* TextAt(const JsonValue& object, std::string_view part, std::string_view name) {
  const JsonValue* const value = object.Find(part, name);
  return value != nullptr ? value->As<std::string>() : nullptr;
}

struct ResultObjects {
  std::vector<JsonValue> results;
  bool areOfDrawing = false;  ///< made for what a drawing asks for
};

/// The objects of a file, one after another. Empty, with a sentence on standard error, where there is none.
ResultObjects ReadObjects(const std::string& file) {
  const FileBytes content = ReadRegularFile(PathFromSystemText(file));
  if (!content.ok()) {
    Complain(file + " " + content.reason + ".");
    return {};
  }
  ResultObjects objects;
  std::string_view rest = content.bytes;
  do {
    JsonRead read = ReadJson(rest);
    if (!read.value) {
      Complain(file + " is not read as JSON: " + read.reason + ".");
      return {};
    }
    // Of several analyses the requirements stand in an object of their own.
    objects.areOfDrawing = objects.areOfDrawing || read.value->Find("requirements") != nullptr;
    if (read.value->Find("parameters") != nullptr) objects.results.push_back(std::move(*read.value));
  } while (!rest.empty());
  if (objects.results.empty()) Complain(file + " holds no object of analyze --json.");
  return objects;
}

/// What the object tells is not for the command line to change.
void RefuseOptions(const AnalyzeOptions& analyze, const CommonOptions& common) {
  const CommonOptions none;
  const bool isTold =
      common.settingsFile != none.settingsFile || !common.assignments.empty() || common.region != none.region ||
      common.exclude != none.exclude || common.spacing != none.spacing || common.answer != none.answer ||
      common.profile != none.profile || common.column != none.column || common.wholeCutoffs || common.allDataForForm ||
      common.invert || common.slope || !common.edition.empty() || !common.settingClass.empty() ||
      !common.classTable.empty() || common.sections > 0 || !common.features.empty() || !analyze.indication.empty();
  if (isTold) throw UsageError{"--again: settings and request are those of " + analyze.again + "."};
  if (!analyze.appendTo.empty() || !analyze.qdas.empty()) {
    throw UsageError{"--again: compares, and adds no rows to a file."};
  }
  if (analyze.files.size() != 1) throw UsageError{"--again: give the one file that the object was made of."};
}

/// The object of the file that was read, by the digest of its content; else the only one.
const JsonValue* ObjectOf(const std::vector<JsonValue>& objects, const std::string& bytesDigest) {
  const auto found = std::find_if(objects.begin(), objects.end(), [&](const JsonValue& object) {
    const std::string* const digest = TextAt(object, "input", "sha256");
    return digest != nullptr && *digest == bytesDigest;
  });
  if (found != objects.end()) return &*found;
  return objects.size() == 1 ? &objects.front() : nullptr;
}

std::string DifferenceTable(const std::vector<JsonDifference>& differences) {
  std::size_t place = std::string_view("What").size();
  std::size_t former = std::string_view("In the object").size();
  for (const JsonDifference& row : differences) {
    place = std::max(place, ShownWidth(row.place));
    former = std::max(former, ShownWidth(row.former));
  }
  std::string out = "\n" + PadRight("What", place) + "  " + PadRight("In the object", former) + "  Now\n";
  for (const JsonDifference& row : differences) {
    out += EscapedControls(PadRight(row.place, place)) + "  " + EscapedControls(PadRight(row.former, former)) + "  " +
           EscapedControls(row.now) + "\n";
  }
  return out;
}

/// The object that is repeated.
struct FormerResult {
  const JsonValue& object;
  bool isOfDrawing = false;
};

void PrintOrigin(const FormerResult& former, const std::string& file) {
  const JsonValue& object = former.object;
  const std::string* const version = TextAt(object, "program", "version");
  const JsonValue* const name = object.Find("file");
  const std::string* const formerFile = name != nullptr ? name->As<std::string>() : nullptr;
  std::cout << "Object: made by texturon " << (version != nullptr ? EscapedControls(*version) : "(no version)")
            << " of " << (formerFile != nullptr ? EscapedControls(*formerFile) : "(no file)") << "\nHere: texturon "
            << ProgramVersion() << ", " << EscapedControls(file) << "\n";
  if (former.isOfDrawing) std::cout << "What the drawing asks for is not judged again.\n";
}

/// Analyses and compares; the exit status.
int Repeat(const FormerResult& former, const InputFile& file, ConsolePrompts& prompts, ResultRequest& result) {
  const Environment environment = SystemEnvironment();
  Document document = result.setup.document;
  prompts.BeginFile(file.name);
  if (!LoadInto(document, file, result.setup, prompts, environment)) return kExitRefused;
  const RunStep run = AnalyseRecord(document, prompts, environment);
  if (!run.loaded) {
    ComplainOf(file.name, run.cause);
    return kExitRefused;
  }
  std::optional<UncertaintyResult> uncertainty;
  if (result.uncertainty && run.ok()) {
    CatchInterrupts();
    uncertainty = FindUncertainty(document, *result.uncertainty, file.name, prompts);
    if (!uncertainty) return kExitRefused;
  }
  std::ostringstream text;
  WriteAnalysisJson(text, document, file.name, prompts.Messages(),
                    {.layout = JsonWriter::Layout::kOneLine,
                     .withProfiles = former.object.Find("profiles") != nullptr,
                     .request = &result.request,
                     .uncertaintyRequest = uncertainty ? &*result.uncertainty : nullptr,
                     .uncertainty = uncertainty ? &*uncertainty : nullptr});
  const std::string bytes = text.str();
  std::string_view rest = bytes;
  const JsonRead now = ReadJson(rest);
  if (!now.value) {
    Complain(file.name + ": the result is not read again, " + now.reason + ".");
    return kExitRefused;
  }
  const JsonComparison comparison = CompareResults(former.object, *now.value);
  PrintOrigin(former, file.name);
  const auto count = [](std::size_t number) { return IntegerText(static_cast<std::int64_t>(number)); };
  if (comparison.differences.empty()) {
    std::cout << "The same: " << count(comparison.figures) << " figures, to the bit.\n";
    return kExitDone;
  }
  std::cout << "Not the same: " << count(comparison.differences.size()) << " places.\n"
            << DifferenceTable(comparison.differences);
  Complain(file.name + " does not give the results of the object again.");
  return kExitRefused;
}

}  // namespace

int RunAgain(const AnalyzeOptions& analyze, const CommonOptions& common) {
  RefuseOptions(analyze, common);
  const ResultObjects read = ReadObjects(analyze.again);
  const std::vector<JsonValue>& objects = read.results;
  if (objects.empty()) return kExitRefused;
  const InputFile file = InputFiles(analyze.files, common).front();
  std::string digest;
  if (objects.size() > 1 && !file.isStandardInput) digest = Sha256Of(ReadRegularFile(file.path).bytes);
  const JsonValue* const object = ObjectOf(objects, digest);
  if (object == nullptr) {
    Complain(analyze.again + " holds several objects, and none of them is of the content of " + file.name + ".");
    return kExitRefused;
  }
  ResultRequest result = RequestOfObject(*object);
  if (!result.reason.empty()) {
    Complain(analyze.again + " cannot be repeated: " + result.reason + ".");
    return kExitRefused;
  }
  ConsolePrompts prompts({.answersYes = result.request.answersYes, .isQuiet = common.quiet});
  result.setup.document.settings.display.Metric = !common.imperial;
  result.setup.document.quietMode = common.quiet;
  result.setup.document.writesTraceFile = false;
  // For a drawing the core roughness is not computed where no row needs it.
  const JsonValue* const core = object->Find("rk", "valid");
  const bool hasCore = core != nullptr && core->As<bool>() != nullptr && *core->As<bool>();
  result.setup.document.wanted = {.spectrum = object->Find("profiles") != nullptr,
                                  .heightCurves = false,
                                  .coreRoughness = hasCore || !read.areOfDrawing};
  return FinishOutput(Repeat({*object, read.areOfDrawing}, file, prompts, result));
}

}  // namespace texturon
