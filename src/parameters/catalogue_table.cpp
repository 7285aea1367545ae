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

// AR and AW are lengths but are given in um.
constexpr MasterRow kMasterRows[] = {
    Row("Ft", kHeight, "total height of the form-suppressed profile: highest minus lowest point", "ISO 4287"),
    Row("Pt", kHeight, "total height: highest minus lowest point", "ISO 4287"),
    Row("Pa", kHeight, "arithmetic mean deviation: mean of |z|", "ISO 4287"),
    Row("Pq", kHeight, "root mean square deviation", "ISO 4287"),
    Row("Psk", kNumber, "skewness: mean of z^3 over q^3", "ISO 4287"),
    Row("Pku", kNumber, "kurtosis: mean of z^4 over q^4", "ISO 4287"),
    Row("Pp", kHeight, "maximum peak height above the mean line", "ISO 4287"),
    Row("Pv", kHeight, "maximum valley depth below the mean line", "ISO 4287"),
    Row("Psm", kLength, "mean width of the profile elements", "ISO 4287", WidthRow('P', 6)),
    Row("Ps", kLength, "mean spacing of local peaks", kOwn),
    Row("Phsc", kCount, "high spot count", kOwn, HighSpots(LevelNote, LevelColumn, 'P')),
    Row("Pvc", kCount, "valley count", kOwn, Valleys('P')),
    Row("Pm0", kMoment0, "zeroth spectral moment: mean of z^2", kOwn, kSixDecimals),
    Row("Pm2", kMoment2, "second spectral moment: mean square of the slope", kOwn, kSixDecimals),
    Row("Pm4", kMoment4, "fourth spectral moment: mean square of the curvature", kOwn, kSixDecimals),
    Row("Pdsm", kLength, "standard deviation of the profile element widths", kOwn),
    Row("Wt", kHeight, "total height: highest minus lowest point", "ISO 4287"),
    Row("Wa", kHeight, "arithmetic mean deviation: mean of |z|", "ISO 4287"),
    Row("Wq", kHeight, "root mean square deviation", "ISO 4287"),
    Row("Wp", kHeight, "maximum peak height above the mean line", "ISO 4287"),
    Row("Wpl", kHeight, "highest point within the left end region", kOwn),
    Row("Wpr", kHeight, "highest point within the right end region", kOwn),
    Row("Wv", kHeight, "maximum valley depth below the mean line", "ISO 4287"),
    Row("Wseg", kHeight, "largest peak-to-valley height in a moving window", kOwn, kSegment),
    Row("Wsegl", kLength, "position of Wseg", kOwn, kSegment),
    Row("Wsm", kLength, "mean width of the profile elements", "ISO 4287", WidthRow('W', 3)),
    Row("Ws", kLength, "mean spacing of local peaks", kOwn),
    Row("Wdq", kAngle, "root mean square slope, 7-point formula, as an angle", "ISO 4287"),
    Row("Wcvx", kHeight, "largest height above the opening envelope", kOwn, kOpening),
    Row("Wcvxm", kHeight, "mean bump height above the opening envelope", kOwn, kOpening),
    Row("Wcvxl", kLength, "position of Wcvx", kOwn, kOpening),
    Row("Wvoid", kHeight, "mean gap between the closing envelope and the profile", kOwn, kClosing),
    Row("Wvdd", kHeight, "largest void depth under the closing envelope", kOwn, kClosing),
    Row("Wvddl", kLength, "position of Wvdd", kOwn, kClosing),
    Row("Wvdc", kPerLength, "voids per length", kOwn, kClosing),
    Row("Wvdas", kNumber, "mean void depth-to-length ratio", kOwn, kClosing),
    Row("Wvdmp", kLength, "mean void length", kOwn, kClosing),
    Row("Wvdm", kHeight, "mean void depth", kOwn, kClosing),
    Row("Wvda", kArea, "void area", kOwn, kClosing),
    Row("Wtc", kHeight, "greatest height of a profile element", kOwn),
    Row("Wc", kHeight, "mean height of the profile elements", "ISO 4287", HeightRow('W')),
    Row("Wlslp", kMinutes, "largest slope of the least-squares line over a moving window", kOwn, kSlopeWindow),
    Row("Wlslpl", kLength, "position of Wlslp", kOwn, kSlopeWindow),
    Row("Weslp", kMinutes, "largest slope of the chord over a moving window", kOwn, kSlopeWindow),
    Row("Weslpl", kLength, "position of Weslp", kOwn, kSlopeWindow),
    Row("Ra", kHeight, "arithmetic mean deviation: mean of |z|", "ISO 4287"),
    Row("Ra1", kHeight, "largest mean of |z| in a window of one sampling length swept along the profile", kOwn),
    Row("Ra1l", kSweptPosition, "position of Ra1", kOwn),
    Row("Ra7", kHeight, "largest mean of |z| in a window of seven sampling lengths swept along the profile", kOwn),
    Row("Ra7l", kSweptPosition, "position of Ra7", kOwn),
    Row("Rpm7", kHeight, "largest mean of seven neighbouring sampling-length peak heights", kOwn),
    Row("Rpm7l", kSweptPosition, "position of Rpm7", kOwn),
    Row("Rc", kHeight, "mean height of the profile elements", "ISO 4287", HeightRow('R')),
    Row("Rt", kHeight, "total height: highest minus lowest point", "ISO 4287"),
    Row("Rp", kHeight, "maximum peak height above the mean line", "ISO 4287"),
    Row("Rv", kHeight, "maximum valley depth below the mean line", "ISO 4287"),
    Row("Rq", kHeight, "root mean square deviation", "ISO 4287"),
    Row("Rdq", kAngle, "root mean square slope, 7-point formula, as an angle", "ISO 4287"),
    Row("Rdmd", kAngle, "median of the absolute local slope angle", kOwn),
    Row("Rdmn", kAngle, "mean of the absolute local slope angle", kOwn),
    Row("Rdsk", kNumber, "skewness of the local slopes", kOwn),
    Row("Rsk", kNumber, "skewness: mean of z^3 over q^3", "ISO 4287"),
    Row("Rku", kNumber, "kurtosis: mean of z^4 over q^4", "ISO 4287"),
    Row("RzDIN", kHeight, "mean peak-to-valley height of the sampling lengths", "DIN 4768", {.planName = "Rz"}),
    Row("Rzi", kHeight, "mean of the single peak-to-valley heights", kOwn),
    Row("R3z", kHeight, "third-highest peak to third-lowest valley, mean of the sampling lengths", kOwn),
    Row("RzJIS", kHeight, "ten-point height, mean of the sampling lengths", "JIS B 0601"),
    Row("Rpm", kHeight, "mean peak height of the sampling lengths", kOwn),
    Row("Rpm/3z", kNumber, "ratio Rpm / R3z", kOwn),
    Row("Rvm", kHeight, "mean valley depth of the sampling lengths", kOwn),
    Row("Rmax", kHeight, "largest peak-to-valley height of a sampling length", kOwn),
    Row("Ry", kHeight, "largest peak-to-valley height of a sampling length, as Rmax", kOwn),
    Row("Rz1max", kHeight, "largest single peak-to-valley height, as Rmax", kOwn),
    Row("Rsm", kLength, "mean width of the profile elements", "ISO 4287", WidthRow('R', 6, "RSm")),
    Row("Rs", kLength, "mean spacing of local peaks", kOwn),
    Row("Rhsc", kCount, "high spot count", kOwn, HighSpots(RoughnessHighSpotNote, RoughnessHighSpotColumn, 'R')),
    Row("Rvc", kCount, "valley count", kOwn, Valleys('R')),
    Row("Rk", kHeight, "core roughness depth", "ISO 13565-2", kCoreRow),
    Row("Rpk", kHeight, "reduced peak height", "ISO 13565-2", kCoreRow),
    Row("Rpk*", kHeight, "highest point above the core", kOwn, {.family = kDerivedCore, .planName = "Rpk_Star"}),
    Row("Rpk+k", kHeight, "Rpk + Rk", kOwn, kDerivedCoreRow),
    Row("Rpk/k", kNumber, "Rpk / Rk", kOwn, kDerivedCoreRow),
    Row("Rk+vk", kHeight, "Rk + Rvk", kOwn, kDerivedCoreRow),
    Row("Rvk/k", kNumber, "Rvk / Rk", kOwn, kDerivedCoreRow),
    Row("Rvk", kHeight, "reduced valley depth", "ISO 13565-2", kCoreRow),
    Row("Rvk*", kHeight, "lowest point below the core", kOwn, {.family = kDerivedCore, .planName = "Rvk_Star"}),
    Row("Rmr1", kPercent, "material ratio at the upper end of the core", "ISO 13565-2",
        {.family = kDerivedCore, .planName = "Mr1"}),
    Row("Rmr2", kPercent, "material ratio at the lower end of the core", "ISO 13565-2",
        {.family = kDerivedCore, .planName = "Mr2"}),
    Row("Rvo", kHeight, "valley area: (100 - Rmr2) Rvk / 200", "ISO 13565-2", {.family = kCore, .planName = "CV"}),
    Row("Rpq", kHeight, "plateau slope on the probability scale", "ISO 13565-3"),
    Row("Rvq", kHeight, "valley slope on the probability scale", "ISO 13565-3"),
    Row("Rmq", kPercent, "material ratio where plateau and valley lines cross", "ISO 13565-3"),
    Row("Rcl", kHeight, "mean over the sampling lengths of the mean element height", kOwn),
    Row("Rm0", kMoment0, "zeroth spectral moment: mean of z^2", kOwn, kSixDecimals),
    Row("Rm2", kMoment2, "second spectral moment: mean square of the slope", kOwn, kSixDecimals),
    Row("Rm4", kMoment4, "fourth spectral moment: mean square of the curvature", kOwn, kSixDecimals),
    Row("Rpc", kCountPerLength, "peak count per length", kOwn, PeakCount('R')),
    Row("Rtwi", kPercent, "share of points within plus or minus q of the mean line", kOwn),
    Row("Ppc", kCountPerLength, "peak count per length", kOwn, PeakCount('P')),
    Row("Wpc", kCountPerLength, "peak count per length", kOwn, PeakCount('W')),
    Row("R", kHeight, "mean depth of the roughness motifs", "ISO 12085", kMotifRow),
    Row("Rx", kHeight, "largest depth of the roughness motifs", "ISO 12085", kMotifRow),
    Row("AR", kHeight, "mean length of the roughness motifs", "ISO 12085", kMotifRow),
    Row("Wte", kHeight, "total depth of the waviness", "ISO 12085", kMotifRow),
    Row("W", kHeight, "mean depth of the waviness motifs", "ISO 12085", kMotifRow),
    Row("Wx", kHeight, "largest depth of the waviness motifs", "ISO 12085", kMotifRow),
    Row("AW", kHeight, "mean length of the waviness motifs", "ISO 12085", kMotifRow),
};

}  // namespace

std::span<const MasterRow> MasterCatalogue() {
  return kMasterRows;
}

}  // namespace texturon
