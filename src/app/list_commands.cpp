#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "app/commands.h"
#include "core/charset.h"
#include "core/ini_file.h"
#include "core/number_text.h"
#include "core/platform.h"
#include "core/settings_table.h"
#include "formats/extension_table.h"
#include "parameters/catalogue.h"

namespace texturon {
namespace {

/// Rows of cells under aligned columns; the last one is not padded. Cells are UTF-8.
void PrintColumns(const std::vector<std::vector<std::string>>& rows) {
  const auto shown = [](const std::string& cell) {
    return static_cast<std::size_t>(
        std::count_if(cell.begin(), cell.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
  };
  std::vector<std::size_t> widths;
  for (const auto& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], shown(row[i]));
  }
  for (const auto& row : rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      line += row[i];
      if (i + 1 < row.size()) line.append(widths[i] - shown(row[i]) + 2, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    std::cout << line << "\n";
  }
}

std::string Utf8(std::string_view text) {
  return Utf8FromWindows1252(text);
}

int StatusOfOutput() {
  std::cout.flush();
  return std::cout ? kExitDone : kExitRefused;
}

}  // namespace

int RunParameters() {
  std::vector<std::vector<std::string>> rows = {{"NAME", "UNIT", "IMPERIAL", "FACTOR", "DEFINITION"}};
  for (const MasterRow& row : MasterCatalogue()) {
    rows.push_back({Utf8(row.name), Utf8(PrintedUnit(row.metricUnit)), Utf8(PrintedUnit(row.imperialUnit)),
                    ShortestText(row.imperialFactor), Utf8(row.definition)});
  }
  PrintColumns(rows);
  return StatusOfOutput();
}

int RunFormats() {
  std::vector<std::vector<std::string>> rows = {{"EXTENSION", "READER", "TAKES"}};
  for (const ExtensionEntry& entry : ExtensionTable()) {
    std::string extension(entry.extension);
    for (const ProfileReader* reader : entry.chain) {
      rows.push_back({extension, Utf8(reader->name), Utf8(reader->takes)});
      extension.clear();
    }
  }
  PrintColumns(rows);
  std::cout << "\nWritten:\n";
  for (const WriterEntry& writer : WriterTable()) {
    std::cout << writer.extension << "  " << Utf8(writer.name) << "\n";
  }
  return StatusOfOutput();
}

}  // namespace texturon
