// SPDX-License-Identifier: Apache-2.0

#include "app/table_text.h"

#include <algorithm>

namespace texturon {

std::size_t ShownWidth(std::string_view utf8) {
  return static_cast<std::size_t>(
      std::count_if(utf8.begin(), utf8.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string PadRight(std::string text, std::size_t width) {
  const std::size_t shown = ShownWidth(text);
  if (shown < width) text.append(width - shown, ' ');
  return text;
}

std::string PadLeft(const std::string& text, std::size_t width) {
  const std::size_t shown = ShownWidth(text);
  return shown < width ? std::string(width - shown, ' ') + text : text;
}

std::string ColumnsText(const std::vector<std::vector<std::string>>& rows) {
  std::vector<std::size_t> widths;
  for (const auto& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], ShownWidth(row[i]));
  }
  std::string text;
  for (const auto& row : rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      line += i + 1 < row.size() ? PadRight(row[i], widths[i] + 2) : row[i];
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + "\n";
  }
  return text;
}

}  // namespace texturon
