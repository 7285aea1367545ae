// SPDX-License-Identifier: Apache-2.0

#include "base/json_value.h"

#include <bit>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>

namespace texturon {
namespace {

TEST(JsonValue, ReadsWhatAnalysesWrite) {
  std::string_view text =
      " {\"a\": {\"b\": [1, -2.5e-3, true, false, null, []]}, \"t\": \"\\u00b5\\ud83d\\ude00\\n\\\"/\", \"a2\": {}} "
      "{}\n ";
  const JsonRead first = ReadJson(text);
  ASSERT_TRUE(first.value) << first.reason;
  const auto& list = *first.value->Find("a", "b")->As<JsonValue::Array>();
  ASSERT_EQ(list.size(), 6u);
  EXPECT_EQ(*list[1].As<double>(), -2.5e-3);
  EXPECT_TRUE(*list[2].As<bool>() && !*list[3].As<bool>() && list[4].IsNull());
  EXPECT_EQ(*first.value->Find("t")->As<std::string>(), "\xC2\xB5\xF0\x9F\x98\x80\n\"/");
  EXPECT_EQ(first.value->Find("a", "c"), nullptr);
  EXPECT_TRUE(ReadJson(text).value);
  EXPECT_TRUE(text.empty());
  for (const double number : {0.1, 5e-324, 1.7976931348623157e308, -0.0}) {
    std::string_view one = number == 0.0   ? "-0"
                           : number == 0.1 ? "0.1"
                           : number < 1.0  ? "5e-324"
                                           : "17976931348623157e292";
    EXPECT_EQ(std::bit_cast<std::uint64_t>(*ReadJson(one).value->As<double>()), std::bit_cast<std::uint64_t>(number));
  }
}

TEST(JsonValue, NamesThePlaceOfWhatIsNone) {
  const std::pair<std::string, const char*> cases[] = {
      {"", "line 1, column 1: a value is expected"},
      {"{\n \"a\" 1}", "line 2, column 6: a colon is expected"},
      {"{\"a\": 1,}", "line 1, column 9: the name of a member is expected"},
      {"[1 2]", "line 1, column 4: a comma or a closing bracket is expected"},
      {"[1e999]", "line 1, column 2: a value is expected"},
      {"[.5]", "line 1, column 2: a value is expected"},
      {"[0x10]", "line 1, column 3: a comma or a closing bracket is expected"},
      {"[nan]", "line 1, column 2: a value is expected"},
      {"\"\\ud800x\"", "line 1, column 8: this is no escape"},
      {"\"a", "line 1, column 2: a text without an end begins before this"},
      {std::string(100'000, '['), "line 1, column 66: too many values within each other"},
  };
  for (const auto& [bytes, reason] : cases) {
    std::string_view text = bytes;
    EXPECT_EQ(ReadJson(text).reason, reason) << bytes.substr(0, 20);
  }
}

}  // namespace
}  // namespace texturon
