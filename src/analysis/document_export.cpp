// SPDX-License-Identifier: Apache-2.0

#include "analysis/document_export.h"

#include <algorithm>
#include <array>
#include <optional>

#include "analysis/captions.h"
#include "analysis/curve_step.h"
#include "analysis/ratio_row_list.h"
#include "analysis/spectrum_step.h"
#include "base/quantity.h"
#include "base/units.h"
#include "export/asphere_export.h"
#include "export/curve_export.h"
#include "export/parameter_csv.h"
#include "export/profile_export.h"
#include "export/qdas_file.h"
#include "formats/mod_writer.h"
#include "platform/platform.h"
#include "settings/nominal_settings.h"

namespace texturon {
namespace {

ExportSource SourceOf(const Document& document) {
  return {document.profiles.sourcePath, document.profiles.identification};
}

ExportResult Missing(std::string_view what) {
  return {{}, "there is no " + std::string(what)};
}

template <ProfileKind kind>
ExportResult ExportProfile(const Document& document, Prompts& /*prompts*/) {
  const AnalysisSettings& settings = document.settings.analysis;
  const double ballRadiusMM =
      kind == ProfileKind::kOpening ? settings.OpeningRadiusForWcvx : settings.ClosingRadiusForWvoid;
  if (!document.profiles.Has(kind)) return Missing(ProfileTitle(kind, ballRadiusMM));
  const std::string description = AnalysisDescription(document);
  const std::string caption = FormCaption(document);
  const std::string filter = FilterDescription(document);
  return {ProfileExport(document.profiles.View(kind), SourceOf(document),
                        {.description = description,
                         .formCaption = caption,
                         .filterText = filter,
                         .shortCutoffMM = settings.LsCutoffMM,
                         .ballRadiusMM = ballRadiusMM}),
          {}};
}

template <CurveProfile profile>
ExportResult ExportCurve(const Document& document, auto make) {
  constexpr bool kIsPrimary = profile == CurveProfile::kPrimary;
  constexpr ProfileKind kKind = kIsPrimary ? ProfileKind::kPrimary : ProfileKind::kRoughness;
  if (!document.profiles.Has(kKind)) return Missing(ProfileTitle(kKind));
  const AnalysisResults& results = document.results;
  const HeightCurve& curve = kIsPrimary ? results.primaryCurve : results.roughnessCurve;
  const std::vector<double> own =
      curve.IsEmpty() ? SortedHeights(document.profiles.View(kKind)) : std::vector<double>();
  const std::string settings =
      kIsPrimary ? ShortCutoffText(document.settings.analysis.LsCutoffMM) : AnalysisDescription(document);
  return {make(curve.IsEmpty() ? own : curve.heightsUM, profile, SourceOf(document), settings), {}};
}

template <CurveProfile profile>
ExportResult ExportAmplitudes(const Document& document, Prompts& /*prompts*/) {
  return ExportCurve<profile>(document, AmplitudeDistributionExport);
}

template <CurveProfile profile>
ExportResult ExportBearingRatios(const Document& document, Prompts& /*prompts*/) {
  return ExportCurve<profile>(document, BearingRatioExport);
}

ExportResult ExportProbability(const Document& document, Prompts& /*prompts*/) {
  return ExportCurve<CurveProfile::kRoughness>(
      document, [](std::span<const double> sorted, CurveProfile /*profile*/, const ExportSource& source,
                   std::string_view settings) { return ProbabilityExport(sorted, source, settings); });
}

ExportResult ExportSpectrum(const Document& document, Prompts& /*prompts*/) {
  const ProfileSet& profiles = document.profiles;
  if (!profiles.computeRange) return Missing("spectrum");
  const bool isComputed = !profiles.spectrum.IsEmpty();
  const Spectrum own = isComputed ? Spectrum() : SpectrumOf(profiles.View(ProfileKind::kFormSuppressed));
  const Spectrum& spectrum = isComputed ? profiles.spectrum : own;
  if (!spectrum.valid) return Missing("spectrum");
  return {SpectrumExport(spectrum, SourceOf(document), AnalysisDescription(document)), {}};
}

/// The residual of a profile about the apex as the settings ask for it; an empty table with a reason where there is
/// none or the question about its length was answered no.
struct ResidualOutcome {
  ResidualTable table;
  std::string reason;
};

ResidualOutcome ResidualOf(const Document& document, ProfileKind kind, Prompts& prompts) {
  const AsphereFit* const fit = AsphereOf(document.results.formGeometry);
  if (!document.profiles.computeRange || fit == nullptr) return {{}, "no asphere was fitted"};
  if (!document.profiles.Has(kind)) return {{}, Missing(ProfileTitle(kind)).reason};
  const Profile profile = document.profiles.View(kind);
  // Along the measured X, in which the apex stands, also where the profile's own spacing is stretched.
  const double spacingUM = document.profiles.spacingUM;
  const double firstMM = profile.range.first * spacingUM * kMillimetresPerMicrometre;
  auto table = MakeResidualTable(profile.Heights(), spacingUM, fit->apexXMM - firstMM,
                                 ResidualTableOptionsOf(document.settings.analysis));
  if (!table || table->rows.empty()) return {{}, "the length and spacing of the residual table give no rows"};
  if (table->exceedsData && !prompts.AskYesNo("Side length greater than data extent.  Export anyway?")) {
    return {{}, "the side length is greater than the data extent"};
  }
  return {std::move(*table), {}};
}

ExportResult ExportResidual(const Document& document, Prompts& prompts) {
  const ResidualOutcome residual = ResidualOf(document, ProfileKind::kFormSuppressed, prompts);
  if (!residual.reason.empty()) return {{}, residual.reason};
  const AsphereLayout layout = AsphereLayoutOf(document.settings.analysis.AspResidualFileType);
  return {AsphereTableExport(residual.table.rows, layout, "Aspheric residual, X and Z in mm"), {}};
}

/// X of the fitted centre in the record; 0 where the form has none.
double CentreMM(const Document& document) {
  const double firstUM = FormRange(document).first * document.profiles.spacingUM;
  const auto centreUM = CentreXUM(document.results.formGeometry);
  return centreUM ? (firstUM + *centreUM) * kMillimetresPerMicrometre : 0.0;
}

ExportResult FromMod(ModText&& text) {
  return {std::move(text.bytes), std::move(text.reason)};
}

ExportResult ExportWavinessMod(const Document& document, Prompts& /*prompts*/) {
  if (!document.profiles.evaluationRange) return Missing(ProfileTitle(ProfileKind::kWaviness));
  const Profile profile = document.profiles.View(ProfileKind::kWaviness);
  return FromMod(WavinessModText(
      {.points = {.heightsUM = profile.Heights(),
                  .spacingUM = profile.spacingUM,
                  .firstIndex = profile.range.first,
                  .xOffsetMM = CentreMM(document)},
       .isArc = RequestedForm(document.settings.analysis).isArc,
       .assessmentLengthMM = (profile.range.count - 1) * profile.spacingUM * kMillimetresPerMicrometre}));
}

/// The coefficients of an asphere that are not zero, under the powers that they multiply.
std::vector<ModCoefficient> CoefficientsOf(const AsphereDescription& asphere) {
  std::vector<ModCoefficient> coefficients;
  for (std::size_t i = 0; i < asphere.coefficients.size(); ++i) {
    if (asphere.coefficients[i] == 0.0) continue;
    coefficients.push_back({.number = static_cast<double>(i + 1), .value = asphere.coefficients[i]});
  }
  return coefficients;
}

ExportResult ExportResidualMod(const Document& document, Prompts& prompts) {
  const ResidualOutcome residual = ResidualOf(document, ProfileKind::kWaviness, prompts);
  if (!residual.reason.empty()) return {{}, residual.reason};
  const AnalysisSettings& settings = document.settings.analysis;
  const std::vector<TableRow>& rows = residual.table.rows;
  std::vector<double> heightsUM(rows.size());
  std::transform(rows.begin(), rows.end(), heightsUM.begin(),
                 [](const TableRow& row) { return row.zMM * kMicrometresPerMillimetre; });
  const AsphereFit& fit = *AsphereOf(document.results.formGeometry);
  const std::vector<ModCoefficient> coefficients = CoefficientsOf(DescribeAsphere(settings));
  return FromMod(AsphereModText(
      {.points = {.heightsUM = heightsUM,
                  .spacingUM = settings.AspResidualSpacingMM * kMicrometresPerMillimetre,
                  .firstIndex = RoundToIndex(rows.empty() ? 0.0 : rows.front().xMM / settings.AspResidualSpacingMM)},
       .identification = document.profiles.identification,
       .assessmentLengthMM = static_cast<double>(rows.size() - 1) * settings.AspResidualSpacingMM,
       .coefficients = coefficients,
       .radiusMM = fit.RadiusMM(),
       .conic = fit.conic,
       .comment = settings.AsphereMODFileComment}));
}

ExportResult ExportSagTable(const Document& document, Prompts& /*prompts*/) {
  const AnalysisSettings& settings = document.settings.analysis;
  const std::vector<TableRow> rows = SagTableOf(settings);
  if (rows.empty()) return {{}, "the length and spacing of the sag table give no rows"};
  return {AsphereTableExport(rows, AsphereLayoutOf(settings.SagTableType), "Sag table, X and Z in mm"), {}};
}

constexpr std::array kExportKinds = {
    ExportKind{"raw", "Raw Data", ExportProfile<ProfileKind::kRaw>, nullptr, true},
    ExportKind{"form-suppressed", "Form Suppressed Data", ExportProfile<ProfileKind::kFormSuppressed>, nullptr, true},
    ExportKind{"primary", "Primary Profile", ExportProfile<ProfileKind::kPrimary>, nullptr, true},
    ExportKind{"waviness", "Waviness Profile", ExportProfile<ProfileKind::kWaviness>, ExportWavinessMod, true},
    ExportKind{"roughness", "Roughness Profile", ExportProfile<ProfileKind::kRoughness>, nullptr, true},
    ExportKind{"closing", "Morphological Closing Profile", ExportProfile<ProfileKind::kClosing>, nullptr, true},
    ExportKind{"opening", "Morphological Opening Profile", ExportProfile<ProfileKind::kOpening>, nullptr, true},
    ExportKind{"primary-adf", "Primary Amplitude Distribution", ExportAmplitudes<CurveProfile::kPrimary>},
    ExportKind{"primary-brc", "Primary Bearing Ratio Curve", ExportBearingRatios<CurveProfile::kPrimary>},
    ExportKind{"roughness-adf", "Roughness Amplitude Distribution", ExportAmplitudes<CurveProfile::kRoughness>},
    ExportKind{"roughness-brc", "Roughness Bearing Ratio Curve", ExportBearingRatios<CurveProfile::kRoughness>},
    ExportKind{"probability", "Probability Curve", ExportProbability},
    ExportKind{"spectrum", "Spectrum", ExportSpectrum},
    ExportKind{"asphere-residual", "Aspheric Residual", ExportResidual, ExportResidualMod, true},
    ExportKind{"sag-table", "Sag Table", ExportSagTable},
};

}  // namespace

std::span<const ExportKind> ExportKinds() {
  return kExportKinds;
}

const ExportKind* FindExportKind(std::string_view name) {
  const auto* const kind = std::find_if(kExportKinds.begin(), kExportKinds.end(),
                                        [name](const ExportKind& candidate) { return candidate.name == name; });
  return kind == kExportKinds.end() ? nullptr : kind;
}

std::optional<QdasText> QdasTextOf(const Document& document, const std::tm& time) {
  const bool metric = document.settings.display.Metric;
  std::vector<QdasCharacteristic> characteristics;
  const auto add = [&](const ParameterDef& row, std::string name) {
    if (!row.tolerance.toleranced) return;
    const auto shown = [&row, metric](double value) { return row.quantity.Shown(value, metric); };
    const LimitsInForce limits = LimitsOf(row.tolerance);
    QdasCharacteristic characteristic{.name = std::move(name),
                                      .unit = PrintedUnit(row.quantity.Unit(metric)),
                                      .decimals = row.format.decimals.In(metric)};
    if (limits.lower) characteristic.lowerLimit = shown(*limits.lower);
    if (limits.upper) characteristic.upperLimit = shown(*limits.upper);
    if (row.valid) characteristic.value = shown(row.value);
    characteristics.push_back(std::move(characteristic));
  };
  for (const ParameterDef& row : document.catalogue.rows) {
    if (row.selected) add(row, row.NameWithEdition());
  }
  for (const auto& entries : {SelectedMaterialRatios(document), SelectedHtps(document)}) {
    for (const RatioRowEntry& entry : entries) add(entry.row, entry.row.name + entry.label);
  }
  if (characteristics.empty()) return std::nullopt;
  const std::string file = TextFromPath(PathFromText(document.profiles.sourcePath).filename());
  return QdasText{QdasDescription(characteristics, FilterLabel(document.settings.analysis) + ", Lc " +
                                                       LengthText(document.settings.analysis.LcCutoffMM, metric)),
                  QdasValues(characteristics, time, file)};
}

ParameterFileText ParameterFileTextOf(const Document& document, std::string_view time) {
  const ProfileSet& profiles = document.profiles;
  const AnalysisResults& results = document.results;
  const std::string description = AnalysisDescription(document);
  const IndexRange evaluated = profiles.evaluationRange.value_or(IndexRange{});
  const DisplaySettings& display = document.settings.display;
  const MaterialRatioTitles titles = MaterialRatioTitlesOf(display);
  const ParameterCsvInput input{.catalogue = document.catalogue,
                                .settings = document.settings.analysis,
                                .primaryMaterialRatios = results.primaryMaterialRatios,
                                .roughnessMaterialRatios = results.roughnessMaterialRatios,
                                .primaryHtps = results.primaryHtps,
                                .roughnessHtps = results.roughnessHtps,
                                .time = time,
                                .source = profiles.sourcePath,
                                .identification = profiles.identification,
                                .description = description,
                                .metric = display.Metric,
                                .primaryRatioTitle = titles.primary,
                                .roughnessRatioTitle = titles.roughness,
                                .traverseLengthUM = profiles.LengthUM(),
                                .evaluationLengthUM = LengthOfPoints(evaluated.count, profiles.residualSpacingUM)};
  return {ParameterCsvHeader(input), ParameterCsvRow(input)};
}

}  // namespace texturon
