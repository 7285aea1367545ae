// SPDX-License-Identifier: Apache-2.0

#include "settings/setting_groups.h"

namespace texturon {
namespace {

using enum SettingGroup;

constexpr SettingGroupTitles kGroups[] = {
    {kForm, "Form", "Form"},
    {kFitPoints, "Form", "Points of the fit"},
    {kStylus, "Form", "Stylus"},
    {kFilter, "Filters", "Filter"},
    {kEnds, "Filters", "Ends"},
    {kLevels, "Levels", "Levels"},
    {kEnvelopes, "Levels", "Envelopes and windows"},
    {kElementHeights, "Percentages", "Profile elements: least height"},
    {kElementWidths, "Percentages", "Profile elements: least width"},
    {kProbability, "Probability", "Regions of Rpq and Rvq"},
    {kMotifs, "Motifs", "Motifs"},
    {kAsphereTerms, "Asphere", "Terms"},
    {kVertex, "Asphere", "Vertex"},
    {kClearAperture, "Asphere", "Clear Aperture Setting"},
    {kSagTable, "Asphere Tables", "Sag table"},
    {kAsphericResidual, "Asphere Tables", "Aspheric residual"},
    {kModFiles, "Asphere Tables", "MOD files"},
    {kPlacing, "Free Form", "Placing"},
    {kNominalFilter, "Free Form", "Filter of the nominal shape"},
    {kWindow, "Display", "Window"},
    {kProfile, "Display", "Profile"},
    {kParameterTable, "Display", "Parameters"},
    {kCurves, "Display", "Curves"},
    {kReport, "Display", "Report"},
    {kProfileScale, "Scales", "Profile"},
    {kSpectrumScale, "Scales", "Spectrum"},
    {kStandard, "Standard", "Edition"},
    {kStandardRows, "Standard", "Rows of the edition of 2021"},
    {kWatchedFiles, "Auto-Loading", "Files"},
    {kAfterLoading, "Auto-Loading", "Afterwards"},
};

}  // namespace

std::span<const SettingGroupTitles> SettingGroups() {
  return kGroups;
}

}  // namespace texturon
