// SPDX-License-Identifier: Apache-2.0

#include "export/qdas_file.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"

namespace texturon {
namespace {

constexpr char kBetweenCharacteristics = '\x0F';
constexpr char kBetweenFields = '\x14';

/// A field's text: no byte that separates, no longer than the format allows.
std::string Cut(std::string_view text, std::size_t most) {
  std::string cut(text.substr(0, most));
  std::replace_if(
      cut.begin(), cut.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }, ' ');
  return cut;
}

std::string Line(std::string_view key, std::size_t index, std::string_view value) {
  return std::string(key) + "/" + IntegerText(static_cast<std::int64_t>(index)) + " " + std::string(value) + "\r\n";
}

std::string Two(int number) {
  return IntegerText(number, 2, '0');
}

std::string DateAndTime(const std::tm& time) {
  return Two(time.tm_mday) + "." + Two(time.tm_mon + 1) + "." + IntegerText(1900 + time.tm_year) + "/" +
         Two(time.tm_hour) + ":" + Two(time.tm_min) + ":" + Two(time.tm_sec);
}

}  // namespace

std::string QdasDescription(std::span<const QdasCharacteristic> characteristics, std::string_view about) {
  constexpr std::size_t kName = 80;
  constexpr std::size_t kUnit = 20;
  constexpr std::string_view kLimit = "1";  // against 2, a natural one
  std::string text = "K0100 " + IntegerText(static_cast<std::int64_t>(characteristics.size())) + "\r\n";
  text += Line("K1001", 1, "Surface texture") + Line("K1002", 1, Cut(about, kName));
  for (std::size_t i = 0; i < characteristics.size(); ++i) {
    const QdasCharacteristic& characteristic = characteristics[i];
    const std::size_t index = i + 1;
    text += Line("K2001", index, IntegerText(static_cast<std::int64_t>(index)));
    text += Line("K2002", index, Cut(characteristic.name, kName));
    text += Line("K2004", index, "0");
    text += Line("K2022", index, IntegerText(characteristic.decimals));
    if (characteristic.lowerLimit) text += Line("K2110", index, ShortestText(*characteristic.lowerLimit));
    if (characteristic.upperLimit) text += Line("K2111", index, ShortestText(*characteristic.upperLimit));
    if (characteristic.lowerLimit) text += Line("K2120", index, kLimit);
    if (characteristic.upperLimit) text += Line("K2121", index, kLimit);
    if (!characteristic.unit.empty()) text += Line("K2142", index, Cut(characteristic.unit, kUnit));
  }
  return text;
}

std::string QdasValues(std::span<const QdasCharacteristic> characteristics, const std::tm& time,
                       std::string_view part) {
  constexpr std::size_t kPart = 40;
  constexpr std::string_view kNoValue = "255";
  std::string line;
  for (const QdasCharacteristic& characteristic : characteristics) {
    if (!line.empty()) line += kBetweenCharacteristics;
    const bool hasValue = characteristic.value && std::isfinite(*characteristic.value);
    if (hasValue) line += ShortestText(*characteristic.value);
    line += kBetweenFields;
    line += hasValue ? "0" : kNoValue;
    line += kBetweenFields + DateAndTime(time);
  }
  // Its end tells one file from another where it is cut.
  return line + "\r\n" + Line("K0014", 0, Cut(part.size() > kPart ? part.substr(part.size() - kPart) : part, kPart));
}

AppendOutcome AppendToQdasFile(const std::filesystem::path& path, const std::string& description,
                               std::string_view values, InUse inUse, const std::function<bool()>& givesUp) {
  const auto objection = [&description](const AppendFile& file) -> std::string {
    if (file.size() == 0 || file.Read(0, description.size()) == description) return {};
    return "holds other characteristics, or is no file of such results";
  };
  return AppendLines(path, description, values, objection, inUse, givesUp);
}

}  // namespace texturon
