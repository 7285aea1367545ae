// SPDX-License-Identifier: Apache-2.0

#include "formats/workbook_profile.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

#include "base/number_text.h"
#include "base/text.h"
#include "base/units.h"
#include "formats/column_text.h"
#include "formats/even_spacing.h"
#include "formats/instrument_results.h"
#include "formats/profile_choice.h"
#include "formats/reader_questions.h"
#include "formats/text_lines.h"
#include "formats/workbook.h"
#include "formats/zip_archive.h"
#include "platform/platform.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

constexpr std::string_view kCompound = "\xD0\xCF\x11\xE0";

// Of a hand tester.
constexpr std::string_view kCertificateSheet = "Certificate";
constexpr std::string_view kDataSheet = "DATA";
constexpr std::size_t kResults = 0;     // column A: "Ra     3.308  um"
constexpr std::size_t kConditions = 1;  // column B
constexpr std::size_t kPositionsMM = 4;
constexpr std::size_t kHeightsUM = 5;
constexpr SheetCell kDatePlace{.row = 1, .column = 4};

ReadResult RefuseWorkbook(const ReaderInput& input, std::string_view reason) {
  return Refuse(input, "The workbook is not read: " + std::string(reason) + ".");
}

void WarnOfCurve(std::string_view curve, ImportedProfile& profile) {
  if (curve.empty() || curve == "P") return;
  std::string warning = "the heights are those of the " + OnOneLine(curve) + " profile";
  if (std::find(profile.warnings.begin(), profile.warnings.end(), warning) == profile.warnings.end()) {
    profile.warnings.push_back(std::move(warning));
  }
}

/// Name, date, curve and results: pairs of a label and the value on its right.
void ReadCertificate(Workbook& workbook, ImportedProfile& profile) {
  const auto* const sheet = workbook.Find(kCertificateSheet);
  const Workbook::SheetXml xml = workbook.Unpack(*sheet);
  std::string label;
  SheetCell labelCell;
  workbook.ForEachCell(xml.text, [&](const SheetCell& cell) {
    if (cell.row == kDatePlace.row && cell.column == kDatePlace.column) profile.date = TrimBlanks(cell.text);
    const bool isValue = !label.empty() && cell.row == labelCell.row && cell.column == labelCell.column + 1;
    const std::string_view text = TrimBlanks(cell.text);
    if (isValue && label == "Work Name") profile.identification = text;
    if (isValue && label == "Profile") WarnOfCurve(text, profile);
    if (isValue) AddInstrumentPair(profile, label, text);
    label = isValue ? std::string_view{} : text;
    labelCell = cell;
    return true;
  });
}

ReadResult ReadTester(const ReaderInput& input, Workbook& workbook, ImportedProfile& profile) {
  ReadCertificate(workbook, profile);
  const Workbook::SheetXml xml = workbook.Unpack(*workbook.Find(kDataSheet));
  if (!xml.reason.empty()) return RefuseWorkbook(input, xml.reason);
  constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();
  Trace trace;
  std::optional<std::size_t> row;  // of the last point
  bool isFull = false;
  const std::string wrong = workbook.ForEachCell(xml.text, [&](const SheetCell& cell) {
    if (cell.column == kResults) AddInstrumentValue(profile, TrimBlanks(cell.text));
    if (cell.column == kConditions && cell.text.starts_with("CUV "))
      WarnOfCurve(TrimBlanks(cell.text.substr(4)), profile);
    if (!cell.isNumber || (cell.column != kPositionsMM && cell.column != kHeightsUM)) return true;
    if (row != cell.row) {
      isFull = trace.xUM.size() == static_cast<std::size_t>(kPointCapacity);
      if (isFull) return false;
      trace.xUM.push_back(kMissing);
      trace.zUM.push_back(kMissing);
      row = cell.row;
    }
    const double number = NumberField(cell.text).value_or(kMissing);
    if (cell.column == kPositionsMM) {
      trace.xUM.back() = number * kMicrometresPerMillimetre;
    } else {
      trace.zUM.back() = number;
    }
    return true;
  });
  if (!wrong.empty()) return RefuseWorkbook(input, "sheet \"DATA\": " + wrong);
  if (isFull) return RefuseWorkbook(input, "there are more than 750 000 points");
  if (trace.zUM.empty()) return RefuseWorkbook(input, "columns E and F of the sheet \"DATA\" hold no profile");
  profile.spacingSource = "column E of the sheet DATA";
  const EvenOutcome even = MakeEven(std::move(trace), profile);
  if (even.ok()) return ReadResult::Read();
  return RefuseWorkbook(input, "columns E and F of the sheet \"DATA\": " + even.reason);
}

/// Rows of a sheet that hold numbers; what is wrong with it.
std::size_t RowsOfNumbers(const Workbook& workbook, std::string_view xml, std::string& wrong) {
  std::size_t count = 0;
  std::size_t row = 0;
  std::size_t numbers = 0;
  wrong = workbook.ForEachCell(xml, [&](const SheetCell& cell) {
    if (cell.row != row) numbers = 0;
    row = cell.row;
    if (cell.isNumber && ++numbers == 1) ++count;
    return true;
  });
  return count;
}

/// A sheet as a text: a line a row, tabs between the cells. Empty where it would grow beyond the sheet's own XML, as
/// long texts in many cells can make it.
std::string TextOfSheet(const Workbook& workbook, std::string_view xml) {
  constexpr std::size_t kSlack = 65'536;
  const std::size_t most = xml.size() + kSlack;
  std::string text;
  text.reserve(most);
  std::size_t row = 0;
  std::size_t column = 0;
  std::size_t widest = 0;
  const std::string wrong = workbook.ForEachCell(xml, [&](const SheetCell& cell) {
    const bool isBack = cell.row < row || (cell.row == row && cell.column < column);
    const std::size_t tabs = cell.column - (cell.row > row ? 0 : std::min(column, cell.column));
    const std::size_t lines = cell.row - std::min(row, cell.row);
    if (isBack || text.size() + lines + tabs + widest + cell.text.size() > most) {
      text.clear();
      return false;
    }
    // Cells at the end of a row that are not there are empty ones.
    if (lines > 0) text.append(widest - std::min(widest, column), '\t');
    text.append(lines, '\n');
    text.append(tabs, '\t');
    std::transform(cell.text.begin(), cell.text.end(), std::back_inserter(text),
                   [](char c) { return static_cast<unsigned char>(c) < ' ' ? ' ' : c; });
    row = cell.row;
    column = cell.column;
    widest = std::max(widest, column);
    return true;
  });
  return wrong.empty() ? text : std::string();
}

ReadResult ReadTable(const ReaderInput& input, Workbook& workbook, ImportedProfile& profile) {
  constexpr std::size_t kFewestRows = 3;
  std::vector<const Workbook::Sheet*> filled;
  std::string wrong;
  std::string only;  // the first that is filled, so that it is not unpacked twice where it is the only one
  for (const Workbook::Sheet& sheet : workbook.sheets()) {
    Workbook::SheetXml xml = workbook.Unpack(sheet);
    if (!xml.reason.empty()) return RefuseWorkbook(input, xml.reason);
    if (RowsOfNumbers(workbook, xml.text, wrong) < kFewestRows && wrong.empty()) continue;
    if (!wrong.empty()) return RefuseWorkbook(input, "sheet " + Quoted(OnOneLine(sheet.name)) + ": " + wrong);
    filled.push_back(&sheet);
    only = filled.size() == 1 ? std::move(xml.text) : std::string();
  }
  if (filled.empty()) return RefuseWorkbook(input, "none of its sheets holds a table of numbers");
  std::size_t chosen = 0;
  if (filled.size() > 1) {
    std::string reason;
    const auto name = [&filled](std::int64_t i) { return filled[static_cast<std::size_t>(i)]->name; };
    const std::string title = "Input File: " + TextFromPath(input.path.filename());
    const auto index = ChooseProfile(input, static_cast<std::int64_t>(filled.size()), title, {}, name, reason);
    if (!index) return ReadResult::Refused(reason);
    chosen = static_cast<std::size_t>(*index);
  }
  Workbook::SheetXml xml{.text = std::move(only)};
  if (filled.size() > 1) xml = workbook.Unpack(*filled[chosen]);
  if (!xml.reason.empty()) return RefuseWorkbook(input, xml.reason);
  const std::string text = TextOfSheet(workbook, xml.text);
  if (text.empty()) return RefuseWorkbook(input, "the cells of its sheet are not in order, or too large");
  ReadResult result = ReadGenericText({input.path, text, input.options, input.prompts}, profile);
  profile.decisions.insert(profile.decisions.begin(), "sheet: " + Quoted(OnOneLine(filled[chosen]->name)));
  return result;
}

}  // namespace

ReadResult ReadWorkbookProfile(const ReaderInput& input, ImportedProfile& profile) {
  if (input.bytes.starts_with(kCompound)) {
    return RefuseWorkbook(input,
                          "it is encrypted or of the old binary kind; save it as .xlsx without a password or as .csv");
  }
  if (!IsZip(input.bytes)) return ReadResult::NotRecognised("the file is no ZIP container");
  Workbook workbook(input.bytes);
  if (!workbook.reason().empty()) return RefuseWorkbook(input, workbook.reason());
  const bool isTester = workbook.Find(kCertificateSheet) != nullptr && workbook.Find(kDataSheet) != nullptr;
  return isTester ? ReadTester(input, workbook, profile) : ReadTable(input, workbook, profile);
}

ReadResult ReadSpreadsheetText(const ReaderInput& input, ImportedProfile& profile) {
  constexpr std::size_t kFirst = 1024;
  if (input.bytes.starts_with(kCompound)) {
    return RefuseWorkbook(input, "it is of the old binary kind; save it as .xlsx or .csv");
  }
  if (IsZip(input.bytes)) return ReadWorkbookProfile(input, profile);
  const std::string_view begin = input.bytes.substr(0, kFirst);
  if (TrimBlanks(begin).starts_with('<')) {
    const bool isPage = ContainsIgnoringCase(begin, "<html") || ContainsIgnoringCase(begin, "<table");
    return RefuseWorkbook(input, std::string(isPage ? "it is a web page" : "it is an XML text") +
                                     " under the name of a workbook; open it there and save it as .xlsx or .csv");
  }
  if (begin.find('\0') != std::string_view::npos) return ReadResult::NotRecognised("it is no text");
  return ReadGenericText(input, profile);
}

}  // namespace texturon
