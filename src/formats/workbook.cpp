// SPDX-License-Identifier: Apache-2.0

#include "formats/workbook.h"

#include <algorithm>
#include <utility>

#include "base/charset.h"
#include "base/number_text.h"
#include "base/text.h"
#include "formats/text_lines.h"
#include "formats/xml_reader.h"

namespace texturon {
namespace {

constexpr std::size_t kMostUnpacked = 100'000'000;
constexpr std::size_t kMostSheets = 256;
constexpr std::size_t kMostTexts = 1'000'000;
constexpr std::size_t kMostRows = 1'048'576;
constexpr std::size_t kMostColumns = 256;
constexpr std::size_t kLongestText = 256;
constexpr std::string_view kFolder = "xl/";

struct Place {
  std::size_t row = 0, column = 0;
};

/// "F12"; nothing where it is none, or beyond what is read.
std::optional<Place> PlaceOf(std::string_view text) {
  std::size_t column = 0;
  std::size_t letters = 0;
  for (; letters < text.size() && text[letters] >= 'A' && text[letters] <= 'Z' && letters < 3; ++letters) {
    column = column * 26 + static_cast<std::size_t>(text[letters] - 'A') + 1;
  }
  const std::int32_t row = ParseInt32(text.substr(letters)).value;
  if (column == 0 || column > kMostColumns || row < 1 || static_cast<std::size_t>(row) > kMostRows) return std::nullopt;
  return Place{static_cast<std::size_t>(row) - 1, column - 1};
}

/// A target as the name of a part: absolute, or beside the workbook.
std::string PartOf(std::string_view target) {
  if (target.starts_with('/')) return std::string(target.substr(1));
  return std::string(kFolder) + std::string(target);
}

}  // namespace

Workbook::Workbook(std::string_view bytes) : archive_(bytes), reason_(archive_.reason()) {
  if (!reason_.empty()) return;
  const auto workbook = XmlOf("xl/workbook.xml");
  const auto relations = XmlOf("xl/_rels/workbook.xml.rels");
  if (reason_.empty() && (!workbook || !relations)) reason_ = "the container holds no workbook";
  if (!reason_.empty()) return;
  ReadSheets(*workbook, *relations);
  if (reason_.empty() && sheets_.empty()) reason_ = "the workbook has no sheets";
  const auto texts = reason_.empty() ? XmlOf("xl/sharedStrings.xml") : std::nullopt;
  if (texts) ReadTexts(*texts);
}

/// A part as Windows-1252 text; nothing where there is none, and the reason where it is damaged.
std::optional<std::string> Workbook::XmlOf(std::string_view part) {
  const ZipArchive::Entry* const entry = archive_.Find(part);
  if (entry == nullptr) return std::nullopt;
  ZipArchive::Content content = ZipArchive::Unpack(*entry, kMostUnpacked - unpacked_);
  unpacked_ += content.bytes.size();
  if (!content.ok()) reason_ = content.reason;
  std::string storage;
  const std::string_view plain = PlainText(content.bytes, storage);
  if (plain.data() == content.bytes.data() && plain.size() == content.bytes.size()) return std::move(content.bytes);
  return std::string(plain);
}

void Workbook::ReadSheets(std::string_view workbook, std::string_view relations) {
  std::vector<std::pair<std::string, std::string>> targets;
  XmlReader links(relations);
  auto event = links.Next();
  for (; event != XmlReader::Event::kDone && event != XmlReader::Event::kWrong; event = links.Next()) {
    const bool isLink = event == XmlReader::Event::kBegin && links.name() == "Relationship";
    if (isLink && targets.size() < 4 * kMostSheets)
      targets.emplace_back(links.Attribute("Id"), links.Attribute("Target"));
  }
  if (event == XmlReader::Event::kWrong) reason_ = "its relations are not well-formed: " + links.reason();
  XmlReader list(workbook);
  for (event = list.Next(); event != XmlReader::Event::kDone && event != XmlReader::Event::kWrong;
       event = list.Next()) {
    if (event != XmlReader::Event::kBegin || list.name() != "sheet" || sheets_.size() == kMostSheets) continue;
    const std::string id = list.Attribute("id");
    const auto target = std::find_if(targets.begin(), targets.end(), [&id](const auto& t) { return t.first == id; });
    if (target != targets.end()) sheets_.push_back({list.Attribute("name"), PartOf(target->second)});
  }
  if (event == XmlReader::Event::kWrong) reason_ = "its list of sheets is not well-formed: " + list.reason();
}

/// Each "si" is one text, in one "t" or in several with a look of their own; phonetic ones are none of it.
void Workbook::ReadTexts(std::string_view xml) {
  XmlReader reader(xml);
  bool isText = false;
  bool isPhonetic = false;
  for (;;) {
    switch (reader.Next()) {
      case XmlReader::Event::kBegin:
        if (reader.name() == "rPh") isPhonetic = true;
        isText = reader.name() == "t" && !isPhonetic;
        break;
      case XmlReader::Event::kText:
        if (isText) texts_ += reader.piece();
        break;
      case XmlReader::Event::kEnd:
        isText = false;
        if (reader.name() == "rPh") isPhonetic = false;
        if (reader.name() == "si") textEnds_.push_back(static_cast<std::uint32_t>(texts_.size()));
        if (textEnds_.size() > kMostTexts) reason_ = "it has more than a million texts";
        if (!reason_.empty()) return;
        break;
      case XmlReader::Event::kDone:
        return;
      case XmlReader::Event::kWrong:
        reason_ = "its texts are not well-formed: " + reader.reason();
        return;
    }
  }
}

std::string_view Workbook::TextAt(std::string_view index) const {
  const ParsedInt32 parsed = ParseInt32(index);
  const auto i = static_cast<std::size_t>(std::max(parsed.value, 0));
  if (!parsed.found() || i >= textEnds_.size()) return {};
  const std::size_t begin = i == 0 ? 0 : textEnds_[i - 1];
  return std::string_view(texts_).substr(begin, textEnds_[i] - begin);
}

const Workbook::Sheet* Workbook::Find(std::string_view name) const {
  const auto found = std::find_if(sheets_.begin(), sheets_.end(),
                                  [name](const Sheet& sheet) { return EqualIgnoringCase(sheet.name, name); });
  return found != sheets_.end() ? &*found : nullptr;
}

Workbook::SheetXml Workbook::Unpack(const Sheet& sheet) {
  auto xml = XmlOf(sheet.part);
  SheetXml result{.reason = std::exchange(reason_, {})};
  if (!xml && result.reason.empty()) result.reason = "the container holds no " + Quoted(OnOneLine(sheet.part));
  if (result.reason.empty()) result.text = std::move(*xml);
  return result;
}

std::string Workbook::ForEachCell(std::string_view xml, const std::function<bool(const SheetCell&)>& use) const {
  XmlReader reader(xml);
  SheetCell cell;
  std::size_t rows = 0;    // begun, with the one that is open
  std::size_t column = 0;  // of the next cell
  std::string type;
  std::string text;
  bool isValue = false;
  for (;;) {
    switch (reader.Next()) {
      case XmlReader::Event::kBegin:
        if (reader.name() == "row") {
          const std::int32_t stated = ParseInt32(reader.Attribute("r")).value;
          rows = stated > 0 ? static_cast<std::size_t>(stated) : rows + 1;
          column = 0;
        } else if (reader.name() == "c") {
          const std::string place = reader.Attribute("r");
          const auto at = place.empty() ? Place{rows - 1, column} : PlaceOf(place);
          if (!at || at->row >= kMostRows || at->column >= kMostColumns) {
            return "the place " + Quoted(OnOneLine(place)) + " of a cell lies beyond 256 columns or the last row";
          }
          cell = {.row = at->row, .column = at->column};
          column = at->column + 1;
          type = reader.Attribute("t");
          text.clear();
        }
        isValue = reader.name() == "v" || (reader.name() == "t" && type == "inlineStr");
        break;
      case XmlReader::Event::kText:
        if (isValue && text.size() < kLongestText) text += reader.piece().substr(0, kLongestText - text.size());
        break;
      case XmlReader::Event::kEnd:
        isValue = false;
        if (reader.name() != "c" || text.empty()) break;
        cell.text = type == "s" ? TextAt(text).substr(0, kLongestText) : text;
        cell.isNumber = (type.empty() || type == "n") && NumberField(text).has_value();
        if (!use(cell)) return {};
        break;
      case XmlReader::Event::kDone:
        return {};
      case XmlReader::Event::kWrong:
        return "it is not well-formed: " + reader.reason();
    }
  }
}

}  // namespace texturon
