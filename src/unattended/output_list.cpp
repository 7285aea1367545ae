// SPDX-License-Identifier: Apache-2.0

#include "unattended/output_list.h"

#include <chrono>
#include <optional>

#include "base/number_text.h"
#include "export/parameter_file.h"
#include "platform/append_file.h"
#include "platform/platform.h"
#include "unattended/batch_outputs.h"
#include "unattended/file_mark.h"

namespace texturon {
namespace {

struct KindOfFile {
  OutputList::Kind kind;
  std::string_view word;
  bool (*isSuch)(const std::filesystem::path& path);
};

constexpr KindOfFile kKinds[] = {
    {OutputList::Kind::kRows, "rows\t",
     [](const std::filesystem::path& path) { return NoParameterFile(path).empty(); }},
    {OutputList::Kind::kFailures, "failures\t", IsFailuresFile},
    {OutputList::Kind::kSummary, "summary\t", IsSummaryFile},
    {OutputList::Kind::kQdas, "statistics\t", IsQdasFile},
    {OutputList::Kind::kProvenance, "provenance\t", IsProvenanceFile},
};

std::string Marks(std::uint64_t size, std::uint64_t mark) {
  return IntegerText(static_cast<std::int64_t>(size)) + "\t" + IntegerText(static_cast<std::int64_t>(mark)) + "\t";
}

std::string NameOf(const std::filesystem::path& file) {
  return EscapedName(SystemTextFromPath(file.filename()));
}

}  // namespace

OutputList::OutputList(const std::filesystem::path& folder) : path_(folder / ".texturon-outputs") {
  // Whoever wrote the list: it leaves out only what it describes to the byte.
  const FileBytes list = ReadRegularFile(path_);
  std::string_view rest = list.bytes;
  while (const auto line = TakeLine(rest)) {
    const bool hasMark = line->find_first_of("0123456789") == 0;
    std::size_t tab = line->find('\t');
    if (hasMark && tab != std::string_view::npos) tab = line->find('\t', tab + 1);
    if (tab == std::string_view::npos) continue;
    lines_.emplace(*line);
    marksOfName_.emplace(UnescapedName(line->substr(tab + 1)), line->substr(0, tab + 1));
  }
}

bool OutputList::Holds(const std::filesystem::path& file) const {
  const std::lock_guard lock(mutex_);
  const auto [begin, end] = marksOfName_.equal_range(SystemTextFromPath(file.filename()));
  std::optional<std::string> marks;
  for (auto entry = begin; entry != end; ++entry) {
    for (const KindOfFile& kind : kKinds) {
      if (entry->second == kind.word && kind.isSuch(file)) return true;
    }
    const auto stamp = marks ? std::nullopt : StampOf(file);
    if (stamp && entry->second.starts_with(IntegerText(static_cast<std::int64_t>(stamp->size)) + "\t")) {
      const auto mark = ContentMarkOf(file);
      marks = mark ? Marks(stamp->size, *mark) : std::string();
    }
    if (marks && entry->second == *marks) return true;
  }
  return false;
}

std::string OutputList::NoteProfile(const std::filesystem::path& file, std::string_view text) {
  return Note(Marks(text.size(), ContentMark(text)) + NameOf(file));
}

std::string OutputList::NoteFile(const std::filesystem::path& file, Kind kind) {
  return Note(std::string(kKinds[static_cast<std::size_t>(kind)].word) + NameOf(file));
}

std::string OutputList::Note(const std::string& line) {
  const std::lock_guard lock(mutex_);
  if (hasComplained_ || lines_.contains(line)) return {};
  const auto list = WaitForAppendFile(path_, std::chrono::seconds(10), {}, AppendFile::Name::kOwn);
  FileOutcome outcome = list->outcome();
  if (list->state() == AppendFile::State::kInUse) outcome.reason = "is in use";
  if (outcome.ok()) outcome = list->Append((list->endsInsideLine() ? "\n" : "") + line + "\n");
  hasComplained_ = !outcome.ok();
  if (outcome.ok()) lines_.insert(line);
  return outcome.ok() ? std::string()
                      : FileSentence(path_, outcome.reason +
                                                ", so that a later batch of its folder will take what "
                                                "this one writes there for measurements");
}

}  // namespace texturon
