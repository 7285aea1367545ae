// SPDX-License-Identifier: Apache-2.0

#include "export/qdas_file.h"

#include <gtest/gtest.h>

#include "support/scratch_folder.h"

namespace texturon {
namespace {

TEST(QdasFile, DescribesOnceAndAddsALineAPart) {
  ScratchFolder folder;
  const std::tm time{.tm_sec = 7, .tm_min = 5, .tm_hour = 9, .tm_mday = 4, .tm_mon = 2, .tm_year = 115};
  std::vector<QdasCharacteristic> rows = {
      {.name = "Ra\x0F", .unit = "\xB5m", .decimals = 4, .upperLimit = 0.8, .value = 0.25},
      {.name = "Rmr", .unit = "%", .decimals = 2, .lowerLimit = 40.0, .upperLimit = 60.0, .value = std::nullopt}};
  const std::string description = QdasDescription(rows, "Gaussian");
  const auto append = [&](const std::string& part) {
    return AppendToQdasFile(folder / "r.dfq", description, QdasValues(rows, time, part), InUse::kRetryOnce);
  };
  EXPECT_TRUE(append("a.lmt").written);
  rows[1].value = 50.5;
  EXPECT_TRUE(append("folder/" + std::string(34, 'b') + ".lmt").written);
  EXPECT_EQ(folder.Read("r.dfq"),
            "K0100 2\r\nK1001/1 Surface texture\r\nK1002/1 Gaussian\r\n"
            "K2001/1 1\r\nK2002/1 Ra \r\nK2004/1 0\r\nK2022/1 4\r\nK2111/1 0.8\r\nK2121/1 1\r\nK2142/1 \xB5m\r\n"
            "K2001/2 2\r\nK2002/2 Rmr\r\nK2004/2 0\r\nK2022/2 2\r\nK2110/2 40\r\nK2111/2 60\r\nK2120/2 1\r\n"
            "K2121/2 1\r\nK2142/2 %\r\n"
            "0.25\x14"
            "0\x14"
            "04.03.2015/09:05:07\x0F\x14"
            "255\x14"
            "04.03.2015/09:05:07\r\nK0014/0 a.lmt\r\n"
            "0.25\x14"
            "0\x14"
            "04.03.2015/09:05:07\x0F"
            "50.5\x14"
            "0\x14"
            "04.03.2015/09:05:07\r\n"
            "K0014/0 r/" +
                std::string(34, 'b') + ".lmt\r\n");
  rows[0].upperLimit = 0.9;
  EXPECT_EQ(AppendToQdasFile(folder / "r.dfq", QdasDescription(rows, "Gaussian"), "x", InUse::kRetryOnce).reason,
            "holds other characteristics, or is no file of such results");
}

}  // namespace
}  // namespace texturon
