// SPDX-License-Identifier: Apache-2.0

#include "formats/point_table.h"

#include <gtest/gtest.h>

namespace texturon {
namespace {

TEST(PointTable, TakesWhatSpreadsheetsAndInstrumentsGive) {
  const std::vector<FreeFormPoint> wanted = {{0.0, 1.5}, {0.5, -2.0}};
  for (const char* text : {"0\t1.5\n0.5\t-2\n", "0\t1,5\r\n0,5\t-2\r\n", "0;1,5\n0,5;-2,0", "0,1.5\n0.5,-2\n",
                           "0, 1.5\n0.5, -2\n", "  0   1.5\n\n 0.5  -2\n", "0 1,5\n0,5 -2\n",
                           "X;Z\nmm;um\n0;1.5\n.5;-2e0\n", "\"X (mm)\",\"Z (um)\"\n0,1.5,ok\n0.5,-2,ok\n"}) {
    const PointTable table = ReadPointTable(text);
    EXPECT_EQ(table.reason, "") << text;
    EXPECT_EQ(table.points, wanted) << text;
  }
  // The comma may show itself late.
  EXPECT_EQ(ReadPointTable("0\t1\n0\t1,5\n").points, (std::vector<FreeFormPoint>{{0.0, 1.0}, {0.0, 1.5}}));
}

TEST(PointTable, RefusesWithAReason) {
  EXPECT_EQ(ReadPointTable("").reason, "there is no line with two numbers");
  EXPECT_EQ(ReadPointTable("1\n2\n3\n").reason, "there is no line with two numbers");
  EXPECT_EQ(ReadPointTable("X Z\n0 1\n1 two\n").reason, "line 3: not two numbers");
  EXPECT_EQ(ReadPointTable("0 1\n1 nan\n").reason, "line 2: not two numbers");
  std::string emptyLines(200, '\n');
  EXPECT_EQ(ReadPointTable(emptyLines.append("0 1\n")).reason, "") << "empty lines are no heading";
  std::string heading;
  for (int i = 0; i < 200; ++i) heading += "text\n";
  EXPECT_FALSE(ReadPointTable(heading + "0 1\n").ok());
  std::string most;
  for (std::size_t i = 0; i < kMostFreeFormPoints; ++i) most += "1 2\n";
  EXPECT_EQ(ReadPointTable(most).points.size(), kMostFreeFormPoints);
  EXPECT_EQ(ReadPointTable(most + "1 2\n").reason, "there are more than 750 000 points");
}

}  // namespace
}  // namespace texturon
