// SPDX-License-Identifier: Apache-2.0

#include "app/provenance_companion.h"

#include "base/charset.h"
#include "base/date_text.h"
#include "export/parameter_file.h"
#include "platform/interrupt.h"
#include "platform/platform.h"
#include "unattended/batch_outputs.h"

namespace texturon {
namespace {

template <typename Members>
std::string ObjectLine(const Members& members) {
  JsonWriter json(JsonWriter::Layout::kOneLine);
  json.BeginObject();
  members(json);
  json.EndObject();
  return json.Result() + "\n";
}

}  // namespace

ProvenanceCompanion::ProvenanceCompanion(const std::filesystem::path& parameterFile, const Document& start,
                                         const RunRequest& request, const Environment& environment,
                                         const UncertaintyRequest* uncertainty) {
  if (parameterFile.empty()) return;
  path_ = ProvenanceFileOf(parameterFile);
  runLine_ = ObjectLine([&](JsonWriter& json) {
    WriteProgram(json);
    json.Key("date");
    json.Text(Utf8FromWindows1252(DateText(environment.localTime())));
    WriteRequest(json, start, request);
    if (uncertainty != nullptr) WriteUncertaintyBudget(json, *uncertainty);
  });
}

void ProvenanceCompanion::Add(const std::filesystem::path& file, const InputMark& input) {
  if (path_.empty() || hasFailed_) return;
  const std::string line = ObjectLine([&](JsonWriter& json) {
    json.Key("file");
    json.Text(SystemTextFromPath(file));
    WriteInput(json, input);
  });
  const auto objection = [](AppendFile& held) {
    const bool isOurs = held.size() == 0 || held.Read(0, kProvenanceStart.size()) == kProvenanceStart;
    return isOurs ? std::string() : std::string("is no companion of a parameter file");
  };
  const AppendOutcome appended = AppendLines(path_, {}, runLine_ + line, objection, InUse::kWait, Interrupted);
  runLine_.clear();
  hasFailed_ = !appended.written;
  if (hasFailed_) ComplainOf(SystemTextFromPath(path_), appended.reason);
}

}  // namespace texturon
