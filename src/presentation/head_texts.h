// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "analysis/document.h"

namespace texturon {

// The first lines over a profile, on screen and paper. Windows-1252; files and JSON have captions of their own.

/// The form that was taken out, a slope with its unit: "LS Line   (Slope: 0.12 \xB5m/mm  Intercept: 2.1 \xB5m)". Empty
/// before an analysis.
std::string FormForReaders(const Document& document);

/// Form and filters in a line.
std::string AnalysisForReaders(const Document& document);

/// The stretch that parameters are of: the evaluation length, which has a spacing for each point, and where the first
/// and the last of its points lie. Empty without one.
std::string EvaluatedForReaders(const Document& document);

/// The settings behind a value in words, where its label has letters for them: of "(z%: 10 l%: 1)", the least height
/// and width of an element.
std::string LabelForReaders(std::string label);

}  // namespace texturon
