// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cmath>
#include <iterator>

#include "analysis/indication_words.h"
#include "base/number_text.h"
#include "base/text.h"
#include "base/units.h"
#include "parameters/catalogue.h"
#include "parameters/edition2021/edition_table.h"

// Indications in the style of ISO 1302:2002.
namespace texturon {
namespace {

constexpr std::string_view kMaximumWord = "max";
constexpr std::int32_t kUsualLengths = 5;

/// A name as it stands there: "Rz1max" is Rz, one sampling length, the rule of the maximum.
struct OlderName {
  std::string name;
  std::optional<std::int32_t> lengths;
  bool hasMaximum = false;
};

bool IsRowOfBefore(std::string_view name) {
  return FindOwnMasterRow(name) != nullptr || EqualIgnoringCase(name, "Rz");
}

OlderName TakeApart(std::string_view text) {
  OlderName read;
  constexpr std::size_t kLeast = 2;
  // Rmax is a parameter, the rows Rz1max and the like are a parameter with its rule here.
  if (text.size() >= kLeast + kMaximumWord.size() && text.ends_with(kMaximumWord)) {
    read.hasMaximum = true;
    text.remove_suffix(kMaximumWord.size());
  }
  std::size_t digits = text.size();
  while (digits > kLeast - 1 && text[digits - 1] >= '0' && text[digits - 1] <= '9') --digits;
  const std::string stem(text.substr(0, digits));
  // A figure of the name itself stays: Rmr1. That of Wz3 does not, though there is no row Wz.
  const bool isCount = digits < text.size() && (IsRowOfBefore(stem) || IsRowOfBefore("R" + stem.substr(1)));
  if (!isCount) digits = text.size();
  if (digits < text.size()) read.lengths = ParseInt32(text.substr(digits)).value;
  read.name = text.substr(0, digits);
  return read;
}

/// N1 to N12: the largest Ra, um.
std::optional<double> RoughnessClass(std::string_view text) {
  constexpr double kLimits[] = {0.025, 0.05, 0.1, 0.2, 0.4, 0.8, 1.6, 3.2, 6.3, 12.5, 25.0, 50.0};
  if (text.size() < 2 || text.front() != 'N') return std::nullopt;
  const ParsedInt32 number = ParseInt32(text.substr(1));
  const bool isClass = number.found() && number.length == text.size() - 1 && number.value >= 1 &&
                       static_cast<std::size_t>(number.value) <= std::size(kLimits);
  return isClass ? std::optional(kLimits[number.value - 1]) : std::nullopt;
}

/// Sampling length (mm) that a limit of Ra or Rz has by the table for profiles that are not periodic.
std::optional<double> LengthOfLimit(std::string_view name, double limitUM) {
  constexpr double kLengths[] = {0.08, 0.25, 0.8, 2.5, 8.0};
  constexpr struct {
    std::string_view name;
    double limits[4];
  } kTables[] = {{"Ra", {0.02, 0.1, 2.0, 10.0}}, {"Rz", {0.1, 0.5, 10.0, 50.0}}};
  for (const auto& table : kTables) {
    if (!EqualIgnoringCase(table.name, name)) continue;
    std::size_t i = 0;
    while (i < std::size(table.limits) && limitUM > table.limits[i]) ++i;
    return kLengths[i];
  }
  return std::nullopt;
}

class OlderLine {
public:
  explicit OlderLine(WordList words) : words_(words) {}

  OlderReading Read() {
    requirement_.edition = Edition::k1997;
    if (words_.Is("U") || words_.Is("L")) requirement_.isUpper = words_.Take().text == "U";
    if (const auto limit = RoughnessClass(words_.Peek())) {
      requirement_.notes.push_back(words_.Take().text + " is Ra " + ShortestText(*limit) + ".");
      name_.name = "Ra";
      requirement_.limit = *limit;
    } else if (!ReadHead() || !ReadLimit()) {
      return {requirement_, fault_, place_};
    }
    while (!words_.IsAtEnd()) {
      const Word item = words_.Take();
      if (item.text == kMaximumWord) {
        name_.hasMaximum = true;
        continue;
      }
      const auto product = ProductOf(item.text);
      if (!product) return {requirement_, Quoted(item.text) + " is not understood", item.place};
      if ((longMM_ && *longMM_ != product->first) || (name_.lengths && *name_.lengths != product->second)) {
        return {requirement_, Quoted(item.text) + " contradicts what stands before it", item.place};
      }
      longMM_ = product->first;
      name_.lengths = product->second;
    }
    Settle();
    if (name_.lengths && !AgreesWithLength(*name_.lengths)) {
      return {requirement_, "sampling lengths and evaluation length contradict each other", headAt_};
    }
    return {requirement_, {}, 0};
  }

private:
  bool Fail(std::string fault, std::size_t place) {
    fault_ = std::move(fault);
    place_ = place;
    return false;
  }

  /// "[short]-[long]/[le/]name".
  bool ReadHead() {
    const Word head = words_.Take();
    headAt_ = head.place;
    std::string_view rest = head.text;
    std::vector<std::string_view> parts;
    for (std::size_t slash = rest.find('/'); slash != std::string_view::npos; slash = rest.find('/')) {
      parts.push_back(rest.substr(0, slash));
      rest.remove_prefix(slash + 1);
    }
    std::string name(rest);
    if (name.empty()) name = words_.Take().text;
    if (parts.size() > 2) return Fail("too many parts before the name", head.place);
    if (!parts.empty() && !ReadBand(parts[0])) return Fail(Quoted(parts[0]) + " is no band of filters", head.place);
    if (parts.size() == 2) {
      lengthMM_ = NumberOf(parts[1]);
      if (!lengthMM_) return Fail(Quoted(parts[1]) + " is no length", head.place);
    }
    name_ = TakeApart(name);
    if (words_.Is(kMaximumWord)) {
      words_.Take();
      name_.hasMaximum = true;
    }
    if (name_.name.empty()) return Fail("a parameter is wanted here", head.place);
    if (name_.name == "N") return Fail(Quoted(name) + " is none of N1 to N12", head.place);
    if (name_.lengths && *name_.lengths < 1) return Fail("0 is no number of sampling lengths", head.place);
    return true;
  }

  bool ReadBand(std::string_view band) {
    const std::size_t dash = band.find('-');
    if (dash == std::string_view::npos) return false;
    const auto read = [](std::string_view text, std::optional<double>& target) {
      if (text.empty()) return true;
      target = NumberOf(text);
      return target.has_value() && *target > 0.0;
    };
    return read(band.substr(0, dash), shortMM_) && read(band.substr(dash + 1), longMM_);
  }

  bool ReadLimit() {
    const auto limit = NumberOf(words_.Peek());
    if (!limit) return Fail("a limit is wanted here", words_.Place());
    requirement_.limit = *limit;
    words_.Take();
    return true;
  }

  void Settle() {
    requirement_.name = name_.name;
    if (IsOlderSpelling(name_.name)) {
      requirement_.notes.push_back(name_.name +
                                   " is spelled as on drawings before ISO 21920 and means the row of then.");
    }
    const MasterRow* const row = FindOwnMasterRow(EqualIgnoringCase(name_.name, "Rz") ? "RzDIN" : name_.name);
    if (row != nullptr) {
      requirement_.rowName = row->name;
      requirement_.unit = PrintedUnit(row->quantity.metricUnit);
    } else {
      requirement_.missing = "this program has no row " + name_.name + " of that edition";
      requirement_.unit = kHeightUM.metricUnit;
    }
    requirement_.rule = name_.hasMaximum ? AcceptanceRule::kMaximum : AcceptanceRule::k16Percent;
    requirement_.ruleText = name_.hasMaximum ? "max" : "16%";
    if (row != nullptr && row->details.family == ParameterFamily::kMotif) return SettleMotifs();
    if (!longMM_ && !name_.name.starts_with('P')) {
      // Sampling lengths that are counted in an evaluation length are known, others those for the limit.
      longMM_ =
          lengthMM_ && name_.lengths ? *lengthMM_ / *name_.lengths : LengthOfLimit(name_.name, requirement_.limit);
    }
    requirement_.longIndexMM = longMM_;
    const bool isWaviness = name_.name.starts_with('W');
    if (isWaviness) {
      requirement_.notes.emplace_back("The long side of the waviness is that of the form in the settings.");
      if (!shortMM_ && requirement_.missing.empty()) {
        requirement_.missing = "the short-wave cut-off of the waviness must be written";
      }
    } else if (!shortMM_ && longMM_) {
      const SettingClass* const usual = FindClassOfIndex(BuiltInClasses(), *longMM_);
      if (usual != nullptr) shortMM_ = usual->shortIndexUM * kMillimetresPerMicrometre;
    }
    SettleShortIndex();
    if (name_.name.starts_with('P') && !longMM_) {
      requirement_.lengthMM = lengthMM_;
      requirement_.notes.emplace_back(lengthMM_ ? "Choose a region of this length."
                                                : "The length of the feature is evaluated.");
      return;
    }
    requirement_.sectionMM = longMM_;
    requirement_.sections = name_.lengths.value_or(kUsualLengths);
    if (!name_.lengths && lengthMM_ && longMM_) {
      requirement_.sections = std::max(1, RoundToIndex(WholePartsOfLength(*lengthMM_, *longMM_)));
      if (!AgreesWithLength(*requirement_.sections)) {
        requirement_.notes.emplace_back("The evaluation length is no whole number of sections.");
      }
    }
    requirement_.lengthMM = lengthMM_;
    if (!lengthMM_ && longMM_) requirement_.lengthMM = LengthOfSections(*longMM_, *requirement_.sections);
    if (!longMM_ && requirement_.missing.empty()) requirement_.missing = "the long-wave cut-off must be written";
  }

  /// Whether so many sampling lengths are the evaluation length, if both lengths are settled.
  bool AgreesWithLength(std::int32_t lengths) const {
    constexpr double kRounding = 1e-9;
    return !longMM_ || !lengthMM_ || std::abs(*longMM_ * lengths - *lengthMM_) <= kRounding * *lengthMM_;
  }

  /// The band of the roughness motifs reaches up to A, that of the waviness motifs from A to B.
  void SettleMotifs() {
    const bool isWaviness = name_.name.find('W') != std::string::npos;
    requirement_.motifMM = isWaviness ? shortMM_ : longMM_;
    if (isWaviness) requirement_.largeMotifMM = longMM_;
    const auto note = [this](const char* letter, const std::optional<double>& lengthMM) {
      if (lengthMM) requirement_.notes.push_back(std::string(letter) + " is " + ShortestText(*lengthMM) + " mm.");
    };
    note("A", requirement_.motifMM);
    note("B", requirement_.largeMotifMM);
    if (shortMM_ && longMM_ && *shortMM_ >= *longMM_ && requirement_.missing.empty()) {
      requirement_.missing = "the short-wave index is not below the long-wave one (both in mm)";
    }
    if (!isWaviness) SettleShortIndex();
    requirement_.lengthMM = lengthMM_;
    if (lengthMM_) requirement_.notes.emplace_back("Choose a region of this length.");
  }

  void SettleShortIndex() {
    if (shortMM_) requirement_.shortIndexUM = *shortMM_ * kMicrometresPerMillimetre;
  }

  WordList words_;
  Requirement requirement_;
  OlderName name_;
  std::optional<double> shortMM_;
  std::optional<double> longMM_;
  std::optional<double> lengthMM_;
  std::size_t headAt_ = 0;
  std::string fault_;
  std::size_t place_ = 0;
};

}  // namespace

bool IsOlderSpelling(std::string_view name) {
  constexpr std::string_view kSuffixes[] = {"Sm", "Pc", "Dq"};
  return !name.empty() && (name[0] == 'P' || name[0] == 'W' || name[0] == 'R') &&
         std::find(std::begin(kSuffixes), std::end(kSuffixes), name.substr(1)) != std::end(kSuffixes);
}

bool IsOlderStyle(WordList words) {
  if (words.Is("U") || words.Is("L")) words.Take();
  const std::string name = words.TakeName().text;
  if (RoughnessClass(name)) return true;
  for (WordList rest = words; !rest.IsAtEnd();) {
    if (rest.Take().text == kMaximumWord) return true;
  }
  if (IsOlderSpelling(name)) {
    words.Take();
    return words.IsAtEnd() || ProductOf(words.Peek());
  }
  if (ParseEditionName(PointsForCommas(name)).row != nullptr || IsFeatureText(name) ||
      name.find(':') != std::string::npos) {
    return false;
  }
  if (name.find('/') != std::string::npos) return true;
  const OlderName read = TakeApart(name);
  return read.hasMaximum || read.lengths || IsRowOfBefore(read.name);
}

OlderReading ReadOlderLine(WordList words) {
  return OlderLine(words).Read();
}

}  // namespace texturon
