// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "formats/extension_table.h"

namespace texturon {

// What a file is whose extension says nothing.

/// The entry of the extension table whose readers take such content; that of tables of numbers where nothing tells.
const ExtensionEntry& EntryOfContent(std::string_view bytes);

/// The extension of a layout of its own as which a text begins, and which no table of numbers is; empty: it may be one.
std::string_view KnownLayoutOf(std::string_view bytes);

/// A file of a known kind that is not read: what it is and what to do instead, going on where its name stops. Empty: it
/// is none.
std::string ForeignKind(const std::filesystem::path& path, std::string_view bytes);

/// The same for a layout of the table that is recognised only, by all of its markers.
std::string MarkedLayout(std::string_view bytes);

}  // namespace texturon
