// SPDX-License-Identifier: Apache-2.0

#include "app/json_writer.h"

#include <gtest/gtest.h>
#include <limits>
#include <nlohmann/json.hpp>

namespace texturon {
namespace {

TEST(JsonWriter, WritesWhatAnotherReaderUnderstands) {
  for (const auto layout : {JsonWriter::Layout::kIndented, JsonWriter::Layout::kOneLine}) {
    JsonWriter json(layout);
    json.BeginObject();
    json.Key("text");
    json.Text("a\"b\\c\n\x01 \xC2\xB5");
    json.Key("numbers");
    const double numbers[] = {0.1, -1e300, 5e-324, 1.0 / 3.0, std::numeric_limits<double>::infinity()};
    json.Numbers(numbers);
    json.Key("empty");
    json.BeginArray();
    json.EndArray();
    json.Key("rows");
    json.BeginArray();
    json.Integer(100'000);
    json.BeginObject();
    json.EndObject();
    json.Bool(true);
    json.Number(std::numeric_limits<double>::quiet_NaN());
    json.EndArray();
    json.EndObject();
    const auto read = nlohmann::json::parse(json.Result());
    EXPECT_EQ(read["text"], "a\"b\\c\n\x01 \xC2\xB5");
    for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(read["numbers"][i].get<double>(), numbers[i]);
    EXPECT_TRUE(read["numbers"][4].is_null());
    EXPECT_TRUE(read["empty"].is_array());
    EXPECT_EQ(read["rows"].dump(), "[100000,{},true,null]");
    EXPECT_EQ(json.Result().find('\n') == std::string::npos, layout == JsonWriter::Layout::kOneLine);
  }
}

}  // namespace
}  // namespace texturon
