// SPDX-License-Identifier: Apache-2.0

#include <iterator>

#include "base/units.h"
#include "parameters/catalogue.h"

namespace texturon {
namespace {

/// What rows of one kind of quantity share.
struct Quantity {
  std::string_view metricUnit;
  std::string_view imperialUnit;
  double imperialFactor;
  ValueFormat format;
};

constexpr std::string_view kOwn = "this program";
constexpr double kSquareInchesPerSquareMillimetre = 0.0015500031000062;
constexpr double kPerSquareMicroinchPerSquareMicrometre = 0.00064516;
constexpr double kPerInchPerCentimetre = 2.54;

constexpr Quantity kNumber{"", "", 1.0, {4, 4}};
constexpr Quantity kCount{"", "", 1.0, {0, 0}};
constexpr Quantity kHeight{"\xB5m", "\xB5in", kMicroinchesPerMicrometre, {4, 2}};
constexpr Quantity kLength{"mm", "in", kInchesPerMillimetre, {5, 6}};
constexpr Quantity kArea{"mm2", "in2", kSquareInchesPerSquareMillimetre, {6, 8}};
constexpr Quantity kAngle{"\xB0", "\xB0", 1.0, {3, 3}};
constexpr Quantity kMinutes{"min", "min", 1.0, {3, 3}};
constexpr Quantity kPercent{"%%", "%%", 1.0, {2, 2}};
constexpr Quantity kPerLength{"1/cm", "1/in", kPerInchPerCentimetre, {2, 2}};
constexpr Quantity kCountPerLength{"#/cm", "#/in", kPerInchPerCentimetre, {2, 2}};
// The zeroth moment is a square and the position of a swept window a length in mm, yet both carry the factor of
// heights.
constexpr Quantity kMoment0{"\xB5m2", "\xB5in2", kMicroinchesPerMicrometre, {5, 5, true}};
constexpr Quantity kMoment2{"", "", 1.0, {5, 5, true}};
constexpr Quantity kMoment4{"\xB5m-2", "\xB5in-2", kPerSquareMicroinchPerSquareMicrometre, {5, 5, true}};
constexpr Quantity kSweptPosition{"mm", "in", kMicroinchesPerMicrometre, {4, 4}};

constexpr MasterRow Row(std::string_view name, const Quantity& quantity, std::string_view definition,
                        std::string_view source) {
  return {name,  quantity.metricUnit, quantity.imperialUnit, quantity.imperialFactor, quantity.format, definition,
          source};
}

// The order is the order of every table, report and export until settings bring their own. AR and AW are lengths but
// are given in um.
constexpr MasterRow kMasterRows[] = {
    Row("Ft", kHeight, "total height of the form-suppressed profile: highest minus lowest point", "ISO 4287"),
    Row("Pt", kHeight, "total height: highest minus lowest point", "ISO 4287"),
    Row("Pa", kHeight, "arithmetic mean deviation: mean of |z|", "ISO 4287"),
    Row("Pq", kHeight, "root mean square deviation", "ISO 4287"),
    Row("Psk", kNumber, "skewness: mean of z^3 over q^3", "ISO 4287"),
    Row("Pku", kNumber, "kurtosis: mean of z^4 over q^4", "ISO 4287"),
    Row("Pp", kHeight, "maximum peak height above the mean line", "ISO 4287"),
    Row("Pv", kHeight, "maximum valley depth below the mean line", "ISO 4287"),
    Row("Psm", kLength, "mean width of the profile elements", "ISO 4287"),
    Row("Ps", kLength, "mean spacing of local peaks", kOwn),
    Row("Phsc", kCount, "high spot count", kOwn),
    Row("Pvc", kCount, "valley count", kOwn),
    Row("Pm0", kMoment0, "zeroth spectral moment: mean of z^2", kOwn),
    Row("Pm2", kMoment2, "second spectral moment: mean square of the slope", kOwn),
    Row("Pm4", kMoment4, "fourth spectral moment: mean square of the curvature", kOwn),
    Row("Pdsm", kLength, "standard deviation of the profile element widths", kOwn),
    Row("Wt", kHeight, "total height: highest minus lowest point", "ISO 4287"),
    Row("Wa", kHeight, "arithmetic mean deviation: mean of |z|", "ISO 4287"),
    Row("Wq", kHeight, "root mean square deviation", "ISO 4287"),
    Row("Wp", kHeight, "maximum peak height above the mean line", "ISO 4287"),
    Row("Wpl", kHeight, "highest point within the left end region", kOwn),
    Row("Wpr", kHeight, "highest point within the right end region", kOwn),
    Row("Wv", kHeight, "maximum valley depth below the mean line", "ISO 4287"),
    Row("Wseg", kHeight, "largest peak-to-valley height in a moving window", kOwn),
    Row("Wsegl", kLength, "position of Wseg", kOwn),
    Row("Wsm", kLength, "mean width of the profile elements", "ISO 4287"),
    Row("Ws", kLength, "mean spacing of local peaks", kOwn),
    Row("Wdq", kAngle, "root mean square slope, 7-point formula, as an angle", "ISO 4287"),
    Row("Wcvx", kHeight, "largest height above the opening envelope", kOwn),
    Row("Wcvxm", kHeight, "mean bump height above the opening envelope", kOwn),
    Row("Wcvxl", kLength, "position of Wcvx", kOwn),
    Row("Wvoid", kHeight, "mean gap between the closing envelope and the profile", kOwn),
    Row("Wvdd", kHeight, "largest void depth under the closing envelope", kOwn),
    Row("Wvddl", kLength, "position of Wvdd", kOwn),
    Row("Wvdc", kPerLength, "voids per length", kOwn),
    Row("Wvdas", kNumber, "mean void depth-to-length ratio", kOwn),
    Row("Wvdmp", kLength, "mean void length", kOwn),
    Row("Wvdm", kHeight, "mean void depth", kOwn),
    Row("Wvda", kArea, "void area", kOwn),
    Row("Wtc", kHeight, "greatest height of a profile element", kOwn),
    Row("Wc", kHeight, "mean height of the profile elements", "ISO 4287"),
    Row("Wlslp", kMinutes, "largest slope of the least-squares line over a moving window", kOwn),
    Row("Wlslpl", kLength, "position of Wlslp", kOwn),
    Row("Weslp", kMinutes, "largest slope of the chord over a moving window", kOwn),
    Row("Weslpl", kLength, "position of Weslp", kOwn),
    Row("Ra", kHeight, "arithmetic mean deviation: mean of |z|", "ISO 4287"),
    Row("Ra1", kHeight, "largest mean of |z| in a window of one sampling length swept along the profile", kOwn),
    Row("Ra1l", kSweptPosition, "position of Ra1", kOwn),
    Row("Ra7", kHeight, "largest mean of |z| in a window of seven sampling lengths swept along the profile", kOwn),
    Row("Ra7l", kSweptPosition, "position of Ra7", kOwn),
    Row("Rpm7", kHeight, "largest mean of seven neighbouring sampling-length peak heights", kOwn),
    Row("Rpm7l", kSweptPosition, "position of Rpm7", kOwn),
    Row("Rc", kHeight, "mean height of the profile elements", "ISO 4287"),
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
    Row("RzDIN", kHeight, "mean peak-to-valley height of the sampling lengths", "DIN 4768"),
    Row("Rzi", kHeight, "mean of the single peak-to-valley heights", kOwn),
    Row("R3z", kHeight, "third-highest peak to third-lowest valley, mean of the sampling lengths", kOwn),
    Row("RzJIS", kHeight, "ten-point height, mean of the sampling lengths", "JIS B 0601"),
    Row("Rpm", kHeight, "mean peak height of the sampling lengths", kOwn),
    Row("Rpm/3z", kNumber, "ratio Rpm / R3z", kOwn),
    Row("Rvm", kHeight, "mean valley depth of the sampling lengths", kOwn),
    Row("Rmax", kHeight, "largest peak-to-valley height of a sampling length", kOwn),
    Row("Ry", kHeight, "largest peak-to-valley height of a sampling length, as Rmax", kOwn),
    Row("Rz1max", kHeight, "largest single peak-to-valley height, as Rmax", kOwn),
    Row("Rsm", kLength, "mean width of the profile elements", "ISO 4287"),
    Row("Rs", kLength, "mean spacing of local peaks", kOwn),
    Row("Rhsc", kCount, "high spot count", kOwn),
    Row("Rvc", kCount, "valley count", kOwn),
    Row("Rk", kHeight, "core roughness depth", "ISO 13565-2"),
    Row("Rpk", kHeight, "reduced peak height", "ISO 13565-2"),
    Row("Rpk*", kHeight, "highest point above the core", kOwn),
    Row("Rpk+k", kHeight, "Rpk + Rk", kOwn),
    Row("Rpk/k", kNumber, "Rpk / Rk", kOwn),
    Row("Rk+vk", kHeight, "Rk + Rvk", kOwn),
    Row("Rvk/k", kNumber, "Rvk / Rk", kOwn),
    Row("Rvk", kHeight, "reduced valley depth", "ISO 13565-2"),
    Row("Rvk*", kHeight, "lowest point below the core", kOwn),
    Row("Rmr1", kPercent, "material ratio at the upper end of the core", "ISO 13565-2"),
    Row("Rmr2", kPercent, "material ratio at the lower end of the core", "ISO 13565-2"),
    Row("Rvo", kHeight, "valley area: (100 - Rmr2) Rvk / 200", "ISO 13565-2"),
    Row("Rpq", kHeight, "plateau slope on the probability scale", "ISO 13565-3"),
    Row("Rvq", kHeight, "valley slope on the probability scale", "ISO 13565-3"),
    Row("Rmq", kPercent, "material ratio where plateau and valley lines cross", "ISO 13565-3"),
    Row("Rcl", kHeight, "mean over the sampling lengths of the mean element height", kOwn),
    Row("Rm0", kMoment0, "zeroth spectral moment: mean of z^2", kOwn),
    Row("Rm2", kMoment2, "second spectral moment: mean square of the slope", kOwn),
    Row("Rm4", kMoment4, "fourth spectral moment: mean square of the curvature", kOwn),
    Row("Rpc", kCountPerLength, "peak count per length", kOwn),
    Row("Rtwi", kPercent, "share of points within plus or minus q of the mean line", kOwn),
    Row("Ppc", kCountPerLength, "peak count per length", kOwn),
    Row("Wpc", kCountPerLength, "peak count per length", kOwn),
    Row("R", kHeight, "mean depth of the roughness motifs", "ISO 12085"),
    Row("Rx", kHeight, "largest depth of the roughness motifs", "ISO 12085"),
    Row("AR", kHeight, "mean length of the roughness motifs", "ISO 12085"),
    Row("Wte", kHeight, "total depth of the waviness", "ISO 12085"),
    Row("W", kHeight, "mean depth of the waviness motifs", "ISO 12085"),
    Row("Wx", kHeight, "largest depth of the waviness motifs", "ISO 12085"),
    Row("AW", kHeight, "mean length of the waviness motifs", "ISO 12085"),
};
static_assert(std::size(kMasterRows) == 107);

}  // namespace

std::span<const MasterRow> MasterCatalogue() {
  return kMasterRows;
}

}  // namespace texturon
