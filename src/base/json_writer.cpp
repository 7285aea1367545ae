// SPDX-License-Identifier: Apache-2.0

#include "base/json_writer.h"

#include <cmath>
#include <ostream>

#include "base/number_text.h"

namespace texturon {

void JsonWriter::NewLine() {
  if (layout_ == Layout::kOneLine) return;
  text_ += '\n';
  text_.append(levelHasItems_.size() * 2, ' ');
}

void JsonWriter::Finish() {
  if (out_ == nullptr) return;
  *out_ << text_;
  text_.clear();
}

void JsonWriter::PassOn() {
  constexpr std::size_t kPiece = std::size_t{1} << 16;
  if (text_.size() > kPiece) Finish();
}

void JsonWriter::BeforeValue() {
  PassOn();
  if (afterKey_) {
    afterKey_ = false;
    return;
  }
  if (levelHasItems_.empty()) return;
  if (levelHasItems_.back()) text_ += layout_ == Layout::kOneLine ? ", " : ",";
  levelHasItems_.back() = true;
  NewLine();
}

void JsonWriter::Open(char bracket) {
  BeforeValue();
  text_ += bracket;
  levelHasItems_.push_back(false);
}

void JsonWriter::Close(char bracket) {
  const bool hadItems = levelHasItems_.back();
  levelHasItems_.pop_back();
  if (hadItems) NewLine();
  text_ += bracket;
}

void JsonWriter::BeginObject() {
  Open('{');
}

void JsonWriter::EndObject() {
  Close('}');
}

void JsonWriter::BeginArray() {
  Open('[');
}

void JsonWriter::EndArray() {
  Close(']');
}

void JsonWriter::Key(std::string_view name) {
  Text(name);
  text_ += ": ";
  afterKey_ = true;
}

void JsonWriter::AppendNumber(double value) {
  if (std::isfinite(value)) {
    AppendShortest(text_, value);
  } else {
    text_ += "null";
  }
}

void JsonWriter::Number(double value) {
  BeforeValue();
  AppendNumber(value);
}

void JsonWriter::Integer(std::int64_t value) {
  BeforeValue();
  AppendInteger(text_, value);
}

void JsonWriter::Bool(bool value) {
  BeforeValue();
  text_ += value ? "true" : "false";
}

void JsonWriter::Null() {
  BeforeValue();
  text_ += "null";
}

void JsonWriter::Text(std::string_view bytes) {
  constexpr std::string_view kHexDigits = "0123456789abcdef";
  BeforeValue();
  text_ += '"';
  for (const char c : bytes) {
    const auto code = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      text_ += '\\';
      text_ += c;
    } else if (code < 0x20) {
      text_ += "\\u00";
      text_ += kHexDigits[code >> 4];
      text_ += kHexDigits[code & 15];
    } else {
      text_ += c;
    }
  }
  text_ += '"';
}

void JsonWriter::Numbers(std::span<const double> values) {
  BeforeValue();
  text_ += '[';
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (i > 0) text_ += ", ";
    AppendNumber(values[i]);
    PassOn();
  }
  text_ += ']';
}

void JsonWriter::Integers(std::span<const std::int32_t> values) {
  BeforeValue();
  text_ += '[';
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (i > 0) text_ += ", ";
    AppendInteger(text_, values[i]);
  }
  text_ += ']';
}

}  // namespace texturon
