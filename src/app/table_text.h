// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace texturon {

/// Characters shown of a UTF-8 text, not its bytes.
std::size_t ShownWidth(std::string_view utf8);

// Filled up with blanks to a number of characters shown; a longer text stays as it is.
std::string PadRight(std::string text, std::size_t width);
std::string PadLeft(const std::string& text, std::size_t width);

/// Rows of cells under aligned columns, a line each; the last cell is not padded.
std::string ColumnsText(const std::vector<std::vector<std::string>>& rows);

}  // namespace texturon
