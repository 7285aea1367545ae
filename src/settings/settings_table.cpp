// SPDX-License-Identifier: Apache-2.0

#include "settings/settings_table.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <vector>

#include "base/number_text.h"
#include "base/text.h"
#include "settings/filter_table.h"
#include "settings/setting_bindings.h"

namespace texturon {
namespace {

constexpr FilterChoices kFilterChoices;
constexpr FilterChoices kFilterChoicesOrNone(", any other none");

// A field bears its key's name, so that both are written once.
#define DISPLAY(field) Bind<&Settings::display, &DisplaySettings::field>("DISPLAY", #field)
#define AUTO_LOADING(field) Bind<&Settings::autoLoading, &AutoLoadingSettings::field>("AUTO_LOADING", #field)
#define DECISION(field) \
  Bind<&Settings::decision, &DecisionSettings::field>("DECISION", #field, KeyWritten::kWhereChanged)
#define ANALYSIS_IN(section, field) Bind<&Settings::analysis, &Analysis::field>(section, #field)
#define ANALYSIS(field) ANALYSIS_IN("ANALYSIS", field)
#define RXQ(field) ANALYSIS_IN("RXQ_PARAMETERS", field)
#define MOTIF(field) ANALYSIS_IN("MOTIF_PARAMETERS", field)
#define ASPHERIC(field) ANALYSIS_IN("ASPHERIC_PARAMETERS", field)
#define FREE_FORM(field) ANALYSIS_IN("FREE_FORM", field)
#define STANDARD(field, ...) BindStandard<&StandardSettings::field>(#field __VA_OPT__(, ) __VA_ARGS__)
#define PARAMETER(key, ...) BindRow<&Analysis::parameters, __VA_ARGS__>("PARAMETERS", key, kParameterRows)
#define PRIMARY_RATIO(key, ...) \
  BindRow<&Analysis::primaryMaterialRatios, __VA_ARGS__>("PRIMARY_BEARING_RATIOS", key, kPrimaryRatioRows)
#define ROUGHNESS_RATIO(key, ...) \
  BindRow<&Analysis::roughnessMaterialRatios, __VA_ARGS__>("ROUGHNESS_BEARING_RATIOS", key, kRoughnessRatioRows)
#define PRIMARY_HTP(key, ...) BindRow<&Analysis::primaryHtps, __VA_ARGS__>("PRIMARY_HTPS", key, kPrimaryHtpRows)
#define ROUGHNESS_HTP(key, ...) BindRow<&Analysis::roughnessHtps, __VA_ARGS__>("ROUGHNESS_HTPS", key, kRoughnessHtpRows)

using enum SettingGroup;

constexpr SettingLimits kAboveZero = {.least = 0.0, .excludesLeast = true};
constexpr SettingLimits kFromZero = {.least = 0.0};
constexpr SettingLimits kPercent = {.least = 0.0, .most = 100.0};
constexpr SettingLimits kNotZero = {.excludesZero = true};

constexpr SettingLimits Between(double least, double most, bool excludesLeast = false) {
  return {.least = least, .most = most, .excludesLeast = excludesLeast};
}
constexpr SettingEntry In(SettingGroup group, const SettingLimits& limits = {}) {
  return {.group = group, .limits = limits};
}
constexpr SettingEntry Within(const SettingLimits& limits) {
  return {.limits = limits};
}
constexpr SettingEntry Column(const char* title, const SettingLimits& limits = {}) {
  return {.limits = limits, .shortTitle = title};
}

// The five keys of every list whose rows have limits.
#define TOLERANCE(ROW, type, upperKey, lowerKey, unit, limits)                                                        \
  {ROW("HighlightIfOut%02d", &type::tolerance, &Tolerance::highlightIfOut), "", "mark a value beyond its limits", "", \
   Column("Mark if out").Behind(3)},                                                                                  \
      {ROW("Toleranced%02d", &type::tolerance, &Tolerance::toleranced), "", "compare with the limits", "",            \
       Column("Toleranced").Behind(1)},                                                                               \
      {ROW("BilateralTol%02d", &type::tolerance, &Tolerance::bilateral), "",                                          \
       "both limits count; otherwise the upper alone", "", Column("Both limits").Behind(1)},                          \
      {ROW(upperKey, &type::tolerance, &Tolerance::upperLimit), unit, "upper limit", "",                              \
       Column("Upper limit", limits).Behind(2)},                                                                      \
  {                                                                                                                   \
    ROW(lowerKey, &type::tolerance, &Tolerance::lowerLimit), unit, "lower limit", "",                                 \
        Column("Lower limit", limits).Behind(1)                                                                       \
  }

constexpr auto kTable = std::to_array<SettingKey>({
    {BindVersion(), "", "version of the file's layout"},
    {DISPLAY(Identification), "", "identification of the measurement"},
    {DISPLAY(UpperIsSplit), "", "upper pane of the window split", "", In(kWindow).Behind(1)},
    {DISPLAY(LowerIsSplit), "", "lower pane of the window split", "", In(kWindow).Behind(1)},
    {DISPLAY(Metric), "", "show metric units; otherwise imperial", "", In(kWindow)},
    {DISPLAY(PrimaryAsTpa), "", "title the primary bearing ratios Tpa", "", In(kParameterTable)},
    {DISPLAY(RoughnessAsTpi), "", "title the roughness bearing ratios Tpi", "", In(kParameterTable)},
    {DISPLAY(ProfileType), "", "profiles shown in the profile view",
     "0 raw data, 1 primary and waviness, 2 primary, 3 waviness, 4 roughness, 5 form suppressed; from 16 on 16 and the "
     "sum of 1 raw, 2 form suppressed, 4 primary, 8 waviness, 16 roughness, 32 the removed form"},
    {DISPLAY(BrcAdfType), "", "curves shown in the bearing ratio view",
     "0 bearing ratio of the roughness, 1 amplitudes of the roughness, 2 both of the roughness, 3 bearing ratio of the "
     "primary, 4 amplitudes of the primary, 5 both of the primary",
     In(kCurves)},
    {DISPLAY(ShowRkLines), "", "draw the construction lines of Rk", "", In(kCurves)},
    {DISPLAY(ParameterColumns), "", "columns of the parameter table", "", In(kParameterTable, Between(1.0, 12.0))},
    {DISPLAY(ShowFilterTrans), "", "show the filter's transmission", "", In(kProfile).Behind(1)},
    {DISPLAY(ShowClosingProfile), "", "draw the closing envelope", "", In(kProfile)},
    {DISPLAY(ShowOpeningProfile), "", "draw the opening envelope", "", In(kProfile)},
    {DISPLAY(CursorDisplayType), "", "cursors of the profile view", "0 none, 1 upright, 2 level, 3 both",
     In(kProfile).Behind(2)},
    {DISPLAY(ShowXAxisValues), "", "numbers along the X axis", "", In(kProfile).Behind(1)},
    {DISPLAY(ShowINIPathInHeading), "", "full path of the settings file in the heading", "",
     In(kWindow).Behind(1).Titled("Full settings path above")},
    {DISPLAY(ProfileAutoScale), "", "profile view chooses its own scale", "", In(kProfileScale)},
    {DISPLAY(Profile11AspectRatio), "", "same scale for both axes of the profile view", "",
     In(kProfileScale).Titled("Same scale on both axes")},
    {DISPLAY(ProfileYMaxUM), "um", "upper edge of the profile view", "", In(kProfileScale).Behind(2)},
    {DISPLAY(ProfileYMinUM), "um", "lower edge of the profile view", "", In(kProfileScale).Behind(1)},
    {DISPLAY(ProfileAutoYSpacing), "", "profile view chooses its own grid", "", In(kProfileScale).Behind(3)},
    {DISPLAY(ProfileYGridSpacingUM), "um", "distance of the grid lines", "", In(kProfileScale, kFromZero).Behind(3)},
    {DISPLAY(ProfileYGridStartUM), "um", "height of the first grid line", "", In(kProfileScale).Behind(3)},
    {DISPLAY(ShowExtremeSlopes), "", "mark steep stretches", "", In(kProfile).Behind(2)},
    {DISPLAY(ExtremeSlopePlotDegrees), "deg", "slope from which a stretch is steep", "",
     In(kProfile, Between(0.0, 90.0, true)).Behind(2)},
    {DISPLAY(AspherePreviewMaxXMM), "mm", "right edge of the asphere preview"},
    {DISPLAY(AspherePreviewMinXMM), "mm", "left edge of the asphere preview"},
    {DISPLAY(AspherePreviewMaxYUM), "um", "upper edge of the asphere preview"},
    {DISPLAY(AspherePreviewMinYUM), "um", "lower edge of the asphere preview"},
    {DISPLAY(SpectrumAutoScale), "", "spectrum view chooses its own scale", "", In(kSpectrumScale)},
    {DISPLAY(SpectrumYMaxUM), "um", "upper edge of the spectrum view", "", In(kSpectrumScale).Behind(1)},
    {DISPLAY(SpectrumYMinUM), "um", "lower edge of the spectrum view", "", In(kSpectrumScale)},
    {DISPLAY(ParameterFile), "", "parameter file that results are added to", "", In(kAfterLoading).Behind(1)},
    {DISPLAY(CompanyName), "", "company name on reports", "", In(kReport)},
    {DISPLAY(LogoFile), "", "picture on reports", "", In(kReport)},
    {ANALYSIS(CompTipRadiusWhenAvailble), "",
     "suppress the stylus tip radius that a file states; no height changes by it", "",
     In(kStylus).Titled("Suppress the tip radius")},
    {ANALYSIS(FormRemovalType), "", "form that is removed",
     "0 none (mean height), 1 least squares line, 2 least squares arc, 3 fixed radius, 4 polynomial, "
     "5 spline Gaussian filter, 6 asphere, 7 free form",
     In(kForm)},
    {ANALYSIS(PolynomialOrder), "", "order of the polynomial", "",
     In(kForm, Between(0.0, 100.0)).Behind(1).While(ANALYSIS(FormRemovalType), kFormPolynomial)},
    {ANALYSIS(FormFilterCutoffMM), "mm", "cut-off of the filter that serves as form", "",
     In(kForm, kAboveZero)
         .Behind(1)
         .While(ANALYSIS(FormRemovalType), kFormFilter)
         .Titled("Cut-off of the form filter")},
    {ANALYSIS(ResidualType), "", "direction of the residual", "0 perpendicular to the form, any other number vertical",
     In(kForm)},
    {ANALYSIS(FixedRadiusMM), "mm", "radius of the fixed-radius form; positive concave, negative convex", "",
     In(kForm, kNotZero)
         .Behind(1)
         .While(ANALYSIS(FormRemovalType), kFormFixedRadius)
         .Titled("Fixed radius, + concave")},
    {ANALYSIS(FormRemovalDataReductionMethod), "", "which points the form is fitted to",
     "0 all, 1 about a number of points, 2 one each distance", In(kFitPoints).Titled("Points of the fit")},
    {ANALYSIS(FormRemovalNumberOfPoints), "", "number of points that the fit is thinned to", "",
     In(kFitPoints, kFromZero)
         .While(ANALYSIS(FormRemovalDataReductionMethod), kThinToPoints)
         .Titled("Number of points")},
    {ANALYSIS(FormRemovalReductionSpacingUM), "um", "distance that the points of the fit are thinned to", "",
     In(kFitPoints, kFromZero)
         .While(ANALYSIS(FormRemovalDataReductionMethod), kThinToSpacing)
         .Titled("Distance of the points")},
    {ANALYSIS(SagTableLengthMM), "mm", "length of an exported sag table", "",
     In(kSagTable, kAboveZero).Titled("Length")},
    {ANALYSIS(SagTableSpacingMM), "mm", "step of an exported sag table", "", In(kSagTable, kAboveZero).Titled("Step")},
    {ANALYSIS(SagTableType), "", "layout of an exported sag table",
     "0 named table, 2 X and Z words, any other columns in mm", In(kSagTable).Titled("Layout")},
    {ANALYSIS(SagTableFileName), "", "file of an exported sag table", "", In(kSagTable).Titled("File")},
    {ANALYSIS(AspResidualLengthMM), "mm", "length of an exported aspheric residual", "",
     In(kAsphericResidual, kAboveZero).Titled("Length")},
    {ANALYSIS(AspResidualSpacingMM), "mm", "step of an exported aspheric residual", "",
     In(kAsphericResidual, kAboveZero).Titled("Step")},
    {ANALYSIS(AspResidualFileName), "", "file of an exported aspheric residual", "",
     In(kAsphericResidual).Behind(1).Titled("File")},
    {ANALYSIS(AspResidualFileType), "", "layout of an exported aspheric residual",
     "0 named table, 2 X and Z words, any other columns in mm", In(kAsphericResidual).Titled("Layout")},
    {ANALYSIS(AsphereResidualPadding), "", "what an exported aspheric residual has beyond the data",
     "1 zeros, 2 the nearest height, any other nothing", In(kAsphericResidual).Titled("Beyond the data")},
    {ANALYSIS(AsphereResidualOffsetUM), "um", "height added to an exported aspheric residual", "",
     In(kAsphericResidual).Titled("Added height")},
    {ANALYSIS(AsphereUseClearAperture), "", "compute over the clear aperture only", "", In(kClearAperture)},
    {ANALYSIS(AsphereClearApertureDiameterMM), "mm", "diameter of the clear aperture", "",
     In(kClearAperture, kAboveZero)},
    {ANALYSIS(AsphereClearApertureCentralDiscardMM), "mm", "middle zone that no fit uses", "",
     In(kClearAperture, kFromZero)},
    {ANALYSIS(AsphereSlopeWindowMM), "mm", "window over which the slope of an asphere is taken", "",
     In(kClearAperture, kAboveZero).Titled("Slope window")},
    {ANALYSIS(FilterType), "", "filter that separates waviness and roughness", kFilterChoices,
     In(kFilter).Titled("Long-wave filter")},
    {ANALYSIS(LcCutoffMM), "mm", "long-wave cut-off in force", "", Within(kAboveZero)},
    {ANALYSIS(LsCutoffMM), "mm", "short-wave cut-off in force; 0 or less: no short-wave filter"},
    {ANALYSIS(StandardLcCutoff), "", "long-wave cut-off is one of the standard ones"},
    {ANALYSIS(StandardLsCutoff), "", "short-wave cut-off is one of the standard ones"},
    {ANALYSIS(UserLcCutoffMM), "mm", "the user's own long-wave cut-off", "", Within(kAboveZero)},
    {ANALYSIS(UserLsCutoffMM), "mm", "the user's own short-wave cut-off", "", Within(kFromZero)},
    {ANALYSIS(SplineTension), "", "tension of the spline Gaussian and robust Gaussian filters", "",
     In(kFilter, Between(0.0, 1.0)).Titled("Spline tension")},
    {ANALYSIS(PrimaryHSCHeight), "um", "level of the high spot count, primary profile", "", In(kLevels)},
    {ANALYSIS(RoughnessHSCHeight), "um", "level of the high spot count, roughness profile", "", In(kLevels)},
    {ANALYSIS(PrimaryVCHeight), "um", "level of the valley count, primary profile", "", In(kLevels)},
    {ANALYSIS(RoughnessVCHeight), "um", "level of the valley count, roughness profile", "", In(kLevels)},
    {ANALYSIS(PrimaryPcLevel), "um", "band of the peak count, primary profile", "", In(kLevels, kFromZero)},
    {ANALYSIS(RoughnessPcLevel), "um", "band of the peak count, roughness profile", "", In(kLevels, kFromZero)},
    {ANALYSIS(WavinessPcLevel), "um", "band of the peak count, waviness profile", "", In(kLevels, kFromZero)},
    {ANALYSIS(WcWzPercent), "%", "least height of a profile element for Wc and Wtc, percent of Wz", "",
     In(kElementHeights, kPercent).Behind(1).Titled("Wc and Wtc, of Wz")},
    {ANALYSIS(RcRzPercent), "%", "least height of a profile element for Rc and other R rows of elements, percent of Rz",
     "", In(kElementHeights, kPercent).Behind(3).Titled("Rc and other R rows, of Rz")},
    {ANALYSIS(PsmPzPercent), "%",
     "least height of a profile element for Psm and other P rows of elements, percent of Pz", "",
     In(kElementHeights, kPercent).Titled("Psm and other P rows, of Pz")},
    {ANALYSIS(WsmWzPercent), "%", "least height of a profile element for Wsm, percent of Wz", "",
     In(kElementHeights, kPercent).Titled("Wsm, of Wz")},
    {ANALYSIS(RsmRzPercent), "%", "kept in the file; Rsm goes by the least height for Rc", "",
     In(kElementHeights, kPercent).Behind(2).Titled("Rsm (as Rc; only kept)")},
    {ANALYSIS(WcSamplingLengthPercent), "%",
     "least width of a profile element for Wc and Wtc, percent of the sampling length", "",
     In(kElementWidths, kPercent).Behind(1).Titled("Wc and Wtc")},
    {ANALYSIS(RcSamplingLengthPercent), "%",
     "least width of a profile element for Rc and other R rows of elements, percent of the sampling length", "",
     In(kElementWidths, kPercent).Behind(3).Titled("Rc and other R rows")},
    {ANALYSIS(PsmSamplingLengthPercent), "%",
     "least width of a profile element for Psm and other P rows of elements, percent of the sampling length", "",
     In(kElementWidths, kPercent).Titled("Psm and other P rows")},
    {ANALYSIS(WsmSamplingLengthPercent), "%",
     "least width of a profile element for Wsm, percent of the sampling length", "",
     In(kElementWidths, kPercent).Titled("Wsm")},
    {ANALYSIS(RsmSamplingLengthPercent), "%", "kept in the file; Rsm goes by the least width for Rc", "",
     In(kElementWidths, kPercent).Behind(2).Titled("Rsm (as Rc; only kept)")},
    {ANALYSIS(UserDiscardType), "", "what the long-wave filter discards at each end",
     "0 Default, 1 1/2 Cutoff, 2 1 Cutoff, above 2 Other Discard Length", In(kEnds).Titled("Discarded at each end")},
    {ANALYSIS(UserDiscardLengthMM), "mm", "the user's own length to discard", "",
     In(kEnds, kFromZero).Titled("Your own length")},
    {ANALYSIS(ClosingRadiusForWvoid), "mm", "radius of the closing ball of Wvoid", "", In(kEnvelopes, kAboveZero)},
    {ANALYSIS(OpeningRadiusForWcvx), "mm", "radius of the opening ball of Wcvx", "", In(kEnvelopes, kAboveZero)},
    {ANALYSIS(WindowWidthForWseg), "mm", "width of the window of Wseg", "", In(kEnvelopes, kAboveZero)},
    {ANALYSIS(WxpEndRegionsMM), "mm", "width of the ends that Wpl and Wpr look at", "", In(kEnvelopes, kAboveZero)},
    {AUTO_LOADING(IsAutoLoading), "", "load files as they appear", "", In(kWatchedFiles)},
    {AUTO_LOADING(AutoLoadFromGroup), "", "take every file of the folder that fits the mask; otherwise the one file",
     "", In(kWatchedFiles).Titled("Every file of the folder")},
    {AUTO_LOADING(DeleteAfterAutoLoadFromGroup), "", "delete a file once it is done", "", In(kAfterLoading).Behind(1)},
    {AUTO_LOADING(TopmostAfterAutoLoad), "", "bring the window to the front after a file", "",
     In(kAfterLoading).Behind(2)},
    {AUTO_LOADING(StorageFolderAfterAutoLoad), "", "folder that keeps the files done", "", In(kAfterLoading).Behind(1)},
    {AUTO_LOADING(AutoLoadFolder), "", "folder that is watched", "", In(kWatchedFiles)},
    {AUTO_LOADING(AutoLoadMask), "", "names of the files taken from it", "", In(kWatchedFiles)},
    {AUTO_LOADING(AutoLoadFile), "", "the one file that is watched", "", In(kWatchedFiles)},
    {AUTO_LOADING(AutoExport), "", "add the results to the parameter file", "", In(kAfterLoading)},
    {AUTO_LOADING(LogEventsWhenAutoLoading), "", "write the event log", "", In(kAfterLoading).Behind(2)},
    {RXQ(RqFittingMethod), "", "regions that the lines of Rpq and Rvq are fitted to",
     "0 between the percent limits, 1 found automatically", In(kProbability).Titled("Regions of the fit")},
    {RXQ(UPLPercent), "%", "upper limit of the plateau line", "",
     In(kProbability, kPercent).Titled("Plateau line from")},
    {RXQ(LPLPercent), "%", "lower limit of the plateau line", "", In(kProbability, kPercent).Titled("Plateau line to")},
    {RXQ(UVLPercent), "%", "upper limit of the valley line", "", In(kProbability, kPercent).Titled("Valley line from")},
    {RXQ(LVLPercent), "%", "lower limit of the valley line", "", In(kProbability, kPercent).Titled("Valley line to")},
    {RXQ(RxqValleyCountHeightUm), "um", "level of the valley count that Rvq needs", "",
     In(kProbability).Titled("Level of the valley count")},
    {RXQ(RxqMinimumValleyCount), "", "fewest valleys that Rvq needs", "",
     In(kProbability, kFromZero).Titled("Fewest valleys")},
    {RXQ(RxqUpperValleyCountPercent), "%", "one end of the search for the linear regions", "",
     In(kProbability, kPercent).Titled("One end of the search")},
    {RXQ(RxqLowerValleyCountPercent), "%", "other end of the search for the linear regions", "",
     In(kProbability, kPercent).Titled("Other end of the search")},
    {MOTIF(MotifAMM), "mm", "longest roughness motif", "", In(kMotifs, kAboveZero)},
    {MOTIF(MotifBMM), "mm", "longest waviness motif", "", In(kMotifs, kAboveZero)},
    {MOTIF(UseTHMotif), "", "join neighbouring pairs only, from left to right", "",
     In(kMotifs).Titled("Join pairs left to right")},
    {MOTIF(UseTHShortMotifCombination), "",
     "leave out the envelope condition for motifs shorter than half of the longest roughness motif", "",
     In(kMotifs).Titled("No envelope condition below A/2")},
    {MOTIF(MotifRProfile), "", "draw the roughness motifs; both kinds where neither is asked for", "",
     In(kMotifs).Titled("Draw roughness motifs")},
    {MOTIF(MotifWProfile), "", "draw the waviness motifs", "", In(kMotifs)},
    {BindCount<kParameterRows>("PARAMETERS", "AvailableParameters"), "", "rows of the parameter list, at most 128"},
    {PARAMETER("Name%02d", &ParameterSelection::name), "", "name of the parameter"},
    {PARAMETER("Selected%02d", &ParameterSelection::selected), "", "compute and show it", "", Column("Parameter")},
    TOLERANCE(PARAMETER, ParameterSelection, "MetricUpperTolLimit%02d", "MetricLowerTolLimit%02d", "metric",
              SettingLimits()),
    {PARAMETER("SelectionRef%02d", &ParameterSelection::selectionRef), "", "place in the order of selection"},
    {BindCount<kPrimaryRatioRows>("PRIMARY_BEARING_RATIOS", "PrimaryAvailableBearingRatios"), "",
     "rows of the list, always 10"},
    {PRIMARY_RATIO("PSelected%02d", &MaterialRatioRow::selected), "", "compute and show the row", "", Column("Show")},
    {PRIMARY_RATIO("PMeanReferenced%02d", &MaterialRatioRow::meanReferenced), "",
     "depth counted from the mean line, positive above it", "", Column("From mean line")},
    {PRIMARY_RATIO("PDepthUM%02d", &MaterialRatioRow::depthUM), "um", "depth below the reference height", "",
     Column("Depth")},
    {PRIMARY_RATIO("POffsetPercent%02d", &MaterialRatioRow::offsetPercent), "%",
     "material ratio of the reference height", "", Column("Reference", kPercent)},
    TOLERANCE(PRIMARY_RATIO, MaterialRatioRow, "MetricUpperTolLimit%02d", "MetricLowerTolLimit%02d", "%", kPercent),
    {BindCount<kRoughnessRatioRows>("ROUGHNESS_BEARING_RATIOS", "RoughnessAvailableBearingRatios"), "",
     "rows of the list, always 10"},
    {ROUGHNESS_RATIO("Selected%02d", &MaterialRatioRow::selected), "", "compute and show the row", "", Column("Show")},
    {ROUGHNESS_RATIO("MeanReferenced%02d", &MaterialRatioRow::meanReferenced), "",
     "depth counted from the mean line, positive above it", "", Column("From mean line")},
    {ROUGHNESS_RATIO("DepthUM%02d", &MaterialRatioRow::depthUM), "um", "depth below the reference height", "",
     Column("Depth")},
    {ROUGHNESS_RATIO("OffsetPercent%02d", &MaterialRatioRow::offsetPercent), "%",
     "material ratio of the reference height", "", Column("Reference", kPercent)},
    TOLERANCE(ROUGHNESS_RATIO, MaterialRatioRow, "MetricUpperTolLimit%02d", "MetricLowerTolLimit%02d", "%", kPercent),
    {BindCount<kPrimaryHtpRows>("PRIMARY_HTPS", "PrimaryAvailableHtps"), "", "rows of the list, always 10"},
    {PRIMARY_HTP("Selected%02d", &HtpRow::selected), "", "compute and show the row", "", Column("Show")},
    {PRIMARY_HTP("UpperPercent%02d", &HtpRow::upperPercent), "%", "upper material ratio", "",
     Column("Upper ratio", kPercent).Behind(1)},
    {PRIMARY_HTP("LowerPercent%02d", &HtpRow::lowerPercent), "%", "lower material ratio", "",
     Column("Lower ratio", kPercent)},
    TOLERANCE(PRIMARY_HTP, HtpRow, "UpperTolLimitUM%02d", "LowerTolLimitUM%02d", "um", SettingLimits()),
    {BindCount<kRoughnessHtpRows>("ROUGHNESS_HTPS", "RoughnessAvailableHtps"), "", "rows of the list, always 10"},
    {ROUGHNESS_HTP("Selected%02d", &HtpRow::selected), "", "compute and show the row", "", Column("Show")},
    {ROUGHNESS_HTP("UpperPercent%02d", &HtpRow::upperPercent), "%", "upper material ratio", "",
     Column("Upper ratio", kPercent).Behind(1)},
    {ROUGHNESS_HTP("LowerPercent%02d", &HtpRow::lowerPercent), "%", "lower material ratio", "",
     Column("Lower ratio", kPercent)},
    TOLERANCE(ROUGHNESS_HTP, HtpRow, "UpperTolLimitUM%02d", "LowerTolLimitUM%02d", "um", SettingLimits()),
    {ASPHERIC(AsphereMODFileComment), "", "comment of exported asphere files", "", In(kModFiles)},
    {ASPHERIC(C_CurvatureMM), "1/mm", "curvature at the vertex", "", In(kAsphereTerms)},
    {ASPHERIC(RadiusMethod), "", "what a fit does with the radius", "0 fitted, 1 held",
     In(kAsphereTerms).Titled("Radius in a fit")},
    {ASPHERIC(E_ConicConstant), "", "conic constant k", "", In(kAsphereTerms).Titled("Conic constant k")},
    {ASPHERIC(ConicMethod), "", "what a fit does with the conic constant", "0 fitted, 1 held",
     In(kAsphereTerms).Titled("Conic constant in a fit")},
    {ASPHERIC(EvenTermsOnly), "", "coefficients belong to even powers only", "", In(kAsphereTerms)},
    {BindCount<kCoefficientRows>("ASPHERIC_PARAMETERS", "NumCoefficients"), "",
     "coefficients that follow, at most 100"},
    {BindCoefficient(), "", "polynomial coefficient; the keys are A0, A2, A4 ..."},
    {ASPHERIC(AsphereXFixed), "", "hold the vertex at the place below", "", In(kVertex)},
    {ASPHERIC(AsphereXPositionMethod), "", "where the vertex is held, or also looked for",
     "0 the X below or the middle of the data, 1 peak or valley by the curvature, 2 peak, 3 "
     "valley",
     In(kVertex).Titled("Place of the vertex")},
    {ASPHERIC(AsphereXStartMM), "mm", "X of the vertex from the first sample, where it is held", "",
     In(kVertex).Titled("X of the vertex")},
    {FREE_FORM(FreeFormFixedStart), "", "hold the first measured point at the X below", "",
     In(kPlacing).Titled("Hold the first point")},
    {FREE_FORM(FreeFormFirstDataPointXMM), "mm", "X of the first measured point in the nominal shape", "",
     In(kPlacing).Titled("X of the first point")},
    {FREE_FORM(FreeFormAllowTilt), "", "the fit may tilt the shape", "", In(kPlacing)},
    {FREE_FORM(FreeFormIsLeastSqaures), "", "least squares fit; otherwise least absolute deviations", "",
     In(kPlacing).Titled("Least squares fit")},
    {FREE_FORM(FreeFormFilterType), "", "filter of the nominal shape", kFilterChoicesOrNone, In(kNominalFilter)},
    {FREE_FORM(FreeFormFilterCutoffMM), "mm", "cut-off of that filter", "", In(kNominalFilter, kAboveZero)},
    {FREE_FORM(FreeFormPreviewMaxXMM), "mm", "right edge of the free-form preview"},
    {FREE_FORM(FreeFormPreviewMinXMM), "mm", "left edge of the free-form preview"},
    {FREE_FORM(FreeFormPreviewMaxYUM), "um", "upper edge of the free-form preview"},
    {FREE_FORM(FreeFormPreviewMinYUM), "um", "lower edge of the free-form preview"},
    {BindCount<kFreeFormRows>("FREE_FORM", "FreeFormPoints"), "",
     "points of the nominal shape that follow, at most 750000"},
    {BindRow<&Analysis::freeFormPoints, &FreeFormPoint::xMM>("FREE_FORM", "X%06d(mm)", kFreeFormRows), "mm",
     "X of a point; the numbers are 0, 2, 4 ..."},
    {BindRow<&Analysis::freeFormPoints, &FreeFormPoint::zUM>("FREE_FORM", "Z%06d(um)", kFreeFormRows), "um",
     "height of a point"},
    {DECISION(AcceptanceRule), "", "when the values of several profiles keep a limit",
     "0 max rule, 1 16 % rule, 2 median rule", Column("Rule for several profiles", Between(0.0, 2.0))},
    {DECISION(DecisionRule), "", "how an uncertainty enters a verdict",
     "0 values alone, 1 guarded by U, 2 guarded by U and undecided fails",
     Column("Rule for the uncertainty", Between(0.0, 2.0))},
    {STANDARD(Edition, "1997, 2021, both"), "", "edition of the standards that the rows are of: 1997, 2021 or both", "",
     In(kStandard).Titled("Edition")},
    {STANDARD(ShortWaveFilter, "spline, gaussian"), "", "filter that takes the short waves off: spline or gaussian", "",
     In(kStandard).Titled("Short-wave filter")},
    {STANDARD(LongWaveFilter, "gaussian, spline, rk, robust, robust-gaussian-2"), "",
     "filter that separates waviness and roughness, by its word, robust-gaussian-2 among others; empty: the one chosen "
     "by number",
     "", In(kStandard).Titled("Long-wave filter")},
    {STANDARD(CoreFilter, "roughness, gaussian, spline, rk, robust, robust-gaussian-2"), "",
     "filter that the core rows of 2021 take their roughness from; roughness: none of their own", "",
     In(kStandard).Titled("Filter of the core rows")},
    {STANDARD(Sections), "", "sections of the evaluation length", "",
     In(kStandard, Between(1.0, 1000.0)).Titled("Number of sections")},
    {STANDARD(EvaluationLengthMM), "mm", "evaluation length in the middle of what the filter leaves; 0: all of it", "",
     In(kStandard, kFromZero).Titled("Evaluation length")},
    {STANDARD(CompleteSections), "", "refuse a record that is too short for that length", "",
     In(kStandard).Titled("Refuse short records")},
    {STANDARD(Class), "", "setting class that cut-offs and lengths were taken from; it is only named", "",
     In(kStandard).Titled("Setting class")},
    {STANDARD(MostSpacingUM), "um", "point spacing above which a notice says that it is too coarse; 0: none", "",
     In(kStandard, kFromZero).Titled("Largest spacing")},
    {STANDARD(MostTipRadiusUM), "um", "tip radius above which a notice says that it is too blunt; 0: none", "",
     In(kStandard, kFromZero).Titled("Largest tip radius")},
    {STANDARD(Indication), "", "indication of a drawing that reports name with its verdict", "",
     In(kStandard).Titled("Drawing")},
    {STANDARD(ClassTable), "", "file with the table of the setting classes; empty: the built-in one", "",
     In(kStandard).Titled("Table of classes")},
    {STANDARD(HillThresholdPercent), "%", "least peak height of a hill of the elements, percent of Rp", "",
     In(kStandardRows, kPercent).Titled("Hill threshold, of Rp")},
    {STANDARD(DaleThresholdPercent), "%", "least pit depth of a dale of the elements, percent of Rv", "",
     In(kStandardRows, kPercent).Titled("Dale threshold, of Rv")},
    {STANDARD(PruningPercent), "%", "least local depth of hills and dales of the feature rows, percent of Rz", "",
     In(kStandardRows, kPercent).Titled("Pruning, of Rz")},
    {STANDARD(FeatureCount), "", "peaks and pits of R5p and R5v", "",
     In(kStandardRows, Between(1.0, 1000.0)).Titled("Peaks of R5p and R5v")},
    {STANDARD(AutocorrelationLevel), "", "autocorrelation at the lag Ral", "",
     In(kStandardRows, Between(-1.0, 1.0)).Titled("Level of Ral")},
    {STANDARD(VolumeUpperPercent), "%", "material ratio p of the volumes", "",
     In(kStandardRows, kPercent).Titled("Volumes: ratio p")},
    {STANDARD(VolumeLowerPercent), "%", "material ratio q of the volumes", "",
     In(kStandardRows, kPercent).Titled("Volumes: ratio q")},
    {Bind<&Settings::display, &DisplaySettings::ShowFeatures>("STANDARD", "ShowFeatures", KeyWritten::kWhereChanged),
     "", "draw hills and dales on the profile", "", In(kStandardRows).Titled("Draw hills and dales")},
    {BindFeatureCount(), "", "feature parameters that follow, at most 100"},
    {BindFeature(), "", "feature parameter, a row beside those of the list: R: FC; D; Wolfprune 5 %; All; HDh; Mean"},
});

#undef TOLERANCE
#undef DISPLAY
#undef AUTO_LOADING
#undef DECISION
#undef ANALYSIS_IN
#undef ANALYSIS
#undef RXQ
#undef MOTIF
#undef ASPHERIC
#undef FREE_FORM
#undef STANDARD
#undef PARAMETER
#undef PRIMARY_RATIO
#undef ROUGHNESS_RATIO
#undef PRIMARY_HTP
#undef ROUGHNESS_HTP

// A key pattern taken apart: Name%02d is "Name", 2, "".
struct KeyPattern {
  std::string_view before;
  int digits = 0;
  std::string_view after;
};

KeyPattern TakeApart(std::string_view pattern) {
  const std::size_t percent = pattern.find('%');
  const std::size_t letter = pattern.find('d', percent);
  const ParsedInt32 digits = ParseInt32(pattern.substr(percent + 1, letter - percent - 1));
  return {pattern.substr(0, percent), digits.value, pattern.substr(letter + 1)};
}

// Keys of one family have the same text here: the first number is taken out.
std::string FamilyOf(std::string_view section, std::string_view before, std::string_view after) {
  return LowerAscii(section) + '\n' + LowerAscii(before) + '%' + LowerAscii(after);
}

std::string NameOf(std::string_view section, std::string_view key) {
  return LowerAscii(section) + '\n' + LowerAscii(key);
}

using KeyIndex = std::unordered_map<std::string, const SettingKey*>;

KeyIndex MakeIndex() {
  KeyIndex index;
  for (const SettingKey& key : kTable) {
    const SettingBinding& binding = key.binding;
    if (binding.isRepeated()) {
      const KeyPattern pattern = TakeApart(binding.key);
      index.emplace(FamilyOf(binding.section, pattern.before, pattern.after), &key);
    } else {
      index.emplace(NameOf(binding.section, binding.key), &key);
    }
  }
  return index;
}

}  // namespace

std::span<const SettingKey> SettingsTable() {
  return kTable;
}

std::vector<std::string_view> WordsOf(const SettingBinding& binding) {
  std::vector<std::string_view> words;
  if (binding.words.empty()) return words;
  if (std::get<std::string>(binding.get(Settings(), 0)).empty()) words.emplace_back();
  for (std::size_t begin = 0; begin <= binding.words.size();) {
    const std::size_t end = std::min(binding.words.find(',', begin), binding.words.size());
    words.push_back(TrimBlanks(binding.words.substr(begin, end - begin)));
    begin = end + 1;
  }
  return words;
}

std::string KeyOfRow(const SettingBinding& binding, std::size_t row) {
  if (!binding.isRepeated()) return std::string(binding.key);
  const KeyPattern pattern = TakeApart(binding.key);
  std::string key(pattern.before);
  AppendInteger(key, static_cast<std::int64_t>(row * binding.rows->numberStep), pattern.digits, '0');
  key += pattern.after;
  return key;
}

std::optional<SettingPlace> FindSetting(std::string_view section, std::string_view key) {
  static const KeyIndex index = MakeIndex();
  if (const auto found = index.find(NameOf(section, key)); found != index.end()) return SettingPlace{found->second, 0};

  constexpr std::string_view kDigits = "0123456789";
  const std::size_t first = key.find_first_of(kDigits);
  if (first == std::string_view::npos) return std::nullopt;
  const std::size_t last = std::min(key.find_first_not_of(kDigits, first), key.size());
  const auto found = index.find(FamilyOf(section, key.substr(0, first), key.substr(last)));
  if (found == index.end()) return std::nullopt;
  const auto number = static_cast<std::size_t>(ParseInt32(key.substr(first, last - first)).value);
  const std::size_t row = number / found->second->binding.rows->numberStep;
  // Name3 is not Name03, and A3 is between two coefficients.
  if (!EqualIgnoringCase(KeyOfRow(found->second->binding, row), key)) return std::nullopt;
  return SettingPlace{found->second, row};
}

bool HasEffect(const SettingKey& key, const Settings& settings) {
  if (!key.entry.needs) return true;
  const SettingValue value = key.entry.needs->binding.get(settings, 0);
  const std::int32_t wanted = key.entry.needs->value;
  const bool* const flag = std::get_if<bool>(&value);
  return flag != nullptr ? *flag == (wanted != 0) : std::get<std::int32_t>(value) == wanted;
}

bool IsSettingsSection(std::string_view section) {
  return std::any_of(kTable.begin(), kTable.end(),
                     [&](const SettingKey& key) { return EqualIgnoringCase(key.binding.section, section); });
}

}  // namespace texturon
