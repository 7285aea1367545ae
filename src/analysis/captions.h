// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "analysis/document.h"

namespace texturon {

/// One line that says what form was removed, in Windows-1252: "Form: Datum   (Mean: 0.123 um)". Lengths follow the
/// document's choice of metric or imperial units.
std::string FormCaption(const Document& document);
/// The same without its opening, for where the word "Form" stands beside it: "Datum   (Mean: 0.123 um)".
std::string FormDescription(const Document& document);

/// The long-wave filter's name: "Gaussian", "Robust Gaussian (coef: 4.45)", "Unknown filter".
std::string FilterLabel(const AnalysisSettings& settings);

/// "Spline Gaussian, Lc 0.8000 mm, Ls 0.0025 mm"; Ls only where that filter ran,
/// lengths in the units shown.
std::string FilterDescription(const Document& document);

/// "ISO 21920-2:2021, class Sc3, 5 sections, core by Robust Gaussian Regression"; empty for the edition of before.
std::string EditionDescription(const Document& document);

/// Form caption, filter and cutoffs in one line, for exports and reports.
std::string AnalysisDescription(const Document& document);

}  // namespace texturon
