// SPDX-License-Identifier: Apache-2.0

#include "formats/digital_surf.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <vector>

#include "base/number_text.h"
#include "base/text.h"
#include "formats/even_spacing.h"
#include "formats/inflate.h"
#include "formats/little_endian.h"
#include "formats/profile_choice.h"
#include "formats/reader_questions.h"
#include "formats/text_lines.h"
#include "formats/unit_words.h"
#include "platform/platform.h"
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
constexpr std::size_t kFirstAxis = 132;  // three names, then three units of the steps
constexpr std::size_t kFirstUnit = 180;
constexpr std::size_t kTextSize = 16;
constexpr std::size_t kDate = 306;
constexpr std::size_t kPackedPartSize = 324;
constexpr std::size_t kCommentSize = 334;
constexpr std::size_t kPrivateSize = 336;
constexpr std::size_t kOffsetZ = 474;  // behind those of X and Y

constexpr std::string_view kPlainSignature = "DIGITAL SURF";
constexpr std::string_view kPackedSignature = "DSCOMPRESSED";

constexpr std::int16_t kProfile = 1;
constexpr std::int16_t kSurface = 2;

struct ObjectKind {
  std::int16_t type;
  std::string_view name;
};

constexpr ObjectKind kObjects[] = {{kSurface, "a surface"},
                                   {4, "a series of profiles"},
                                   {5, "a series of surfaces"},
                                   {7, "a surface of several layers"},
                                   {8, "a surface of several layers"},
                                   {10, "an intensity image"},
                                   {17, "a contour profile"},
                                   {20, "a spectrum"}};

/// Whether a header is text: the binary one has numbers below 256 of two bytes.
bool IsText(std::string_view header) {
  return header.find('\0') == std::string_view::npos;
}

bool IsSigned(std::string_view bytes) {
  return bytes.starts_with(kPlainSignature) || bytes.starts_with(kPackedSignature);
}

/// One object of a file: its bytes from its header on, and where its points begin.
struct Record {
  std::string_view bytes;
  std::size_t start = 0;
  std::int64_t points = 0;  ///< of a line
  std::int64_t lines = 0;
  std::size_t pointSize = 0;
  bool isPacked = false;

  std::size_t size() const {
    return static_cast<std::size_t>(points) * static_cast<std::size_t>(std::max<std::int64_t>(lines, 1)) * pointSize;
  }
};

/// The record at the beginning of the bytes; nothing where its header is cut short or its counts are none.
std::optional<Record> RecordAt(std::string_view bytes) {
  if (bytes.size() < kHeaderSize) return std::nullopt;
  Record record{.bytes = bytes,
                .start = kHeaderSize + LittleEndian<std::uint16_t>(bytes, kCommentSize) +
                         LittleEndian<std::uint16_t>(bytes, kPrivateSize),
                .points = LittleEndian<std::int32_t>(bytes, kPointsOfALine),
                .lines = LittleEndian<std::int32_t>(bytes, kLineCount),
                .isPacked = bytes.starts_with(kPackedSignature)};
  const std::int16_t bits = LittleEndian<std::int16_t>(bytes, kPointSize);
  record.pointSize = static_cast<std::size_t>(bits) / 8;
  const bool isCounted = record.points >= 1 && record.lines >= 0 && record.start <= bytes.size();
  if ((bits != 16 && bits != 32) || !isCounted) return std::nullopt;
  return record;
}

/// The objects of a file, one behind the other, each with a header of its own.
std::vector<Record> RecordsOf(std::string_view bytes) {
  constexpr std::size_t kMostRecords = 10'000;
  std::vector<Record> records;
  while (records.size() < kMostRecords && IsSigned(bytes)) {
    const auto record = RecordAt(bytes);
    if (!record) break;
    records.push_back(*record);
    const std::size_t packed = LittleEndian<std::uint32_t>(bytes, kPackedPartSize);
    const std::size_t length = record->isPacked ? packed : record->size();
    if (length == 0 || bytes.size() - record->start <= length) break;
    bytes.remove_prefix(record->start + length);
  }
  return records;
}

/// The points of a packed object: a directory of streams, whose unpacked bytes are joined. Nothing where they are not
/// as many as the header says, or damaged.
std::optional<std::string> Unpack(const Record& record) {
  const std::string_view part = record.bytes.substr(record.start);
  if (part.size() < 4) return std::nullopt;
  const std::size_t streams = LittleEndian<std::uint32_t>(part, 0);
  if (streams > (part.size() - 4) / 8) return std::nullopt;
  std::size_t at = 4 + 8 * streams;
  std::string points;
  for (std::size_t i = 0; i < streams; ++i) {
    const std::size_t size = LittleEndian<std::uint32_t>(part, 4 + 8 * i);
    const std::size_t packed = LittleEndian<std::uint32_t>(part, 8 + 8 * i);
    if (packed > part.size() - at || size > record.size() - points.size()) return std::nullopt;
    const auto unpacked = Inflate(part.substr(at, packed), size, PackedAs::kZlib);
    if (!unpacked) return std::nullopt;
    points += *unpacked;
    at += packed;
  }
  if (points.size() != record.size()) return std::nullopt;
  return points;
}

/// What the object is where it is no profile.
std::string NoProfile(const Record& record) {
  const std::int16_t type = LittleEndian<std::int16_t>(record.bytes, kObjectType);
  if (type == kProfile && record.lines <= 1) return {};
  if (type == kSurface && record.lines == 1) return {};
  const auto* const kind = std::find_if(std::begin(kObjects), std::end(kObjects),
                                        [type](const ObjectKind& object) { return object.type == type; });
  const std::string name = kind != std::end(kObjects) ? std::string(kind->name)
                           : type == kProfile         ? "several lines"
                                                      : "of an unknown kind (" + IntegerText(type) + ")";
  return "The Digital Surf object is no profile but " + name + "; export a profile of it.";
}

/// Micrometres in the unit of an axis; without, the refusal says what unit it is.
std::optional<double> UnitOf(std::string_view bytes, std::size_t axis, std::string& refusal) {
  const std::string_view unit = FixedField(bytes, kFirstUnit + axis * kTextSize, kTextSize);
  const auto micrometres = MicrometresPerUnit(unit);
  if (!micrometres) {
    const std::string_view name = FixedField(bytes, kFirstAxis + axis * kTextSize, kTextSize);
    refusal = "The Digital Surf axis " + std::string(axis == 0 ? "X" : "Z") +
              (name.empty() ? "" : " " + Quoted(OnOneLine(name))) +
              (unit.empty() ? " has no unit." : " is in " + Quoted(OnOneLine(unit)) + ", which is no unit of length.");
  }
  return micrometres;
}

/// "dd.mm.yyyy - hh:mm:ss"; empty where the file states none.
std::string DateOf(std::string_view bytes) {
  const auto part = [bytes](std::size_t i) { return LittleEndian<std::int16_t>(bytes, kDate + 2 * i); };
  if (part(3) < 1 || part(3) > 31) return {};
  const auto two = [&part](std::size_t i) { return IntegerText(part(i), 2, '0'); };
  return two(3) + "." + two(4) + "." + IntegerText(part(5)) + " - " + two(2) + ":" + two(1) + ":" + two(0);
}

ReadResult ReadRecord(const ReaderInput& input, const Record& record, ImportedProfile& profile) {
  const std::string_view bytes = record.bytes;
  std::string wrong = NoProfile(record);
  const auto spacingUnitUM = wrong.empty() ? UnitOf(bytes, 0, wrong) : std::nullopt;
  const auto heightUnitUM = wrong.empty() ? UnitOf(bytes, 2, wrong) : std::nullopt;
  if (!wrong.empty()) return Refuse(input, wrong);
  if (record.points > kPointCapacity) return Refuse(input, "There are more than 750 000 points.");
  std::optional<std::string> unpacked;
  if (record.isPacked) {
    unpacked = Unpack(record);
    if (!unpacked)
      return Refuse(input,
                    "The packed points of the Digital Surf profile are damaged or not as many as its header says.");
  }
  const std::string_view points = unpacked ? std::string_view(*unpacked) : bytes.substr(record.start);
  if (points.size() < record.size()) {
    return Refuse(input, "The Digital Surf file cannot hold as many points as its header says.");
  }
  const double step = LittleEndian<float>(bytes, kStepZ);
  const double offset = LittleEndian<float>(bytes, kOffsetZ);
  // Where points are missing they are stored as numbers outside the stated range.
  const bool hasMissing = LittleEndian<std::int16_t>(bytes, kHasMissing) != 0;
  const std::int32_t lowest = LittleEndian<std::int32_t>(bytes, kLowest);
  const std::int32_t highest = LittleEndian<std::int32_t>(bytes, kHighest);
  profile.heightsUM.reserve(static_cast<std::size_t>(record.points));
  for (std::size_t at = 0; at < record.size(); at += record.pointSize) {
    const std::int32_t value =
        record.pointSize == 2 ? LittleEndian<std::int16_t>(points, at) : LittleEndian<std::int32_t>(points, at);
    profile.heightsUM.push_back(hasMissing && (value < lowest || value > highest)
                                    ? std::numeric_limits<double>::quiet_NaN()
                                    : (value * step + offset) * *heightUnitUM);
  }
  FillInvalid(profile.heightsUM, profile.warnings);
  if (profile.heightsUM.empty()) return Refuse(input, "The Digital Surf profile has no valid points.");
  profile.spacingUM = LittleEndian<float>(bytes, kStepX) * *spacingUnitUM;
  profile.spacingSource = "header";
  profile.identification = FixedField(bytes, kObjectName, 30);
  profile.date = DateOf(bytes);
  return ReadResult::Read();
}

}  // namespace

ReadResult ReadDigitalSurfProfile(const ReaderInput& input, ImportedProfile& profile) {
  const std::string_view bytes = input.bytes;
  if (!IsSigned(bytes)) return ReadResult::NotRecognised("the signature is not that of Digital Surf");
  if (IsText(bytes.substr(0, kHeaderSize))) return Refuse(input, NotReadYet("Digital Surf text"));
  if (bytes.size() < kHeaderSize) return Refuse(input, "The Digital Surf header is cut short.");
  const std::vector<Record> records = RecordsOf(bytes);
  if (records.empty()) return Refuse(input, "The Digital Surf header is not understood.");
  std::size_t chosen = 0;
  if (records.size() > 1) {
    std::string reason;
    const std::string title = "Input File: " + TextFromPath(input.path.filename());
    const auto name = [&records](std::int64_t i) {
      return std::string(FixedField(records[static_cast<std::size_t>(i)].bytes, kObjectName, 30));
    };
    const auto index =
        ChooseProfile(input, static_cast<std::int64_t>(records.size()), title, DateOf(bytes), name, reason);
    if (!index) return ReadResult::Refused(reason);
    chosen = static_cast<std::size_t>(*index);
  }
  return ReadRecord(input, records[chosen], profile);
}

}  // namespace texturon
