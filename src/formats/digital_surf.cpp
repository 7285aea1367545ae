// SPDX-License-Identifier: Apache-2.0

#include "formats/digital_surf.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/number_text.h"
#include "base/text.h"
#include "formats/even_spacing.h"
#include "formats/little_endian.h"
#include "formats/reader_questions.h"
#include "formats/text_lines.h"
#include "formats/unit_words.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

constexpr std::size_t kHeaderSize = 512;

// Places of the header's fields.
constexpr std::size_t kObjectType = 18;
constexpr std::size_t kObjectName = 20;
constexpr std::size_t kHasMissing = 86;
constexpr std::size_t kPointSize = 98;
constexpr std::size_t kLowest = 100;
constexpr std::size_t kHighest = 104;
constexpr std::size_t kPointsOfALine = 108;
constexpr std::size_t kLineCount = 112;
constexpr std::size_t kStepX = 120;
constexpr std::size_t kStepZ = 128;
constexpr std::size_t kUnitX = 180;
constexpr std::size_t kUnitZ = 212;
constexpr std::size_t kDate = 306;
constexpr std::size_t kCommentSize = 334;
constexpr std::size_t kPrivateSize = 336;
constexpr std::size_t kOffsetZ = 474;  // behind those of X and Y

/// Whether a header is text: the binary one has numbers below 256 of two bytes.
bool IsText(std::string_view header) {
  return header.find('\0') == std::string_view::npos;
}

/// "dd.mm.yyyy - hh:mm:ss"; empty where the file states none.
std::string DateOf(std::string_view bytes) {
  const auto part = [bytes](std::size_t i) { return LittleEndian<std::int16_t>(bytes, kDate + 2 * i); };
  if (part(3) < 1 || part(3) > 31) return {};
  const auto two = [&part](std::size_t i) { return IntegerText(part(i), 2, '0'); };
  return two(3) + "." + two(4) + "." + IntegerText(part(5)) + " - " + two(2) + ":" + two(1) + ":" + two(0);
}

}  // namespace

ReadResult ReadDigitalSurfProfile(const ReaderInput& input, ImportedProfile& profile) {
  const std::string_view bytes = input.bytes;
  if (bytes.starts_with("DSCOMPRESSED")) {
    return Refuse(input, "Compressed Digital Surf files are not read; save the profile uncompressed.");
  }
  if (!bytes.starts_with("DIGITAL SURF")) return ReadResult::NotRecognised("the signature is not that of Digital Surf");
  if (IsText(bytes.substr(0, kHeaderSize))) return Refuse(input, NotReadYet("Digital Surf text"));
  if (bytes.size() < kHeaderSize) return Refuse(input, "The Digital Surf header is cut short.");
  if (LittleEndian<std::int16_t>(bytes, kObjectType) != 1)
    return Refuse(input, "The Digital Surf object is no profile.");
  const auto spacingUnitUM = MicrometresPerUnit(FixedField(bytes, kUnitX, 16));
  const auto heightUnitUM = MicrometresPerUnit(FixedField(bytes, kUnitZ, 16));
  if (!spacingUnitUM || !heightUnitUM) return Refuse(input, "The units of the Digital Surf profile are no lengths.");
  const std::int16_t bits = LittleEndian<std::int16_t>(bytes, kPointSize);
  const std::int32_t count = LittleEndian<std::int32_t>(bytes, kPointsOfALine);
  const std::int32_t lines = LittleEndian<std::int32_t>(bytes, kLineCount);
  if ((bits != 16 && bits != 32) || count < 1 || count > kPointCapacity || lines > 1) {
    return Refuse(input, "The Digital Surf header is not understood.");
  }
  const std::size_t start =
      kHeaderSize + LittleEndian<std::uint16_t>(bytes, kCommentSize) + LittleEndian<std::uint16_t>(bytes, kPrivateSize);
  const std::size_t size = static_cast<std::size_t>(bits) / 8;
  if (start > bytes.size() || (bytes.size() - start) / size < static_cast<std::size_t>(count)) {
    return Refuse(input, "The Digital Surf file cannot hold as many points as its header says.");
  }
  const double step = LittleEndian<float>(bytes, kStepZ);
  const double offset = LittleEndian<float>(bytes, kOffsetZ);
  // Where points are missing they are stored as numbers outside the stated range.
  const bool hasMissing = LittleEndian<std::int16_t>(bytes, kHasMissing) != 0;
  const std::int32_t lowest = LittleEndian<std::int32_t>(bytes, kLowest);
  const std::int32_t highest = LittleEndian<std::int32_t>(bytes, kHighest);
  profile.heightsUM.reserve(static_cast<std::size_t>(count));
  for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
    const std::size_t at = start + i * size;
    const std::int32_t value =
        bits == 16 ? LittleEndian<std::int16_t>(bytes, at) : LittleEndian<std::int32_t>(bytes, at);
    profile.heightsUM.push_back(hasMissing && (value < lowest || value > highest)
                                    ? std::numeric_limits<double>::quiet_NaN()
                                    : (value * step + offset) * *heightUnitUM);
  }
  FillInvalid(profile.heightsUM, profile.warnings);
  const double spacing = LittleEndian<float>(bytes, kStepX) * *spacingUnitUM;
  if (profile.heightsUM.empty()) return Refuse(input, "The Digital Surf profile has no valid points.");
  profile.spacingUM = spacing;
  profile.spacingSource = "header";
  profile.identification = FixedField(bytes, kObjectName, 30);
  profile.date = DateOf(bytes);
  return ReadResult::Read();
}

}  // namespace texturon
