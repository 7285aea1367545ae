// SPDX-License-Identifier: Apache-2.0

#include "formats/sdf_grid.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/number_text.h"
#include "base/text.h"
#include "formats/even_spacing.h"
#include "formats/little_endian.h"
#include "formats/profile_choice.h"
#include "formats/reader_questions.h"
#include "formats/text_cursor.h"
#include "formats/text_lines.h"
#include "platform/platform.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

std::string PickName(const SdfHeader& header, std::int64_t index) {
  const std::string& name = header.identification;
  if (index < header.profiles) return name + " (x:" + IntegerText(index + 1) + ")";
  index -= header.profiles;
  return index < header.points ? name + " (y:" + IntegerText(index + 1) + ")" : name + " (chained in 'x')";
}

SdfPick PickOf(const SdfHeader& header, std::int64_t index) {
  SdfPick pick{.identification = PickName(header, index)};
  if (index < header.profiles) {
    pick = {index * header.points, 1, header.points, header.spacingUM, std::move(pick.identification)};
  } else if (index < header.profiles + header.points) {
    const std::int64_t column = index - header.profiles;
    pick = {column, header.points, header.profiles, header.rowSpacingUM, std::move(pick.identification)};
  } else {
    pick = {0, 1, header.profiles * header.points, header.spacingUM, std::move(pick.identification)};
  }
  pick.count = std::min<std::int64_t>(pick.count, kPointCapacity);
  return pick;
}

/// The binary value of one data type at byte `at`; NaN for what is not finite.
double BinaryValue(std::string_view bytes, std::size_t at, std::int32_t type) {
  double value = kNotANumber;
  switch (type) {
    case 0:
      return LittleEndian<std::uint8_t>(bytes, at);
    case 1:
      return LittleEndian<std::uint16_t>(bytes, at);
    case 2:
      return LittleEndian<std::uint32_t>(bytes, at);
    case 3:
      value = static_cast<double>(LittleEndian<float>(bytes, at));
      break;
    case 4:
      return LittleEndian<std::int8_t>(bytes, at);
    case 5:
      return LittleEndian<std::int16_t>(bytes, at);
    case 6:
      return LittleEndian<std::int32_t>(bytes, at);
    default:
      value = LittleEndian<double>(bytes, at);
      break;
  }
  return std::isfinite(value) ? value : kNotANumber;
}

/// Scales heights from stored numbers to um and puts the profile together.
ReadResult Finish(const ReaderInput& input, const SdfHeader& header, SdfPick&& pick, ImportedProfile& profile) {
  constexpr double kMicrometresPerMetre = 1e6;
  for (double& z : profile.heightsUM) z = z * header.zScale * kMicrometresPerMetre;
  FillInvalid(profile.heightsUM, profile.warnings);
  if (profile.heightsUM.empty()) return Refuse(input, "SDF Error: no valid heights.");
  if (static_cast<std::int64_t>(profile.heightsUM.size()) < pick.count && profile.warnings.empty()) {
    profile.warnings.push_back("the header says " + IntegerText(pick.count) + " points, the data hold " +
                               IntegerText(static_cast<std::int64_t>(profile.heightsUM.size())));
  }
  profile.identification = std::move(pick.identification);
  profile.date = header.date;
  profile.spacingUM = pick.spacingUM;
  profile.spacingSource = "header";
  return ReadResult::Read();
}

}  // namespace

std::optional<SdfPick> ChooseSdfProfile(const ReaderInput& input, const SdfHeader& header, std::string& reason) {
  const std::string title = "Input File: " + TextFromPath(input.path.filename());
  const auto index = ChooseProfile(
      input, header.profiles + header.points + 1, title, header.date,
      [&header](std::int64_t i) { return PickName(header, i); }, reason);
  if (!index) return std::nullopt;
  return PickOf(header, *index);
}

ReadResult ReadSdfGrid(const ReaderInput& input, const SdfHeader& header, std::string_view data,
                       ImportedProfile& profile) {
  if (header.dataType != 3 && (header.dataType < 5 || header.dataType > 7)) {
    return Refuse(input, "SDF Error: Integer data required.");
  }
  TextCursor cursor(data);
  cursor.Token();
  const auto most = static_cast<std::int64_t>((cursor.Remaining() + 1) / 2);
  if (header.points < 1 || header.points > most || header.profiles > most / header.points) {
    return Refuse(input, "SDF Error: the file cannot hold as many points as its header says.");
  }
  std::string reason;
  auto pick = ChooseSdfProfile(input, header, reason);
  if (!pick) return ReadResult::Refused(reason);
  const std::int64_t last = pick->first + (pick->count - 1) * pick->step;
  profile.heightsUM.reserve(static_cast<std::size_t>(pick->count));
  for (std::int64_t i = 0; i <= last; ++i) {
    auto value = cursor.Number();
    if (!value) {
      const std::string_view token = cursor.Token();
      if (!EqualIgnoringCase(token, "BAD") && !EqualIgnoringCase(token, "nan")) break;
      value = kNotANumber;
    }
    if (i >= pick->first && (i - pick->first) % pick->step == 0) profile.heightsUM.push_back(*value);
  }
  return Finish(input, header, std::move(*pick), profile);
}

ReadResult ReadSdfBinary(const ReaderInput& input, ImportedProfile& profile) {
  constexpr std::size_t kHeaderSize = 81;
  constexpr std::size_t kSizes[] = {1, 2, 4, 4, 1, 2, 4, 8};
  const std::string_view bytes = input.bytes;
  if (bytes.size() < kHeaderSize) return Refuse(input, "SDF Error: the header is cut short.");
  const auto scale = [bytes](std::size_t at) { return LittleEndian<double>(bytes, at); };
  SdfHeader header{.identification = std::string(FixedField(bytes, 8, 10)),
                   .date = std::string(FixedField(bytes, 30, 12)),
                   .points = LittleEndian<std::uint16_t>(bytes, 42),
                   .profiles = LittleEndian<std::uint16_t>(bytes, 44),
                   .spacingUM = scale(46) * 1e6,
                   .rowSpacingUM = scale(54) * 1e6,
                   .zScale = scale(62),
                   .dataType = LittleEndian<std::uint8_t>(bytes, 79)};
  const bool isCompressed = bytes[78] != 0;
  if (isCompressed) return Refuse(input, "SDF Error: compressed data are not read.");
  if (header.dataType > 7) return Refuse(input, "SDF Error: unknown data type.");
  const std::size_t size = kSizes[header.dataType];
  const auto there = static_cast<std::int64_t>((bytes.size() - kHeaderSize) / size);
  if (header.points < 1 || header.profiles < 1 || header.points * header.profiles > there) {
    return Refuse(input, "SDF Error: the file cannot hold as many points as its header says.");
  }
  SdfPick pick = PickOf(header, 0);
  pick.identification = header.identification;
  if (header.profiles > 1) {
    std::string reason;
    auto chosen = ChooseSdfProfile(input, header, reason);
    if (!chosen) return ReadResult::Refused(reason);
    pick = std::move(*chosen);
  }
  profile.heightsUM.reserve(static_cast<std::size_t>(pick.count));
  for (std::int64_t i = 0; i < pick.count; ++i) {
    const auto index = static_cast<std::size_t>(pick.first + i * pick.step);
    profile.heightsUM.push_back(BinaryValue(bytes, kHeaderSize + index * size, header.dataType));
  }
  return Finish(input, header, std::move(pick), profile);
}

}  // namespace texturon
