// SPDX-License-Identifier: Apache-2.0

#include "analysis/indication.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <tuple>
#include <utility>

#include "analysis/indication_words.h"
#include "base/number_text.h"
#include "base/text.h"
#include "base/units.h"
#include "parameters/catalogue.h"
#include "parameters/edition2021/edition_list.h"

namespace texturon {
namespace {

/// What a line of the newer style states besides name and limit.
struct Written {
  const SettingClass* chosen = nullptr;
  std::optional<double> shortMM;
  std::optional<double> longMM;
  std::optional<double> sectionMM;
  std::optional<std::int32_t> sections;
  std::optional<double> lengthMM;
};

struct RuleWord {
  std::string_view word;
  AcceptanceRule rule;
};
constexpr RuleWord kRules[] = {
    {"Tmax", AcceptanceRule::kMaximum}, {"T16%", AcceptanceRule::k16Percent}, {"Tmed", AcceptanceRule::kMedian}};

// Items as they are named where they stand twice.
constexpr std::string_view kShortIndex = "S";
constexpr std::string_view kLongIndex = "L";
constexpr std::string_view kSectionLength = "lsc";
constexpr std::string_view kSectionCount = "nsc";
constexpr std::string_view kEvaluationLength = "le";

constexpr std::string_view kFilterTypes[] = {"G", "RG", "S", "RS"};

bool IsFilterType(std::string_view word) {
  return std::find(std::begin(kFilterTypes), std::end(kFilterTypes), word) != std::end(kFilterTypes);
}

/// One requirement in the style of ISO 21920-1.
class LineReader {
public:
  LineReader(const WordList& words, const ClassTable& classes) : words_(words), classes_(classes) {}

  /// False with a fault.
  bool Read(Requirement& requirement) {
    if (words_.Is("U") || words_.Is("L")) requirement.isUpper = words_.Take().text == "U";
    requirement.ruleText = kRules[0].word;
    if (!ReadName(requirement)) return false;
    const auto limit = NumberOf(words_.Peek());
    if (!limit) return Fail("a limit is wanted here");
    requirement.limit = *limit;
    words_.Take();
    while (!words_.IsAtEnd()) {
      if (!ReadItem(requirement)) return false;
    }
    return AgreeLengths();
  }

  /// A lower limit beside an upper one of the same parameter is measured in the same way; what it says itself stands.
  void TakeFrom(const LineReader& upper, double upperLimit) {
    if (written_.chosen != nullptr || written_.longMM) return;
    const Written& other = upper.written_;
    written_.chosen = other.chosen;
    written_.longMM = other.longMM;
    if (!written_.shortMM) written_.shortMM = other.shortMM;
    if (!written_.sectionMM && !written_.sections && !written_.lengthMM) {
      written_.sectionMM = other.sectionMM;
      written_.sections = other.sections;
      written_.lengthMM = other.lengthMM;
    }
    upperLimit_ = upperLimit;
  }

  /// Fills in what the read line leaves open.
  void Settle(Requirement& requirement) const {
    requirement.edition = Edition::k2021;
    if (IsOlderSpelling(requirement.name)) {
      requirement.notes.push_back(requirement.name + " is spelled as on drawings before ISO 21920; read as " +
                                  requirement.rowName + " of 2021, as the rest of the line is.");
    }
    const SettingClass* const found = ClassFor(requirement);
    if (upperLimit_ && found != nullptr) requirement.notes.emplace_back("The class is that of the upper limit.");
    if (letter_ == 'P') return SettlePrimary(requirement, found);
    const bool isClassOfIndex = found != nullptr && (!written_.longMM || *written_.longMM == found->longIndexMM);
    if (found != nullptr) TakeClass(*found, requirement);
    if (found != nullptr && isClassOfIndex) requirement.className = found->name;
    if (written_.longMM) requirement.longIndexMM = written_.longMM;
    if (written_.shortMM) requirement.shortIndexUM = *written_.shortMM * kMicrometresPerMillimetre;
    if (letter_ != 'W') return SettleLengths(requirement, found);
    TakeWrittenLengths(requirement);
    if (requirement.missing.empty()) {
      requirement.notes.emplace_back(
          "The waviness begins at the long-wave index (Nic); its long side (Nif) is that of the settings.");
    }
  }

  const std::string& Fault() const { return fault_; }
  std::size_t Place() const { return place_; }

private:
  bool Fail(const std::string& fault) {
    fault_ = fault;
    place_ = words_.Place();
    return false;
  }

  /// Notes that an item is written at the next word; false, with a fault, where it was before.
  bool IsFirst(std::string_view item) {
    if (std::find(given_.begin(), given_.end(), item) != given_.end()) {
      return Fail(std::string(item) + " is written twice");
    }
    given_.push_back(item);
    if (item == kSectionLength || item == kSectionCount || item == kEvaluationLength) lengthsAt_ = words_.Place();
    return true;
  }

  /// Sections and evaluation length, if all are written, are the same length.
  bool AgreeLengths() {
    constexpr double kRounding = 1e-9;
    const auto& [section, count, length] = std::tie(written_.sectionMM, written_.sections, written_.lengthMM);
    if (!section || !count || !length || std::abs(*section * *count - *length) <= kRounding * *length) return true;
    fault_ = "sections and evaluation length contradict each other";
    place_ = lengthsAt_;
    return false;
  }

  bool ReadName(Requirement& requirement) {
    if (words_.IsAtEnd()) return Fail("a parameter is wanted here");
    const Word name = words_.TakeName();
    const EditionName read = ParseEditionName(PointsForCommas(name.text));
    if (!read.fault.empty()) {
      fault_ = Quoted(name.text) + " " + read.fault;
      place_ = name.place;
      return false;
    }
    requirement.name = name.text;
    requirement.rowName = PointsForCommas(name.text);
    if (IsOlderSpelling(requirement.rowName)) requirement.rowName = read.letter + std::string(read.row->suffix);
    letter_ = read.letter;
    row_ = read.row;
    requirement.unit = PrintedUnit(MakeEditionRow(requirement.rowName).quantity.metricUnit);
    return true;
  }

  bool ReadItem(Requirement& requirement) {
    const std::string text = words_.Peek();
    for (const RuleWord& rule : kRules) {
      if (!EqualIgnoringCase(rule.word, text)) continue;
      if (!IsFirst("the rule")) return false;
      requirement.rule = rule.rule;
      requirement.ruleText = rule.word;
      words_.Take();
      return true;
    }
    if (const SettingClass* const found = FindClass(classes_, text)) {
      if (!IsFirst("the class")) return false;
      written_.chosen = found;
      words_.Take();
      return true;
    }
    const std::size_t equals = text.find('=');
    if (equals != std::string::npos) return ReadAssignment(text, equals, requirement);
    if (text.starts_with("OR(") && text.ends_with(')')) {
      const auto number = NumberOf(text.substr(3, text.size() - 4));
      if (!number || !(*number >= 1.0) || *number != std::round(*number)) {
        return Fail("OR wants the number of an orientation");
      }
      requirement.notes.push_back("Orientation " + text + " is not judged.");
      words_.Take();
      return true;
    }
    if (const auto product = ProductOf(text)) {
      if (!IsFirst(kSectionLength) || !IsFirst(kSectionCount)) return false;
      written_.sectionMM = product->first;
      written_.sections = product->second;
      words_.Take();
      return true;
    }
    if (IsFilterType(text)) return ReadFilter(requirement);
    return Fail(Quoted(text) + " is not understood");
  }

  /// "G 0.8": the short-wave filter first, then the long-wave one.
  bool ReadFilter(Requirement& requirement) {
    if (!IsFirst(typedFilters_ == 0 ? kShortIndex : kLongIndex)) return false;
    NoteFilterType(words_.Take().text, requirement);
    const auto index = NumberOf(words_.Peek());
    if (!index || !(*index > 0.0)) return Fail("a nesting index in mm is wanted here");
    words_.Take();
    (typedFilters_++ == 0 ? written_.shortMM : written_.longMM) = *index;
    return true;
  }

  static void NoteFilterType(const std::string& type, Requirement& requirement) {
    if (type != "G") requirement.notes.push_back("Filter type " + type + " is not set here; the default is used.");
  }

  /// "F=LSQ C 8": association, shape and index, with blanks between them.
  bool ReadForm(std::string value, Requirement& requirement) {
    words_.Take();
    const auto isLetters = [](const std::string& word) {
      return !word.empty() && std::all_of(word.begin(), word.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
    };
    const auto take = [&] { value += (value.empty() ? "" : " ") + words_.Take().text; };
    if (value.empty() && isLetters(words_.Peek())) take();
    // G, S and the like begin a filter where a number follows.
    WordList behind = words_;
    const bool beginsFilter = IsFilterType(behind.Take().text) && NumberOf(behind.Peek());
    if (value.empty()) return Fail("an association is wanted here");
    if (isLetters(words_.Peek()) && !beginsFilter) {
      take();
      if (NumberOf(words_.Peek())) take();
    }
    requirement.notes.push_back("F-operator " + value + " is not set here; the form of the settings is used.");
    return true;
  }

  bool ReadAssignment(const std::string& text, std::size_t equals, Requirement& requirement) {
    const std::string key = LowerAscii(text.substr(0, equals));
    std::string value = text.substr(equals + 1);
    if (key == "f") return ReadForm(std::move(value), requirement);
    const bool isFilter = key == "s" || key == "l";
    for (const std::string_view item : {kShortIndex, kLongIndex, kSectionLength, kSectionCount, kEvaluationLength}) {
      if (EqualIgnoringCase(key, item) && !IsFirst(item)) return false;
    }
    if (isFilter) {
      const std::size_t digit = std::min(value.find_first_of("0123456789.,"), value.size());
      const std::string type = value.substr(0, digit);
      if (!type.empty() && !IsFilterType(type)) return Fail(Quoted(type) + " is no type of filter");
      if (!type.empty()) NoteFilterType(type, requirement);
      value = value.substr(digit);
    }
    const Word whole = words_.Take();
    if (isFilter && value.empty()) value = words_.Take().text;
    const auto number = NumberOf(value);
    constexpr std::string_view kNoCount = " is no number of sections from 1 to 1000";
    if (!number || !(*number > 0.0)) {
      fault_ = Quoted(value);
      fault_ += key == "nsc" ? kNoCount : " is no length above 0";
      place_ = whole.place + equals + 1;
      return false;
    }
    if (key == "s")
      written_.shortMM = *number;
    else if (key == "l")
      written_.longMM = *number;
    else if (key == "lsc")
      written_.sectionMM = *number;
    else if (key == "le")
      written_.lengthMM = *number;
    else if (key == "nsc") {
      constexpr double kMostSections = 1000.0;
      if (*number != std::round(*number) || *number > kMostSections) {
        fault_ = Quoted(value).append(kNoCount);
        place_ = whole.place + equals + 1;
        return false;
      }
      written_.sections = RoundToIndex(*number);
    } else {
      fault_ = Quoted(text.substr(0, equals)) + " is none of S, L, lsc, nsc, le and F";
      place_ = whole.place;
      return false;
    }
    return true;
  }

  /// Why the limit of a parameter, which might have, does not fix the class.
  std::string WhyNoClass(const std::string& name) const {
    const bool isKnown = std::any_of(classes_.begin(), classes_.end(),
                                     [&name](const SettingClass& row) { return row.LimitOf(name).has_value(); });
    return "the limit does not fix the class: " +
           (isKnown ? "it is above those of the classes for " + name
                    : "the limits of the classes for " + name + " are not known") +
           "; write Sc1 to Sc5 or L=Nic";
  }

  /// The class that settles what is not written; null with what is missing.
  const SettingClass* ClassFor(Requirement& requirement) const {
    if (written_.chosen != nullptr) return written_.chosen;
    if (written_.longMM) {
      const SettingClass* const found = FindClassOfIndex(classes_, *written_.longMM);
      if (found == nullptr && !written_.shortMM) {
        requirement.missing = "no class has this long-wave index, so the short-wave index must be written too";
      }
      return found;
    }
    const bool limitMayDo = row_ != nullptr && !row_->needsClass && (letter_ == 'R' || requirement.name == "Pt");
    const SettingClass* const found =
        limitMayDo ? FindClassOfLimit(classes_, requirement.name, std::abs(upperLimit_.value_or(requirement.limit)))
                   : nullptr;
    if (found == nullptr) {
      requirement.missing = limitMayDo ? WhyNoClass(requirement.name)
                                       : "a class (Sc1 to Sc5) or the long-wave index (L=Nic) must be written";
    } else if (!requirement.isUpper && !upperLimit_) {
      requirement.notes.emplace_back("The class is taken from the lower limit by the table of upper ones.");
    }
    return found;
  }

  static void TakeClass(const SettingClass& found, Requirement& requirement) {
    requirement.longIndexMM = found.longIndexMM;
    requirement.shortIndexUM = found.shortIndexUM;
    requirement.mostSpacingUM = found.mostSpacingUM;
    requirement.mostTipRadiusUM = found.mostTipRadiusUM;
  }

  void SettleLengths(Requirement& requirement, const SettingClass* found) const {
    constexpr std::int32_t kUsualSections = 5;
    constexpr double kRounding = 1e-9;
    requirement.sectionMM = written_.sectionMM ? written_.sectionMM : requirement.longIndexMM;
    requirement.sections = written_.sections.value_or(found != nullptr ? found->sections : kUsualSections);
    if (!requirement.sectionMM) {
      if (!written_.sections) requirement.sections.reset();
      requirement.lengthMM = written_.lengthMM;
      return;
    }
    if (!written_.lengthMM) {
      requirement.lengthMM = LengthOfSections(*requirement.sectionMM, *requirement.sections);
      return;
    }
    requirement.lengthMM = written_.lengthMM;
    if (written_.sections) {
      if (!written_.sectionMM) requirement.sectionMM = *written_.lengthMM / *written_.sections;
      return;
    }
    const double count = *written_.lengthMM / *requirement.sectionMM;
    if (count >= 1.0 - kRounding && std::abs(count - std::round(count)) <= kRounding * count) {
      requirement.sections = RoundToIndex(count);
      return;
    }
    requirement.sections = std::max(1, static_cast<std::int32_t>(std::floor(count)));
    requirement.notes.emplace_back("The evaluation length is no whole number of sections.");
  }

  /// Sections and lengths of the classes are those of the roughness.
  void TakeWrittenLengths(Requirement& requirement) const {
    requirement.sections = written_.sections;
    requirement.sectionMM = written_.sectionMM;
    requirement.lengthMM = written_.lengthMM;
    if (!requirement.lengthMM && requirement.sectionMM && requirement.sections) {
      requirement.lengthMM = LengthOfSections(*requirement.sectionMM, *requirement.sections);
    }
  }

  /// The primary profile has no long-wave index; it is evaluated over the length that is stated, or over the feature.
  void SettlePrimary(Requirement& requirement, const SettingClass* found) const {
    if (found != nullptr) {
      requirement.className = found->name;
      requirement.shortIndexUM = found->shortIndexUM;
      requirement.mostSpacingUM = found->mostSpacingUM;
      requirement.mostTipRadiusUM = found->mostTipRadiusUM;
    }
    if (written_.shortMM) requirement.shortIndexUM = *written_.shortMM * kMicrometresPerMillimetre;
    requirement.missing = requirement.shortIndexUM ? "" : "the short-wave index (S=Nis) or a class must be written";
    TakeWrittenLengths(requirement);
    requirement.notes.emplace_back(requirement.lengthMM ? "Choose a region of this length."
                                                        : "The length of the feature is evaluated.");
  }

  WordList words_;
  const ClassTable& classes_;
  Written written_;
  char letter_ = 'R';
  const EditionRow* row_ = nullptr;
  int typedFilters_ = 0;
  std::vector<std::string_view> given_;  // items that are written
  std::size_t lengthsAt_ = 0;            // the last of those on lengths
  std::optional<double> upperLimit_;     // that a lower one goes with
  std::string fault_;
  std::size_t place_ = 0;
};

/// A line of the newer style and its requirement.
struct NewerLine {
  std::size_t requirement = 0;
  LineReader reader;
};

void SettleLines(std::vector<NewerLine>& lines, std::vector<Requirement>& requirements) {
  for (NewerLine& line : lines) {
    Requirement& own = requirements[line.requirement];
    const auto isUpperOf = [&](const NewerLine& other) {
      const Requirement& upper = requirements[other.requirement];
      return !own.isUpper && upper.isUpper && EqualIgnoringCase(upper.rowName, own.rowName);
    };
    const auto upper = std::find_if(lines.begin(), lines.end(), isUpperOf);
    if (upper != lines.end()) line.reader.TakeFrom(upper->reader, requirements[upper->requirement].limit);
    line.reader.Settle(own);
  }
}

/// 2.5 for the short-wave index is one in um where mm belong.
void CheckBand(Requirement& requirement) {
  if (!requirement.shortIndexUM || !requirement.longIndexMM || !requirement.missing.empty()) return;
  if (*requirement.shortIndexUM * kMillimetresPerMicrometre < *requirement.longIndexMM) return;
  requirement.missing = "the short-wave index is not below the long-wave one (both in mm)";
}

/// What is written stands; the primary profile takes no lengths from a class.
void FillFromClass(const SettingClass& chosen, Requirement& requirement) {
  if (!requirement.shortIndexUM) requirement.shortIndexUM = chosen.shortIndexUM;
  requirement.mostSpacingUM = chosen.mostSpacingUM;
  requirement.mostTipRadiusUM = chosen.mostTipRadiusUM;
  requirement.className = chosen.name;
  const char letter = UpperAscii(requirement.rowName.front());
  if (letter == 'P') return;
  std::optional<double>& sectionMM = requirement.sectionMM;
  std::optional<std::int32_t>& count = requirement.sections;
  std::optional<double>& lengthMM = requirement.lengthMM;
  if (!requirement.longIndexMM) requirement.longIndexMM = chosen.longIndexMM;
  if (letter == 'W') return;
  if (!sectionMM) sectionMM = lengthMM && count ? *lengthMM / *count : *requirement.longIndexMM;
  if (!count) count = lengthMM ? std::max(1, RoundToIndex(WholePartsOfLength(*lengthMM, *sectionMM))) : chosen.sections;
  if (!lengthMM) lengthMM = LengthOfSections(*sectionMM, *count);
}

}  // namespace

IndicationResult ReadIndication(std::string_view text, const ClassTable& classes) {
  IndicationResult result;
  std::vector<NewerLine> newer;
  constexpr std::string_view kEditionMark = "ISO";
  std::optional<Edition> said;
  for (const TextPart& part : LinesOf(text)) {
    WordList words(part);
    if (const auto edition = words.TakeEdition()) said = edition;
    words.TakeSymbol();
    if (words.IsAtEnd()) continue;
    Requirement requirement;
    const bool isOlder = said ? *said == Edition::k1997 : IsOlderStyle(words);
    if (isOlder) {
      OlderReading older = ReadOlderLine(words);
      if (!older.fault.empty()) return {{}, std::move(older.fault), older.place};
      requirement = std::move(older.requirement);
    } else {
      LineReader reader(words, classes);
      if (!reader.Read(requirement)) return {{}, reader.Fault(), reader.Place()};
      newer.push_back({result.requirements.size(), std::move(reader)});
    }
    requirement.source = TrimBlanks(part.text);
    const bool saysSo = EqualIgnoringCase(requirement.source.substr(0, kEditionMark.size()), kEditionMark);
    if (said == Edition::k1997 && !saysSo) requirement.source = "ISO1302 " + requirement.source;
    result.requirements.push_back(std::move(requirement));
  }
  if (result.requirements.empty()) result.fault = "nothing stands here";
  SettleLines(newer, result.requirements);
  for (Requirement& requirement : result.requirements) CheckBand(requirement);
  return result;
}

Tolerance ToleranceOf(const Requirement& requirement) {
  constexpr double kOpen = std::numeric_limits<double>::infinity();
  return {.toleranced = true,
          .bilateral = !requirement.isUpper || requirement.limit == 0.0,  // an upper limit of 0 alone would be none
          .upperLimit = requirement.isUpper ? requirement.limit : kOpen,
          .lowerLimit = requirement.isUpper ? -kOpen : requirement.limit};
}

void CompleteRequirement(Requirement& requirement, const SettingClass* chosen, std::optional<std::int32_t> sections) {
  const bool lacksSettings = !requirement.missing.empty() && requirement.edition == Edition::k2021;
  if (lacksSettings && chosen != nullptr) {
    FillFromClass(*chosen, requirement);
    requirement.missing.clear();
    CheckBand(requirement);
    requirement.notes.push_back("The class " + chosen->name + " was given beside the drawing.");
  }
  if (!sections || !requirement.sectionMM) return;
  requirement.sections = sections;
  requirement.lengthMM = LengthOfSections(*requirement.sectionMM, *sections);
}

void ApplyRequirement(const Requirement& requirement, AnalysisSettings& settings) {
  StandardSettings& standard = settings.standard;
  standard.Edition = NameOf(requirement.edition);
  standard.LongWaveFilter.clear();
  standard.ShortWaveFilter = "gaussian";
  settings.FilterType = kFilterGaussian;
  settings.UserDiscardType = kDiscardHalfCutoff;
  if (requirement.longIndexMM) settings.LcCutoffMM = *requirement.longIndexMM;
  const double shortMM = requirement.shortIndexUM.value_or(0.0) * kMillimetresPerMicrometre;
  // The band of the waviness begins on older drawings at the cut-off that separates it from the roughness.
  const bool isOlderWaviness = requirement.edition == Edition::k1997 && requirement.rowName.starts_with('W');
  if (isOlderWaviness && requirement.longIndexMM) {
    settings.LcCutoffMM = shortMM;
  } else if (requirement.shortIndexUM) {  // that of motifs may be open
    settings.LsCutoffMM = shortMM;
  }
  if (requirement.motifMM) settings.MotifAMM = *requirement.motifMM;
  if (requirement.largeMotifMM) settings.MotifBMM = *requirement.largeMotifMM;
  standard.Sections = requirement.sections.value_or(standard.Sections);
  // Primary profile and motifs are evaluated over what is computed over, so a region gives their length.
  const double ownLengthMM = requirement.rowName.starts_with('W') ? standard.EvaluationLengthMM : 0.0;
  standard.EvaluationLengthMM = requirement.longIndexMM ? requirement.lengthMM.value_or(ownLengthMM) : 0.0;
  standard.CompleteSections = true;
  standard.Class = requirement.className;
  standard.Indication = requirement.source;
  standard.MostSpacingUM = requirement.mostSpacingUM;
  standard.MostTipRadiusUM = requirement.mostTipRadiusUM;
  settings.parameters = {{.name = requirement.rowName, .tolerance = ToleranceOf(requirement)}};
}

bool AddRequirement(const Requirement& requirement, const AnalysisSettings& start, AnalysisSettings& settings) {
  AnalysisSettings own = start;
  ApplyRequirement(requirement, own);
  const ParameterSelection row = own.parameters.front();
  const std::string indication = settings.standard.Indication + " | " + own.standard.Indication;
  own.parameters = settings.parameters;
  own.standard.Indication = settings.standard.Indication;
  if (own != settings) return false;
  settings.standard.Indication = indication;
  const auto held = std::find_if(settings.parameters.begin(), settings.parameters.end(),
                                 [&row](const ParameterSelection& other) { return other.name == row.name; });
  if (held == settings.parameters.end()) {
    settings.parameters.push_back(row);
    return true;
  }
  held->tolerance.bilateral = true;
  held->tolerance.upperLimit = std::min(held->tolerance.upperLimit, row.tolerance.upperLimit);
  held->tolerance.lowerLimit = std::max(held->tolerance.lowerLimit, row.tolerance.lowerLimit);
  return true;
}

std::string_view ConformityWord(Acceptance verdict) {
  switch (verdict) {
    case Acceptance::kPass:
      return "conforming";
    case Acceptance::kFail:
      return "not conforming";
    case Acceptance::kUndecided:
      break;
  }
  return "undecided";
}

}  // namespace texturon
