// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>

#include "analysis/document_export.h"
#include "export/parameter_file.h"

namespace texturon {

/// Adds the values of an analysis to a file for statistics programs. False, with a sentence on standard error, when
/// they are lost, also because no row has limits. An empty name stands for no file.
bool AppendQdas(const std::optional<QdasText>& text, const std::string& file, InUse inUse);

}  // namespace texturon
