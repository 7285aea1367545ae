// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>

#include "analysis/uncertainty_json.h"
#include "app/provenance_output.h"
#include "platform/environment.h"
#include "record/input_mark.h"

namespace texturon {

/// The file beside a parameter file that tells where its rows come from, "rows.csv.provenance.json": an object a line,
/// one for each run (program, date, settings, request and budget), then one for each of its files (path and input).
class ProvenanceCompanion {
public:
  /// An empty parameter file has none; the budget may be null.
  ProvenanceCompanion(const std::filesystem::path& parameterFile, const Document& start, const RunRequest& request,
                      const Environment& environment, const UncertaintyRequest* uncertainty);

  /// Empty where there is no parameter file.
  const std::filesystem::path& Path() const { return path_; }
  /// Of a row that is written. The first one brings the run's line. A failure complains, once.
  void Add(const std::filesystem::path& file, const InputMark& input);
  bool HasFailed() const { return hasFailed_; }

private:
  std::filesystem::path path_;
  std::string runLine_;  ///< until it is written
  bool hasFailed_ = false;
};

}  // namespace texturon
