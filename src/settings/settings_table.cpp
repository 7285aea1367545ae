// SPDX-License-Identifier: Apache-2.0

#include "settings/settings_table.h"

#include <algorithm>
#include <array>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/number_text.h"
#include "base/text.h"
#include "settings/filter_table.h"

namespace texturon {
namespace {

constexpr double kFileVersion = 2.0;
constexpr FilterChoices kFilterChoices;
constexpr FilterChoices kFilterChoicesOrNone(", any other none");

// object.*First.*Rest...
template <auto First, auto... Rest, typename Object>
constexpr auto& Follow(Object& object) {
  if constexpr (sizeof...(Rest) == 0) {
    return object.*First;
  } else {
    return Follow<Rest...>(object.*First);
  }
}

template <auto... Path>
using MemberType = std::remove_cvref_t<decltype(Follow<Path...>(std::declval<Settings&>()))>;

template <typename Member>
constexpr SettingType TypeOf() {
  if constexpr (std::is_same_v<Member, std::string>) return SettingType::Text;
  if constexpr (std::is_same_v<Member, std::int32_t>) return SettingType::Integer;
  if constexpr (std::is_same_v<Member, bool>) return SettingType::Flag;
  return SettingType::Number;
}

template <auto... Path>
constexpr SettingBinding Bind(std::string_view section, std::string_view key) {
  using Member = MemberType<Path...>;
  return {section,
          key,
          TypeOf<Member>(),
          [](const Settings& settings, std::size_t) -> SettingValue { return Follow<Path...>(settings); },
          [](Settings& settings, std::size_t, const SettingValue& value) {
            Follow<Path...>(settings) = std::get<Member>(value);
          },
          nullptr};
}

template <auto List>
constexpr SettingRows RowsOf(std::size_t least, std::size_t most, std::size_t numberStep) {
  return {least, most, numberStep, [](const Settings& settings) { return (settings.analysis.*List).size(); },
          [](Settings& settings, std::size_t count) {
            auto& list = settings.analysis.*List;
            if constexpr (requires { list.resize(count); }) list.resize(count);
          }};
}

using Analysis = AnalysisSettings;

constexpr SettingRows kParameterRows = RowsOf<&Analysis::parameters>(0, kMostParameters, 1);
constexpr SettingRows kPrimaryRatioRows = RowsOf<&Analysis::primaryMaterialRatios>(kRatioRows, kRatioRows, 1);
constexpr SettingRows kRoughnessRatioRows = RowsOf<&Analysis::roughnessMaterialRatios>(kRatioRows, kRatioRows, 1);
constexpr SettingRows kPrimaryHtpRows = RowsOf<&Analysis::primaryHtps>(kRatioRows, kRatioRows, 1);
constexpr SettingRows kRoughnessHtpRows = RowsOf<&Analysis::roughnessHtps>(kRatioRows, kRatioRows, 1);
constexpr SettingRows kCoefficientRows = RowsOf<&Analysis::asphereCoefficients>(0, kMostAsphereCoefficients, 2);
constexpr SettingRows kFreeFormRows = RowsOf<&Analysis::freeFormPoints>(0, kMostFreeFormPoints, 2);

template <const SettingRows& Rows>
constexpr SettingBinding BindCount(std::string_view section, std::string_view key) {
  return {section,
          key,
          SettingType::Count,
          [](const Settings& settings, std::size_t) -> SettingValue {
            return static_cast<std::int32_t>(Rows.count(settings));
          },
          [](Settings& settings, std::size_t, const SettingValue& value) {
            const auto wanted = static_cast<std::size_t>(std::max(std::get<std::int32_t>(value), 0));
            Rows.resize(settings, std::clamp(wanted, Rows.least, Rows.most));
          },
          &Rows};
}

template <auto List, auto... Path>
constexpr SettingBinding BindRow(std::string_view section, std::string_view key, const SettingRows& rows) {
  using Row = std::remove_cvref_t<decltype((std::declval<Settings&>().analysis.*List)[0])>;
  using Member = std::remove_cvref_t<decltype(Follow<Path...>(std::declval<Row&>()))>;
  return {section,
          key,
          TypeOf<Member>(),
          [](const Settings& settings, std::size_t row) -> SettingValue {
            return Follow<Path...>((settings.analysis.*List)[row]);
          },
          [](Settings& settings, std::size_t row, const SettingValue& value) {
            Follow<Path...>((settings.analysis.*List)[row]) = std::get<Member>(value);
          },
          &rows};
}

constexpr SettingBinding BindCoefficient() {
  return {"ASPHERIC_PARAMETERS",
          "A%d",
          SettingType::Coefficient,
          [](const Settings& settings, std::size_t row) -> SettingValue {
            return settings.analysis.asphereCoefficients[row];
          },
          [](Settings& settings, std::size_t row, const SettingValue& value) {
            settings.analysis.asphereCoefficients[row] = std::get<double>(value);
          },
          &kCoefficientRows};
}

constexpr SettingBinding BindVersion() {
  return {"TEXTURON",
          "IniVersion",
          SettingType::Version,
          [](const Settings&, std::size_t) -> SettingValue { return kFileVersion; },
          [](Settings&, std::size_t, const SettingValue&) {},
          nullptr};
}

// A field bears its key's name, so that both are written once.
#define DISPLAY(field) Bind<&Settings::display, &DisplaySettings::field>("DISPLAY", #field)
#define AUTO_LOADING(field) Bind<&Settings::autoLoading, &AutoLoadingSettings::field>("AUTO_LOADING", #field)
#define ANALYSIS_IN(section, field) Bind<&Settings::analysis, &Analysis::field>(section, #field)
#define ANALYSIS(field) ANALYSIS_IN("ANALYSIS", field)
#define RXQ(field) ANALYSIS_IN("RXQ_PARAMETERS", field)
#define MOTIF(field) ANALYSIS_IN("MOTIF_PARAMETERS", field)
#define ASPHERIC(field) ANALYSIS_IN("ASPHERIC_PARAMETERS", field)
#define FREE_FORM(field) ANALYSIS_IN("FREE_FORM", field)
#define PARAMETER(key, ...) BindRow<&Analysis::parameters, __VA_ARGS__>("PARAMETERS", key, kParameterRows)
#define PRIMARY_RATIO(key, ...) \
  BindRow<&Analysis::primaryMaterialRatios, __VA_ARGS__>("PRIMARY_BEARING_RATIOS", key, kPrimaryRatioRows)
#define ROUGHNESS_RATIO(key, ...) \
  BindRow<&Analysis::roughnessMaterialRatios, __VA_ARGS__>("ROUGHNESS_BEARING_RATIOS", key, kRoughnessRatioRows)
#define PRIMARY_HTP(key, ...) BindRow<&Analysis::primaryHtps, __VA_ARGS__>("PRIMARY_HTPS", key, kPrimaryHtpRows)
#define ROUGHNESS_HTP(key, ...) BindRow<&Analysis::roughnessHtps, __VA_ARGS__>("ROUGHNESS_HTPS", key, kRoughnessHtpRows)

constexpr auto kTable = std::to_array<SettingKey>({
    {BindVersion(), "", "version of the file's layout"},
    {DISPLAY(Identification), "", "identification of the measurement"},
    {DISPLAY(UpperIsSplit), "", "upper pane of the window split"},
    {DISPLAY(LowerIsSplit), "", "lower pane of the window split"},
    {DISPLAY(Metric), "", "show metric units; otherwise imperial"},
    {DISPLAY(PrimaryAsTpa), "", "title the primary bearing ratios Tpa"},
    {DISPLAY(RoughnessAsTpi), "", "title the roughness bearing ratios Tpi"},
    {DISPLAY(ProfileType), "", "profiles shown in the profile view",
     "0 raw data, 1 primary and waviness, 2 primary, 3 waviness, 4 roughness, 5 form suppressed; from 16 on 16 and the "
     "sum of 1 raw, 2 form suppressed, 4 primary, 8 waviness, 16 roughness, 32 the removed form"},
    {DISPLAY(BrcAdfType), "", "curves shown in the bearing ratio view",
     "0 bearing ratio of the roughness, 1 amplitudes of the roughness, 2 both of the roughness, 3 bearing ratio of the "
     "primary, 4 amplitudes of the primary, 5 both of the primary"},
    {DISPLAY(ShowRkLines), "", "draw the construction lines of Rk"},
    {DISPLAY(ParameterColumns), "", "columns of the parameter table"},
    {DISPLAY(ShowFilterTrans), "", "show the filter's transmission"},
    {DISPLAY(ShowClosingProfile), "", "draw the closing envelope"},
    {DISPLAY(ShowOpeningProfile), "", "draw the opening envelope"},
    {DISPLAY(CursorDisplayType), "", "cursors of the profile view", "0 none, 1 upright, 2 level, 3 both"},
    {DISPLAY(ShowXAxisValues), "", "numbers along the X axis"},
    {DISPLAY(ShowINIPathInHeading), "", "full path of the settings file in the heading"},
    {DISPLAY(ProfileAutoScale), "", "profile view chooses its own scale"},
    {DISPLAY(Profile11AspectRatio), "", "same scale for both axes of the profile view"},
    {DISPLAY(ProfileYMaxUM), "um", "upper edge of the profile view"},
    {DISPLAY(ProfileYMinUM), "um", "lower edge of the profile view"},
    {DISPLAY(ProfileAutoYSpacing), "", "profile view chooses its own grid"},
    {DISPLAY(ProfileYGridSpacingUM), "um", "distance of the grid lines"},
    {DISPLAY(ProfileYGridStartUM), "um", "height of the first grid line"},
    {DISPLAY(ShowExtremeSlopes), "", "mark steep stretches"},
    {DISPLAY(ExtremeSlopePlotDegrees), "deg", "slope from which a stretch is steep"},
    {DISPLAY(AspherePreviewMaxXMM), "mm", "right edge of the asphere preview"},
    {DISPLAY(AspherePreviewMinXMM), "mm", "left edge of the asphere preview"},
    {DISPLAY(AspherePreviewMaxYUM), "um", "upper edge of the asphere preview"},
    {DISPLAY(AspherePreviewMinYUM), "um", "lower edge of the asphere preview"},
    {DISPLAY(SpectrumAutoScale), "", "spectrum view chooses its own scale"},
    {DISPLAY(SpectrumYMaxUM), "um", "upper edge of the spectrum view"},
    {DISPLAY(SpectrumYMinUM), "um", "lower edge of the spectrum view"},
    {DISPLAY(ParameterFile), "", "parameter file that results are added to"},
    {DISPLAY(CompanyName), "", "company name on reports"},
    {DISPLAY(LogoFile), "", "picture on reports"},
    {ANALYSIS(CompTipRadiusWhenAvailble), "",
     "suppress the stylus tip radius that a file states; no height changes by it"},
    {ANALYSIS(FormRemovalType), "", "form that is removed",
     "0 none (mean height), 1 least squares line, 2 least squares arc, 3 fixed radius, 4 polynomial, 5 filter, 6 "
     "asphere, 7 free form"},
    {ANALYSIS(PolynomialOrder), "", "order of the polynomial"},
    {ANALYSIS(FormFilterCutoffMM), "mm", "cut-off of the filter that serves as form"},
    {ANALYSIS(ResidualType), "", "direction of the residual", "0 perpendicular to the form, any other number vertical"},
    {ANALYSIS(FixedRadiusMM), "mm", "radius of the fixed-radius form; positive concave, negative convex"},
    {ANALYSIS(FormRemovalDataReductionMethod), "", "which points the form is fitted to",
     "0 all, 1 about a number of points, 2 one each distance"},
    {ANALYSIS(FormRemovalNumberOfPoints), "", "number of points that the fit is thinned to"},
    {ANALYSIS(FormRemovalReductionSpacingUM), "um", "distance that the points of the fit are thinned to"},
    {ANALYSIS(SagTableLengthMM), "mm", "length of an exported sag table"},
    {ANALYSIS(SagTableSpacingMM), "mm", "step of an exported sag table"},
    {ANALYSIS(SagTableType), "", "layout of an exported sag table",
     "0 named table, 2 X and Z words, any other columns in mm"},
    {ANALYSIS(SagTableFileName), "", "file of an exported sag table"},
    {ANALYSIS(AspResidualLengthMM), "mm", "length of an exported aspheric residual"},
    {ANALYSIS(AspResidualSpacingMM), "mm", "step of an exported aspheric residual"},
    {ANALYSIS(AspResidualFileName), "", "file of an exported aspheric residual"},
    {ANALYSIS(AspResidualFileType), "", "layout of an exported aspheric residual",
     "0 named table, 2 X and Z words, any other columns in mm"},
    {ANALYSIS(AsphereResidualPadding), "", "what an exported aspheric residual has beyond the data",
     "1 zeros, 2 the nearest height, any other nothing"},
    {ANALYSIS(AsphereResidualOffsetUM), "um", "height added to an exported aspheric residual"},
    {ANALYSIS(AsphereUseClearAperture), "", "compute over the clear aperture only"},
    {ANALYSIS(AsphereClearApertureDiameterMM), "mm", "diameter of the clear aperture"},
    {ANALYSIS(AsphereClearApertureCentralDiscardMM), "mm", "middle zone that no fit uses"},
    {ANALYSIS(AsphereSlopeWindowMM), "mm", "window over which the slope of an asphere is taken"},
    {ANALYSIS(FilterType), "", "filter that separates waviness and roughness", kFilterChoices},
    {ANALYSIS(LcCutoffMM), "mm", "long-wave cut-off in force"},
    {ANALYSIS(LsCutoffMM), "mm", "short-wave cut-off in force; 0 or less: no short-wave filter"},
    {ANALYSIS(StandardLcCutoff), "", "long-wave cut-off is one of the standard ones"},
    {ANALYSIS(StandardLsCutoff), "", "short-wave cut-off is one of the standard ones"},
    {ANALYSIS(UserLcCutoffMM), "mm", "the user's own long-wave cut-off"},
    {ANALYSIS(UserLsCutoffMM), "mm", "the user's own short-wave cut-off"},
    {ANALYSIS(SplineTension), "", "tension of the spline filter"},
    {ANALYSIS(PrimaryHSCHeight), "um", "level of the high spot count, primary profile"},
    {ANALYSIS(RoughnessHSCHeight), "um", "level of the high spot count, roughness profile"},
    {ANALYSIS(PrimaryVCHeight), "um", "level of the valley count, primary profile"},
    {ANALYSIS(RoughnessVCHeight), "um", "level of the valley count, roughness profile"},
    {ANALYSIS(PrimaryPcLevel), "um", "band of the peak count, primary profile"},
    {ANALYSIS(RoughnessPcLevel), "um", "band of the peak count, roughness profile"},
    {ANALYSIS(WavinessPcLevel), "um", "band of the peak count, waviness profile"},
    {ANALYSIS(WcWzPercent), "%", "least height of a profile element for Wc and Wtc, percent of Wz"},
    {ANALYSIS(RcRzPercent), "%",
     "least height of a profile element for Rc and other R rows of elements, percent of Rz"},
    {ANALYSIS(PsmPzPercent), "%",
     "least height of a profile element for Psm and other P rows of elements, percent of Pz"},
    {ANALYSIS(WsmWzPercent), "%", "least height of a profile element for Wsm, percent of Wz"},
    {ANALYSIS(RsmRzPercent), "%", "least height of a profile element for Rsm, percent of Rz"},
    {ANALYSIS(WcSamplingLengthPercent), "%",
     "least width of a profile element for Wc and Wtc, percent of the sampling length"},
    {ANALYSIS(RcSamplingLengthPercent), "%",
     "least width of a profile element for Rc and other R rows of elements, percent of the sampling length"},
    {ANALYSIS(PsmSamplingLengthPercent), "%",
     "least width of a profile element for Psm and other P rows of elements, percent of the sampling length"},
    {ANALYSIS(WsmSamplingLengthPercent), "%",
     "least width of a profile element for Wsm, percent of the sampling length"},
    {ANALYSIS(RsmSamplingLengthPercent), "%",
     "least width of a profile element for Rsm, percent of the sampling length"},
    {ANALYSIS(UserDiscardType), "", "what the long-wave filter discards at each end",
     "0 nothing, 1 half a cut-off, 2 one cut-off, above 2 the user's own length"},
    {ANALYSIS(UserDiscardLengthMM), "mm", "the user's own length to discard"},
    {ANALYSIS(ClosingRadiusForWvoid), "mm", "radius of the closing ball of Wvoid"},
    {ANALYSIS(OpeningRadiusForWcvx), "mm", "radius of the opening ball of Wcvx"},
    {ANALYSIS(WindowWidthForWseg), "mm", "width of the window of Wseg"},
    {ANALYSIS(WxpEndRegionsMM), "mm", "width of the ends that Wpl and Wpr look at"},
    {AUTO_LOADING(IsAutoLoading), "", "load files as they appear"},
    {AUTO_LOADING(AutoLoadFromGroup), "", "take every file of the folder that fits the mask; otherwise the one file"},
    {AUTO_LOADING(DeleteAfterAutoLoadFromGroup), "", "delete a file once it is done"},
    {AUTO_LOADING(TopmostAfterAutoLoad), "", "bring the window to the front after a file"},
    {AUTO_LOADING(StorageFolderAfterAutoLoad), "", "folder that keeps the files done"},
    {AUTO_LOADING(AutoLoadFolder), "", "folder that is watched"},
    {AUTO_LOADING(AutoLoadMask), "", "names of the files taken from it"},
    {AUTO_LOADING(AutoLoadFile), "", "the one file that is watched"},
    {AUTO_LOADING(AutoExport), "", "add the results to the parameter file"},
    {AUTO_LOADING(LogEventsWhenAutoLoading), "", "write the event log"},
    {RXQ(RqFittingMethod), "", "regions that the lines of Rpq and Rvq are fitted to",
     "0 between the percent limits, 1 found automatically"},
    {RXQ(UPLPercent), "%", "upper limit of the plateau line"},
    {RXQ(LPLPercent), "%", "lower limit of the plateau line"},
    {RXQ(UVLPercent), "%", "upper limit of the valley line"},
    {RXQ(LVLPercent), "%", "lower limit of the valley line"},
    {RXQ(RxqValleyCountHeightUm), "um", "level of the valley count that Rvq needs"},
    {RXQ(RxqMinimumValleyCount), "", "fewest valleys that Rvq needs"},
    {RXQ(RxqUpperValleyCountPercent), "%", "one end of the search for the linear regions"},
    {RXQ(RxqLowerValleyCountPercent), "%", "other end of the search for the linear regions"},
    {MOTIF(MotifAMM), "mm", "longest roughness motif"},
    {MOTIF(MotifBMM), "mm", "longest waviness motif"},
    {MOTIF(UseTHMotif), "", "join neighbouring pairs only, from left to right"},
    {MOTIF(UseTHShortMotifCombination), "",
     "leave out the envelope condition for motifs shorter than half of MotifAMM"},
    {MOTIF(MotifRProfile), "", "draw the roughness motifs; both kinds where neither is asked for"},
    {MOTIF(MotifWProfile), "", "draw the waviness motifs"},
    {BindCount<kParameterRows>("PARAMETERS", "AvailableParameters"), "", "rows of the parameter list, at most 128"},
    {PARAMETER("Name%02d", &ParameterSelection::name), "", "name of the parameter"},
    {PARAMETER("Selected%02d", &ParameterSelection::selected), "", "compute and show it"},
    {PARAMETER("HighlightIfOut%02d", &ParameterSelection::tolerance, &Tolerance::highlightIfOut), "",
     "mark a value beyond its limits"},
    {PARAMETER("Toleranced%02d", &ParameterSelection::tolerance, &Tolerance::toleranced), "",
     "compare with the limits"},
    {PARAMETER("BilateralTol%02d", &ParameterSelection::tolerance, &Tolerance::bilateral), "",
     "both limits count; otherwise the upper alone"},
    {PARAMETER("MetricUpperTolLimit%02d", &ParameterSelection::tolerance, &Tolerance::upperLimit), "metric",
     "upper limit"},
    {PARAMETER("MetricLowerTolLimit%02d", &ParameterSelection::tolerance, &Tolerance::lowerLimit), "metric",
     "lower limit"},
    {PARAMETER("SelectionRef%02d", &ParameterSelection::selectionRef), "", "place in the order of selection"},
    {BindCount<kPrimaryRatioRows>("PRIMARY_BEARING_RATIOS", "PrimaryAvailableBearingRatios"), "",
     "rows of the list, always 10"},
    {PRIMARY_RATIO("PSelected%02d", &MaterialRatioRow::selected), "", "compute and show the row"},
    {PRIMARY_RATIO("PMeanReferenced%02d", &MaterialRatioRow::meanReferenced), "",
     "depth counted from the mean line, positive above it"},
    {PRIMARY_RATIO("PDepthUM%02d", &MaterialRatioRow::depthUM), "um", "depth below the reference height"},
    {PRIMARY_RATIO("POffsetPercent%02d", &MaterialRatioRow::offsetPercent), "%",
     "material ratio of the reference height"},
    {PRIMARY_RATIO("HighlightIfOut%02d", &MaterialRatioRow::tolerance, &Tolerance::highlightIfOut), "",
     "mark a value beyond its limits"},
    {PRIMARY_RATIO("Toleranced%02d", &MaterialRatioRow::tolerance, &Tolerance::toleranced), "",
     "compare with the limits"},
    {PRIMARY_RATIO("BilateralTol%02d", &MaterialRatioRow::tolerance, &Tolerance::bilateral), "",
     "both limits count; otherwise the upper alone"},
    {PRIMARY_RATIO("MetricUpperTolLimit%02d", &MaterialRatioRow::tolerance, &Tolerance::upperLimit), "%",
     "upper limit"},
    {PRIMARY_RATIO("MetricLowerTolLimit%02d", &MaterialRatioRow::tolerance, &Tolerance::lowerLimit), "%",
     "lower limit"},
    {BindCount<kRoughnessRatioRows>("ROUGHNESS_BEARING_RATIOS", "RoughnessAvailableBearingRatios"), "",
     "rows of the list, always 10"},
    {ROUGHNESS_RATIO("Selected%02d", &MaterialRatioRow::selected), "", "compute and show the row"},
    {ROUGHNESS_RATIO("MeanReferenced%02d", &MaterialRatioRow::meanReferenced), "",
     "depth counted from the mean line, positive above it"},
    {ROUGHNESS_RATIO("DepthUM%02d", &MaterialRatioRow::depthUM), "um", "depth below the reference height"},
    {ROUGHNESS_RATIO("OffsetPercent%02d", &MaterialRatioRow::offsetPercent), "%",
     "material ratio of the reference height"},
    {ROUGHNESS_RATIO("HighlightIfOut%02d", &MaterialRatioRow::tolerance, &Tolerance::highlightIfOut), "",
     "mark a value beyond its limits"},
    {ROUGHNESS_RATIO("Toleranced%02d", &MaterialRatioRow::tolerance, &Tolerance::toleranced), "",
     "compare with the limits"},
    {ROUGHNESS_RATIO("BilateralTol%02d", &MaterialRatioRow::tolerance, &Tolerance::bilateral), "",
     "both limits count; otherwise the upper alone"},
    {ROUGHNESS_RATIO("MetricUpperTolLimit%02d", &MaterialRatioRow::tolerance, &Tolerance::upperLimit), "%",
     "upper limit"},
    {ROUGHNESS_RATIO("MetricLowerTolLimit%02d", &MaterialRatioRow::tolerance, &Tolerance::lowerLimit), "%",
     "lower limit"},
    {BindCount<kPrimaryHtpRows>("PRIMARY_HTPS", "PrimaryAvailableHtps"), "", "rows of the list, always 10"},
    {PRIMARY_HTP("Selected%02d", &HtpRow::selected), "", "compute and show the row"},
    {PRIMARY_HTP("UpperPercent%02d", &HtpRow::upperPercent), "%", "upper material ratio"},
    {PRIMARY_HTP("LowerPercent%02d", &HtpRow::lowerPercent), "%", "lower material ratio"},
    {PRIMARY_HTP("HighlightIfOut%02d", &HtpRow::tolerance, &Tolerance::highlightIfOut), "",
     "mark a value beyond its limits"},
    {PRIMARY_HTP("Toleranced%02d", &HtpRow::tolerance, &Tolerance::toleranced), "", "compare with the limits"},
    {PRIMARY_HTP("BilateralTol%02d", &HtpRow::tolerance, &Tolerance::bilateral), "",
     "both limits count; otherwise the upper alone"},
    {PRIMARY_HTP("UpperTolLimitUM%02d", &HtpRow::tolerance, &Tolerance::upperLimit), "um", "upper limit"},
    {PRIMARY_HTP("LowerTolLimitUM%02d", &HtpRow::tolerance, &Tolerance::lowerLimit), "um", "lower limit"},
    {BindCount<kRoughnessHtpRows>("ROUGHNESS_HTPS", "RoughnessAvailableHtps"), "", "rows of the list, always 10"},
    {ROUGHNESS_HTP("Selected%02d", &HtpRow::selected), "", "compute and show the row"},
    {ROUGHNESS_HTP("UpperPercent%02d", &HtpRow::upperPercent), "%", "upper material ratio"},
    {ROUGHNESS_HTP("LowerPercent%02d", &HtpRow::lowerPercent), "%", "lower material ratio"},
    {ROUGHNESS_HTP("HighlightIfOut%02d", &HtpRow::tolerance, &Tolerance::highlightIfOut), "",
     "mark a value beyond its limits"},
    {ROUGHNESS_HTP("Toleranced%02d", &HtpRow::tolerance, &Tolerance::toleranced), "", "compare with the limits"},
    {ROUGHNESS_HTP("BilateralTol%02d", &HtpRow::tolerance, &Tolerance::bilateral), "",
     "both limits count; otherwise the upper alone"},
    {ROUGHNESS_HTP("UpperTolLimitUM%02d", &HtpRow::tolerance, &Tolerance::upperLimit), "um", "upper limit"},
    {ROUGHNESS_HTP("LowerTolLimitUM%02d", &HtpRow::tolerance, &Tolerance::lowerLimit), "um", "lower limit"},
    {ASPHERIC(AsphereMODFileComment), "", "comment of exported asphere files"},
    {ASPHERIC(C_CurvatureMM), "1/mm", "curvature at the vertex"},
    {ASPHERIC(RadiusMethod), "", "what a fit does with the radius", "0 fitted, 1 held"},
    {ASPHERIC(E_ConicConstant), "", "conic constant k"},
    {ASPHERIC(ConicMethod), "", "what a fit does with the conic constant", "0 fitted, 1 held"},
    {ASPHERIC(EvenTermsOnly), "", "coefficients belong to even powers only"},
    {BindCount<kCoefficientRows>("ASPHERIC_PARAMETERS", "NumCoefficients"), "",
     "coefficients that follow, at most 100"},
    {BindCoefficient(), "", "polynomial coefficient; the keys are A0, A2, A4 ..."},
    {ASPHERIC(AsphereXFixed), "", "hold the vertex at the place below"},
    {ASPHERIC(AsphereXPositionMethod), "", "where the vertex is held, or also looked for",
     "0 the X below or the middle of the data, 1 peak or valley by the curvature, 2 peak, 3 "
     "valley"},
    {ASPHERIC(AsphereXStartMM), "mm", "X of the vertex from the first sample, where it is held"},
    {FREE_FORM(FreeFormFixedStart), "", "hold the first measured point at the X below"},
    {FREE_FORM(FreeFormFirstDataPointXMM), "mm", "X of the first measured point in the nominal shape"},
    {FREE_FORM(FreeFormAllowTilt), "", "the fit may tilt the shape"},
    {FREE_FORM(FreeFormIsLeastSqaures), "", "least squares fit; otherwise least absolute deviations"},
    {FREE_FORM(FreeFormFilterType), "", "filter of the nominal shape", kFilterChoicesOrNone},
    {FREE_FORM(FreeFormFilterCutoffMM), "mm", "cut-off of that filter"},
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
});

#undef DISPLAY
#undef AUTO_LOADING
#undef ANALYSIS_IN
#undef ANALYSIS
#undef RXQ
#undef MOTIF
#undef ASPHERIC
#undef FREE_FORM
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

bool IsSettingsSection(std::string_view section) {
  return std::any_of(kTable.begin(), kTable.end(),
                     [&](const SettingKey& key) { return EqualIgnoringCase(key.binding.section, section); });
}

}  // namespace texturon
