// SPDX-License-Identifier: Apache-2.0

#include "base/json_value.h"

#include <algorithm>
#include <cstdint>

#include "base/number_text.h"

namespace texturon {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

void AppendUtf8(std::string& out, std::uint32_t code) {
  const auto add = [&out](std::uint32_t byte) { out += static_cast<char>(byte); };
  if (code < 0x80) {
    add(code);
  } else if (code < 0x800) {
    add(0xC0 | code >> 6);
    add(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    add(0xE0 | code >> 12);
    add(0x80 | (code >> 6 & 0x3F));
    add(0x80 | (code & 0x3F));
  } else {
    add(0xF0 | code >> 18);
    add(0x80 | (code >> 12 & 0x3F));
    add(0x80 | (code >> 6 & 0x3F));
    add(0x80 | (code & 0x3F));
  }
}

/// Goes through a text from left to right; the first thing that is no JSON ends it.
class JsonParser {
public:
  explicit JsonParser(std::string_view text) : text_(text) {}

  JsonRead Read(std::string_view& rest) {
    JsonRead read;
    JsonValue value;
    if (Value(value, 0)) {
      SkipBlanks();
      rest = text_.substr(at_);
      read.value = std::move(value);
    } else {
      const std::string_view before = text_.substr(0, at_);
      const auto line = std::count(before.begin(), before.end(), '\n') + 1;
      const std::size_t start = before.rfind('\n') == std::string_view::npos ? 0 : before.rfind('\n') + 1;
      read.reason = "line " + IntegerText(line) + ", column " +
                    IntegerText(static_cast<std::int64_t>(at_ - start + 1)) + ": " + std::string(fault_);
    }
    return read;
  }

private:
  bool Refuse(std::string_view fault) {
    fault_ = fault;
    return false;
  }

  char Next() const { return at_ < text_.size() ? text_[at_] : '\0'; }
  void SkipBlanks() { at_ = std::min(text_.find_first_not_of(kBlanks, at_), text_.size()); }
  bool Takes(char c) {
    SkipBlanks();
    if (Next() != c) return false;
    ++at_;
    return true;
  }

  bool Value(JsonValue& value, std::size_t depth) {
    SkipBlanks();
    if (depth > kMostJsonDepth) return Refuse("too many values within each other");
    switch (Next()) {
      case '{':
        return Object(value.content.emplace<JsonValue::Object>(), depth);
      case '[':
        return Array(value.content.emplace<JsonValue::Array>(), depth);
      case '"':
        return Text(value.content.emplace<std::string>());
      case 't':
        value.content = true;
        return Word("true");
      case 'f':
        value.content = false;
        return Word("false");
      case 'n':
        return Word("null");
      default:
        return Number(value.content.emplace<double>());
    }
  }

  bool Word(std::string_view word) {
    if (!text_.substr(at_).starts_with(word)) return Refuse("a value is expected");
    at_ += word.size();
    return true;
  }

  bool Object(JsonValue::Object& members, std::size_t depth) {
    ++at_;
    if (Takes('}')) return true;
    do {
      SkipBlanks();
      if (Next() != '"') return Refuse("the name of a member is expected");
      auto& [name, value] = members.emplace_back();
      if (!Text(name)) return false;
      if (!Takes(':')) return Refuse("a colon is expected");
      if (!Value(value, depth + 1)) return false;
    } while (Takes(','));
    return Takes('}') || Refuse("a comma or a closing brace is expected");
  }

  bool Array(JsonValue::Array& values, std::size_t depth) {
    ++at_;
    if (Takes(']')) return true;
    do {
      if (!Value(values.emplace_back(), depth + 1)) return false;
    } while (Takes(','));
    return Takes(']') || Refuse("a comma or a closing bracket is expected");
  }

  bool Number(double& value) {
    const std::size_t end = std::min(text_.find_first_not_of("+-.0123456789Ee", at_), text_.size());
    const std::string_view number = text_.substr(at_, end - at_);
    const ParsedDouble parsed = ParseDouble(number);
    const std::size_t first = number.starts_with('-') ? 1 : 0;
    const bool startsWell = first < number.size() && number[first] >= '0' && number[first] <= '9';
    if (!startsWell || !parsed.usable() || parsed.length != number.size()) return Refuse("a value is expected");
    value = parsed.value;
    at_ = end;
    return true;
  }

  bool Text(std::string& text) {
    ++at_;
    for (;;) {
      const std::size_t end = text_.find_first_of("\"\\", at_);
      if (end == std::string_view::npos) return Refuse("a text without an end begins before this");
      text += text_.substr(at_, end - at_);
      at_ = end + 1;
      if (text_[end] == '"') return true;
      if (!Escape(text)) return Refuse("this is no escape");
    }
  }

  bool Escape(std::string& text) {
    constexpr std::string_view kLetters = "\"\\/bfnrt";
    constexpr std::string_view kMeant = "\"\\/\b\f\n\r\t";
    const std::size_t letter = kLetters.find(Next());
    if (Next() != '\0' && letter != std::string_view::npos) {
      text += kMeant[letter];
      ++at_;
      return true;
    }
    const auto first = CodeUnit();
    if (!first) return false;
    std::uint32_t code = *first;
    if (code >= 0xD800 && code < 0xDC00) {
      if (Next() != '\\') return false;
      ++at_;
      const auto second = CodeUnit();
      if (!second || *second < 0xDC00 || *second > 0xDFFF) return false;
      code = 0x10000 + ((code - 0xD800) << 10) + (*second - 0xDC00);
    }
    AppendUtf8(text, code);
    return true;
  }

  /// uXXXX
  std::optional<std::uint32_t> CodeUnit() {
    if (Next() != 'u' || text_.size() - at_ < 5) return std::nullopt;
    std::uint32_t code = 0;
    for (const char c : text_.substr(at_ + 1, 4)) {
      constexpr std::string_view kDigits = "0123456789abcdef0123456789ABCDEF";
      const std::size_t digit = kDigits.find(c);
      if (digit == std::string_view::npos) return std::nullopt;
      code = code << 4 | static_cast<std::uint32_t>(digit % 16);
    }
    at_ += 5;
    return code;
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::string_view fault_;
};

}  // namespace

const JsonValue* JsonValue::Find(std::string_view name) const {
  const Object* const members = As<Object>();
  if (members == nullptr) return nullptr;
  const auto found = std::find_if(members->rbegin(), members->rend(),
                                  [name](const JsonMember& member) { return member.name == name; });
  return found != members->rend() ? &found->value : nullptr;
}

JsonRead ReadJson(std::string_view& text) {
  return JsonParser(text).Read(text);
}

}  // namespace texturon
