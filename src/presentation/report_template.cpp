// SPDX-License-Identifier: Apache-2.0

#include "presentation/report_template.h"

#include <algorithm>
#include <map>

#include "base/charset.h"
#include "base/ini_file.h"
#include "base/number_text.h"
#include "base/text.h"

namespace texturon {
namespace {

using enum ReportBlockKind;

constexpr ReportBlockRow kBlocks[] = {
    {kHead, "head", "title with logo, what was measured and how", false},
    {kVerdict, "verdict", "overall verdict and the parameters with limits", false},
    {kParameters, "parameters", "all other parameters in two columns", false},
    {kProfile, "profile", "primary profile and waviness", true},
    {kRoughness, "roughness", "roughness profile", true},
    {kRecord, "record", "profile as measured", true},
    {kCurves, "curves", "bearing ratio and amplitude distribution", true},
    {kProbability, "probability", "material probability of the roughness", true},
    {kSpectrum, "spectrum", "wavelength spectrum", true},
    {kMotifs, "motifs", "motifs of the primary profile", true},
    {kStatistics, "statistics", "results of several profiles, where there are some", false},
    {kInstrument, "instrument", "the instrument's own results, where the file has some", false},
    {kSettings, "settings", "settings that differ from the defaults", false},
    {kText, "text", "free text", false},
    {kNewPage, "page", "start of a new page", false},
};

constexpr std::string_view kSection = "REPORT";
constexpr std::string_view kTitle = "Title";
constexpr std::string_view kBlock = "Block";
constexpr std::string_view kTextKey = "Text";
constexpr int kMostBlocks = 99;

std::string NameList() {
  std::string list;
  for (const ReportBlockRow& row : kBlocks) list += (list.empty() ? "" : ", ") + std::string(row.name);
  return list;
}

std::string Escaped(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (c == '\\')
      out += "\\\\";
    else if (c == '\n')
      out += "\\n";
    else
      out += c;
  }
  return out;
}

std::string Unescaped(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isEscape = text[i] == '\\' && i + 1 < text.size() && (text[i + 1] == 'n' || text[i + 1] == '\\');
    out += !isEscape ? text[i] : text[++i] == 'n' ? '\n' : '\\';
  }
  return out;
}

/// The number behind a key that begins with a word: 4 of Block04. Empty for another key.
std::optional<int> NumberBehind(std::string_view word, std::string_view key) {
  if (!StartsWithIgnoringCase(key, word)) return std::nullopt;
  const std::string_view digits = key.substr(word.size());
  if (digits.empty() || digits.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
  const ParsedInt32 number = ParseInt32(digits);
  return number.value <= kMostBlocks ? std::optional(number.value) : std::nullopt;
}

/// Takes a template together, entry by entry; the first thing that is not understood ends it.
class TemplateReader {
public:
  explicit TemplateReader(const IniFile& file) {
    for (const std::size_t line : file.StrayLines()) Refuse(line, "is neither a section nor KEY=VALUE");
    for (const IniSectionHeader& section : file.Sections()) {
      if (!EqualIgnoringCase(section.name, kSection)) {
        Refuse(section.line, Quoted(section.name) + " is no section of a template; the only one is [REPORT]");
      } else if (section.shadowed) {
        Refuse(section.line, "[REPORT] begins again");
      }
    }
    for (const IniEntry& entry : file.Entries()) Take(entry);
    for (const auto& [number, text] : texts_) {
      const auto block = blocks_.find(number);
      if (block == blocks_.end() || block->second.kind != kText) {
        Refuse(text.line, NameOf(kTextKey, number) + " belongs to no block of free text");
      }
    }
  }

  ReportTemplateRead Result() {
    if (refusedLine_) return {.report = {}, .reason = reason_};
    if (blocks_.empty()) return {.report = {}, .reason = "holds no block of a report"};
    for (auto& [number, block] : blocks_) {
      const auto text = texts_.find(number);
      if (text != texts_.end()) block.text = text->second.text;
      report_.blocks.push_back(std::move(block));
    }
    return {.report = std::move(report_), .reason = {}};
  }

private:
  struct Text {
    std::size_t line;
    std::string text;
  };

  static std::string NameOf(std::string_view word, int number) {
    return std::string(word) + IntegerText(number, 2, '0');
  }

  /// What stands first in the file is told.
  void Refuse(std::size_t line, const std::string& reason) {
    if (refusedLine_ && *refusedLine_ <= line) return;
    refusedLine_ = line;
    reason_ = "line " + IntegerText(static_cast<std::int64_t>(line)) + ": " + reason;
  }

  void Take(const IniEntry& entry) {
    if (!EqualIgnoringCase(entry.section, kSection)) {
      if (entry.section.empty()) Refuse(entry.line, Quoted(entry.key) + " stands before [REPORT]");
      return;
    }
    if (entry.shadowed) return Refuse(entry.line, Quoted(entry.key) + " occurs again");
    if (EqualIgnoringCase(entry.key, kTitle)) {
      report_.title = std::string(entry.value);
    } else if (const auto block = NumberBehind(kBlock, entry.key)) {
      TakeBlock(entry, *block);
    } else if (const auto text = NumberBehind(kTextKey, entry.key)) {
      if (!texts_.emplace(*text, Text{entry.line, Unescaped(entry.value)}).second) {
        Refuse(entry.line, NameOf(kTextKey, *text) + " occurs again");
      }
    } else {
      Refuse(entry.line, Quoted(entry.key) +
                             " is no key of a template; they are Title, Block01 to Block99 and Text01 to "
                             "Text99");
    }
  }

  void TakeBlock(const IniEntry& entry, int number) {
    const ReportBlockRow* const row = FindReportBlock(entry.value);
    if (row == nullptr) {
      return Refuse(entry.line, Quoted(entry.value) + " is no block of a report; blocks are " + NameList());
    }
    if (!blocks_.emplace(number, ReportBlock{row->kind}).second) {
      Refuse(entry.line, NameOf(kBlock, number) + " occurs again");
    }
  }

  ReportTemplate report_;
  std::map<int, ReportBlock> blocks_;
  std::map<int, Text> texts_;
  std::optional<std::size_t> refusedLine_;
  std::string reason_;
};

/// The first line in which a character has become a question mark; 0: none.
std::size_t LineOfLoss(std::string_view bytes, std::string_view text) {
  std::size_t line = 1;
  while (!bytes.empty() || !text.empty()) {
    const auto take = [](std::string_view& rest) {
      const std::string_view taken = rest.substr(0, rest.find('\n'));
      rest.remove_prefix(std::min(taken.size() + 1, rest.size()));
      return std::count(taken.begin(), taken.end(), '?');
    };
    if (take(bytes) != take(text)) return line;
    ++line;
  }
  return 0;
}

}  // namespace

std::span<const ReportBlockRow> ReportBlocks() {
  return kBlocks;
}

const ReportBlockRow& ReportBlockOf(ReportBlockKind kind) {
  return kBlocks[static_cast<std::size_t>(kind)];
}

const ReportBlockRow* FindReportBlock(std::string_view name) {
  const auto* const row = std::find_if(std::begin(kBlocks), std::end(kBlocks), [name](const ReportBlockRow& candidate) {
    return EqualIgnoringCase(candidate.name, name);
  });
  return row != std::end(kBlocks) ? row : nullptr;
}

bool ReportTemplate::Has(ReportBlockKind kind) const {
  return std::any_of(blocks.begin(), blocks.end(), [kind](const ReportBlock& block) { return block.kind == kind; });
}

ReportTemplate DefaultReportTemplate() {
  ReportTemplate report;
  for (const ReportBlockKind kind : {kHead, kVerdict, kProfile, kRoughness, kNewPage, kStatistics, kParameters,
                                     kInstrument, kRecord, kCurves, kProbability, kSpectrum, kSettings}) {
    report.blocks.push_back({kind});
  }
  return report;
}

std::string ReportTemplateText(const ReportTemplate& report) {
  IniFile file;
  file.Set(kSection, kTitle, report.title);
  int number = 0;
  for (const ReportBlock& block : report.blocks) {
    const std::string digits = IntegerText(++number, 2, '0');
    file.Set(kSection, std::string(kBlock) + digits, ReportBlockOf(block.kind).name);
    if (block.kind == kText) file.Set(kSection, std::string(kTextKey) + digits, Escaped(block.text));
  }
  return file.Bytes();
}

ReportTemplateRead ReadReportTemplate(std::string_view bytes) {
  const std::string text = TextOfFile(bytes, IsUtf8(bytes));
  if (const std::size_t line = LineOfLoss(bytes, text); line != 0) {
    return {.report = {},
            .reason = "line " + IntegerText(static_cast<std::int64_t>(line)) +
                      ": holds a character that a report cannot have, none of Windows-1252"};
  }
  return TemplateReader(IniFile(text)).Result();
}

}  // namespace texturon
