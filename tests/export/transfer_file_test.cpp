// SPDX-License-Identifier: Apache-2.0

#include "export/transfer_file.h"

#include <gtest/gtest.h>
#include <limits>

namespace texturon {
namespace {

/// A value that is missing or infinite has state 255 and no number; a 0 that was measured stays.
TEST(TransferFile, DescribesTheRowsAndLeavesOutWhatHasNoValue) {
  std::tm time{};
  time.tm_year = 115;
  time.tm_mon = 2;
  time.tm_mday = 4;
  time.tm_hour = 9;
  time.tm_min = 5;
  time.tm_sec = 7;
  const std::string longName(50, 'n');
  const std::string text =
      TransferText({{.name = "Ra", .unit = "\xB5m", .decimals = 3, .upper = 1.6},
                    {.name = "Rmr(c)" + longName, .unit = "%", .decimals = 1, .lower = 10.0, .upper = 0.0},
                    {.name = "Rku"}},
                   {{"Shaft\x14 1\r\n", {1.25, std::nullopt, 0.0}, time},
                    {"", {249.96, std::numeric_limits<double>::infinity()}, time}});
  const std::string date =
      "\x14"
      "04.03.2015/09:05:07";
  EXPECT_EQ(text,
            "K0100 3\r\nK1001/1 Shaft  1  \r\nK1002/1 Shaft  1  \r\n"
            "K2001/1 Ra\r\nK2002/1 Ra\r\nK2004/1 0\r\nK2022/1 3\r\nK2111/1 1.6\r\nK2142/1 \xB5m\r\n"
            "K2001/2 Rmr(c)" +
                longName.substr(0, 14) + "\r\nK2002/2 Rmr(c)" + longName +
                "\r\nK2004/2 0\r\nK2022/2 1\r\nK2110/2 10\r\nK2111/2 0\r\nK2142/2 %\r\n"
                "K2001/3 Rku\r\nK2002/3 Rku\r\nK2004/3 0\r\nK2022/3 3\r\n"
                "1.25\x14"
                "0" +
                date +
                "\x0F\x14"
                "255" +
                date +
                "\x0F"
                "0\x14"
                "0" +
                date +
                "\r\nK0014/0 Shaft  1  \r\n"
                "249.96\x14"
                "0" +
                date +
                "\x0F\x14"
                "255" +
                date +
                "\x0F\x14"
                "255" +
                date + "\r\n");
}

}  // namespace
}  // namespace texturon
