// SPDX-License-Identifier: Apache-2.0

#include "export/transfer_file.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"

namespace texturon {
namespace {

constexpr char kBetweenValues = '\x0F';
constexpr char kBetweenFields = '\x14';
constexpr std::string_view kNoValue = "255";
constexpr std::string_view kLineEnd = "\r\n";

// Fields and the greatest lengths of their texts.
constexpr std::string_view kCount = "K0100";
constexpr std::string_view kPartId = "K0014";
constexpr std::size_t kPartIdLength = 40;
constexpr std::string_view kPartNumber = "K1001";
constexpr std::string_view kPartDescription = "K1002";
constexpr std::size_t kNumberLength = 30;
constexpr std::size_t kDescriptionLength = 80;
constexpr std::string_view kName = "K2001";
constexpr std::size_t kNameLength = 20;
constexpr std::string_view kDescription = "K2002";
constexpr std::string_view kType = "K2004";
constexpr std::string_view kDecimals = "K2022";
constexpr std::string_view kLower = "K2110";
constexpr std::string_view kUpper = "K2111";
constexpr std::string_view kUnit = "K2142";

/// A text without bytes that separate, cut.
std::string Text(std::string_view text, std::size_t length) {
  std::string cut(text.substr(0, length));
  std::replace_if(
      cut.begin(), cut.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
  return cut;
}

void Append(std::string& out, std::string_view key, std::size_t index, std::string_view value) {
  if (value.empty()) return;
  out += std::string(key) + "/" + IntegerText(static_cast<std::int64_t>(index)) + " " + std::string(value) +
         std::string(kLineEnd);
}

/// "04.03.2015/09:05:07"
std::string Date(const std::tm& t) {
  const auto two = [](int number) { return IntegerText(number, 2, '0'); };
  return two(t.tm_mday) + "." + two(t.tm_mon + 1) + "." + IntegerText(t.tm_year + 1900, 4, '0') + "/" + two(t.tm_hour) +
         ":" + two(t.tm_min) + ":" + two(t.tm_sec);
}

void AppendCharacteristic(std::string& out, std::size_t index, const TransferCharacteristic& c) {
  Append(out, kName, index, Text(c.name, kNameLength));
  Append(out, kDescription, index, Text(c.name, kDescriptionLength));
  Append(out, kType, index, "0");  // measured
  Append(out, kDecimals, index, IntegerText(c.decimals));
  if (c.lower) Append(out, kLower, index, ShortestText(*c.lower));
  if (c.upper) Append(out, kUpper, index, ShortestText(*c.upper));
  Append(out, kUnit, index, Text(c.unit, kNameLength));
}

}  // namespace

std::string TransferText(const std::vector<TransferCharacteristic>& characteristics,
                         const std::vector<TransferRecord>& records) {
  std::string out = std::string(kCount) + " " + IntegerText(static_cast<std::int64_t>(characteristics.size())) +
                    std::string(kLineEnd);
  const std::string_view part = records.empty() ? std::string_view{} : records.front().identification;
  Append(out, kPartNumber, 1, Text(part, kNumberLength));
  Append(out, kPartDescription, 1, Text(part, kDescriptionLength));
  for (std::size_t i = 0; i < characteristics.size(); ++i) AppendCharacteristic(out, i + 1, characteristics[i]);
  for (const TransferRecord& record : records) {
    for (std::size_t i = 0; i < characteristics.size(); ++i) {
      if (i > 0) out += kBetweenValues;
      const std::optional<double> value = i < record.values.size() ? record.values[i] : std::nullopt;
      const bool isValid = value && std::isfinite(*value);
      if (isValid) out += ShortestText(*value);
      out += kBetweenFields + std::string(isValid ? "0" : kNoValue) + kBetweenFields + Date(record.time);
    }
    out += kLineEnd;
    Append(out, kPartId, 0, Text(record.identification, kPartIdLength));
  }
  return out;
}

}  // namespace texturon
