// SPDX-License-Identifier: Apache-2.0

#include "formats/xml_profile.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "base/text.h"
#include "formats/base64.h"
#include "formats/exchange_format.h"
#include "formats/profile_choice.h"
#include "formats/reader_questions.h"
#include "formats/stylus_curve.h"
#include "formats/text_cursor.h"
#include "formats/text_lines.h"
#include "formats/unit_words.h"
#include "formats/xml_reader.h"
#include "platform/platform.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

constexpr std::size_t kHeaderSize = 65'536;
constexpr std::size_t kMostCurves = 1000;
constexpr std::string_view kWrongVersion = "Wrong file version.  Contact Corvane";
constexpr std::string_view kContainerType = "125";

std::string Refusal(std::string_view reason) {
  return "The XML file is not read: " + std::string(reason) + ".";
}

/// Which of the file's curves; nothing where none was chosen.
std::optional<std::size_t> Choose(const ReaderInput& input, const std::vector<std::string>& names,
                                  std::string& reason) {
  if (names.size() == 1) return 0;
  const std::string title = "Input File: " + TextFromPath(input.path.filename());
  const auto index = ChooseProfile(
      input, static_cast<std::int64_t>(names.size()), title, {},
      [&names](std::int64_t i) { return names[static_cast<std::size_t>(i)]; }, reason);
  if (!index) return std::nullopt;
  return static_cast<std::size_t>(*index);
}

/// What an algorithm test's file says of one set of data. The analysis behind it has units and points of its own.
struct TestData {
  std::string name, units, points, spacing, kind, values;
};

struct TestField {
  std::string_view path;
  std::string TestData::*text;
};

constexpr TestField kTestFields[] = {{"FILENAME", &TestData::name},    {"UNITS", &TestData::units},
                                     {"NUMPOINTS", &TestData::points}, {"SPACING", &TestData::spacing},
                                     {"DATA_TYPE", &TestData::kind},   {"DATA_POINT_VALUES", &TestData::values}};

ReadResult ReadTestData(const ReaderInput& input, ImportedProfile& profile) {
  constexpr std::string_view kData = "DATAFILE/";
  std::vector<TestData> sets;
  const std::string wrong = ForEachXmlLeaf(input.bytes, [&](std::string_view path, std::string_view text) {
    if (path.ends_with("PART/PART_NAME")) profile.identification = OnOneLine(TrimBlanks(text));
    if (path.ends_with("PART/PART_DATE")) profile.date = OnOneLine(TrimBlanks(text));
    const std::size_t at = path.rfind(kData);
    if (at == std::string_view::npos || path.find("ANALYSIS") != std::string_view::npos) return;
    for (const TestField& field : kTestFields) {
      if (path.substr(at + kData.size()) != field.path) continue;
      const bool isNext = sets.empty() || !(sets.back().*field.text).empty();
      if (isNext && sets.size() < kMostCurves) sets.emplace_back();
      if ((sets.back().*field.text).empty()) sets.back().*field.text = TrimBlanks(text);
    }
  });
  if (!wrong.empty()) return Refuse(input, Refusal("it is not well-formed: " + wrong));
  if (sets.empty()) return Refuse(input, Refusal("it holds no DATAFILE"));
  std::vector<std::string> names;
  for (const TestData& set : sets) names.push_back(OnOneLine(set.name));
  std::string reason;
  const auto chosen = Choose(input, names, reason);
  if (!chosen) return ReadResult::Refused(reason);
  const TestData& set = sets[*chosen];
  if (!set.kind.empty() && set.kind != "2D")
    return Refuse(input, Refusal("its data are " + Quoted(OnOneLine(set.kind)) + ", no profile"));
  const auto unitUM = MicrometresPerUnit(set.units);
  const auto spacing = NumberField(set.spacing);
  if (!unitUM) return Refuse(input, Refusal("its unit " + Quoted(OnOneLine(set.units)) + " is no unit of length"));
  if (!spacing) return Refuse(input, Refusal("its SPACING is no number"));
  TextCursor cursor(set.values);
  for (cursor.SkipWhiteSpace(); !cursor.AtEnd(); cursor.SkipWhiteSpace()) {
    const auto height = cursor.Number();
    if (!height) return Refuse(input, Refusal("a value is no number"));
    if (profile.heightsUM.size() == static_cast<std::size_t>(kPointCapacity)) {
      return Refuse(input, Refusal("there are more than 750 000 points"));
    }
    profile.heightsUM.push_back(*height * *unitUM);
  }
  if (profile.heightsUM.empty()) return Refuse(input, Refusal("it holds no values"));
  WarnOfCount(NumberField(set.points).value_or(0.0), profile);
  profile.spacingUM = *spacing;
  profile.spacingSource = "SPACING";
  return ReadResult::Read();
}

/// One curve of a stylus profiler's container, its arrays still in base 64.
struct ContainerCurve {
  std::string name, points, array, positions;
  StylusQuantity extent, scale;
  bool hasExtent = false, hasScale = false;
};

void TakeQuantity(std::string_view field, std::string_view text, StylusQuantity& quantity, bool& isThere) {
  if (field == "Value") {
    const auto value = NumberField(text);
    isThere = value.has_value();
    quantity.value = value.value_or(0.0);
  }
  if (field == "Unit") quantity.unit = text;
}

/// Takes what stands at "1D_Data/NAME/FIELD".
void TakeCurve(std::string_view path, std::string_view text, std::vector<ContainerCurve>& curves) {
  const auto steps = SplitAtEach(path, '/');
  const auto data = std::find(steps.begin(), steps.end(), "1D_Data");
  const auto below = static_cast<std::size_t>(steps.end() - data);
  if (below < 3) return;
  if (curves.empty() || curves.back().name != data[1]) {
    if (curves.size() == kMostCurves) return;
    curves.push_back({.name = std::string(data[1])});
  }
  ContainerCurve& curve = curves.back();
  if (data[2] == "NumPoints") curve.points = text;
  if (data[2] == "Array") curve.array += text;
  if (data[2] == "PositionFunction") curve.positions += text;
  if (data[2] == "Extent" && below > 3) TakeQuantity(data[3], text, curve.extent, curve.hasExtent);
  if (data[2] == "DataScale" && below > 3) TakeQuantity(data[3], text, curve.scale, curve.hasScale);
}

/// Walks through the container, whose elements bear their names in the attribute "key".
std::string ReadContainer(std::string_view xml, ImportedProfile& profile, std::vector<ContainerCurve>& curves) {
  XmlReader reader(xml);
  std::vector<std::string> names;
  std::string path;
  std::string text;
  bool isLeaf = false;
  for (;;) {
    switch (reader.Next()) {
      case XmlReader::Event::kBegin: {
        const std::string key = reader.Attribute("key");
        names.push_back(key.empty() ? std::string(reader.name()) : key);
        path += "/" + names.back();
        text.clear();
        isLeaf = true;
        for (const char* field : {"Value", "Unit"}) {
          const std::string value = reader.Attribute(field);
          if (!value.empty()) TakeCurve(path + "/" + field, value, curves);
        }
        break;
      }
      case XmlReader::Event::kText:
        if (isLeaf) text += reader.piece();
        break;
      case XmlReader::Event::kEnd:
        if (isLeaf) TakeCurve(path, TrimBlanks(text), curves);
        if (isLeaf && path.ends_with("MetaData/DataSetName")) profile.identification = OnOneLine(TrimBlanks(text));
        if (isLeaf && path.ends_with("MetaData/Date")) profile.date = OnOneLine(TrimBlanks(text));
        if (isLeaf && path.ends_with("/StylusType")) profile.tipRadiusMM = TipRadiusOfStylus(TrimBlanks(text));
        isLeaf = false;
        path.resize(path.size() - names.back().size() - 1);
        names.pop_back();
        break;
      case XmlReader::Event::kDone:
        return {};
      case XmlReader::Event::kWrong:
        return "it is not well-formed: " + reader.reason();
    }
  }
}

ReadResult ReadStylusContainer(const ReaderInput& input, ImportedProfile& profile) {
  std::vector<ContainerCurve> curves;
  const std::string wrong = ReadContainer(input.bytes, profile, curves);
  if (!wrong.empty()) return Refuse(input, Refusal(wrong));
  std::vector<std::string> names;
  std::erase_if(curves, [](const ContainerCurve& curve) { return curve.array.empty(); });
  for (const ContainerCurve& curve : curves) names.push_back(OnOneLine(curve.name));
  if (names.empty()) return Refuse(input, Refusal("it holds no curve"));
  std::string reason;
  const auto chosen = Choose(input, names, reason);
  if (!chosen) return ReadResult::Refused(reason);
  const ContainerCurve& curve = curves[*chosen];
  const auto points = NumberField(curve.points);
  const auto array = BytesFromBase64(curve.array);
  const auto positions = BytesFromBase64(curve.positions);
  // The doubles are the last bytes of an array; what stands before them tells their type.
  const std::size_t size =
      points && *points >= 1.0 && *points <= kPointCapacity ? static_cast<std::size_t>(*points) * sizeof(double) : 0;
  if (size == 0 || !array || array->size() < size)
    return Refuse(input, Refusal("its array holds fewer numbers than NumPoints says"));
  const auto last = [size](const std::string& bytes) { return std::string_view(bytes).substr(bytes.size() - size); };
  StylusCurve stylus{.statedPoints = *points, .numbers = last(*array)};
  if (curve.hasExtent) stylus.extent = curve.extent;
  if (curve.hasScale) stylus.scale = curve.scale;
  if (positions && positions->size() >= size) stylus.positionsUM = last(*positions);
  return FinishStylusCurve(input, stylus, profile);
}

}  // namespace

ReadResult ReadXmlProfile(const ReaderInput& input, ImportedProfile& profile) {
  const std::string_view header = input.bytes.substr(0, kHeaderSize);
  if (header.find('<') == std::string_view::npos) return ReadResult::NotRecognised("the marker text \"<\" is missing");
  if (header.find("DataElements") != std::string_view::npos) return Refuse(input, NotReadYet("XML profile"));
  XmlReader reader(input.bytes);
  const bool hasRoot = reader.Next() == XmlReader::Event::kBegin;
  if (hasRoot && reader.name() == "DATA" && input.bytes.find("<DATAFILE") != std::string_view::npos) {
    return ReadTestData(input, profile);
  }
  if (hasRoot && reader.name() == "DataContainer" && reader.Attribute("typeid") == kContainerType) {
    return ReadStylusContainer(input, profile);
  }
  if (hasRoot && reader.name() == "ISO5436_2") return ReadExchangeDescription(input, profile);
  return Refuse(input, kWrongVersion);
}

}  // namespace texturon
