// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "settings/standard_settings.h"

namespace texturon {

// The settings of a document as plain values. A field bears the name of its key in the settings file and starts with
// the built-in default. Lengths are millimetres, heights micrometres, texts Windows-1252. Enumerated settings stay
// integers, because a file may hold any number; the names of the numbers with a meaning stand beside them.

enum FormType : std::int32_t {
  kFormNone = 0,
  kFormLine = 1,
  kFormArc = 2,
  kFormFixedRadius = 3,
  kFormPolynomial = 4,
  kFormFilter = 5,
  kFormAsphere = 6,
  kFormFree = 7,
};

/// Any number but 0 is vertical.
enum ResidualDirection : std::int32_t { kResidualPerpendicular = 0, kResidualVertical = 1 };

enum FitThinning : std::int32_t { kThinNone = 0, kThinToPoints = 1, kThinToSpacing = 2 };

enum FilterKind : std::int32_t {
  kFilterGaussian = 0,
  kFilterSplineGaussian = 1,
  kFilterIso13565 = 2,
  kFilterRobustGaussian = 3,
};

/// Any number above 2 takes the user's length, a negative one discards nothing.
enum EndDiscard : std::int32_t { kDiscardNone = 0, kDiscardHalfCutoff = 1, kDiscardCutoff = 2, kDiscardUserLength = 3 };

/// `AsphereXPositionMethod`: where the vertex is held with AsphereXFixed, and without it where the search also starts.
enum ApexPosition : std::int32_t {
  kApexAtStart = 0,       // AsphereXStartMM where it is held, the middle of the data where it is not
  kApexAtVertexSide = 1,  // the profile's peak for a negative curvature, its valley for any other
  kApexAtPeak = 2,
  kApexAtValley = 3,
};

/// For `RadiusMethod` and `ConicMethod`.
enum AsphereTerm : std::int32_t { kTermFitted = 0, kTermHeld = 1 };

inline constexpr std::size_t kMostParameters = 128;
inline constexpr std::size_t kMostAsphereCoefficients = 100;
inline constexpr std::size_t kMostFreeFormPoints = 750'000;
inline constexpr std::size_t kRatioRows = 10;

/// Limits of a result, in metric units whatever is shown (micrometres for a height between material ratios).
struct Tolerance {
  bool toleranced = false;
  bool bilateral = false;
  bool highlightIfOut = true;
  double upperLimit = 0.0;
  double lowerLimit = 0.0;

  friend bool operator==(const Tolerance&, const Tolerance&) = default;
};

/// One row of the working list of parameters.
struct ParameterSelection {
  std::string name;
  bool selected = true;
  Tolerance tolerance;
  std::int32_t selectionRef = 0;

  friend bool operator==(const ParameterSelection&, const ParameterSelection&) = default;
};

/// One material-ratio (tp) row: the ratio `depthUM` below the height at `offsetPercent`, or with the mean referenced at
/// `depthUM` above the mean line.
struct MaterialRatioRow {
  bool selected = false;
  bool meanReferenced = false;
  double depthUM = 0.0;
  double offsetPercent = 0.0;
  Tolerance tolerance;

  friend bool operator==(const MaterialRatioRow&, const MaterialRatioRow&) = default;
};

/// One row of heights between two material ratios (Htp).
struct HtpRow {
  bool selected = false;
  double upperPercent = 0.0;
  double lowerPercent = 0.0;
  Tolerance tolerance;

  friend bool operator==(const HtpRow&, const HtpRow&) = default;
};

/// A point of the nominal free form.
struct FreeFormPoint {
  double xMM = 0.0;
  double zUM = 0.0;

  friend bool operator==(const FreeFormPoint&, const FreeFormPoint&) = default;
};

using MaterialRatioRows = std::array<MaterialRatioRow, kRatioRows>;
using HtpRows = std::array<HtpRow, kRatioRows>;

/// Depths 0.5 to 2.5 um below 2 %, then the same below 5 %.
constexpr MaterialRatioRows PresetMaterialRatios() {
  MaterialRatioRows rows;
  for (std::size_t i = 0; i < kRatioRows; ++i) {
    rows[i].depthUM = 0.5 * static_cast<double>(i % 5 + 1);
    rows[i].offsetPercent = i < 5 ? 2.0 : 5.0;
  }
  return rows;
}

/// From 10 % to 50, 60 ... 90 %, then from 20 % to the same.
constexpr HtpRows PresetHtps() {
  HtpRows rows;
  for (std::size_t i = 0; i < kRatioRows; ++i) {
    rows[i].upperPercent = 50.0 + 10.0 * static_cast<double>(i % 5);
    rows[i].lowerPercent = i < 5 ? 10.0 : 20.0;
  }
  return rows;
}

struct AnalysisSettings {
  bool CompTipRadiusWhenAvailble = true;

  std::int32_t FormRemovalType = kFormLine;
  std::int32_t PolynomialOrder = 1;
  double FormFilterCutoffMM = 8.0;
  std::int32_t ResidualType = kResidualPerpendicular;
  double FixedRadiusMM = 10.0;
  std::int32_t FormRemovalDataReductionMethod = kThinNone;
  std::int32_t FormRemovalNumberOfPoints = 0;
  double FormRemovalReductionSpacingUM = 1.0;

  double SagTableLengthMM = 15.0;
  double SagTableSpacingMM = 0.05;
  std::int32_t SagTableType = 1;
  std::string SagTableFileName;
  double AspResidualLengthMM = 15.0;
  double AspResidualSpacingMM = 0.05;
  std::string AspResidualFileName;
  std::int32_t AspResidualFileType = 0;
  std::int32_t AsphereResidualPadding = 0;
  double AsphereResidualOffsetUM = 0.0;
  bool AsphereUseClearAperture = false;
  double AsphereClearApertureDiameterMM = 5.0;
  double AsphereClearApertureCentralDiscardMM = 0.0;
  double AsphereSlopeWindowMM = 0.25;

  std::int32_t FilterType = kFilterSplineGaussian;
  double LcCutoffMM = 0.8;
  double LsCutoffMM = 0.0025;
  bool StandardLcCutoff = true;
  bool StandardLsCutoff = true;
  double UserLcCutoffMM = 0.8;
  double UserLsCutoffMM = 0.0025;
  double SplineTension = 0.625242;

  double PrimaryHSCHeight = 0.5;
  double RoughnessHSCHeight = 0.5;
  double PrimaryVCHeight = -0.5;
  double RoughnessVCHeight = -0.5;
  double PrimaryPcLevel = 1.0;
  double RoughnessPcLevel = 1.0;
  double WavinessPcLevel = 1.0;

  double WcWzPercent = 10.0;
  double RcRzPercent = 10.0;
  double PsmPzPercent = 10.0;
  double WsmWzPercent = 10.0;
  double RsmRzPercent = 10.0;
  double WcSamplingLengthPercent = 1.0;
  double RcSamplingLengthPercent = 1.0;
  double PsmSamplingLengthPercent = 1.0;
  double WsmSamplingLengthPercent = 1.0;
  double RsmSamplingLengthPercent = 1.0;

  std::int32_t UserDiscardType = kDiscardNone;
  double UserDiscardLengthMM = 0.0;
  double ClosingRadiusForWvoid = 1000.0;  // mm
  double OpeningRadiusForWcvx = 1000.0;   // mm
  double WindowWidthForWseg = 2.5;        // mm
  double WxpEndRegionsMM = 0.5;

  std::int32_t RqFittingMethod = 0;
  double UPLPercent = 0.0;
  double LPLPercent = 70.0;
  double UVLPercent = 95.0;
  double LVLPercent = 99.9;
  double RxqValleyCountHeightUm = -1.0;
  std::int32_t RxqMinimumValleyCount = 20;
  double RxqUpperValleyCountPercent = 90.0;
  double RxqLowerValleyCountPercent = 20.0;

  double MotifAMM = 0.5;
  double MotifBMM = 2.5;
  bool UseTHMotif = false;
  bool UseTHShortMotifCombination = false;
  bool MotifRProfile = false;
  bool MotifWProfile = false;

  /// The working list, at most kMostParameters rows. Empty here: the catalogue fills it from its master list.
  std::vector<ParameterSelection> parameters;
  MaterialRatioRows primaryMaterialRatios = PresetMaterialRatios();
  MaterialRatioRows roughnessMaterialRatios = PresetMaterialRatios();
  HtpRows primaryHtps = PresetHtps();
  HtpRows roughnessHtps = PresetHtps();

  std::string AsphereMODFileComment;
  double C_CurvatureMM = -0.021008403361344536;  // 1/mm
  std::int32_t RadiusMethod = kTermHeld;
  double E_ConicConstant = -0.746886432;
  std::int32_t ConicMethod = kTermHeld;
  bool EvenTermsOnly = true;
  /// In the file's order: entry i is the key A<2i>. At most kMostAsphereCoefficients.
  std::vector<double> asphereCoefficients = std::vector<double>(10);
  bool AsphereXFixed = false;
  std::int32_t AsphereXPositionMethod = 0;
  double AsphereXStartMM = 0.0;

  bool FreeFormFixedStart = false;
  double FreeFormFirstDataPointXMM = 0.0;
  bool FreeFormAllowTilt = true;
  bool FreeFormIsLeastSqaures = true;
  std::int32_t FreeFormFilterType = 99;
  double FreeFormFilterCutoffMM = 0.8;
  double FreeFormPreviewMaxXMM = 10.0;
  double FreeFormPreviewMinXMM = 0.0;
  double FreeFormPreviewMaxYUM = 10.0;
  double FreeFormPreviewMinYUM = -10.0;
  /// The nominal shape, at most kMostFreeFormPoints. A hundred points at the origin until one is given.
  std::vector<FreeFormPoint> freeFormPoints = std::vector<FreeFormPoint>(100);

  StandardSettings standard;

  friend bool operator==(const AnalysisSettings&, const AnalysisSettings&) = default;
};

}  // namespace texturon
