// SPDX-License-Identifier: Apache-2.0

#include "formats/matlab_format.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "base/text.h"
#include "base/units.h"
#include "formats/even_spacing.h"
#include "formats/inflate.h"
#include "formats/little_endian.h"
#include "formats/profile_choice.h"
#include "formats/reader_questions.h"
#include "platform/platform.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

constexpr std::size_t kHeaderSize = 128;
constexpr std::size_t kOrderPlace = 126;
constexpr std::string_view kHdf = "\x89HDF";

// Types of elements.
constexpr std::uint32_t kMatrix = 14;
constexpr std::uint32_t kPacked = 15;
// Classes of matrices that hold numbers.
constexpr std::uint32_t kFirstNumbers = 6;
constexpr std::uint32_t kLastNumbers = 15;
constexpr std::uint32_t kComplexFlag = 0x0800;

std::string Refusal(std::string_view reason) {
  return "The MATLAB file is not read: " + std::string(reason) + ".";
}

/// Bytes in either order.
struct Bytes {
  std::string_view bytes;
  bool isBig = false;

  template <typename T>
  T At(std::size_t at) const {
    if (!isBig) return LittleEndian<T>(bytes, at);
    std::string turned(bytes.substr(at, sizeof(T)));
    std::reverse(turned.begin(), turned.end());
    return LittleEndian<T>(turned, 0);
  }
};

struct Element {
  std::uint32_t type = 0;
  Bytes data;
};

/// Takes an element off the front, small or padded; nothing at the end, and where it is cut short.
std::optional<Element> TakeElement(Bytes& rest) {
  constexpr std::size_t kTag = 8;
  if (rest.bytes.size() < kTag) return std::nullopt;
  const auto word = rest.At<std::uint32_t>(0);
  const std::size_t small = word >> 16;
  const std::size_t size = small > 0 ? small : rest.At<std::uint32_t>(4);
  if (small > 4 || (small == 0 && size > rest.bytes.size() - kTag)) return std::nullopt;
  const Element element{word & 0xFFFF, {rest.bytes.substr(small > 0 ? 4 : kTag, size), rest.isBig}};
  const std::size_t padded = small > 0 ? kTag : kTag + (element.type == kPacked ? size : (size + 7) / 8 * 8);
  rest.bytes.remove_prefix(std::min(padded, rest.bytes.size()));
  return element;
}

/// A number of an element of that type; they need not be of the matrix's class.
double NumberAt(const Element& element, std::size_t index, std::size_t size) {
  const Bytes& data = element.data;
  const std::size_t at = index * size;
  switch (element.type) {
    case 1:
      return data.At<std::int8_t>(at);
    case 2:
      return data.At<std::uint8_t>(at);
    case 3:
      return data.At<std::int16_t>(at);
    case 4:
      return data.At<std::uint16_t>(at);
    case 5:
      return data.At<std::int32_t>(at);
    case 6:
      return data.At<std::uint32_t>(at);
    case 7:
      return static_cast<double>(data.At<float>(at));
    case 9:
      return data.At<double>(at);
    case 12:
      return static_cast<double>(data.At<std::int64_t>(at));
    default:
      return static_cast<double>(data.At<std::uint64_t>(at));
  }
}

/// Bytes of a number, by the type of its element; 0: it holds none.
constexpr std::size_t kSizes[] = {0, 1, 1, 2, 2, 4, 4, 4, 0, 8, 0, 0, 8, 8};

struct Vector {
  std::string name;
  std::vector<double> numbers;
};

/// What a file holds that may be of use.
struct Variables {
  std::vector<Vector> vectors;
  bool hasArea = false;  ///< a matrix of numbers of two dimensions
  bool isLong = false;   ///< a vector of more points than are taken
};

/// Adds the matrix of an element, where it is a vector of real numbers.
void AddMatrix(Bytes rest, Variables& variables) {
  const auto flags = TakeElement(rest);
  const auto dimensions = flags ? TakeElement(rest) : std::nullopt;
  const auto name = dimensions ? TakeElement(rest) : std::nullopt;
  const auto real = name ? TakeElement(rest) : std::nullopt;
  if (!real || flags->data.bytes.size() < 4 || dimensions->data.bytes.size() != 8) return;
  const auto word = flags->data.At<std::uint32_t>(0);
  const std::uint32_t kind = word & 0xFF;
  const std::size_t size = real->type < std::size(kSizes) ? kSizes[real->type] : 0;
  if (kind < kFirstNumbers || kind > kLastNumbers || (word & kComplexFlag) != 0 || size == 0) return;
  const auto rows = dimensions->data.At<std::int32_t>(0);
  const auto columns = dimensions->data.At<std::int32_t>(4);
  if (rows > 1 && columns > 1) variables.hasArea = true;
  if (rows < 1 || columns < 1 || (rows > 1 && columns > 1)) return;
  const std::size_t count = static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns);
  if (count > real->data.bytes.size() / size) return;
  if (count > static_cast<std::size_t>(kPointCapacity)) {
    variables.isLong = true;
    return;
  }
  Vector vector{.name = std::string(name->data.bytes)};
  vector.numbers.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const double number = NumberAt(*real, i, size);
    vector.numbers.push_back(std::isfinite(number) ? number : std::numeric_limits<double>::quiet_NaN());
  }
  variables.vectors.push_back(std::move(vector));
}

/// Unpacks an element; nothing where it is damaged, or too large to hold a profile.
std::optional<std::string> Unpack(const Bytes& packed) {
  constexpr std::size_t kTag = 8;
  constexpr std::size_t kMost = 16'000'000;
  const auto tag = InflateBegin(packed.bytes, kTag);
  if (!tag || tag->size() < kTag) return std::nullopt;
  const std::size_t size = Bytes{*tag, packed.isBig}.At<std::uint32_t>(4);
  return size <= kMost ? Inflate(packed.bytes, kTag + size, PackedAs::kZlib) : std::nullopt;
}

/// The variables of a file. What none of its numbers can belong to is passed over, and so is all behind so many vectors
/// that more bytes would be held than a few profiles have.
std::optional<Variables> VariablesOf(Bytes rest) {
  constexpr std::size_t kMostNumbers = 1'500'000;
  Variables variables;
  std::size_t held = 0;
  constexpr std::size_t kTag = 8;
  while (rest.bytes.size() >= kTag) {
    auto element = TakeElement(rest);
    if (!element) return std::nullopt;
    std::optional<std::string> unpacked;
    if (element->type == kPacked) {
      unpacked = Unpack(element->data);
      if (!unpacked) return std::nullopt;
      Bytes inner{*unpacked, rest.isBig};
      element = TakeElement(inner);
    }
    const std::size_t before = variables.vectors.size();
    if (element && element->type == kMatrix) AddMatrix(element->data, variables);
    if (variables.vectors.size() > before) held += variables.vectors.back().numbers.size() + 8;
    if (held > kMostNumbers) break;
  }
  return variables;
}

const Vector* Named(const std::vector<Vector>& vectors, std::string_view name) {
  const auto found = std::find_if(vectors.begin(), vectors.end(),
                                  [name](const Vector& vector) { return EqualIgnoringCase(vector.name, name); });
  return found != vectors.end() ? &*found : nullptr;
}

/// Which of the vectors holds the heights; null: none was chosen.
const Vector* HeightsOf(const ReaderInput& input, const std::vector<Vector>& vectors, std::string& reason) {
  std::vector<const Vector*> longer;
  for (const Vector& vector : vectors) {
    const bool isX = EqualIgnoringCase(vector.name, "x") && vectors.size() > 1;
    if (vector.numbers.size() > 1 && !isX) longer.push_back(&vector);
  }
  if (!input.options.profileChoice) {
    for (const char* name : {"z", "profile"}) {
      const Vector* const vector = Named(vectors, name);
      if (vector != nullptr && vector->numbers.size() > 1) return vector;
    }
  }
  if (longer.size() == 1) return longer.front();
  const std::string title = "Input File: " + TextFromPath(input.path.filename());
  const auto index = ChooseProfile(
      input, static_cast<std::int64_t>(longer.size()), title, {},
      [&longer](std::int64_t i) { return OnOneLine(longer[static_cast<std::size_t>(i)]->name); }, reason);
  return index ? longer[static_cast<std::size_t>(*index)] : nullptr;
}

/// Micrometres in the unit that a step of positions without one is likely to have.
double LikelyUnit(double step, ImportedProfile& profile) {
  const double unitUM = step < 1e-6 ? kMicrometresPerMillimetre * 1e3 : step < 0.02 ? kMicrometresPerMillimetre : 1.0;
  profile.warnings.push_back(std::string("units are not stated; positions are taken as ") +
                             (unitUM == 1.0                         ? "um"
                              : unitUM == kMicrometresPerMillimetre ? "mm"
                                                                    : "m") +
                             ", heights as um");
  return unitUM;
}

}  // namespace

ReadResult ReadMatlabProfile(const ReaderInput& input, ImportedProfile& profile) {
  const std::string_view bytes = input.bytes;
  const bool isHdf = bytes.starts_with(kHdf) || bytes.starts_with("MATLAB 7.3");
  if (isHdf) return Refuse(input, Refusal("it is of version 7.3; save it with the option -v7"));
  if (!bytes.starts_with("MATLAB 5.0")) return ReadResult::NotRecognised("the file does not begin with \"MATLAB 5.0\"");
  if (bytes.size() < kHeaderSize) return Refuse(input, Refusal("its header is cut short"));
  const std::string_view order = bytes.substr(kOrderPlace, 2);
  if (order != "IM" && order != "MI") return Refuse(input, Refusal("the order of its bytes is not stated"));
  const auto variables = VariablesOf({bytes.substr(kHeaderSize), order == "MI"});
  if (!variables) return Refuse(input, Refusal("a variable is damaged, cut short or too large"));
  const std::vector<Vector>& vectors = variables->vectors;
  const bool hasVector =
      std::any_of(vectors.begin(), vectors.end(), [](const Vector& vector) { return vector.numbers.size() > 1; });
  if (!hasVector) {
    return Refuse(input, Refusal(variables->isLong    ? "its vector has more than 750 000 numbers"
                                 : variables->hasArea ? "it holds matrices, but no vector of heights"
                                                      : "it holds no vector of numbers"));
  }
  std::string reason;
  const Vector* const heights = HeightsOf(input, vectors, reason);
  if (heights == nullptr) return ReadResult::Refused(reason);
  profile.identification = OnOneLine(heights->name);
  const Vector* const x = Named(vectors, "x");
  const Vector* const dx = Named(vectors, "dx");
  if (x != nullptr && x != heights && x->numbers.size() == heights->numbers.size()) {
    Trace trace{.xUM = x->numbers, .zUM = heights->numbers};
    const double step = std::abs(trace.xUM.back() - trace.xUM.front()) / static_cast<double>(trace.xUM.size() - 1);
    const double unitUM = LikelyUnit(step, profile);
    for (double& position : trace.xUM) position *= unitUM;
    profile.spacingSource = "vector x";
    const EvenOutcome even = MakeEven(std::move(trace), profile);
    return even.ok() ? ReadResult::Read() : Refuse(input, Refusal(even.reason));
  }
  profile.heightsUM = heights->numbers;
  FillInvalid(profile.heightsUM, profile.warnings);
  if (profile.heightsUM.empty()) return Refuse(input, Refusal("its vector holds no valid heights"));
  if (dx != nullptr && dx->numbers.size() == 1 && dx->numbers.front() > 0.0) {
    profile.spacingUM = dx->numbers.front() * LikelyUnit(dx->numbers.front(), profile);
    profile.spacingSource = "number dx";
    return ReadResult::Read();
  }
  profile.warnings.emplace_back("units are not stated; heights are taken as um");
  return AskSpacing(input, 1.0, profile) ? ReadResult::Read() : ReadResult::Refused("no point spacing was given");
}

}  // namespace texturon
