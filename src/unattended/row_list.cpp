// SPDX-License-Identifier: Apache-2.0

#include "unattended/row_list.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "base/charset.h"
#include "base/number_text.h"
#include "base/text.h"
#include "export/parameter_csv.h"
#include "export/parameter_file.h"
#include "platform/append_file.h"

namespace texturon {
namespace {

using Counts = std::unordered_map<std::string, int>;

struct Row {
  std::uint64_t mark = 0;
  std::string source;       ///< as SourceText gives it
  bool isAsWritten = true;  ///< by us; else a spreadsheet's
};

struct Entry {
  FileMark file;
  std::uint64_t row = 0;
  std::string line;
};

struct FormerRows {
  std::vector<Row> rows;
  std::uint64_t size = 0;
  std::uint64_t wholeSize = 0;  ///< where the last whole line ends; 0 for a file that has not even its header
};

std::filesystem::path ListOf(const std::filesystem::path& parameterFile) {
  std::filesystem::path name = ".";
  name += parameterFile.filename();
  name += ".texturon-done";
  return parameterFile.parent_path() / name;
}

/// A source without what a spreadsheet may take from it.
std::string SourceText(std::string_view text) {
  std::string source(text);
  std::erase(source, '"');
  source.erase(source.find_last_not_of(' ') + 1);
  return source.erase(0, std::min(source.find_first_not_of(' '), source.size()));
}

std::string SourceOf(const std::filesystem::path& file) {
  return SourceText(ParameterCsvSource(TextFromPath(file)));
}

/// The second field of a line as this program writes it.
std::optional<std::string> WrittenSource(std::string_view line) {
  constexpr std::string_view kSeparator = "\", \"";
  const std::size_t first = line.find(kSeparator);
  if (first == std::string_view::npos) return std::nullopt;
  const std::size_t begin = first + kSeparator.size();
  const std::size_t length = line.substr(begin).find("    \", \"");
  if (length == std::string_view::npos) return std::nullopt;
  return SourceText(line.substr(begin, length));
}

/// The second field of a line with this separator, quoted or not.
std::string SecondField(std::string_view line, char separator) {
  bool isQuoted = false;
  int field = 0;
  std::string source;
  for (const char c : line) {
    if (c == '"') isQuoted = !isQuoted;
    if (c == separator && !isQuoted && ++field == 2) break;
    if (field == 1 && c != separator) source += c;
    if (field == 1 && c == separator && isQuoted) source += c;
  }
  return SourceText(IsUtf8(source) ? Windows1252FromUtf8(source) : source);
}

char SeparatorOf(std::string_view titles) {
  const std::size_t begin = std::min(titles.find("Time"), titles.size());
  const std::string_view gap = titles.substr(begin, titles.find("Source") - begin);
  const std::size_t at = gap.find_first_of(",;\t");
  return at == std::string_view::npos ? ',' : gap[at];
}

FormerRows ReadRows(const std::filesystem::path& parameterFile) {
  FormerRows former;
  std::ifstream file(parameterFile, std::ios::binary);
  bool isAsWritten = true;
  char separator = ',';
  int lines = 0;
  for (std::string line; std::getline(file, line); ++lines) {
    const bool isWhole = !file.eof();
    former.size += line.size() + (isWhole ? 1 : 0);
    if (line.ends_with('\r')) line.pop_back();
    if (lines == 0) {
      isAsWritten = line.starts_with("\"Time\", ") || (!isWhole && std::string_view("\"Time\", ").starts_with(line));
      separator = SeparatorOf(line);
    }
    // A spreadsheet may leave the end of the last line out.
    if (!isWhole && isAsWritten) break;
    former.wholeSize = former.size;
    if (auto source = WrittenSource(line)) {
      former.rows.push_back({ContentMark(line), std::move(*source), true});
    } else if (lines > 1 && !isAsWritten) {
      former.rows.push_back({ContentMark(line), SecondField(line, separator), false});
    }
  }
  if (lines <= 1 && isAsWritten) former.wholeSize = 0;
  return former;
}

std::optional<Entry> ParseLine(std::string_view line) {
  Entry entry{.line = std::string(line) + "\n"};
  std::int64_t size = 0;
  std::int64_t content = 0;
  std::int64_t row = 0;
  const bool isWhole = TakeNumber(line, size) && TakeNumber(line, entry.file.stamp.time) && TakeNumber(line, content) &&
                       TakeNumber(line, row);
  if (!isWhole) return std::nullopt;
  entry.file.stamp.size = static_cast<std::uintmax_t>(size);
  entry.file.content = static_cast<std::uint64_t>(content);
  entry.row = static_cast<std::uint64_t>(row);
  entry.file.path = PathFromSystemText(UnescapedName(line));
  return entry;
}

/// Splits entries off those that have a row, and takes their rows away: by the row itself, or, of one that a
/// spreadsheet has written anew, by its source.
std::vector<Entry> EntriesWithRow(std::vector<Entry>& entries, std::vector<Row>& rows) {
  std::unordered_multimap<std::uint64_t, std::size_t> byMark;
  std::unordered_multimap<std::string, std::size_t> bySource;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    byMark.emplace(rows[i].mark, i);
    if (!rows[i].isAsWritten) bySource.emplace(rows[i].source, i);
  }
  std::vector<bool> isTaken(rows.size());
  std::vector<Entry> withRow;
  const auto split = [&](const auto& keyOf, auto& index) {
    std::erase_if(entries, [&](Entry& entry) {
      const auto [begin, end] = index.equal_range(keyOf(entry));
      auto found = end;
      for (auto row = begin; row != end; ++row) {
        if (!isTaken[row->second] && (found == end || row->second < found->second)) found = row;
      }
      if (found == end) return false;
      isTaken[found->second] = true;
      index.erase(found);
      withRow.push_back(std::move(entry));
      return true;
    });
  };
  split([](const Entry& entry) { return entry.row; }, byMark);
  split([](const Entry& entry) { return SourceOf(entry.file.path); }, bySource);
  std::size_t i = 0;
  std::erase_if(rows, [&](const Row& /*row*/) { return isTaken[i++]; });
  return withRow;
}

/// Files against entries, each of which stands for one.
class Matching {
public:
  explicit Matching(const std::vector<Entry>& entries) : entries_(entries), isTaken_(entries.size()) {
    for (std::size_t i = 0; i < entries.size(); ++i) {
      const FileMark& file = entries[i].file;
      byPath_.emplace(file.path.lexically_normal().native(), i);
      byContent_.emplace(file.content, i);
      names_.insert(file.path.filename().native());
    }
  }

  /// Takes the entry of the path itself where its content is still the one that was analysed.
  bool TakeByPath(const std::filesystem::path& file) {
    const auto [begin, end] = byPath_.equal_range(file.lexically_normal().native());
    const auto stamp = begin == end ? std::nullopt : StampOf(file);
    std::optional<std::uint64_t> content;
    for (auto candidate = begin; stamp && candidate != end; ++candidate) {
      const FileMark& former = entries_[candidate->second].file;
      if (isTaken_[candidate->second] || former.stamp.size != stamp->size) continue;
      if (former.stamp != *stamp && !content) content = ContentMarkOf(file);
      if (former.stamp == *stamp || content == former.content) return isTaken_[candidate->second] = true;
    }
    return false;
  }

  /// Takes the entry of another path with this name and content.
  bool TakeByName(const std::filesystem::path& file) {
    if (!names_.contains(file.filename().native())) return false;
    const auto content = ContentMarkOf(file);
    if (!content) return false;
    const auto [begin, end] = byContent_.equal_range(*content);
    for (auto candidate = begin; candidate != end; ++candidate) {
      const bool isFree = !isTaken_[candidate->second];
      if (isFree && entries_[candidate->second].file.path.filename() == file.filename()) {
        return isTaken_[candidate->second] = true;
      }
    }
    return false;
  }

private:
  const std::vector<Entry>& entries_;
  std::vector<bool> isTaken_;
  std::unordered_multimap<std::filesystem::path::string_type, std::size_t> byPath_;
  std::unordered_multimap<std::uint64_t, std::size_t> byContent_;
  std::unordered_set<std::filesystem::path::string_type> names_;
};

/// The files whose source has no row of those that the list does not know.
void DropBySource(RowsLeft& left, const std::vector<Row>& rows, const std::filesystem::path& parameterFile) {
  Counts rowsOf;
  for (const Row& row : rows) ++rowsOf[row.source];
  std::unordered_map<std::string, std::unordered_set<std::filesystem::path::string_type>> namesOf;
  for (const std::filesystem::path& file : left.files) {
    std::string source = SourceOf(file);
    if (rowsOf.contains(source)) namesOf[std::move(source)].insert(file.native());
  }
  std::unordered_set<std::string> told;
  std::erase_if(left.files, [&](const std::filesystem::path& file) {
    const std::string source = SourceOf(file);
    const auto found = rowsOf.find(source);
    if (found == rowsOf.end()) return false;
    const std::size_t names = namesOf[source].size();
    if (names > 1 && told.insert(source).second) {
      left.remarks.push_back(FileSentence(parameterFile, "names no file by its source " + source +
                                                             ", which stands for " +
                                                             IntegerText(static_cast<std::int64_t>(names)) +
                                                             " files without a line in the list of its "
                                                             "rows: the first are taken for those that have a row"));
    }
    return found->second-- > 0;
  });
}

/// The list, without the lines that have no row, which are dropped from the disk too.
std::vector<Entry> ReadEntries(const std::filesystem::path& parameterFile, std::vector<Row>& rows, RowsLeft& left) {
  const std::filesystem::path path = ListOf(parameterFile);
  const FileBytes list = ReadOwnFile(path);
  if (list.missing) return {};
  if (!list.ok()) {
    left.remarks.push_back(FileSentence(path, list.reason + " and is not used: files are told by the source of a row"));
    return {};
  }
  std::vector<Entry> entries;
  std::string_view rest = list.bytes;
  while (const auto line = TakeLine(rest)) {
    if (auto entry = ParseLine(*line)) entries.push_back(std::move(*entry));
  }
  std::vector<Entry> withRow = EntriesWithRow(entries, rows);
  if (entries.empty() && rest.empty()) return withRow;
  std::string text;
  for (const Entry& entry : withRow) text += entry.line;
  const FileOutcome mended = ReplaceSideFile(path, text);
  if (!mended.ok()) left.remarks.push_back(FileSentence(path, mended.reason));
  return withRow;
}

}  // namespace

std::optional<FileMark> MarkOf(const std::filesystem::path& path) {
  const auto stamp = StampOf(path);
  const auto content = stamp ? ContentMarkOf(path) : std::nullopt;
  if (!content) return std::nullopt;
  return FileMark{path, *stamp, *content};
}

std::string RowLine(const FileMark& file, std::string_view row) {
  if (row.ends_with("\r\n")) row.remove_suffix(2);
  std::string line;
  for (const auto number : {static_cast<std::int64_t>(file.stamp.size), file.stamp.time,
                            static_cast<std::int64_t>(file.content), static_cast<std::int64_t>(ContentMark(row))}) {
    line += IntegerText(number) + "\t";
  }
  return line + EscapedName(SystemTextFromPath(file.path)) + "\n";
}

RowsNoted NoteRows(const std::filesystem::path& parameterFile, std::string_view lines, bool isNewFile) {
  const std::filesystem::path path = ListOf(parameterFile);
  std::error_code ignored;
  if (isNewFile) std::filesystem::remove(path, ignored);  // of a link that somebody put there, the link
  AppendFile list(path, AppendFile::Name::kOwn);
  if (list.state() == AppendFile::State::kInUse) return {true, {"is in use"}};
  if (list.state() == AppendFile::State::kFailed) return {false, list.outcome()};
  if (!list.isOurs()) return {false, {std::string(kNotOwn)}};
  return {true, list.Append((list.endsInsideLine() ? "\n" : "") + std::string(lines))};
}

RowsLeft FilesWithoutRow(const std::vector<std::filesystem::path>& files, const std::filesystem::path& parameterFile) {
  RowsLeft left;
  // Read without the lock, which keeps readers out on some systems; then held, and read again where it has grown.
  FormerRows former;
  std::unique_ptr<AppendFile> held;
  do {
    held.reset();
    former = ReadRows(parameterFile);
    held = WaitForAppendFile(parameterFile, std::chrono::seconds(10));
  } while (held->state() == AppendFile::State::kHeld && held->size() != former.size);
  if (held->state() == AppendFile::State::kInUse) return {.reason = FileSentence(parameterFile, "is in use")};
  if (held->state() == AppendFile::State::kFailed) {
    return {.reason = FileSentence(parameterFile, held->outcome().reason)};
  }
  const std::string objection = NoParameterFile(*held);
  if (!objection.empty()) return {.reason = FileSentence(parameterFile, objection)};
  if (former.wholeSize < former.size) {
    const FileOutcome cut = held->CutTo(former.wholeSize);
    if (!cut.ok()) return {.reason = FileSentence(parameterFile, cut.reason)};
    if (former.wholeSize == 0) former.rows.clear();
  }
  const std::vector<Entry> entries = ReadEntries(parameterFile, former.rows, left);
  Matching matching(entries);
  left.files = files;
  std::erase_if(left.files, [&matching](const auto& file) { return matching.TakeByPath(file); });
  std::erase_if(left.files, [&matching](const auto& file) { return matching.TakeByName(file); });
  DropBySource(left, former.rows, parameterFile);
  return left;
}

}  // namespace texturon
