// SPDX-License-Identifier: Apache-2.0

#include "formats/prf_format.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "base/text.h"
#include "base/units.h"
#include "formats/prf_records.h"
#include "formats/text_cursor.h"
#include "formats/unit_words.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

struct SecondRecord {
  double stylusRadiusMM = -1.0;
  double spacingMM = 0.0;
  bool hasSpacing = false;
};

/// Length in mm of the field at `index` with the unit behind it; millimetres where no unit follows.
std::optional<double> LengthMM(const std::vector<std::string_view>& fields, std::size_t index) {
  if (fields.size() <= index) return std::nullopt;
  const auto value = NumberField(fields[index]);
  const auto unitUM =
      fields.size() > index + 1 ? MicrometresPerUnit(fields[index + 1]) : std::optional(kMicrometresPerMillimetre);
  if (!value || !unitUM) return std::nullopt;
  return *unitUM == kMicrometresPerMillimetre ? *value : *value * *unitUM * kMillimetresPerMicrometre;
}

/// Reads record 2; what was wrong, or nothing.
std::string_view ReadSecondRecord(LineCursor& lines, SecondRecord& record) {
  while (const auto line = lines.Next()) {
    if (IsEndOfRecord(*line)) return {};
    const auto fields = PrfFields(*line);
    if (fields.empty()) continue;
    if (EqualIgnoringCase(fields[0], "STYLUS_RADIUS")) {
      const auto radius = LengthMM(fields, 1);
      if (!radius) return "the stylus radius is not understood";
      record.stylusRadiusMM = *radius;
    } else if (EqualIgnoringCase(fields[0], "SPACING")) {
      if (fields.size() < 2 || !EqualIgnoringCase(fields[1], "CX")) return "the spacing is not that of the X axis";
      const auto spacing = LengthMM(fields, 2);
      if (!spacing) return "the spacing is not understood";
      record.spacingMM = *spacing;
      record.hasSpacing = *spacing > 0.0;
    }
  }
  return "record 2 does not end";
}

/// The spacing of SPACING, else, or where that is 0, of the X axis. Some writers put 1.0 into the axis whatever the
/// spacing is.
bool TakeSpacing(const PrfFirstRecord& first, const SecondRecord& second, ImportedProfile& profile) {
  const double axisMM = first.x.scale * first.x.unitUM * kMillimetresPerMicrometre;
  const bool axisTells = first.x.stated && first.x.scale != 1.0;
  if (!second.hasSpacing && !axisTells) return false;
  const double spacingMM = second.hasSpacing ? second.spacingMM : axisMM;
  profile.spacingUM = spacingMM * kMicrometresPerMillimetre;
  profile.spacingSource = second.hasSpacing ? "header line SPACING" : "header line CX";
  if (second.hasSpacing && axisTells && std::abs(axisMM - spacingMM) > 1e-6 * std::abs(spacingMM)) {
    profile.warnings.push_back("SPACING says " + ShortestText(spacingMM) + " mm, the X axis " + ShortestText(axisMM) +
                               " mm; SPACING is taken");
  }
  return true;
}

/// Every how many points one is taken so that they fit.
std::size_t ThinningStep(std::size_t points) {
  constexpr auto kCapacity = static_cast<std::size_t>(kPointCapacity);
  std::size_t step = 1;
  while (points / step > kCapacity) ++step;
  return step;
}

/// Reads record 3 from `text`; what was wrong, or nothing.
std::string_view ReadHeights(std::string_view text, const PrfFirstRecord& first, ImportedProfile& profile) {
  TextCursor cursor(text);
  const auto points = static_cast<std::size_t>(first.z.count);
  if (points > (cursor.Remaining() + 1) / 2) return "the file cannot hold as many heights as the header says";
  const std::size_t step = ThinningStep(points);
  const std::size_t kept = std::min((points + step - 1) / step, static_cast<std::size_t>(kPointCapacity));
  const double countUM = first.z.scale * first.z.unitUM;
  profile.heightsUM.reserve(kept);
  for (std::size_t i = 0; i < points; ++i) {
    const auto count = cursor.Number();
    if (!count) return "there are fewer heights than the header says";
    if (i % step == 0 && profile.heightsUM.size() < kept) profile.heightsUM.push_back(*count * countUM);
  }
  if (step > 1) {
    profile.spacingUM *= static_cast<double>(step);
    profile.warnings.push_back("of " + IntegerText(static_cast<std::int64_t>(points)) + " points every " +
                               OrdinalText(static_cast<std::int64_t>(step)) + " is taken");
  }
  std::size_t surplus = 0;
  while (cursor.Number()) ++surplus;
  if (surplus >= points && first.x.dataType == 'A')
    return "the points have positions of their own, which a MOD file may have";
  if (surplus > 0) {
    profile.warnings.push_back(surplus == 1 ? "there is one more height than the header says"
                                            : "there are " + IntegerText(static_cast<std::int64_t>(surplus)) +
                                                  " more heights than the header says");
  }
  return {};
}

/// The height in counts of 1e-5 um, rounded half away from zero.
std::int64_t HeightCount(double heightUM) {
  constexpr double kCountsPerMicrometre = 99999.99999999999;
  constexpr double kMost = 9.2e18;
  const double product = heightUM * kCountsPerMicrometre;
  return static_cast<std::int64_t>(std::clamp(product < 0.0 ? product - 0.5 : product + 0.5, -kMost, kMost));
}

}  // namespace

ReadResult ReadPrfProfile(const ReaderInput& input, ImportedProfile& profile) {
  if (input.bytes.starts_with('0')) {
    return RefusePrf(input, 1, {"Error reading record 1."}, "Error reading record 1. (the binary form is not read)");
  }
  if (!input.bytes.starts_with('1')) return ReadResult::NotRecognised("the first byte is neither 0 nor 1");
  LineCursor lines(input.bytes);
  PrfFirstRecord first;
  const std::string problem = ReadPrfFirstRecord(lines, "PRF", first);
  if (!problem.empty()) return RefusePrf(input, lines.LineNumber(), {problem, "Error reading record one."});
  SecondRecord second;
  std::string_view wrong = ReadSecondRecord(lines, second);
  if (wrong.empty() && !TakeSpacing(first, second, profile)) wrong = "there is no spacing";
  if (!wrong.empty()) {
    return RefusePrf(input, lines.LineNumber(), {"Error reading record 2."},
                     "Error reading record 2. (" + std::string(wrong) + ")");
  }
  if (first.x.stated && first.x.count != first.z.count) {
    profile.warnings.emplace_back("the X axis has another number of points than the Z axis, which is taken");
  }
  const std::string_view heightsWrong = ReadHeights(lines.Rest(), first, profile);
  if (!heightsWrong.empty()) {
    return RefusePrf(input, lines.LineNumber() + 1, {"Error reading record 3."},
                     "Error reading record 3. (" + std::string(heightsWrong) + ")");
  }
  profile.identification = std::move(first.identification);
  profile.tipRadiusMM = second.stylusRadiusMM;
  return ReadResult::Read();
}

std::string PrfProfileText(const ProfileToWrite& profile) {
  const std::string name = PrfName(profile.identification);
  const std::string points = ScientificText(static_cast<double>(profile.heightsUM.size()), 6);
  const std::string spacingMM = ScientificText(profile.spacingUM * kMillimetresPerMicrometre, 6);
  std::string text;
  text.reserve(500 + profile.heightsUM.size() * 12);
  text += "1 2\r\n" + name + " 0.000000 PRF\r\nCX M " + points + " MM " + spacingMM + " D\r\nCZ M " + points +
          " MM 1.000000e-008 D\r\nEOR\r\nSTYLUS_RADIUS 0.000000e+000 MM\r\nSPACING CX " + spacingMM +
          " MM\r\nMAP 1.000000e+000 CZ CZ 1.000000e+000 1.000000e+000\r\n"
          "MAP 2.000000e+000 CZ CX 1.000000e+000 0.000000e+000\r\nEOR\r\n";
  for (const double height : profile.heightsUM) {
    AppendInteger(text, HeightCount(height));
    text += "\r\n";
  }
  text += "EOR\r\nEOF\r\n";
  return text;
}

FileOutcome WritePrfProfile(std::filesystem::path& path, const ProfileToWrite& profile, Prompts& prompts) {
  constexpr double kMostUM = 2147483647e-5;
  const bool isWide =
      std::any_of(profile.heightsUM.begin(), profile.heightsUM.end(), [](double z) { return std::abs(z) > kMostUM; });
  if (isWide) prompts.Notice("heights beyond 21.47 mm do not fit into 32 bits; other programs may not read the file");
  return WriteProfileText(path, ".prf", profile, 0.0, PrfProfileText, prompts);
}

}  // namespace texturon
