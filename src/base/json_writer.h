// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace texturon {

/// Writes one JSON value, number by number, without building a tree: profiles have millions of numbers. Numbers are the
/// shortest text that reads back to the same double; what is not finite is null.
class JsonWriter {
public:
  /// On several lines for people, or on one.
  enum class Layout { kIndented, kOneLine };

  /// Without a stream the text is kept for Result; with one it goes there piece by piece, and nothing is kept.
  explicit JsonWriter(Layout layout, std::ostream* out = nullptr) : layout_(layout), out_(out) {}

  void BeginObject();
  void EndObject();
  void BeginArray();
  void EndArray();
  void Key(std::string_view name);

  void Number(double value);
  void Integer(std::int64_t value);
  void Bool(bool value);
  void Null();
  /// UTF-8, or the system's own bytes, which pass unchanged.
  void Text(std::string_view bytes);

  /// Arrays on one line.
  void Numbers(std::span<const double> values);
  void Integers(std::span<const std::int32_t> values);

  const std::string& Result() const { return text_; }
  /// Passes on what the stream has not got yet.
  void Finish();

private:
  void Open(char bracket);
  void Close(char bracket);
  void BeforeValue();
  void NewLine();
  void AppendNumber(double value);
  /// Passes the text on when enough of it has gathered.
  void PassOn();

  Layout layout_;
  std::ostream* out_;
  std::string text_;
  std::vector<bool> levelHasItems_;
  bool afterKey_ = false;
};

}  // namespace texturon
