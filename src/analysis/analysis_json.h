// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/document.h"
#include "analysis/provenance_json.h"
#include "analysis/uncertainty_json.h"
#include "base/json_writer.h"

namespace texturon {

struct AnalysisJsonOptions {
  JsonWriter::Layout layout = JsonWriter::Layout::kIndented;
  bool withProfiles = false;
  const RunRequest* request = nullptr;  ///< how the call asked for it; null: that is left out, with program and input
  const UncertaintyRequest* uncertaintyRequest = nullptr;  ///< both or none
  const UncertaintyResult* uncertainty = nullptr;
  std::function<void(JsonWriter&)> more = {};  ///< writes further members at the end
};

/// Writes the JSON object of one analysed file. `file` is in the system's own bytes, `messages` are Windows-1252.
void WriteAnalysisJson(std::ostream& out, const Document& document, std::string_view file,
                       const std::vector<std::string>& messages, const AnalysisJsonOptions& options);

}  // namespace texturon
