// SPDX-License-Identifier: Apache-2.0

#include "formats/softgauge_writer.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <string>

#include "base/date_text.h"
#include "base/number_text.h"
#include "base/text.h"
#include "base/units.h"

namespace texturon {
namespace {

constexpr std::string_view kFieldEnd("\0", 1);
constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kRecordEnd = "\x03\r\n";
constexpr char kFileEnd = '\x1A';

/// Fields, each closed by NUL, and the line's end.
std::string Line(std::initializer_list<std::string_view> fields) {
  std::string line;
  for (const std::string_view field : fields) line += std::string(field) + std::string(kFieldEnd);
  return line + std::string(kLineEnd);
}

std::string Ascii(std::string_view text) {
  std::string ascii = OnOneLine(text);
  std::replace_if(
      ascii.begin(), ascii.end(), [](char c) { return c < ' ' || c > '~'; }, '_');
  return ascii;
}

/// Its modulus is 65535.
std::string SumOf(std::string_view bytes) {
  constexpr std::int64_t kModulus = 65'535;
  const std::int64_t sum = std::accumulate(bytes.begin(), bytes.end(), std::int64_t{0},
                                           [](std::int64_t s, char c) { return s + static_cast<unsigned char>(c); });
  return IntegerText(sum % kModulus);
}

}  // namespace

std::string SoftgaugeText(const ProfileToWrite& profile) {
  constexpr std::size_t kDateLength = 11;  // "04 Mar 2015 - 09:05:07"
  constexpr std::size_t kTimePlace = 14;
  constexpr std::size_t kTimeLength = 5;
  constexpr int kAllDigits = 16;
  const std::string count = IntegerText(static_cast<std::int64_t>(profile.heightsUM.size()));
  const std::string spacingMM = ScientificText(profile.spacingUM * kMillimetresPerMicrometre, kAllDigits);
  const std::string saved = DateText(profile.savedAt);
  std::string date = saved.substr(0, kDateLength);
  std::replace(date.begin(), date.end(), ' ', '-');
  std::string text = Line({"ISO 5436-2:2012", Ascii(profile.identification)}) + Line({"PRF", " 1 ISO5436"}) +
                     Line({"CX", " I", " " + count + " mm", " 1.0e0 D", " " + spacingMM}) +
                     Line({"CZ", " A", " " + count + " um", " 1.0e0 D"}) + std::string(kRecordEnd) +
                     Line({"DATE: " + date}) + Line({"TIME: " + saved.substr(kTimePlace, kTimeLength)}) +
                     Line({"CREATED_BY Texturon"}) + std::string(kRecordEnd);
  for (const double heightUM : profile.heightsUM) {
    AppendShortest(text, heightUM);
    text += kLineEnd;
  }
  text += kRecordEnd;
  const std::string sum = SumOf(text);
  return text + sum + std::string(kLineEnd) + std::string(kRecordEnd) + kFileEnd;
}

FileOutcome WriteSoftgauge(std::filesystem::path& path, const ProfileToWrite& profile, Prompts& prompts) {
  return WriteProfileText(path, ".smd", profile, 0.0, SoftgaugeText, prompts);
}

}  // namespace texturon
