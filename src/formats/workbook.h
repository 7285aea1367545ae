// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/zip_archive.h"

namespace texturon {

/// A cell that is not empty. Row and column count from 0.
struct SheetCell {
  std::size_t row = 0;
  std::size_t column = 0;
  std::string_view text;  ///< Windows-1252, valid until the next cell; at most 256 characters
  bool isNumber = false;
};

/// The sheets of a workbook (Office Open XML): a ZIP container of XML parts. Works on the caller's bytes.
class Workbook {
public:
  struct Sheet {
    std::string name;
    std::string part;  ///< its name in the container
  };
  /// The XML of a sheet, or why it is not read.
  struct SheetXml {
    std::string text;
    std::string reason;
  };

  explicit Workbook(std::string_view bytes);

  /// Why it is none, or nothing.
  const std::string& reason() const { return reason_; }
  const std::vector<Sheet>& sheets() const { return sheets_; }
  const Sheet* Find(std::string_view name) const;

  /// Unpacks a sheet. All together may unpack to no more than 100 MB.
  SheetXml Unpack(const Sheet& sheet);
  /// Calls `use` with the cells in their order, until it returns false. What is wrong with the sheet, or nothing.
  std::string ForEachCell(std::string_view xml, const std::function<bool(const SheetCell&)>& use) const;

private:
  std::optional<std::string> XmlOf(std::string_view part);
  void ReadSheets(std::string_view workbook, std::string_view relations);
  void ReadTexts(std::string_view xml);
  std::string_view TextAt(std::string_view index) const;

  ZipArchive archive_;
  std::string reason_;
  std::vector<Sheet> sheets_;
  std::string texts_;                    // the shared ones, one behind the other
  std::vector<std::uint32_t> textEnds_;  // of each
  std::size_t unpacked_ = 0;
};

}  // namespace texturon
