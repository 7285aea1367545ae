// SPDX-License-Identifier: Apache-2.0

#include "unattended/batch_outputs.h"

#include <algorithm>
#include <fstream>
#include <optional>
#include <system_error>

#include "base/charset.h"
#include "base/text.h"
#include "platform/platform.h"

namespace texturon {
namespace {

std::string EscapedPath(const std::filesystem::path& file) {
  const std::string text = SystemTextFromPath(file);
  if constexpr (std::filesystem::path::preferred_separator == '\\') return text;
  std::string escaped;
  for (const char c : text) {
    constexpr std::string_view kEscaped = "\t\n\r\\";
    const std::size_t found = kEscaped.find(c);
    if (found != std::string_view::npos) escaped += '\\';
    escaped += found == std::string_view::npos ? c : "tnr\\"[found];
  }
  return escaped;
}

/// The first bytes of a regular file; nothing for anything else that is there.
std::optional<std::string> StartOf(const std::filesystem::path& path) {
  std::error_code error;
  if (!std::filesystem::exists(path, error)) return std::string();
  if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
  std::string start(4096, '\0');
  std::ifstream file(path, std::ios::binary);
  file.read(start.data(), static_cast<std::streamsize>(start.size()));
  start.resize(static_cast<std::size_t>(file.gcount()));
  return start;
}

}  // namespace

std::string FailureLine(const std::filesystem::path& file, std::string_view reason) {
  std::string sentence = OnOneLine(Utf8FromWindows1252(reason));
  std::replace(sentence.begin(), sentence.end(), '\t', ' ');
  return EscapedPath(file) + "\t" + sentence + "\n";
}

bool IsFailuresFile(const std::filesystem::path& path) {
  const auto start = StartOf(path);
  if (!start || start->empty()) return start.has_value();
  const std::string_view line = std::string_view(*start).substr(0, start->find('\n'));
  const std::size_t tab = line.find('\t');
  if (tab == 0 || tab == std::string_view::npos) return false;
  // The reason is a sentence about the file, or about what is made of it: it holds the end of its name, as far as both
  // spell it alike.
  const std::string_view name = line.substr(0, tab);
  const std::string_view reason = line.substr(tab + 1);
  std::size_t alike = name.size();
  const auto isSpeltAlike = [](char c) { return c >= ' ' && c <= '~' && c != '?' && c != '\\' && c != '/'; };
  while (alike > 0 && isSpeltAlike(name[alike - 1])) --alike;
  if (alike > 0 && alike < name.size() && name[alike - 1] == '\\') ++alike;  // the letter of an escape
  return reason.find(name.substr(alike)) != std::string_view::npos && reason.find(' ') != std::string_view::npos &&
         reason.ends_with('.');
}

bool IsSummaryFile(const std::filesystem::path& path) {
  const auto start = StartOf(path);
  return start && (start->empty() || (start->starts_with("\"Files\", ") && start->find("\r\n\"Failed\", ") < 64));
}

std::filesystem::path ProvenanceFileOf(const std::filesystem::path& parameterFile) {
  std::filesystem::path companion = parameterFile;
  return companion += ".provenance.json";
}

bool IsProvenanceFile(const std::filesystem::path& path) {
  const auto start = StartOf(path);
  return start && (start->empty() || start->starts_with(kProvenanceStart));
}

bool IsQdasFile(const std::filesystem::path& path) {
  const auto start = StartOf(path);
  return start && (start->empty() || (start->starts_with("K0100 ") && start->find("\r\nK1001/1 ") < 64));
}

}  // namespace texturon
