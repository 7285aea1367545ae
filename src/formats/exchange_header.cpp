// SPDX-License-Identifier: Apache-2.0

#include "formats/exchange_header.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/number_text.h"
#include "base/text.h"
#include "formats/text_lines.h"
#include "formats/xml_reader.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

constexpr std::int64_t kMostProfiles = 10'000;

std::int64_t CountOf(std::string_view text) {
  const auto number = NumberField(text);
  const bool isCount = number && *number == std::trunc(*number) && *number >= 1.0 && *number <= 1e15;
  return isCount ? static_cast<std::int64_t>(*number) : 0;
}

void TakeAxis(std::string_view field, std::string_view text, ExchangeAxis& axis) {
  if (field == "AxisType") axis.isAbsolute = text == "A";
  if (field == "DataType" && text.size() == 1) axis.dataType = text[0];
  if (field == "Increment") axis.increment = NumberField(text);
  if (field == "Offset") axis.offset = NumberField(text).value_or(0.0);
}

/// A text of the description and where it goes.
struct TextField {
  std::string_view path;
  std::string& (*of)(ExchangeHeader& header);
};

constexpr TextField kTexts[] = {
    {"Record1/FeatureType", [](ExchangeHeader& h) -> std::string& { return h.featureType; }},
    {"Record2/Date", [](ExchangeHeader& h) -> std::string& { return h.date; }},
    {"Record2/Comment", [](ExchangeHeader& h) -> std::string& { return h.comment; }},
    {"Record3/DataLink/PointDataLink", [](ExchangeHeader& h) -> std::string& { return h.points.name; }},
    {"Record3/DataLink/MD5ChecksumPointData", [](ExchangeHeader& h) -> std::string& { return h.points.md5; }},
    {"Record3/DataLink/ValidPointsLink", [](ExchangeHeader& h) -> std::string& { return h.valid.name; }},
    {"Record3/DataLink/MD5ChecksumValidPoints", [](ExchangeHeader& h) -> std::string& { return h.valid.md5; }},
    {"Record4/ChecksumFile", [](ExchangeHeader& h) -> std::string& { return h.checksumFile; }},
};

struct CountField {
  std::string_view path;
  int size;
};

constexpr CountField kCounts[] = {{"Record3/MatrixDimension/SizeX", 0},
                                  {"Record3/MatrixDimension/SizeY", 1},
                                  {"Record3/MatrixDimension/SizeZ", 2},
                                  {"Record3/ListDimension", 0}};

void Take(std::string_view path, std::string_view text, ExchangeHeader& header) {
  for (const TextField& field : kTexts) {
    if (path == field.path) field.of(header) = text;
  }
  for (const CountField& field : kCounts) {
    if (path == field.path) header.sizes[field.size] = CountOf(text);
  }
  constexpr std::string_view kAxes = "Record1/Axes/C";
  if (!path.starts_with(kAxes) || path.size() < kAxes.size() + 2) return;
  const char name = path[kAxes.size()];
  ExchangeAxis& axis = name == 'X' ? header.x : name == 'Y' ? header.y : header.z;
  TakeAxis(path.substr(kAxes.size() + 2), text, axis);
}

/// What the header says that is no profile.
std::string NoProfile(const ExchangeHeader& header) {
  constexpr std::string_view kSaveOne = "; save one line of it as a profile";
  if (header.featureType == "PCL") return "it is a point cloud" + std::string(kSaveOne);
  if (header.featureType != "PRF" && header.featureType != "SUR") {
    return "its feature type " + Quoted(OnOneLine(header.featureType)) + " is not known";
  }
  const auto [points, lines, profiles] = header.sizes;
  if (points < 1 || lines < 1 || profiles < 1) return "its dimensions are no counts";
  if (lines > 1 || (header.featureType == "SUR" && profiles > 1)) {
    return "it is an areal measurement of " + IntegerText(points) + " x " + IntegerText(std::max(lines, profiles)) +
           " points" + std::string(kSaveOne);
  }
  if (points > kPointCapacity) return "it has more than 750 000 points";
  if (profiles > kMostProfiles) return "it has more than 10 000 profiles";
  return {};
}

/// What of the axes is wrong. Types are needed where the numbers stand in a file.
std::string WrongAxes(const ExchangeHeader& header) {
  const auto isType = [](const ExchangeAxis& axis) {
    return axis.dataType != '\0' && std::string_view("ILFD").find(axis.dataType) != std::string_view::npos;
  };
  if (!isType(header.z)) return "the data type of its heights is none of I, L, F, D";
  if (header.x.isAbsolute && !isType(header.x)) return "the data type of its positions is none of I, L, F, D";
  if (!header.x.isAbsolute && header.x.increment.value_or(0.0) <= 0.0) return "the increment of CX is not above 0";
  if (header.y.isAbsolute && !isType(header.y)) return "the data type of CY is none of I, L, F, D";
  if (header.z.hasIntegers() && header.z.increment.value_or(1.0) == 0.0) return "the increment of CZ is 0";
  return {};
}

}  // namespace

std::string ReadExchangeHeader(std::string_view xml, ExchangeHeader& header) {
  const std::string wrong = ForEachXmlLeaf(xml, [&header](std::string_view path, std::string_view text) {
    const std::size_t behindRoot = path.find('/');
    if (behindRoot != std::string_view::npos) Take(path.substr(behindRoot + 1), TrimBlanks(text), header);
  });
  if (!wrong.empty()) return "its main.xml is not well-formed: " + wrong;
  std::string noProfile = NoProfile(header);
  return noProfile.empty() ? WrongAxes(header) : noProfile;
}

}  // namespace texturon
