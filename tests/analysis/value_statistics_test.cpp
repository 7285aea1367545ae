// SPDX-License-Identifier: Apache-2.0

#include "analysis/value_statistics.h"

#include <cmath>
#include <gtest/gtest.h>

#include "support/near.h"

namespace texturon {
namespace {

TEST(ValueStatistics, AreThoseOfTheFiniteValues) {
  // 1 to 101 beside a large number: variance n (n + 1) / 12.
  ValueSeries values = {{}, INFINITY, std::nan("")};
  for (int i = 1; i <= 101; ++i) values.emplace_back(1e9 + i);
  const ValueStatistics statistics = StatisticsOf(values);
  EXPECT_EQ(statistics.count, 101u);
  EXPECT_EQ(statistics.mean, 1e9 + 51.0);
  EXPECT_TRUE(Near(*statistics.standardDeviation, std::sqrt(101.0 * 102.0 / 12.0), 1e-12));
  EXPECT_EQ(statistics.Range(), 100.0);
  const ValueStatistics one = StatisticsOf(ValueSeries{2.5});
  EXPECT_EQ(one.mean, 2.5);
  EXPECT_FALSE(one.standardDeviation);
  EXPECT_FALSE(StatisticsOf(ValueSeries{{}}).mean || StatisticsOf({}).Range());
}

TEST(Histogram, CountsEachValueOnce) {
  ValueSeries values;
  for (int i = 0; i < 16; ++i) values.emplace_back(static_cast<double>(i) / 15.0 * 4.0);
  const auto classes = HistogramOf(values);
  ASSERT_EQ(classes.size(), 4u);
  for (const HistogramClass& row : classes) EXPECT_EQ(row.count, 4u) << row.from;
  EXPECT_EQ(classes[1].from, 1.0);
  EXPECT_EQ(HistogramOf(ValueSeries{0.0, 1.0, 1.0, 2.0, {}})[1].count, 3u) << "a border belongs to the class above";
  EXPECT_EQ(HistogramOf(ValueSeries(7, 3.0)).front().count, 7u);
  EXPECT_EQ(HistogramOf(ValueSeries(5000, 3.0)).size(), 1u);
  EXPECT_TRUE(HistogramOf(ValueSeries{INFINITY}).empty());
  ValueSeries many;
  for (int i = 0; i < 5000; ++i) many.emplace_back(i);
  EXPECT_EQ(HistogramOf(many).size(), kMostHistogramClasses);
}

TEST(ProcessCapability, IsTheDistanceOfTheLimitsInDeviations) {
  // Mean 10, deviation 1.
  const ValueStatistics process = StatisticsOf(ValueSeries{9.0, 10.0, 11.0});
  const auto both = CapabilityOf(process, 6.0, 16.0);
  EXPECT_EQ(both.lowerLine, 7.0);
  EXPECT_EQ(both.upperLine, 13.0);
  EXPECT_TRUE(Near(*both.cp, 10.0 / 6.0, 1e-12));
  EXPECT_TRUE(Near(*both.cpk, 4.0 / 3.0, 1e-12));
  const auto upper = CapabilityOf(process, std::nullopt, 9.5);
  EXPECT_FALSE(upper.cp);
  EXPECT_TRUE(Near(*upper.cpk, -0.5 / 3.0, 1e-12));
  EXPECT_TRUE(Near(*CapabilityOf(process, 1.0, std::nullopt).cpk, 3.0, 1e-12));
  EXPECT_FALSE(CapabilityOf(process, std::nullopt, std::nullopt).cpk);
  const auto constant = CapabilityOf(StatisticsOf(ValueSeries{2.0, 2.0}), 1.0, 3.0);
  EXPECT_EQ(constant.upperLine, 2.0);
  EXPECT_FALSE(constant.cp || constant.cpk);
  EXPECT_FALSE(CapabilityOf(StatisticsOf(ValueSeries{2.0}), 1.0, 3.0).upperLine);
}

}  // namespace
}  // namespace texturon
