// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "analysis/document.h"
#include "unattended/test_plan.h"

namespace texturon {

// What a pass of a headless run leaves behind, as text.

/// The lines of a results file, list by list.
using ResultLines = std::array<std::vector<std::string>, kResultLists>;

/// Adds a pass to the lines: the filter description of each of the family's lists, and under it two lines a parameter,
/// verdict and value.
void AppendPassLines(const Document& document, Family family, const PassPlan& plan, ResultLines& lines);

/// Adds the lines of the parameters alone: of a pass that is left out because it can compute none of them.
void AppendParameterLines(const Document& document, const PassPlan& plan, ResultLines& lines);

/// Which filters that a pass asks for could not run, and what stands in for their result: sentences without full stop.
std::vector<std::string> FilterRemarks(const Document& document, Family family);

/// A profile of a pass with the name of its file, which ends in a full stop and gets the run's extension.
struct PassProfileFile {
  std::string prefix;
  std::string text;
};

/// The profile files of a family: title, number of points, units and a line a point with X and height in mm, CR LF line
/// ends. X counts from the record's first sample. A profile that does not exist has no points; the motif lines are left
/// out where there are no motifs.
std::vector<PassProfileFile> PassProfileFiles(const Document& document, Family family);

/// Two characters, the first and the last of the file's base name, as the extension of a run's files; in the system's
/// own bytes.
std::string OutputExtension(const std::filesystem::path& dataFile);

}  // namespace texturon
