// SPDX-License-Identifier: Apache-2.0

#include "formats/exchange_format.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

#include "base/charset.h"
#include "base/number_text.h"
#include "base/text.h"
#include "formats/even_spacing.h"
#include "formats/exchange_header.h"
#include "formats/little_endian.h"
#include "formats/md5.h"
#include "formats/profile_choice.h"
#include "formats/reader_questions.h"
#include "formats/text_lines.h"
#include "formats/xml_reader.h"
#include "formats/zip_archive.h"
#include "platform/platform.h"

namespace texturon {
namespace {

constexpr double kNotMeasured = std::numeric_limits<double>::quiet_NaN();
constexpr double kMicrometresPerMetre = 1e6;
constexpr std::string_view kMainName = "main.xml";
constexpr std::string_view kDatum = "Record3/DataList/Datum";

/// Gives what a link of the description leads to, unless it is larger than so many bytes.
using PartSource = std::function<ZipArchive::Content(std::string_view link, std::size_t mostBytes)>;

std::string Refusal(std::string_view reason) {
  return "The surface exchange file is not read: " + std::string(reason) + ".";
}

/// The points of one profile among all: numbers as stored, made metres.
struct Points {
  std::vector<double> x;  ///< empty where CX is incremental
  std::vector<double> z;  ///< NaN: not measured
};

double StoredNumber(std::string_view bytes, std::size_t at, char type) {
  switch (type) {
    case 'I':
      return LittleEndian<std::int16_t>(bytes, at);
    case 'L':
      return LittleEndian<std::int32_t>(bytes, at);
    case 'F':
      return static_cast<double>(LittleEndian<float>(bytes, at));
    default:
      return LittleEndian<double>(bytes, at);
  }
}

void CheckDigest(std::string_view bytes, std::string_view stated, std::string_view what, ImportedProfile& profile) {
  if (stated.empty() || EqualIgnoringCase(TrimBlanks(stated), Md5Of(bytes))) return;
  profile.warnings.push_back("the MD5 digest of " + std::string(what) + " is not the one that the file states");
}

/// Points of the binary file; what was wrong, or nothing. Absolute axes stand before the height, record by record.
std::string ReadBinary(const ExchangeHeader& header, std::size_t first, const PartSource& parts, Points& points,
                       ImportedProfile& profile) {
  const std::size_t xSize = header.x.isAbsolute ? header.x.size() : 0;
  const std::size_t before = xSize + (header.y.isAbsolute ? header.y.size() : 0);
  const std::size_t record = before + header.z.size();
  const auto all = static_cast<std::size_t>(header.pointsOfAll());
  const ZipArchive::Content data = parts(header.points.name, all * record);
  if (!data.ok()) return data.reason;
  if (data.bytes.size() < all * record) return "its data file holds fewer points than its main.xml says";
  CheckDigest(data.bytes, header.points.md5, "the points", profile);
  const auto count = static_cast<std::size_t>(header.sizes[0]);
  const auto finite = [](double value) { return std::isfinite(value) ? value : kNotMeasured; };
  points.z.reserve(count);
  if (xSize > 0) points.x.reserve(count);
  for (std::size_t i = first; i < first + count; ++i) {
    const std::size_t at = i * record;
    if (xSize > 0) {
      points.x.push_back(finite(header.x.Metres(StoredNumber(data.bytes, at, header.x.dataType))));
    }
    points.z.push_back(finite(header.z.Metres(StoredNumber(data.bytes, at + before, header.z.dataType))));
  }
  return {};
}

/// Points of the list in the description. An empty one was not measured.
std::string ReadList(const ExchangeHeader& header, std::string_view xml, std::size_t first, Points& points) {
  const auto count = static_cast<std::size_t>(header.sizes[0]);
  const auto metres = [](const ExchangeAxis& axis, std::string_view text) {
    const auto stored = NumberField(text);
    return stored ? axis.Metres(*stored) : kNotMeasured;
  };
  std::size_t index = 0;
  bool isWrong = false;
  ForEachXmlLeaf(xml, [&](std::string_view path, std::string_view text) {
    if (!path.ends_with(kDatum)) return;
    const std::size_t i = index++;
    if (i < first || i >= first + count) return;
    const auto fields = SplitAtEach(TrimBlanks(text), ';');
    const bool isEmpty = TrimBlanks(text).empty();
    isWrong = isWrong || (!isEmpty && header.x.isAbsolute && fields.size() < 2) ||
              (!isEmpty && !NumberField(fields.back()) && !EqualIgnoringCase(TrimBlanks(fields.back()), "nan"));
    if (header.x.isAbsolute) points.x.push_back(metres(header.x, fields.front()));
    points.z.push_back(metres(header.z, fields.back()));
  });
  if (isWrong) return "a datum of its list is no number";
  if (index != static_cast<std::size_t>(header.pointsOfAll())) {
    return "its list holds " + IntegerText(static_cast<std::int64_t>(index)) + " points, its main.xml says " +
           IntegerText(header.pointsOfAll());
  }
  return {};
}

/// Marks what the file of valid bits says was not measured: a bit a point, the least significant first.
std::string MarkInvalid(const ExchangeHeader& header, std::size_t first, const PartSource& parts, Points& points,
                        ImportedProfile& profile) {
  if (header.valid.name.empty()) return {};
  constexpr std::size_t kSlack = 64;  // of writers that fill up to whole words
  const std::size_t needed = (static_cast<std::size_t>(header.pointsOfAll()) + 7) / 8;
  const ZipArchive::Content valid = parts(header.valid.name, needed + kSlack);
  if (!valid.ok()) return valid.reason;
  if (valid.bytes.size() < needed) return "its file of valid points is too short";
  CheckDigest(valid.bytes, header.valid.md5, "the valid points", profile);
  for (std::size_t i = 0; i < points.z.size(); ++i) {
    const std::size_t at = first + i;
    const bool isValid = (static_cast<unsigned char>(valid.bytes[at / 8]) >> at % 8 & 1) != 0;
    if (!isValid) points.z[i] = kNotMeasured;
  }
  return {};
}

void WarnOfIncrement(const ExchangeHeader& header, ImportedProfile& profile) {
  const ExchangeAxis& z = header.z;
  if (z.hasIntegers() || (z.increment.value_or(1.0) == 1.0 && z.offset == 0.0)) return;
  profile.warnings.push_back("heights are metres as they stand; the increment " +
                             ShortestText(z.increment.value_or(1.0)) + " and offset " + ShortestText(z.offset) +
                             " of CZ are not applied");
}

/// "1969-12-31T19:00:00" is the beginning of the epoch in one writer's zone: no date.
std::string DateOf(const ExchangeHeader& header) {
  const bool isNone = header.date.starts_with("1969-12-31T") || header.date.starts_with("1970-01-01T");
  return isNone ? std::string() : header.date;
}

ReadResult ReadDescribed(const ReaderInput& input, std::string_view xml, const PartSource& parts,
                         ImportedProfile& profile) {
  ExchangeHeader header;
  std::string wrong = ReadExchangeHeader(xml, header);
  if (!wrong.empty()) return Refuse(input, Refusal(wrong));
  profile.identification = OnOneLine(header.comment);
  profile.date = DateOf(header);
  std::int64_t chosen = 0;
  if (header.sizes[2] > 1) {
    const std::string title = "Input File: " + TextFromPath(input.path.filename());
    const auto name = [&](std::int64_t) { return profile.identification; };
    const auto index = ChooseProfile(input, header.sizes[2], title, profile.date, name, wrong);
    if (!index) return ReadResult::Refused(wrong);
    chosen = *index;
  }
  const auto first = static_cast<std::size_t>(chosen * header.sizes[0]);
  Points points;
  wrong = header.points.name.empty() ? ReadList(header, xml, first, points)
                                     : ReadBinary(header, first, parts, points, profile);
  if (wrong.empty()) wrong = MarkInvalid(header, first, parts, points, profile);
  if (!wrong.empty()) return Refuse(input, Refusal(wrong));
  WarnOfIncrement(header, profile);
  for (double& x : points.x) x *= kMicrometresPerMetre;
  for (double& z : points.z) z *= kMicrometresPerMetre;
  if (header.x.isAbsolute) {
    profile.spacingSource = "positions of CX";
    const EvenOutcome even = MakeEven({.xUM = std::move(points.x), .zUM = std::move(points.z)}, profile);
    return even.ok() ? ReadResult::Read() : Refuse(input, Refusal(even.reason));
  }
  profile.heightsUM = std::move(points.z);
  FillInvalid(profile.heightsUM, profile.warnings);
  if (profile.heightsUM.empty()) return Refuse(input, Refusal("no point was measured"));
  profile.spacingUM = header.x.increment.value_or(0.0) * kMicrometresPerMetre;
  profile.spacingSource = "increment of CX";
  return ReadResult::Read();
}

/// A link as a name in the container.
std::string_view WithoutDot(std::string_view link) {
  return link.starts_with("./") ? link.substr(2) : link;
}

}  // namespace

ReadResult ReadExchangeProfile(const ReaderInput& input, ImportedProfile& profile) {
  constexpr std::size_t kMostMain = 64'000'000;  // a list of 750 000 points
  constexpr std::size_t kMostSums = 4096;
  if (!IsZip(input.bytes)) return ReadResult::NotRecognised("the file is no ZIP container");
  const ZipArchive archive(input.bytes);
  if (!archive.reason().empty()) return Refuse(input, Refusal(archive.reason()));
  const ZipArchive::Entry* const main = archive.FindInAnyFolder(kMainName);
  if (main == nullptr) return Refuse(input, Refusal("the container holds no main.xml"));
  const ZipArchive::Content description = ZipArchive::Unpack(*main, kMostMain);
  if (!description.ok()) return Refuse(input, Refusal(description.reason));
  const std::string folder(main->name.substr(0, main->name.size() - kMainName.size()));
  const PartSource parts = [&](std::string_view link, std::size_t mostBytes) {
    const ZipArchive::Entry* const entry = archive.Find(folder + std::string(WithoutDot(link)));
    if (entry != nullptr) return ZipArchive::Unpack(*entry, mostBytes);
    return ZipArchive::Content{{}, "the container holds no " + Quoted(OnOneLine(link))};
  };
  std::string storage;
  const std::string_view xml = PlainText(description.bytes, storage);
  ReadResult result = ReadDescribed(input, xml, parts, profile);
  if (result.status != ReadResult::Status::kRead) return result;
  if (const auto* const sums = archive.FindInAnyFolder("md5checksum.hex")) {
    constexpr std::size_t kDigits = 32;
    const std::string stated = ZipArchive::Unpack(*sums, kMostSums).bytes;
    CheckDigest(description.bytes, TrimBlanks(stated).substr(0, kDigits), "main.xml", profile);
  }
  return result;
}

ReadResult ReadExchangeDescription(const ReaderInput& input, ImportedProfile& profile) {
  std::filesystem::path data;
  const PartSource parts = [&](std::string_view link, std::size_t) {
    const std::filesystem::path name = PathFromText(WithoutDot(link));
    const bool isBelow = name.is_relative() && std::find(name.begin(), name.end(), "..") == name.end();
    if (!isBelow) return ZipArchive::Content{{}, "it names a file outside its own folder"};
    const std::filesystem::path path = input.path.parent_path() / name;
    FileBytes file = ReadRegularFile(path);
    if (!file.ok()) return ZipArchive::Content{{}, Quoted(OnOneLine(link)) + " beside it " + file.reason};
    if (data.empty()) data = path;
    return ZipArchive::Content{std::move(file.bytes), {}};
  };
  ReadResult result = ReadDescribed(input, input.bytes, parts, profile);
  profile.companion = data;
  return result;
}

std::string ExchangeProfileBytes(const ProfileToWrite& profile) {
  std::string data;
  data.reserve(profile.heightsUM.size() * sizeof(double));
  for (const double heightUM : profile.heightsUM) AppendLittleEndian(data, heightUM / kMicrometresPerMetre);
  const std::tm& t = profile.savedAt;
  const auto two = [](int number) { return IntegerText(number, 2, '0'); };
  const std::string date = IntegerText(t.tm_year + 1900, 4, '0') + "-" + two(t.tm_mon + 1) + "-" + two(t.tm_mday) +
                           "T" + two(t.tm_hour) + ":" + two(t.tm_min) + ":" + two(t.tm_sec);
  const auto axis = [](std::string_view name, std::string_view type, std::string_view increment) {
    return "      <" + std::string(name) + "><AxisType>" + std::string(type) + "</AxisType><DataType>D</DataType>" +
           "<Increment>" + std::string(increment) + "</Increment><Offset>0</Offset></" + std::string(name) + ">\n";
  };
  const std::string spacing = ShortestText(profile.spacingUM / kMicrometresPerMetre);
  // Where the second record is there all its texts must be; what is not known says so.
  const std::string main =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<p:ISO5436_2 xmlns:p=\"http://www.opengps.eu/2008/ISO5436_2\">\n"
      "  <Record1>\n    <Revision>ISO5436 - 2000</Revision>\n    <FeatureType>PRF</FeatureType>\n    <Axes>\n" +
      axis("CX", "I", spacing) + axis("CY", "I", "1") + axis("CZ", "A", "1") +
      "    </Axes>\n  </Record1>\n  <Record2>\n    <Date>" + date +
      "</Date>\n    <Creator>Texturon</Creator>\n    <Instrument><Manufacturer>not available</Manufacturer>"
      "<Model>not available</Model><Serial>not available</Serial><Version>not available</Version></Instrument>\n"
      "    <CalibrationDate>1970-01-01T00:00:00</CalibrationDate>\n    <ProbingSystem><Type>Software</Type>"
      "<Identification>not available</Identification></ProbingSystem>\n    <Comment>" +
      XmlText(OnOneLine(profile.identification)) +
      "</Comment>\n  </Record2>\n  <Record3>\n    <MatrixDimension><SizeX>" +
      IntegerText(static_cast<std::int64_t>(profile.heightsUM.size())) +
      "</SizeX><SizeY>1</SizeY><SizeZ>1</SizeZ></MatrixDimension>\n"
      "    <DataLink><PointDataLink>bindata/data.bin</PointDataLink><MD5ChecksumPointData>" +
      Md5Of(data) +
      "</MD5ChecksumPointData></DataLink>\n  </Record3>\n  <Record4><ChecksumFile>md5checksum.hex</ChecksumFile>"
      "</Record4>\n</p:ISO5436_2>\n";
  const std::string sums = Md5Of(main) + " *main.xml\n";
  const ZipPart parts[] = {{kMainName, main}, {"bindata/data.bin", data}, {"md5checksum.hex", sums}};
  return ZipOf(parts);
}

FileOutcome WriteExchangeProfile(std::filesystem::path& path, const ProfileToWrite& profile, Prompts& prompts) {
  return WriteProfileText(path, ".x3p", profile, 0.0, ExchangeProfileBytes, prompts);
}

}  // namespace texturon
