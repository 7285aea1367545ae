// SPDX-License-Identifier: Apache-2.0

#include "export/asphere_export.h"

#include "base/number_text.h"

namespace texturon {
namespace {

void AppendWord(std::string& text, char letter, double valueMM) {
  text += letter;
  AppendFixed(text, valueMM, 5, 9, '0');
}

void AppendRow(std::string& text, const TableRow& row, AsphereLayout layout) {
  switch (layout) {
    case AsphereLayout::kNamed:
      AppendFixed(text, row.xMM, 6);
      text += ',';
      AppendFixed(text, row.zMM, 6);
      break;
    case AsphereLayout::kMillimetres:
      AppendFixed(text, row.xMM, 6);
      text += ", ";
      AppendFixed(text, row.zMM, 12);
      break;
    case AsphereLayout::kXZWords:
      AppendWord(text, 'X', row.xMM);
      AppendWord(text, 'Z', row.zMM);
      break;
  }
  text += "\r\n";
}

}  // namespace

AsphereLayout AsphereLayoutOf(std::int32_t number) {
  switch (number) {
    case 0:
      return AsphereLayout::kNamed;
    case 2:
      return AsphereLayout::kXZWords;
    default:
      return AsphereLayout::kMillimetres;
  }
}

std::string AsphereTableExport(std::span<const TableRow> rows, AsphereLayout layout, std::string_view name) {
  constexpr std::size_t kRowLength = 32;
  std::string text;
  text.reserve(rows.size() * kRowLength);
  if (layout == AsphereLayout::kNamed) text += std::string(name) + "\r\n";
  if (layout == AsphereLayout::kMillimetres) text += "mm, mm\r\n";
  for (const TableRow& row : rows) AppendRow(text, row, layout);
  return text;
}

}  // namespace texturon
