// SPDX-License-Identifier: Apache-2.0

#include "parameters/no_value.h"

#include <gtest/gtest.h>

#include "parameters/ratio_rows.h"
#include "support/row_value.h"

namespace texturon {
namespace {

std::vector<double> Repeated(const std::vector<double>& period, std::size_t points) {
  std::vector<double> z(points);
  for (std::size_t i = 0; i < points; ++i) z[i] = period[i % period.size()];
  return z;
}

/// The reason of a row that must have no value.
std::string Reason(std::string_view suffix, const RowCase& row, bool metric = true) {
  const RowResult result = RowValue(suffix, row);
  EXPECT_FALSE(result.has_value()) << suffix;
  return ReasonText(result.Reason(), metric);
}

TEST(NoValue, SaysWhatIsNeededAndWhatThereIs) {
  const std::vector<double> teeth = Repeated({0.0, 1.0, 0.0, -1.0}, 4000);
  AnalysisSettings window;
  window.WindowWidthForWseg = 5.0;
  window.WxpEndRegionsMM = -0.5;
  window.AsphereSlopeWindowMM = 0.0001;
  window.RxqMinimumValleyCount = 2000;
  window.RxqValleyCountHeightUm = -0.25;
  window.UPLPercent = 50.001;
  window.LPLPercent = 50.02;
  AnalysisSettings search;
  search.RqFittingMethod = 1;
  const RowCase five = {.heights = teeth, .samplingLengthMM = 0.8, .settings = window};
  const RowCase flat = {.heights = std::vector<double>(60, 0.0), .samplingLengthMM = 0.02, .settings = search};
  std::vector<double> oneElement = teeth;
  oneElement.resize(6);
  std::vector<double> ramp(200);
  for (std::size_t i = 0; i < ramp.size(); ++i) ramp[i] = -static_cast<double>(i);
  const struct {
    const char* suffix;
    RowCase row;
    const char* reason;
  } cases[] = {
      {"a7", five, "needs seven sampling lengths; this profile has five"},
      {"pm7l", {.heights = {1, 2}}, "needs seven sampling lengths; this profile has none"},
      {"zJIS", {.heights = {1, 2}}, "needs one sampling length; this profile has none"},
      {"zDIN", {.heights = {1}}, "needs two points; this profile has one"},
      {"a1",
       {.heights = teeth, .samplingLengthMM = 0.0015},
       "needs two points in a sampling length; one of 0.0015 mm has fewer at a spacing of 1 \xB5m"},
      {"dq", {.heights = {1, 2, 3, 4, 5, 6}}, "needs seven points; this profile has six"},
      {"k", {.heights = {3, 2, 1}}, "needs ten points; this profile has three"},
      {"k", {.heights = ramp}, "the straight line of the core lies, at 100 %, below every point of the profile"},
      {"dsm", {.heights = oneElement, .samplingLengthMM = 0.004}, "needs two profile elements; this profile has one"},
      {"s", {.heights = {0, 1, 0}}, "needs two local peaks; this profile has one"},
      {"seg", five, "a window of 5 mm does not fit into a profile of 4 mm"},
      {"eslp", five, "a window of 0.0001 mm spans no step of 1 \xB5m"},
      {"pl", five, "the end regions must be longer than nothing; the settings say -0.5 mm"},
      {"vq", five, "needs 2000 valleys below -0.25 \xB5m; this profile has 1000"},
      {"pq", five, "needs two points with material ratios from 50 % to 50.02 %; this profile has one"},
      {"mq", flat, "the heights between the outer limits of the probability plot do not differ"},
      {"vdm", flat, "the closing ball touches the profile at every point: there is no void"},
      {"pm/3z", flat, "needs a sampling length with three local peaks and three local valleys; this profile has none"},
  };
  for (const auto& [suffix, row, reason] : cases) EXPECT_EQ(Reason(suffix, row), reason) << suffix;
  EXPECT_EQ(Reason("seg", five, false), "a window of 0.1969 in does not fit into a profile of 0.1575 in");
  const RowCase huge = {.heights = Repeated({1e200, -1e200, 0.0}, 30)};
  EXPECT_EQ(Reason("twi", huge), "the heights or the settings lead to no finite number");
}

TEST(NoValue, OfAMotifRowIsThatOfTheStageThatHasNone) {
  const auto reason = [](const char* name, const std::vector<double>& heights) {
    const AnalysisSettings settings;
    const ParameterProfile profile('P', heights, {1.0, 0.8, 0.8});
    return FindWholeName(name)({profile, settings}).Reason().why;
  };
  EXPECT_EQ(reason("W", std::vector<double>(100, 0.0)), Why::kNoRoughnessMotif);
  EXPECT_EQ(reason("AW", Repeated({0.0, 1.0, 0.0, -1.0}, 100)), Why::kNoWavinessMotif);
}

}  // namespace
}  // namespace texturon
