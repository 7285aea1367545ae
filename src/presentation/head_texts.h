// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "analysis/document.h"

namespace texturon {

// The first lines over a profile, on screen and paper. Windows-1252; files and JSON have captions of their own.

/// Form and filters in a line; without a form its filter stands alone.
std::string AnalysisForReaders(const Document& document);

/// The stretch that parameters are of: the evaluation length, which has a spacing for each point, and where the first
/// and the last of its points lie. Empty without one.
std::string EvaluatedForReaders(const Document& document);

}  // namespace texturon
