// SPDX-License-Identifier: Apache-2.0

#include "parameters/catalogue_table.h"

#include "parameters/letter_settings.h"

namespace texturon {
namespace {

/// What rows of one kind of quantity share.
struct RowKind {
  Quantity quantity;
  ValueFormat format;
};

using S = AnalysisSettings;
using enum ParameterFamily;

constexpr std::string_view kOwn = "this program";
constexpr std::string_view kIso4287 = "ISO 4287:1997";
constexpr std::string_view kIso13565Part2 = "ISO 13565-2:1996";
constexpr std::string_view kIso13565Part3 = "ISO 13565-3:1998";
constexpr std::string_view kIso12085 = "ISO 12085:1996";
constexpr std::string_view kDin4768 = "DIN 4768:1990";
constexpr std::string_view kJisB0601 = "JIS B 0601:2001";
constexpr double kSquareInchesPerSquareMillimetre = 0.0015500031000062;
constexpr double kPerSquareMicroinchPerSquareMicrometre = 0.00064516;
constexpr double kPerInchPerCentimetre = 2.54;

constexpr RowKind kNumber{{"", ""}, {{4, 4}}};
constexpr RowKind kCount{{"", ""}, {{0, 0}}};
constexpr RowKind kHeight{kHeightUM, {{4, 2}}};
constexpr RowKind kLength{kLengthMM, {{5, 6}}};
constexpr RowKind kArea{{"mm2", "in2", kSquareInchesPerSquareMillimetre}, {{6, 8}}};
constexpr RowKind kAngle{kAngleDegrees, {{3, 3}}};
constexpr RowKind kMinutes{{"min", "min"}, {{3, 3}}};
constexpr RowKind kPercent{{"%%", "%%"}, {{2, 2}}};
constexpr RowKind kPerLength{{"1/cm", "1/in", kPerInchPerCentimetre}, {{2, 2}}};
constexpr RowKind kCountPerLength{{"#/cm", "#/in", kPerInchPerCentimetre}, {{2, 2}}};
// The zeroth moment is a square and the position of a swept window a length in mm, yet both carry the factor of
// heights.
constexpr RowKind kMoment0{{"\xB5m2", "\xB5in2", kMicroinchesPerMicrometre}, {{5, 5}, true}};
constexpr RowKind kMoment2{{"", ""}, {{5, 5}, true}};
constexpr RowKind kMoment4{{"\xB5m-2", "\xB5in-2", kPerSquareMicroinchPerSquareMicrometre}, {{5, 5}, true}};
constexpr RowKind kSweptPosition{{"mm", "in", kMicroinchesPerMicrometre}, {{4, 4}}};

constexpr MasterRow Row(std::string_view name, const RowKind& kind, std::string_view definition,
                        std::string_view source, const RowDetails& details = {}) {
  return {name, kind.quantity, kind.format, definition, source, details};
}

// Rows that show the settings of their profile's letter.
constexpr RowDetails WidthRow(char letter, int csvDecimals, std::string_view planName = {}) {
  const auto [height, width] = SettingsOfLetter(letter).widths;
  return {.note = {ElementWidthNote, height, width},
          .csvLabel = {ElementWidthColumn, height, width},
          .csvDecimals = csvDecimals,
          .planName = planName};
}
constexpr RowDetails HeightRow(char letter) {
  const auto [height, width] = SettingsOfLetter(letter).heights;
  return {.note = {ElementHeightNote, height, width}, .csvLabel = {ElementHeightColumn, height, width}};
}
constexpr RowDetails PeakCount(char letter) {
  const SettingNote::Field band = SettingsOfLetter(letter).peakBandUM;
  return {.note = {PeakCountNote, band}, .csvLabel = {PeakCountColumn, band}};
}
constexpr RowDetails HighSpots(SettingNote::Text note, SettingNote::Text column, char letter) {
  const SettingNote::Field level = SettingsOfLetter(letter).highSpotLevelUM;
  return {.note = {note, level}, .csvLabel = {column, level}};
}
constexpr RowDetails Valleys(char letter) {
  return {.csvLabel = {LevelColumn, SettingsOfLetter(letter).valleyLevelUM}};
}
constexpr RowDetails Ball(SettingNote::Field radius) {
  return {.note = {BallNote, radius}};
}
constexpr RowDetails kClosing = Ball(&S::ClosingRadiusForWvoid);
constexpr RowDetails kOpening = Ball(&S::OpeningRadiusForWcvx);
constexpr RowDetails kSlopeWindow = {.note = {SlopeWindowNote, &S::AsphereSlopeWindowMM}};
constexpr RowDetails kSegment = {.note = {SegmentNote, &S::WindowWidthForWseg}};
constexpr RowDetails kSixDecimals = {.csvDecimals = 6};
constexpr RowDetails kCoreRow = {.family = kCore};
constexpr RowDetails kDerivedCoreRow = {.family = kDerivedCore};
constexpr RowDetails kMotifRow = {.family = kMotif};

// What several rows are on their profiles.
constexpr std::string_view kTotalHeight = "Height from the lowest to the highest point of the whole range.";
constexpr std::string_view kMeanDeviation = "Mean distance of the points from the mean line.";
constexpr std::string_view kRootMeanSquare = "Root of the mean square distance of the points from the mean line.";
constexpr std::string_view kPeakHeight = "Height of the highest point above the mean line.";
constexpr std::string_view kValleyDepth = "Depth of the lowest point below the mean line.";
constexpr std::string_view kElementWidth = "Mean width of the profile elements, each a hill with the dale after it.";
constexpr std::string_view kPeakSpacing = "Mean distance between neighbouring local peaks.";
constexpr std::string_view kPeaksPerLength =
    "Number of peaks that cross a band about the mean line for each length of profile.";
constexpr std::string_view kSkewness =
    "Skewness of the heights, the mean of z^3 over q^3: negative where dales reach farther than hills.";
constexpr std::string_view kKurtosis =
    "Kurtosis of the heights, the mean of z^4 over q^4: 3 where they are normally distributed.";
constexpr std::string_view kHighSpots = "Number of times that the profile rises through a level about the mean line.";
constexpr std::string_view kValleys = "Number of times that the profile falls through a level about the mean line.";
constexpr std::string_view kZerothMoment = "Zeroth spectral moment, the mean square of the heights.";
constexpr std::string_view kSecondMoment =
    "Second spectral moment, the mean square of the slopes between the neighbours of a point.";
constexpr std::string_view kFourthMoment =
    "Fourth spectral moment, the mean square of the curvatures over a point and its neighbours.";
constexpr std::string_view kSlope = "Root mean square of the local slopes by the seven-point formula, as an angle.";
constexpr std::string_view kElementHeight = "Mean height of the profile elements, hill plus dale.";

// AR and AW are lengths but are given in um.
constexpr MasterRow kMasterRows[] = {
    Row("Ft", kHeight, "Height from the lowest to the highest point of the form-suppressed profile.", kIso4287),
    Row("Pt", kHeight, kTotalHeight, kIso4287),
    Row("Pa", kHeight, kMeanDeviation, kIso4287),
    Row("Pq", kHeight, kRootMeanSquare, kIso4287),
    Row("Psk", kNumber, kSkewness, kIso4287),
    Row("Pku", kNumber, kKurtosis, kIso4287),
    Row("Pp", kHeight, kPeakHeight, kIso4287),
    Row("Pv", kHeight, kValleyDepth, kIso4287),
    Row("Psm", kLength, kElementWidth, kIso4287, WidthRow('P', 6)),
    Row("Ps", kLength, kPeakSpacing, kOwn),
    Row("Phsc", kCount, kHighSpots, kOwn, HighSpots(LevelNote, LevelColumn, 'P')),
    Row("Pvc", kCount, kValleys, kOwn, Valleys('P')),
    Row("Pm0", kMoment0, kZerothMoment, kOwn, kSixDecimals),
    Row("Pm2", kMoment2, kSecondMoment, kOwn, kSixDecimals),
    Row("Pm4", kMoment4, kFourthMoment, kOwn, kSixDecimals),
    Row("Pdsm", kLength, "Standard deviation of the widths of the profile elements.", kOwn),
    Row("Wt", kHeight, kTotalHeight, kIso4287),
    Row("Wa", kHeight, kMeanDeviation, kIso4287),
    Row("Wq", kHeight, kRootMeanSquare, kIso4287),
    Row("Wp", kHeight, kPeakHeight, kIso4287),
    Row("Wpl", kHeight, "Height of the highest point within the left end region.", kOwn),
    Row("Wpr", kHeight, "Height of the highest point within the right end region.", kOwn),
    Row("Wv", kHeight, kValleyDepth, kIso4287),
    Row("Wseg", kHeight,
        "Largest height from the lowest to the highest point within a window that moves along the profile.", kOwn,
        kSegment),
    Row("Wsegl", kLength, "Place of the middle of the window of Wseg, from the start of the range.", kOwn, kSegment),
    Row("Wsm", kLength, kElementWidth, kIso4287, WidthRow('W', 3)),
    Row("Ws", kLength, kPeakSpacing, kOwn),
    Row("Wdq", kAngle, kSlope, kIso4287),
    Row("Wcvx", kHeight, "Largest height of the profile above its opening envelope.", kOwn, kOpening),
    Row("Wcvxm", kHeight, "Mean height of the bumps above the opening envelope.", kOwn, kOpening),
    Row("Wcvxl", kLength, "Place of Wcvx, from the start of the range.", kOwn, kOpening),
    Row("Wvoid", kHeight, "Mean gap between the closing envelope and the profile.", kOwn, kClosing),
    Row("Wvdd", kHeight, "Largest depth of the profile below its closing envelope.", kOwn, kClosing),
    Row("Wvddl", kLength, "Place of Wvdd, from the start of the range.", kOwn, kClosing),
    Row("Wvdc", kPerLength, "Number of voids under the closing envelope for each length of profile.", kOwn, kClosing),
    Row("Wvdas", kNumber, "Mean ratio of depth to length of the voids under the closing envelope.", kOwn, kClosing),
    Row("Wvdmp", kLength, "Mean length of the voids under the closing envelope.", kOwn, kClosing),
    Row("Wvdm", kHeight, "Mean depth of the voids under the closing envelope.", kOwn, kClosing),
    Row("Wvda", kArea, "Mean area of the voids under the closing envelope, each weighted with its place.", kOwn,
        kClosing),
    Row("Wtc", kHeight, "Greatest height of a profile element, hill plus dale.", kOwn),
    Row("Wc", kHeight, kElementHeight, kIso4287, HeightRow('W')),
    Row("Wlslp", kMinutes, "Steepest least-squares line through a window that moves along the profile.", kOwn,
        kSlopeWindow),
    Row("Wlslpl", kLength, "Place of the middle of the window of Wlslp, from the start of the range.", kOwn,
        kSlopeWindow),
    Row("Weslp", kMinutes, "Steepest chord between the ends of a window that moves along the profile.", kOwn,
        kSlopeWindow),
    Row("Weslpl", kLength, "Place of the middle of the window of Weslp, from the start of the range.", kOwn,
        kSlopeWindow),
    Row("Ra", kHeight, kMeanDeviation, kIso4287),
    Row("Ra1", kHeight, "Largest mean distance from the mean line within a moving window of one sampling length.",
        kOwn),
    Row("Ra1l", kSweptPosition, "Place of the middle of the window of Ra1, from the start of the range.", kOwn),
    Row("Ra7", kHeight, "Largest mean distance from the mean line within a moving window of seven sampling lengths.",
        kOwn),
    Row("Ra7l", kSweptPosition, "Place of the middle of the window of Ra7, from the start of the range.", kOwn),
    Row("Rpm7", kHeight,
        "Largest mean of the highest points of seven neighbouring sampling lengths in a moving window.", kOwn),
    Row("Rpm7l", kSweptPosition, "Place of the middle of the window of Rpm7, from the start of the range.", kOwn),
    Row("Rc", kHeight, kElementHeight, kIso4287, HeightRow('R')),
    Row("Rt", kHeight, kTotalHeight, kIso4287),
    Row("Rp", kHeight, kPeakHeight, kIso4287),
    Row("Rv", kHeight, kValleyDepth, kIso4287),
    Row("Rq", kHeight, kRootMeanSquare, kIso4287),
    Row("Rdq", kAngle, kSlope, kIso4287),
    Row("Rdmd", kAngle, "Median of the absolute local slope angles by the seven-point formula.", kOwn),
    Row("Rdmn", kAngle, "Mean of the absolute local slope angles by the seven-point formula.", kOwn),
    Row("Rdsk", kNumber, "Skewness of the local slopes by the seven-point formula: 0 where flanks rise and fall alike.",
        kOwn),
    Row("Rsk", kNumber, kSkewness, kIso4287),
    Row("Rku", kNumber, kKurtosis, kIso4287),
    Row("RzDIN", kHeight, "Mean over the sampling lengths of the height from the lowest to the highest point.",
        kDin4768, {.planName = "Rz"}),
    Row("Rzi", kHeight, "Mean over the sampling lengths of the single peak-to-valley heights, the same value as RzDIN.",
        kOwn),
    Row("R3z", kHeight,
        "Mean over the sampling lengths of the height from the third-deepest local valley to the third-highest local "
        "peak.",
        kOwn),
    Row("RzJIS", kHeight, "Mean over the sampling lengths of the five highest peaks plus the five deepest valleys.",
        kJisB0601),
    Row("Rpm", kHeight, "Mean over the sampling lengths of the height of the highest point.", kOwn),
    Row("Rpm/3z", kNumber, "Ratio of Rpm to R3z.", kOwn),
    Row("Rvm", kHeight, "Mean over the sampling lengths of the depth of the lowest point.", kOwn),
    Row("Rmax", kHeight, "Largest height from the lowest to the highest point of a sampling length.", kOwn),
    Row("Ry", kHeight,
        "Largest height from the lowest to the highest point of a sampling length, the same value as Rmax.", kOwn),
    Row("Rz1max", kHeight, "Largest single peak-to-valley height of a sampling length, the same value as Rmax.", kOwn),
    Row("Rsm", kLength, kElementWidth, kIso4287, WidthRow('R', 6, "RSm")),
    Row("Rs", kLength, kPeakSpacing, kOwn),
    Row("Rhsc", kCount, kHighSpots, kOwn, HighSpots(RoughnessHighSpotNote, RoughnessHighSpotColumn, 'R')),
    Row("Rvc", kCount, kValleys, kOwn, Valleys('R')),
    Row("Rk", kHeight,
        "Depth of the core: drop of the straight line through the flattest 40 % of the material-ratio curve.",
        kIso13565Part2, kCoreRow),
    Row("Rpk", kHeight, "Mean height of the peaks above the core, as that of a triangle of the same area.",
        kIso13565Part2, kCoreRow),
    Row("Rpk*", kHeight, "Height of the highest point above the core.", kOwn,
        {.family = kDerivedCore, .planName = "Rpk_Star"}),
    Row("Rpk+k", kHeight, "Sum of Rpk and Rk.", kOwn, kDerivedCoreRow),
    Row("Rpk/k", kNumber, "Ratio of Rpk to Rk.", kOwn, kDerivedCoreRow),
    Row("Rk+vk", kHeight, "Sum of Rk and Rvk.", kOwn, kDerivedCoreRow),
    Row("Rvk/k", kNumber, "Ratio of Rvk to Rk.", kOwn, kDerivedCoreRow),
    Row("Rvk", kHeight, "Mean depth of the valleys below the core, as that of a triangle of the same area.",
        kIso13565Part2, kCoreRow),
    Row("Rvk*", kHeight, "Depth of the lowest point below the core.", kOwn,
        {.family = kDerivedCore, .planName = "Rvk_Star"}),
    Row("Rmr1", kPercent, "Material ratio at the upper end of the core.", kIso13565Part2,
        {.family = kDerivedCore, .planName = "Mr1"}),
    Row("Rmr2", kPercent, "Material ratio at the lower end of the core.", kIso13565Part2,
        {.family = kDerivedCore, .planName = "Mr2"}),
    Row("Rvo", kHeight, "Area of the valleys below the core, (100 - Rmr2) Rvk / 200.", kIso13565Part2,
        {.family = kCore, .planName = "CV"}),
    Row("Rpq", kHeight,
        "Steepness of the plateau line in the probability plot, the root mean square height of the plateaus.",
        kIso13565Part3),
    Row("Rvq", kHeight,
        "Steepness of the valley line in the probability plot, the root mean square height of the valleys.",
        kIso13565Part3),
    Row("Rmq", kPercent, "Material ratio at which the plateau and the valley line of the probability plot cross.",
        kIso13565Part3),
    Row("Rcl", kHeight, "Mean over the sampling lengths of the mean height of the profile elements in each.", kOwn),
    Row("Rm0", kMoment0, kZerothMoment, kOwn, kSixDecimals),
    Row("Rm2", kMoment2, kSecondMoment, kOwn, kSixDecimals),
    Row("Rm4", kMoment4, kFourthMoment, kOwn, kSixDecimals),
    Row("Rpc", kCountPerLength, kPeaksPerLength, kOwn, PeakCount('R')),
    Row("Rtwi", kPercent, "Share of the points that lie within plus or minus q of the mean line.", kOwn),
    Row("Ppc", kCountPerLength, kPeaksPerLength, kOwn, PeakCount('P')),
    Row("Wpc", kCountPerLength, kPeaksPerLength, kOwn, PeakCount('W')),
    Row("R", kHeight, "Mean depth of the roughness motifs.", kIso12085, kMotifRow),
    Row("Rx", kHeight, "Largest depth of a roughness motif.", kIso12085, kMotifRow),
    Row("AR", kHeight, "Mean length of the roughness motifs.", kIso12085, kMotifRow),
    Row("Wte", kHeight, "Height from the lowest to the highest point of the upper envelope through the motifs.",
        kIso12085, kMotifRow),
    Row("W", kHeight, "Mean depth of the waviness motifs.", kIso12085, kMotifRow),
    Row("Wx", kHeight, "Largest depth of a waviness motif.", kIso12085, kMotifRow),
    Row("AW", kHeight, "Mean length of the waviness motifs.", kIso12085, kMotifRow),
};

}  // namespace

std::string_view NameOf(Edition edition) {
  constexpr std::string_view kNames[] = {"1997", "2021"};
  return kNames[static_cast<std::size_t>(edition)];
}

std::span<const MasterRow> MasterCatalogue() {
  return kMasterRows;
}

}  // namespace texturon
