// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "signal/form/asphere_tables.h"

namespace texturon {

/// The layouts of an aspheric table; X and Z are millimetres in each.
enum class AsphereLayout : std::int32_t {
  kNamed = 0,        ///< a line that names the table, then "x,z" with six decimals
  kMillimetres = 1,  ///< "mm, mm", then "x, z" with six and twelve decimals
  kXZWords = 2,      ///< "X0001.25000Z0000.03125"
};

/// The layout of a number in the settings; any other than 0 and 2 is kMillimetres.
AsphereLayout AsphereLayoutOf(std::int32_t number);

/// A table of an asphere's residual or sag as a text file with CR LF line ends. `name` stands on the first line of the
/// layout that has one.
std::string AsphereTableExport(std::span<const TableRow> rows, AsphereLayout layout, std::string_view name);

}  // namespace texturon
