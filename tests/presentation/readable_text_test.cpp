// SPDX-License-Identifier: Apache-2.0

#include "presentation/readable_text.h"

#include <gtest/gtest.h>
#include <utility>

namespace texturon {
namespace {

TEST(ReadableText, HasTheSignsOfPrint) {
  const std::pair<const char*, const char*> cases[] = {
      {"-0.1666", "\u22120.1666"},
      {"-0.000", "0.000"},
      {"X1 -0.0001 mm  dX -0", "X1 \u22120.0001 mm  dX 0"},
      {"mm2", "mm\u00B2"},
      {"\u00B5m-2", "\u00B5m\u207B\u00B2"},
      {"5.55898e-001", "5.55898\u00B710\u207B\u00B9"},
      {"2e+06 mm", "2\u00B710\u2076 mm"},
      {"1e+00", "1"},
      {"-1e-3 mm", "\u22121\u00B710\u207B\u00B3 mm"},
      {"86cb9ec5e400", "86cb9ec5e400"},
      {"Plateau-honed; X-2, m20; mm-", "Plateau-honed; X-2, m20; mm-"},
      {"part-7e5.lmt", "part-7e5.lmt"},
      {"5 um, um by um (um)", "5 \u00B5m, \u00B5m by \u00B5m (\u00B5m)"},
      {"12 #/cm", "12 1/cm"},
      {"um 3 Punkte, 5 umlaufend", "um 3 Punkte, 5 umlaufend"}};
  for (const auto& [text, shown] : cases) EXPECT_EQ(ReadableText(text), shown) << text;
}

}  // namespace
}  // namespace texturon
