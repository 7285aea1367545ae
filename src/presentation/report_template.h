// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace texturon {

/// What a report is made of.
enum class ReportBlockKind : std::uint8_t {
  kHead,
  kVerdict,
  kParameters,
  kProfile,
  kRoughness,
  kRecord,
  kCurves,
  kProbability,
  kSpectrum,
  kMotifs,
  kStatistics,
  kInstrument,
  kSettings,
  kText,
  kNewPage,
};

struct ReportBlockRow {
  ReportBlockKind kind;
  std::string_view name;     ///< in template files
  std::string_view meaning;  ///< for people who choose
  bool isPicture;            ///< a curve: one picture, which can also be had by itself
};

/// Every kind of block, in the order of the enumeration.
std::span<const ReportBlockRow> ReportBlocks();
const ReportBlockRow& ReportBlockOf(ReportBlockKind kind);
/// By its name, in any case; null for none.
const ReportBlockRow* FindReportBlock(std::string_view name);

struct ReportBlock {
  ReportBlockKind kind;
  std::string text = {};  ///< of free text; lines end with \n

  bool operator==(const ReportBlock&) const = default;
};

/// What a report holds, in which order. Texts are Windows-1252.
struct ReportTemplate {
  std::string title = "Surface Texture Report";
  std::vector<ReportBlock> blocks;

  bool Has(ReportBlockKind kind) const;
  bool operator==(const ReportTemplate&) const = default;
};

/// Verdict and rows with limits first, then the curves, all other rows, settings.
ReportTemplate DefaultReportTemplate();

/// As a template file: section REPORT with Title, Block01, Block02 ... and Text of the same number for free text, in
/// which \n is a new line and \\ a backslash.
std::string ReportTemplateText(const ReportTemplate& report);

struct ReportTemplateRead {
  std::optional<ReportTemplate> report;
  std::string reason;  ///< why not, with the line, going on where the file's name stops; Windows-1252
};

/// Reads a template file; UTF-8 and Windows-1252 are told apart. Blocks stand in the order of their numbers, which may
/// have gaps. Anything that is not understood refuses the whole.
ReportTemplateRead ReadReportTemplate(std::string_view bytes);

}  // namespace texturon
