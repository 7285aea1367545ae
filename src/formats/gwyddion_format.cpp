// SPDX-License-Identifier: Apache-2.0

#include "formats/gwyddion_format.h"

#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "base/charset.h"
#include "base/text.h"
#include "formats/even_spacing.h"
#include "formats/little_endian.h"
#include "formats/profile_choice.h"
#include "formats/reader_questions.h"
#include "formats/unit_words.h"
#include "platform/platform.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

constexpr std::string_view kMark = "GWYP";
constexpr std::string_view kOldMark = "GWYO";
constexpr std::string_view kGraph = "GwyGraphModel";
constexpr std::string_view kCurve = "GwyGraphCurveModel";
constexpr std::string_view kImage = "GwyDataField";

std::string Refusal(std::string_view reason) {
  return "The Gwyddion file is not read: " + std::string(reason) + ".";
}

/// An object: the name of its type and its components.
struct Object {
  std::string_view type;
  std::string_view components;
};

/// A component: its type is a letter, a capital one for an array of `count`.
struct Component {
  std::string_view name;
  char type = '\0';
  std::size_t count = 1;
  std::string_view content;  ///< of an array behind its count
};

/// Bytes of a number of that type; 0: it is none.
std::size_t SizeOf(char type) {
  switch (type) {
    case 'b':
    case 'c':
      return 1;
    case 'i':
      return 4;
    case 'q':
    case 'd':
      return 8;
    default:
      return 0;
  }
}

/// Takes a text off the front, with the NUL behind it.
std::optional<std::string_view> TakeText(std::string_view& bytes) {
  const std::size_t end = bytes.find('\0');
  if (end == std::string_view::npos) return std::nullopt;
  const std::string_view text = bytes.substr(0, end);
  bytes.remove_prefix(end + 1);
  return text;
}

std::optional<Object> TakeObject(std::string_view& bytes) {
  const auto type = TakeText(bytes);
  if (!type || bytes.size() < 4) return std::nullopt;
  const std::size_t size = LittleEndian<std::uint32_t>(bytes, 0);
  if (size > bytes.size() - 4) return std::nullopt;
  const Object object{*type, bytes.substr(4, size)};
  bytes.remove_prefix(4 + size);
  return object;
}

/// Takes a component off the front; nothing at the end, and where it is not understood.
std::optional<Component> TakeComponent(std::string_view& bytes) {
  const auto name = TakeText(bytes);
  if (!name || bytes.empty()) return std::nullopt;
  Component component{*name, LowerAscii(bytes[0])};
  const bool isArray = component.type != bytes[0];
  bytes.remove_prefix(1);
  if (isArray) {
    if (bytes.size() < 4) return std::nullopt;
    component.count = LittleEndian<std::uint32_t>(bytes, 0);
    bytes.remove_prefix(4);
  }
  const std::string_view begin = bytes;
  if (const std::size_t size = SizeOf(component.type)) {
    if (component.count > bytes.size() / size) return std::nullopt;
    bytes.remove_prefix(component.count * size);
  } else {
    for (std::size_t i = 0; i < component.count; ++i) {
      const bool isTaken = component.type == 's'   ? TakeText(bytes).has_value()
                           : component.type == 'o' ? TakeObject(bytes).has_value()
                                                   : false;
      if (!isTaken) return std::nullopt;
    }
  }
  component.content = begin.substr(0, begin.size() - bytes.size());
  return component;
}

/// The component of that name and type letter; one of no bytes where there is none.
Component Find(const Object& object, std::string_view name, char type) {
  std::string_view rest = object.components;
  while (const auto component = TakeComponent(rest)) {
    if (component->name == name && component->type == type) return *component;
  }
  return {};
}

std::string TextAt(const Object& object, std::string_view name) {
  std::string_view content = Find(object, name, 's').content;
  return TextOfFile(TakeText(content).value_or(std::string_view{}), true);
}

/// The unit of an object of one; empty: none is stated.
std::string UnitAt(const Object& object, std::string_view name) {
  std::string_view content = Find(object, name, 'o').content;
  const auto unit = TakeObject(content);
  return unit ? TextAt(*unit, "unitstr") : std::string();
}

std::int32_t IntegerAt(const Object& object, std::string_view name) {
  const std::string_view content = Find(object, name, 'i').content;
  return content.size() == 4 ? LittleEndian<std::int32_t>(content, 0) : 0;
}

double NumberAt(const Object& object, std::string_view name) {
  const std::string_view content = Find(object, name, 'd').content;
  return content.size() == 8 ? LittleEndian<double>(content, 0) : 0.0;
}

/// A curve or a line of the file.
struct Candidate {
  std::string name;
  std::string xUnit, zUnit;
  std::string_view x;  ///< doubles; empty: a line of equal steps
  std::string_view z;
  double length = 0.0;  ///< of a line
};

struct Contents {
  std::vector<Candidate> candidates;
  bool hasAreal = false;
};

void AddGraph(const Object& graph, Contents& contents) {
  constexpr std::size_t kMostCurves = 1000;
  const Component curves = Find(graph, "curves", 'o');
  std::string_view rest = curves.content;
  while (const auto curve = TakeObject(rest)) {
    if (curve->type != kCurve || contents.candidates.size() == kMostCurves) continue;
    std::string name = TextAt(*curve, "description");
    if (name.empty()) name = TextAt(graph, "title");
    contents.candidates.push_back({.name = OnOneLine(name),
                                   .xUnit = UnitAt(graph, "x_unit"),
                                   .zUnit = UnitAt(graph, "y_unit"),
                                   .x = Find(*curve, "xdata", 'd').content,
                                   .z = Find(*curve, "ydata", 'd').content});
  }
}

void AddImage(const Object& image, Contents& contents) {
  if (IntegerAt(image, "yres") != 1) {
    contents.hasAreal = true;
    return;
  }
  contents.candidates.push_back({.name = "image of one line",
                                 .xUnit = UnitAt(image, "si_unit_xy"),
                                 .zUnit = UnitAt(image, "si_unit_z"),
                                 .z = Find(image, "data", 'd').content,
                                 .length = NumberAt(image, "xreal")});
}

/// Curves and lines of the container; nothing where the file is damaged.
std::optional<Contents> ContentsOf(std::string_view bytes) {
  bytes.remove_prefix(kMark.size());
  const auto root = TakeObject(bytes);
  if (!root) return std::nullopt;
  Contents contents;
  std::string_view rest = root->components;
  while (const auto component = TakeComponent(rest)) {
    if (component->type != 'o') continue;
    std::string_view content = component->content;
    const auto object = TakeObject(content);
    if (object && object->type == kGraph) AddGraph(*object, contents);
    if (object && object->type == kImage && component->name.ends_with("/data")) AddImage(*object, contents);
  }
  if (!rest.empty()) return std::nullopt;
  return contents;
}

std::vector<double> Micrometres(std::string_view bytes, double unitUM) {
  std::vector<double> values(bytes.size() / sizeof(double));
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double value = LittleEndian<double>(bytes, i * sizeof(double));
    values[i] = std::isfinite(value) ? value * unitUM : std::numeric_limits<double>::quiet_NaN();
  }
  return values;
}

ReadResult Finish(const ReaderInput& input, const Candidate& chosen, ImportedProfile& profile) {
  const auto xUnitUM = MicrometresPerUnit(chosen.xUnit);
  const auto zUnitUM = MicrometresPerUnit(chosen.zUnit);
  if (!xUnitUM || !zUnitUM) {
    return Refuse(input,
                  Refusal(std::string(xUnitUM ? "its heights are" : "its positions are") + " in " +
                          Quoted(OnOneLine(xUnitUM ? chosen.zUnit : chosen.xUnit)) + ", which is no unit of length"));
  }
  const std::size_t points = chosen.z.size() / sizeof(double);
  if (points > static_cast<std::size_t>(kPointCapacity))
    return Refuse(input, Refusal("it has more than 750 000 points"));
  if (points == 0) return Refuse(input, Refusal("the curve has no points"));
  profile.identification = chosen.name;
  if (chosen.length > 0.0) {
    profile.heightsUM = Micrometres(chosen.z, *zUnitUM);
    FillInvalid(profile.heightsUM, profile.warnings);
    profile.spacingUM = chosen.length * *xUnitUM / static_cast<double>(points);
    profile.spacingSource = "xreal over xres";
    return profile.heightsUM.empty() ? Refuse(input, Refusal("no point is valid")) : ReadResult::Read();
  }
  if (chosen.x.size() != chosen.z.size()) return Refuse(input, Refusal("the curve has no position for each height"));
  profile.spacingSource = "positions of the curve";
  const EvenOutcome even =
      MakeEven({.xUM = Micrometres(chosen.x, *xUnitUM), .zUM = Micrometres(chosen.z, *zUnitUM)}, profile);
  return even.ok() ? ReadResult::Read() : Refuse(input, Refusal(even.reason));
}

}  // namespace

ReadResult ReadGwyddionProfile(const ReaderInput& input, ImportedProfile& profile) {
  if (input.bytes.starts_with(kOldMark)) return Refuse(input, Refusal("it is of the old version; save it anew"));
  if (!input.bytes.starts_with(kMark)) return ReadResult::NotRecognised("the file does not begin with \"GWYP\"");
  const auto contents = ContentsOf(input.bytes);
  if (!contents) return Refuse(input, Refusal("it is cut short or damaged"));
  const std::vector<Candidate>& candidates = contents->candidates;
  if (candidates.empty()) {
    return Refuse(input, Refusal(contents->hasAreal ? "it holds areal images only; extract a profile and save it"
                                                    : "it holds no curve"));
  }
  std::size_t chosen = 0;
  if (candidates.size() > 1) {
    std::string reason;
    const auto name = [&candidates](std::int64_t i) { return candidates[static_cast<std::size_t>(i)].name; };
    const std::string title = "Input File: " + TextFromPath(input.path.filename());
    const auto index = ChooseProfile(input, static_cast<std::int64_t>(candidates.size()), title, {}, name, reason);
    if (!index) return ReadResult::Refused(reason);
    chosen = static_cast<std::size_t>(*index);
  }
  return Finish(input, candidates[chosen], profile);
}

}  // namespace texturon
