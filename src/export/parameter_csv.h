// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>
#include <string>
#include <string_view>

#include "parameters/catalogue.h"
#include "parameters/ratio_rows.h"
#include "settings/analysis_settings.h"

namespace texturon {

/// What a row of the parameter file reads of an analysis. Texts are Windows-1252 and stand in quotes as they are.
struct ParameterCsvInput {
  const ParameterCatalogue& catalogue;  ///< its selected rows are the columns
  const AnalysisSettings& settings;
  const RatioRowResults& primaryMaterialRatios;
  const RatioRowResults& roughnessMaterialRatios;
  const RatioRowResults& primaryHtps;
  const RatioRowResults& roughnessHtps;
  std::string_view time;
  std::string_view source;
  std::string_view identification;
  std::string_view description;          ///< of form and filter
  bool metric = true;                    ///< units; otherwise imperial
  std::string_view primaryRatioTitle;    ///< of a primary material ratio: "Pmr"
  std::string_view roughnessRatioTitle;  ///< of a roughness one
  double traverseLengthUM = 0.0;         ///< LT
  double evaluationLengthUM = 0.0;       ///< Ln
};

/// The two lines with which a parameter file begins: titles, and under them units or the settings behind a column. In
/// metric or imperial units; CR LF after each.
std::string ParameterCsvHeader(const ParameterCsvInput& input);

/// One line: time, source, identification, settings text and a value a column. Values of rows and heights are scaled to
/// imperial units where these are in force; a column that was not computed holds a quoted blank.
std::string ParameterCsvRow(const ParameterCsvInput& input);

/// "LT 4.0 mm / Ln 4.00 mm / ...". In imperial units LT is in inches; Ln stays in mm, as its unit says.
std::string ParameterCsvSettingsText(const ParameterCsvInput& input);

/// The texts that stand for a source in the second column, without the blanks behind it.
std::string ParameterCsvSource(std::string_view path);

}  // namespace texturon
