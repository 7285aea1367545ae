// SPDX-License-Identifier: Apache-2.0

#include "formats/opdx_format.h"

#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "base/charset.h"
#include "base/text.h"
#include "formats/even_spacing.h"
#include "formats/little_endian.h"
#include "formats/opdx_items.h"
#include "formats/profile_choice.h"
#include "formats/reader_questions.h"
#include "formats/stylus_curve.h"
#include "formats/text_lines.h"
#include "formats/unit_words.h"
#include "platform/platform.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

// Where what is read stands.
constexpr std::string_view kDataKind = "MetaData/DataKind";
constexpr std::string_view kName = "MetaData/DataSetName";
constexpr std::string_view kDate = "MetaData/Date";
constexpr std::string_view kTime = "MetaData/Time";
constexpr std::string_view kStylus = "MetaData/MeasurementSettings/StylusType";
constexpr std::string_view kChannels = "MetaData/1D_Channels/Height";
constexpr std::string_view kCurves = "1D_Data";
constexpr std::string_view kProfileKind = "Surface Profile";

constexpr std::string_view kDoubles("\x0D\x08\x00\x00\x00", 5);  // before the numbers of an array

/// The curves that are heights; those of the list, else all.
std::vector<std::string> CurvesOf(std::string_view file) {
  constexpr std::size_t kMostCurves = 1000;
  std::vector<std::string> names;
  if (const auto list = FindOpdxItem(file, kChannels)) {
    std::string_view rest = list->content;
    while (rest.size() >= 4 && names.size() < kMostCurves) {
      const std::size_t length = LittleEndian<std::uint32_t>(rest, 0);
      if (length > rest.size() - 4) break;
      names.emplace_back(rest.substr(4, length));
      rest.remove_prefix(4 + length);
    }
  }
  if (!names.empty()) return names;
  ForEachOpdxName(file, kCurves, [&names](std::string_view name) {
    names.emplace_back(name);
    return names.size() < kMostCurves;
  });
  return names;
}

std::optional<StylusQuantity> QuantityOf(std::string_view file, const std::string& path) {
  const auto quantity = OpdxQuantityOf(FindOpdxItem(file, path));
  if (!quantity) return std::nullopt;
  return StylusQuantity{quantity->value, MicrometresPerUnit(quantity->unit) ? quantity->unit : quantity->symbol};
}

}  // namespace

ReadResult ReadOpdxProfile(const ReaderInput& input, ImportedProfile& profile) {
  const std::string_view file = input.bytes;
  if (!file.starts_with(kOpdxMark)) return ReadResult::NotRecognised("the file does not begin with \"VCA DATA\"");
  const std::string kind = OpdxText(FindOpdxItem(file, kDataKind));
  if (kind != kProfileKind) {
    return Refuse(input, kind.empty()
                             ? "The stylus profiler file does not say what it holds; it is cut short or damaged."
                             : "The stylus profiler file holds no profile but " + Quoted(OnOneLine(kind)) +
                                   "; save one line of it as a profile.");
  }
  const std::vector<std::string> names = CurvesOf(file);
  if (names.empty()) return Refuse(input, "The stylus profiler file holds no curve.");
  profile.identification = OnOneLine(OpdxText(FindOpdxItem(file, kName)));
  const std::string time = OpdxText(FindOpdxItem(file, kTime));
  profile.date = OpdxText(FindOpdxItem(file, kDate)) + (time.empty() ? "" : " - " + time);
  profile.tipRadiusMM = TipRadiusOfStylus(OpdxText(FindOpdxItem(file, kStylus)));
  std::size_t chosen = 0;
  if (names.size() > 1) {
    std::string reason;
    const std::string title = "Input File: " + TextFromPath(input.path.filename());
    const auto name = [&names](std::int64_t i) { return TextOfFile(names[static_cast<std::size_t>(i)], true); };
    const auto index = ChooseProfile(input, static_cast<std::int64_t>(names.size()), title, {}, name, reason);
    if (!index) return ReadResult::Refused(reason);
    chosen = static_cast<std::size_t>(*index);
  }
  const std::string folder = std::string(kCurves) + "/" + names[chosen] + "/";
  const auto array = FindOpdxItem(file, folder + "Array");
  if (!array || !array->content.starts_with(kDoubles))
    return Refuse(input, "The curve of the stylus profiler file has no numbers.");
  return FinishStylusCurve(input,
                           {.statedPoints = OpdxCount(FindOpdxItem(file, folder + "NumPoints")),
                            .extent = QuantityOf(file, folder + "Extent"),
                            .scale = QuantityOf(file, folder + "DataScale"),
                            .numbers = array->content.substr(kDoubles.size())},
                           profile);
}

}  // namespace texturon
