// SPDX-License-Identifier: Apache-2.0

#include "formats/xml_reader.h"

#include <algorithm>
#include <charconv>

#include "base/charset.h"
#include "base/text.h"
#include "formats/text_lines.h"

namespace texturon {
namespace {

constexpr std::size_t kMostDepth = 64;
constexpr std::string_view kBlanks = " \t\r\n";

bool IsNameSign(char c) {
  const char lower = LowerAscii(c);
  return (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '-' || c == '.' || c == ':' ||
         static_cast<unsigned char>(c) >= 0x80;
}

std::string_view WithoutPrefix(std::string_view name) {
  return name.substr(name.rfind(':') + 1);
}

struct Entity {
  std::string_view name;
  char sign;
};

constexpr Entity kEntities[] = {{"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"apos", '\''}, {"quot", '"'}};

/// Appends what an entity stands for; false: it is not known.
bool AppendEntity(std::string_view entity, std::string& text) {
  for (const Entity& known : kEntities) {
    if (entity != known.name) continue;
    text += known.sign;
    return true;
  }
  if (!entity.starts_with('#')) return false;
  const bool isHex = entity.starts_with("#x");
  const std::string_view digits = entity.substr(isHex ? 2 : 1);
  std::uint32_t point = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), point, isHex ? 16 : 10);
  if (error != std::errc{} || end != digits.data() + digits.size() || point == 0 || point > 0x10FFFF) return false;
  const auto part = [point](int shift) { return static_cast<char>(0x80 | (point >> shift & 0x3F)); };
  std::string utf8;
  if (point < 0x80) {
    utf8 = {static_cast<char>(point)};
  } else if (point < 0x800) {
    utf8 = {static_cast<char>(0xC0 | point >> 6), part(0)};
  } else if (point < 0x10000) {
    utf8 = {static_cast<char>(0xE0 | point >> 12), part(6), part(0)};
  } else {
    utf8 = {static_cast<char>(0xF0 | point >> 18), part(12), part(6), part(0)};
  }
  text += TextOfFile(utf8, true);
  return true;
}

}  // namespace

XmlReader::Event XmlReader::Wrong(std::string_view what) {
  wrong_ = what;
  return Event::kWrong;
}

std::string XmlReader::reason() const {
  const std::string_view before = text_.substr(0, at_);
  return AtLine(static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')) + 1, wrong_);
}

void XmlReader::SkipBlanks() {
  at_ = std::min(text_.find_first_not_of(kBlanks, at_), text_.size());
}

std::string_view XmlReader::TakeName() {
  const std::size_t begin = at_;
  while (at_ < text_.size() && IsNameSign(text_[at_])) ++at_;
  return text_.substr(begin, at_ - begin);
}

bool XmlReader::SkipMarkup(std::string_view begin, std::string_view end) {
  const std::size_t found = text_.find(end, at_ + begin.size());
  if (found == std::string_view::npos) return false;
  at_ = found + end.size();
  return true;
}

bool XmlReader::SkipDocumentType() {
  char quote = '\0';
  bool inside = false;  // the brackets of declarations
  for (; at_ < text_.size(); ++at_) {
    const char c = text_[at_];
    if (quote != '\0') {
      if (c == quote) quote = '\0';
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '[' || c == ']') {
      inside = c == '[';
    } else if (c == '>' && !inside) {
      ++at_;
      return true;
    }
  }
  return false;
}

XmlReader::Event XmlReader::Next() {
  if (!wrong_.empty()) return Event::kWrong;
  if (endsEmpty_) {
    endsEmpty_ = false;
    open_.pop_back();
    return Event::kEnd;
  }
  while (at_ < text_.size()) {
    const std::string_view rest = text_.substr(at_);
    if (!rest.starts_with('<')) {
      if (!open_.empty()) return TakeText();
      SkipBlanks();
      if (at_ < text_.size() && text_[at_] != '<') return Wrong("there is text outside the root element");
    } else if (rest.starts_with("<?")) {
      if (!SkipMarkup("<?", "?>")) return Wrong("a processing instruction is not closed");
    } else if (rest.starts_with("<!--")) {
      if (!SkipMarkup("<!--", "-->")) return Wrong("a comment is not closed");
    } else if (rest.starts_with("<![CDATA[")) {
      const std::size_t begin = at_ + 9;
      if (open_.empty() || !SkipMarkup("<![CDATA[", "]]>")) return Wrong("a CDATA section is not closed");
      piece_ = text_.substr(begin, at_ - 3 - begin);
      return Event::kText;
    } else if (rest.starts_with("<!DOCTYPE") && !hadRoot_) {
      if (!SkipDocumentType()) return Wrong("the DOCTYPE is not closed");
    } else {
      return rest.starts_with("</") ? TakeEnd() : TakeTag();
    }
  }
  if (!open_.empty()) return Wrong("the text ends inside an element");
  return hadRoot_ ? Event::kDone : Wrong("there is no element");
}

XmlReader::Event XmlReader::TakeText() {
  const std::size_t end = std::min(text_.find('<', at_), text_.size());
  piece_ = text_.substr(at_, end - at_);
  if (piece_.find('&') != std::string_view::npos) {
    if (!Resolve(piece_, storage_)) return Wrong("an entity is not known");
    piece_ = storage_;
  }
  at_ = end;
  return Event::kText;
}

XmlReader::Event XmlReader::TakeTag() {
  if (open_.empty() && hadRoot_) return Wrong("there is a second root element");
  if (open_.size() == kMostDepth) return Wrong("the elements are nested too deeply");
  ++at_;
  const std::string_view whole = TakeName();
  if (whole.empty()) return Wrong("a tag has no name");
  const std::size_t begin = at_;
  if (!TakeAttributes()) return Wrong("a tag is not understood");
  attributes_ = text_.substr(begin, at_ - begin);
  endsEmpty_ = text_[at_] == '/';
  at_ += endsEmpty_ ? 2 : 1;
  name_ = WithoutPrefix(whole);
  open_.push_back(whole);
  hadRoot_ = true;
  return Event::kBegin;
}

XmlReader::Event XmlReader::TakeEnd() {
  at_ += 2;
  const std::string_view whole = TakeName();
  SkipBlanks();
  if (open_.empty() || open_.back() != whole || at_ == text_.size() || text_[at_] != '>') {
    return Wrong("an element is closed that is not open");
  }
  ++at_;
  name_ = WithoutPrefix(whole);
  open_.pop_back();
  return Event::kEnd;
}

/// Up to the end of the tag, which stands there.
bool XmlReader::TakeAttributes() {
  for (;;) {
    const std::size_t before = at_;
    SkipBlanks();
    if (at_ == text_.size()) return false;
    if (text_[at_] == '>' || text_.substr(at_, 2) == "/>") return true;
    if (at_ == before || TakeName().empty()) return false;
    SkipBlanks();
    if (at_ == text_.size() || text_[at_] != '=') return false;
    ++at_;
    SkipBlanks();
    if (at_ == text_.size() || (text_[at_] != '"' && text_[at_] != '\'')) return false;
    const std::size_t end = text_.find(text_[at_], at_ + 1);
    if (end == std::string_view::npos || text_.substr(at_, end - at_).find('<') != std::string_view::npos) return false;
    at_ = end + 1;
  }
}

std::string XmlReader::Attribute(std::string_view name) const {
  // They are known to be well-formed.
  std::size_t at = 0;
  while ((at = attributes_.find_first_not_of(kBlanks, at)) != std::string_view::npos) {
    const std::size_t equals = attributes_.find('=', at);
    const std::string_view found = TrimBlanks(attributes_.substr(at, equals - at));
    const std::size_t quote = attributes_.find_first_of("\"'", equals);
    const std::size_t end = attributes_.find(attributes_[quote], quote + 1);
    at = end + 1;
    if (WithoutPrefix(found) != name) continue;
    std::string value;
    const std::string_view raw = attributes_.substr(quote + 1, end - quote - 1);
    return Resolve(raw, value) ? value : std::string(raw);
  }
  return {};
}

bool XmlReader::Resolve(std::string_view raw, std::string& text) const {
  constexpr std::size_t kLongestEntity = 10;
  text.clear();
  text.reserve(raw.size());
  while (!raw.empty()) {
    const std::size_t mark = std::min(raw.find('&'), raw.size());
    text += raw.substr(0, mark);
    raw.remove_prefix(mark);
    if (raw.empty()) break;
    const std::size_t end = raw.substr(0, kLongestEntity).find(';');
    if (end == std::string_view::npos || !AppendEntity(raw.substr(1, end - 1), text)) return false;
    raw.remove_prefix(end + 1);
  }
  return true;
}

std::string ForEachXmlLeaf(std::string_view xml, const std::function<void(std::string_view, std::string_view)>& use) {
  XmlReader reader(xml);
  std::string path;
  std::string text;
  bool isLeaf = false;
  for (;;) {
    switch (reader.Next()) {
      case XmlReader::Event::kBegin:
        path += path.empty() ? "" : "/";
        path += reader.name();
        text.clear();
        isLeaf = true;
        break;
      case XmlReader::Event::kText:
        if (isLeaf) text += reader.piece();
        break;
      case XmlReader::Event::kEnd:
        if (isLeaf) use(path, text);
        isLeaf = false;
        path.resize(path.size() > reader.name().size() ? path.size() - reader.name().size() - 1 : 0);
        break;
      case XmlReader::Event::kDone:
        return {};
      case XmlReader::Event::kWrong:
        return reader.reason();
    }
  }
}

std::string XmlText(std::string_view text) {
  std::string out;
  for (const char c : Utf8FromWindows1252(text)) {
    const auto* const entity =
        std::find_if(std::begin(kEntities), std::end(kEntities), [c](const Entity& known) { return known.sign == c; });
    if (entity != std::end(kEntities)) {
      out += '&' + std::string(entity->name) + ';';
    } else {
      out += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
    }
  }
  return out;
}

}  // namespace texturon
