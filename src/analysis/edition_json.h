// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>

#include "analysis/document.h"
#include "base/json_writer.h"

namespace texturon {

/// The edition at the top of a result: "ISO 21920-2:2021" or "both"; empty for the edition of before.
std::string_view EditionTitle(const Document& document);

/// Members of a row's object: its edition where the result has rows of several, and the difference beside the row of
/// the same name.
void WriteEditionOfRow(JsonWriter& json, const Document& document, const ParameterDef& row);

}  // namespace texturon
