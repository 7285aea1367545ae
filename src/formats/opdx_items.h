// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace texturon {

inline constexpr std::string_view kOpdxMark = "VCA DATA";

/// One named item of a stylus profiler's binary file.
struct OpdxItem {
  unsigned char type = 0;
  std::string_view content;  ///< without its length
};

/// The item at a path of names ("MetaData/DataKind"); nothing where there is none, or the file is damaged before it.
std::optional<OpdxItem> FindOpdxItem(std::string_view file, std::string_view path);

/// Calls `use` with the names of the items of a container, until it returns false.
void ForEachOpdxName(std::string_view file, std::string_view path, const std::function<bool(std::string_view)>& use);

/// A text item as Windows-1252; empty where it is none.
std::string OpdxText(const std::optional<OpdxItem>& item);

/// A quantity in the unit that stands with it.
struct OpdxQuantity {
  double value = 0.0;
  std::string unit;  ///< by name
  std::string symbol;
};
std::optional<OpdxQuantity> OpdxQuantityOf(const std::optional<OpdxItem>& item);

/// A whole number of any size; 0 where it is none.
double OpdxCount(const std::optional<OpdxItem>& item);

}  // namespace texturon
