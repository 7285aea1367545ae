// SPDX-License-Identifier: Apache-2.0

#include "export/parameter_file.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <optional>
#include <string>
#include <thread>

#include "parameters/edition2021/edition_table.h"

namespace texturon {
namespace {

constexpr std::chrono::milliseconds kRetryDelay(1500);
constexpr std::string_view kInUseReason = "is in use";

constexpr std::size_t kStart = 256;  ///< bytes that hold the four titles, whatever is between them

bool IsLetterOrDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

/// The titles in their order, on one line, with marks other than letters and digits between them.
bool HasTitles(std::string_view line) {
  bool isFirst = true;
  for (const std::string_view title : {"Time", "Source", "Identification", "Settings"}) {
    const auto begin = std::find_if(line.begin(), line.end(), IsLetterOrDigit);
    const auto marks = static_cast<std::size_t>(begin - line.begin());
    line.remove_prefix(marks);
    if ((marks == 0 && !isFirst) || !line.starts_with(title)) return false;
    line.remove_prefix(title.size());
    isFirst = false;
  }
  return line.empty() || !IsLetterOrDigit(line.front());
}

std::string Objection(std::string_view start) {
  constexpr std::string_view kTitles = "\"Time\", \"Source\", \"Identification\", \"Settings\"";
  // All that a run that was killed in the middle of its first line has left.
  if (kTitles.starts_with(start) || HasTitles(start.substr(0, start.find_first_of("\r\n")))) return {};
  return "is no parameter file: its first line does not begin with Time, Source, Identification, Settings";
}

/// Which editions the columns of a line of titles are of; those of the configurable rows are of none.
struct ColumnEditions {
  bool hasOld = false;
  bool hasNew = false;
  bool hasFeatures = false;  ///< which may stand beside the rows of either

  friend bool operator==(const ColumnEditions&, const ColumnEditions&) = default;
};
ColumnEditions EditionsOf(std::string_view line) {
  constexpr std::size_t kTitlesBefore = 4;
  constexpr std::string_view kNewEnd = "/2021";
  constexpr std::string_view kOfNone[] = {"Pmr", "Rmr", "Tpa", "Tpi", "Phtp", "Rhtp"};
  ColumnEditions editions;
  std::size_t column = 0;
  while (!line.empty()) {
    std::size_t end = 0;
    for (bool isQuoted = false; end < line.size(); ++end) {
      if (line[end] == '"') isQuoted = !isQuoted;
      if (!isQuoted && (line[end] == ',' || line[end] == ';' || line[end] == '\t')) break;
    }
    std::string_view title = line.substr(0, end);
    line.remove_prefix(std::min(end + 1, line.size()));
    while (!title.empty() && (title.front() == ' ' || title.front() == '"')) title.remove_prefix(1);
    while (!title.empty() && (title.back() == ' ' || title.back() == '"')) title.remove_suffix(1);
    if (column++ < kTitlesBefore || title.empty()) continue;
    const bool isNew = title.ends_with(kNewEnd);
    if (isNew && ParseEditionName(title.substr(0, title.size() - kNewEnd.size())).feature) {
      editions.hasFeatures = true;
      continue;
    }
    const bool isOfNone = std::find(std::begin(kOfNone), std::end(kOfNone), title) != std::end(kOfNone);
    editions.hasNew = editions.hasNew || isNew;
    editions.hasOld = editions.hasOld || (!isNew && !isOfNone);
  }
  return editions;
}

constexpr std::size_t kLongestTitles = 1U << 16U;

std::string EditionObjection(std::string_view start, std::string_view header) {
  const std::size_t end = start.find_first_of("\r\n");
  if (end == std::string_view::npos) return {};
  const ColumnEditions held = EditionsOf(start.substr(0, end));
  const ColumnEditions added = EditionsOf(header.substr(0, header.find_first_of("\r\n")));
  if (held == added || (!held.hasNew && !added.hasNew && held.hasFeatures == added.hasFeatures)) return {};
  const auto named = [](const ColumnEditions& editions) {
    const std::string name = editions.hasNew && editions.hasOld
                                 ? std::string("both editions")
                                 : std::string("the edition of ") + (editions.hasNew ? "2021" : "1997");
    return name + (editions.hasFeatures ? " with features" : "");
  };
  return "has columns of " + named(held) + ", the rows are of " + named(added);
}

std::string StartOf(const std::filesystem::path& path, std::size_t length) {
  std::string start(length, '\0');
  std::ifstream file(path, std::ios::binary);
  file.read(start.data(), static_cast<std::streamsize>(start.size()));
  start.resize(static_cast<std::size_t>(file.gcount()));
  return start;
}

std::unique_ptr<AppendFile> Hold(const std::filesystem::path& path, InUse inUse, const std::function<bool()>& givesUp) {
  if (inUse == InUse::kWait) return WaitForAppendFile(path, std::chrono::hours(24 * 365), givesUp);
  auto file = std::make_unique<AppendFile>(path);
  if (file->state() != AppendFile::State::kInUse) return file;
  file.reset();
  std::this_thread::sleep_for(kRetryDelay);
  return std::make_unique<AppendFile>(path);
}

/// Commas outside quotes; nothing where a quote is open at the end.
std::optional<std::size_t> CommasOf(std::string_view line) {
  std::size_t commas = 0;
  bool isQuoted = false;
  for (const char c : line) {
    if (c == '"') isQuoted = !isQuoted;
    commas += c == ',' && !isQuoted ? 1 : 0;
  }
  return isQuoted ? std::nullopt : std::optional(commas);
}

/// Takes off a last row that was written by this program and lost its end, so that the next one does not become part of
/// it. A row that is whole but for its line end stays, and so does everything in a file of a spreadsheet.
FileOutcome CutTornRow(AppendFile& file, std::string_view header) {
  const std::string text = file.Read(0, static_cast<std::size_t>(file.size()));
  const std::size_t lastEnd = text.rfind('\n');
  if (lastEnd == std::string::npos) return header.starts_with(text) ? file.CutTo(0) : FileOutcome{};
  const std::string_view titles = std::string_view(text).substr(0, text.find('\n'));
  const auto commas = CommasOf(std::string_view(text).substr(lastEnd + 1));
  if (!titles.starts_with("\"Time\", ") || (commas && *commas >= CommasOf(titles).value_or(0))) return {};
  return file.CutTo(lastEnd + 1);
}

}  // namespace

std::string NoParameterFile(const AppendFile& file) {
  return Objection(file.Read(0, kStart));
}

std::string NoParameterFile(const std::filesystem::path& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return {};  // whoever opens it says what is wrong with it
  return Objection(StartOf(path, kStart));
}

std::string OtherEdition(const AppendFile& file, std::string_view header) {
  return EditionObjection(file.Read(0, kLongestTitles), header);
}

std::string OtherEdition(const std::filesystem::path& path, std::string_view header) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return {};
  return EditionObjection(StartOf(path, kLongestTitles), header);
}

AppendOutcome AppendLines(const std::filesystem::path& path, std::string_view header, std::string_view lines,
                          const std::function<std::string(AppendFile&)>& objection, InUse inUse,
                          const std::function<bool()>& givesUp) {
  const auto file = Hold(path, inUse, givesUp);
  if (file->state() == AppendFile::State::kInUse) return {false, std::string(kInUseReason)};
  if (file->state() == AppendFile::State::kFailed) return {false, file->outcome().reason};
  std::string reason = objection(*file);
  if (!reason.empty()) return {false, std::move(reason)};
  std::string text;
  if (file->size() == 0) text += header;
  if (file->endsInsideLine()) text += "\r\n";
  text += lines;
  const FileOutcome outcome = file->Append(text);
  return {outcome.ok(), outcome.reason};
}

AppendOutcome AppendToParameterFile(const std::filesystem::path& path, std::string_view header, std::string_view rows,
                                    InUse inUse, const std::function<bool()>& givesUp,
                                    const std::function<FileOutcome(const AppendFile& file)>& before) {
  const auto objection = [&](AppendFile& file) {
    std::string reason = header.empty() ? std::string() : NoParameterFile(file);
    if (reason.empty() && !header.empty()) reason = OtherEdition(file, header);
    if (reason.empty() && !header.empty() && file.endsInsideLine()) reason = CutTornRow(file, header).reason;
    return reason.empty() && before ? before(file).reason : reason;
  };
  return AppendLines(path, header, rows, objection, inUse, givesUp);
}

AppendOutcome AppendParameters(const std::filesystem::path& path, std::string_view header, std::string_view row,
                               Prompts& prompts) {
  AppendOutcome outcome = AppendToParameterFile(path, header, row, InUse::kRetryOnce);
  if (outcome.written) return outcome;
  if (outcome.reason == kInUseReason) {
    prompts.ShowMessage(TextFromPath(path.filename()) + ":  File is in use - parameters not written.");
  } else {
    prompts.ShowMessage(FileSentence(path, outcome.reason));
  }
  return outcome;
}

}  // namespace texturon
