// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/prompts.h"
#include "settings/settings.h"
#include "signal/form/form_arc.h"
#include "signal/form/form_asphere.h"
#include "signal/form/form_filter.h"
#include "signal/form/form_fixed_radius.h"
#include "signal/form/form_free.h"
#include "signal/form/form_line.h"
#include "signal/form/form_mean.h"
#include "signal/form/form_polynomial.h"

namespace texturon {

/// The geometry that form removal took out, in the terms of the routine that did it. X positions count from the first
/// point of the fit, those of an asphere's apex and of a free form's shift from the first sample of the record.
using FormGeometry =
    std::variant<MeanFit, LineFit, ArcFit, PolynomialFit, FilterFormFit, FixedRadiusFit, AsphereFit, FreeFormFit>;

/// The geometry's numbers that any form may have.
double ResidualSpacingUM(const FormGeometry& geometry);
std::optional<double> CentreXUM(const FormGeometry& geometry);
/// Null for any other form.
const AsphereFit* AsphereOf(const FormGeometry& geometry);

/// What a form is taken out of, and with what.
struct FormTask {
  FormInput input;
  FormOutput output;
  const AnalysisSettings& settings;
  double firstMM = 0.0;  ///< X of the input's first height in the record
  bool isQuiet = false;
  Prompts& prompts;
};

/// A figure of the geometry under its name in results.
struct FormField {
  std::string_view name;
  std::variant<double, std::vector<double>> value;
  std::optional<double> uncertainty{};  ///< standard uncertainty, in the value's unit; none: held, or not known
  std::vector<double> uncertainties{};  ///< the same of several numbers
};

struct FormRow {
  std::int32_t number = kFormNone;             ///< of FormRemovalType
  bool heedsExclusion = true;                  ///< an excluded stretch takes no part in the fit
  std::string_view exclusionRefusal = {};      ///< told to who wants to exclude something; empty: nothing is
  bool showsProgress = false;                  ///< the wait cursor is taken down for the time of the fit
  bool isArc = false;                          ///< in instruments' files: X counts from its centre
  bool hasClearAperture = false;               ///< AsphereUseClearAperture counts
  double AnalysisSettings::*filterCutoffMM{};  ///< where it is a filter: its cutoff, the waviness's sampling length

  // The form's own routines; a geometry is one that it made.

  /// Nothing where the form cannot be fitted.
  std::optional<FormGeometry> (*remove)(const FormTask& task) = nullptr;
  bool (*made)(const FormGeometry& geometry) = nullptr;
  /// One line in Windows-1252, lengths in the units shown.
  std::string (*caption)(const FormGeometry& geometry, const Settings& settings) = nullptr;
  std::vector<FormField> (*fields)(const FormGeometry& geometry) = nullptr;
};

/// Every form, the mean first: it is taken out where no other is. To add one is its routine in signal/form, its result
/// among the geometries, and a row here.
std::span<const FormRow> FormTable();

/// Null for a number of no form.
const FormRow* FindForm(std::int32_t number);
/// The form that the settings ask for; the mean for a number of no form.
const FormRow& RequestedForm(const AnalysisSettings& settings);
/// The form that made a geometry.
const FormRow& FormOf(const FormGeometry& geometry);

}  // namespace texturon
