// SPDX-License-Identifier: Apache-2.0

#include "formats/unit_words.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "base/number_text.h"
#include "base/text.h"

namespace texturon {
namespace {

constexpr double kMicrometresPerInch = 25'400.0;

struct Prefix {
  std::string_view word;
  double factor;
};

// The micro signs are those of Windows-1252, UTF-8, Greek in UTF-8, DOS.
constexpr Prefix kSymbols[] = {{"k", 1e3},         {"c", 1e-2},        {"m", 1e-3},    {"u", 1e-6}, {"\xB5", 1e-6},
                               {"\xC2\xB5", 1e-6}, {"\xCE\xBC", 1e-6}, {"\xE6", 1e-6}, {"n", 1e-9}, {"p", 1e-12}};
constexpr Prefix kPrefixWords[] = {{"kilo", 1e3},   {"centi", 1e-2}, {"milli", 1e-3},
                                   {"micro", 1e-6}, {"nano", 1e-9},  {"pico", 1e-12}};

/// A unit, its micrometres, and whether it is spelt out.
struct Base {
  std::string_view word;
  double micrometres;
};

constexpr Base kBaseSymbols[] = {{"m", 1e6}, {"\xC5", 1e-4}, {"\xC3\x85", 1e-4}};
constexpr Base kBaseWords[] = {{"meter", 1e6},
                               {"metre", 1e6},
                               {"angstrom", 1e-4},
                               {"\xE5ngstr\xF6m", 1e-4},
                               {"\xC5ngstr\xF6m", 1e-4},
                               {"inch", kMicrometresPerInch},
                               {"inche", kMicrometresPerInch},
                               {"inches", kMicrometresPerInch}};
// A prefix before "in" makes words: min, pin. Microinches are the only ones that are written so.
constexpr Base kWholeUnits[] = {{"micron", 1.0},        {"\xB5", 1.0},
                                {"mil", 25.4},          {"thou", 25.4},
                                {"ang", 1e-4},          {"in", kMicrometresPerInch},
                                {"uin", 0.0254},        {"\xB5in", 0.0254},
                                {"\xE6in", 0.0254},     {"\xC2\xB5in", 0.0254},
                                {"\xCE\xBCin", 0.0254}, {"uinch", 0.0254},
                                {"\xB5inch", 0.0254},   {"dm", 1e5},
                                {"ft", 304'800.0},      {"foot", 304'800.0},
                                {"feet", 304'800.0}};

/// Units that are met in headings and are no lengths.
constexpr std::string_view kOthers[] = {
    "rad",        "deg",   "degree", "\xB0", "arcsec", "arcmin", "a.u.",    "au",        "arb",   "arb.",
    "arb. units", "count", "digit",  "lsb",  "bit",    "%",      "percent", "s",         "sec",   "second",
    "min.",       "hz",    "px",     "pix",  "pixel",  "pts",    "point",   "v",         "volt",  "db",
    "fringe",     "wave",  "lambda", "\xBB", "um/um",  "mm/mm",  "nm/nm",   "um/mm",     "nm/mm", "mm/m",
    "um/m",       "mm/s",  "um/s",   "1/mm", "1/um",   "radian", "a. u.",   "arb.units", "a.u",   "lines"};

std::string_view WithoutPlural(std::string_view word) {
  return word.size() > 3 && (word.ends_with('s') || word.ends_with('S')) ? word.substr(0, word.size() - 1) : word;
}

template <std::size_t kSize>
const Base* Find(const Base (&bases)[kSize], std::string_view word) {
  const auto* const found = std::find_if(std::begin(bases), std::end(bases),
                                         [word](const Base& base) { return EqualIgnoringCase(base.word, word); });
  return found == std::end(bases) ? nullptr : found;
}

/// A prefix of its own word and a base of its own kind, or the base alone.
template <std::size_t kPrefixes, std::size_t kBases>
std::optional<double> Composed(const Prefix (&prefixes)[kPrefixes], const Base (&bases)[kBases],
                               std::string_view word) {
  if (const Base* const base = Find(bases, word)) return base->micrometres;
  for (const Prefix& prefix : prefixes) {
    if (!StartsWithIgnoringCase(word, prefix.word)) continue;
    if (const Base* const base = Find(bases, word.substr(prefix.word.size()))) return prefix.factor * base->micrometres;
  }
  return std::nullopt;
}

/// Whole multiples of ten that a product of factors misses by a rounding.
double Tidied(double micrometres) {
  constexpr double kKnown[] = {1e9, 1e6, 1e4, 1e3, 1.0, 1e-1, 1e-3, 1e-6, 1e-4, 1e-7, 1e-10, 25.4, 0.0254, 25'400.0};
  for (const double known : kKnown) {
    if (micrometres > known * (1.0 - 1e-12) && micrometres < known * (1.0 + 1e-12)) return known;
  }
  return micrometres;
}

bool IsOther(std::string_view unit) {
  const auto is = [](std::string_view word) {
    return std::any_of(std::begin(kOthers), std::end(kOthers),
                       [word](std::string_view other) { return EqualIgnoringCase(other, word); });
  };
  if (is(unit) || is(WithoutPlural(unit))) return true;
  for (const Prefix& prefix : kSymbols) {
    if (!unit.starts_with(prefix.word)) continue;
    const std::string_view base = unit.substr(prefix.word.size());
    for (const std::string_view known : {"rad", "V", "A", "s", "Hz", "N", "deg", "arcsec"}) {
      if (base == known || EqualIgnoringCase(WithoutPlural(base), "radian")) return true;
    }
  }
  for (const Prefix& prefix : kPrefixWords) {
    if (StartsWithIgnoringCase(unit, prefix.word) && is(WithoutPlural(unit.substr(prefix.word.size())))) return true;
    if (StartsWithIgnoringCase(unit, prefix.word) && EqualIgnoringCase(unit.substr(prefix.word.size()), "rad"))
      return true;
  }
  // A square, a quotient, or a length with a factor before it.
  const std::size_t slash = unit.find('/');
  if (slash != std::string_view::npos) {
    const auto known = [](std::string_view part) {
      part = TrimBlanks(part);
      return MicrometresPerUnit(part).has_value() || EqualIgnoringCase(part, "s") || EqualIgnoringCase(part, "v");
    };
    const std::string_view above = TrimBlanks(unit.substr(0, slash));
    if (known(unit.substr(slash + 1)) && (known(above) || is(above) || above == "1")) return true;
  }
  if (unit.ends_with('2') || unit.ends_with('3') || unit.ends_with('\xB2') || unit.ends_with('\xB3')) {
    const std::string_view root = unit.substr(0, unit.find_last_not_of("^*23\xB2\xB3-") + 1);
    if (!root.empty() && MicrometresPerUnit(root)) return true;
  }
  const std::size_t last = unit.find_first_not_of("x*^+-0123456789.eE ");
  return last != std::string_view::npos && unit.substr(0, last).find_first_of("0123456789") != std::string_view::npos &&
         MicrometresPerUnit(unit.substr(last)).has_value();
}

UnitStatement StatementOf(std::string_view text) {
  if (text.size() > 2 && text.ends_with('.') && MicrometresPerUnit(text.substr(0, text.size() - 1)))
    text.remove_suffix(1);
  UnitStatement statement{.text = text};
  if (const auto micrometres = MicrometresPerUnit(text)) {
    statement.kind = UnitStatement::Kind::kLength;
    statement.micrometres = *micrometres;
  } else if (IsOther(text)) {
    statement.kind = UnitStatement::Kind::kOther;
  }
  return statement;
}

/// A word that reads as a unit only behind a name of what is measured: "Z in" is inches, "Read in" is not.
bool NeedsQuantity(std::string_view unit) {
  constexpr std::string_view kShort[] = {"in",    "m",     "a",      "s",     "v",      "au",     "wave",   "waves",
                                         "lines", "point", "points", "count", "counts", "second", "digits", "pts"};
  return std::any_of(std::begin(kShort), std::end(kShort),
                     [unit](std::string_view word) { return EqualIgnoringCase(word, unit); });
}

bool IsBareName(std::string_view name) {
  constexpr std::string_view kNames[] = {"x", "y", "z", "position", "distance", "height", "length", "lateral", "depth"};
  name = TrimBlanks(name);
  return std::any_of(std::begin(kNames), std::end(kNames),
                     [name](std::string_view word) { return EqualIgnoringCase(word, name); });
}

/// The content of the last pair of brackets that holds a unit.
UnitStatement UnitInBrackets(std::string_view cell) {
  UnitStatement none;
  for (std::size_t open = cell.find_last_of("([{<"); open != std::string_view::npos;
       open = open == 0 ? std::string_view::npos : cell.find_last_of("([{<", open - 1)) {
    none.hasBrackets = true;
    const std::size_t close = cell.find_first_of(")]}>", open);
    std::string_view inside =
        TrimBlanks(cell.substr(open + 1, close == std::string_view::npos ? close : close - open - 1));
    if (StartsWithIgnoringCase(inside, "in ") || StartsWithIgnoringCase(inside, "unit")) {
      inside = TrimBlanks(inside.substr(std::min(inside.find_first_of(" :="), inside.size() - 1) + 1));
    }
    UnitStatement found = StatementOf(inside);
    // "Raw Nanometer": words before the unit
    const std::string_view word = inside.substr(inside.find_last_of(" ,") + 1);
    if (found.kind == UnitStatement::Kind::kNone && !NeedsQuantity(word)) found = StatementOf(word);
    if (found.kind == UnitStatement::Kind::kNone) continue;
    found.hasBrackets = true;
    found.isAlone = TrimBlanks(cell.substr(0, open)).empty() &&
                    (close == std::string_view::npos || TrimBlanks(cell.substr(close + 1)).empty());
    return found;
  }
  return none;
}

}  // namespace

std::optional<double> MicrometresPerUnit(std::string_view unit) {
  if (unit.empty()) return std::nullopt;
  // Only a capital A is a unit, with or without a prefix: "ma" and "a" are words.
  if (unit.ends_with('A') && unit.size() <= 3) {
    if (unit.size() == 1) return 1e-4;
    if (unit == "kA") return 0.1;
  }
  if (const Base* const whole = Find(kWholeUnits, WithoutPlural(unit))) return whole->micrometres;
  if (const Base* const whole = Find(kWholeUnits, unit)) return whole->micrometres;
  auto micrometres = Composed(kSymbols, kBaseSymbols, unit);
  if (!micrometres) micrometres = Composed(kPrefixWords, kBaseWords, WithoutPlural(unit));
  if (!micrometres) micrometres = Composed(kPrefixWords, kBaseWords, unit);
  if (!micrometres) {
    // "micro inch", "nano-metre"
    const std::size_t gap = unit.find_first_of(" -");
    if (gap == std::string_view::npos || gap + 1 >= unit.size()) return std::nullopt;
    const std::string joined = std::string(unit.substr(0, gap)) + std::string(unit.substr(gap + 1));
    micrometres = Composed(kPrefixWords, kBaseWords, WithoutPlural(joined));
  }
  return micrometres ? std::optional(Tidied(*micrometres)) : std::nullopt;
}

std::optional<double> RadiansPerUnit(std::string_view unit) {
  constexpr double kPerDegree = 0.017453292519943295;
  const std::string whole = LowerAscii(WithoutPlural(unit));
  if (whole == "deg" || whole == "degree" || whole == "\xB0") return kPerDegree;
  if (whole == "arcmin") return kPerDegree / 60.0;
  if (whole == "arcsec") return kPerDegree / 3600.0;
  // The same prefixes as those of a metre.
  for (const std::string_view base : {"radian", "rad"}) {
    if (!whole.ends_with(base)) continue;
    const std::string_view prefix = unit.substr(0, whole.size() - base.size());
    if (prefix.empty()) return 1.0;
    const auto metres = MicrometresPerUnit(std::string(prefix) + (base == "rad" ? "m" : "metre"));
    return metres ? std::optional(*metres * 1e-6) : std::nullopt;
  }
  return std::nullopt;
}

UnitStatement UnitOfCell(std::string_view cell) {
  cell = TrimBlanks(cell);
  while (cell.size() > 1 && cell.front() == '"' && cell.back() == '"')
    cell = TrimBlanks(cell.substr(1, cell.size() - 2));
  if (cell.empty()) return {};
  UnitStatement whole = StatementOf(cell);
  const bool isName = whole.kind == UnitStatement::Kind::kOther && NeedsQuantity(cell) && !EqualIgnoringCase(cell, "v");
  if (whole.kind != UnitStatement::Kind::kNone && !isName) {
    whole.isAlone = true;
    return whole;
  }
  const UnitStatement inBrackets = UnitInBrackets(cell);
  if (inBrackets.kind != UnitStatement::Kind::kNone) return inBrackets;
  const std::string_view name = TrimBlanks(cell.substr(0, cell.find_first_of("([{<")));
  const std::size_t joint = name.find_last_of(" ,\t_/:.");
  if (joint == std::string_view::npos || joint == 0) return inBrackets;
  const std::string_view word = name.substr(joint + 1);
  const std::string_view before = TrimBlanks(name.substr(0, joint));
  const bool isJoined = name[joint] == '_' || name[joint] == '/';
  UnitStatement found = StatementOf(word);
  // A capital behind a stroke is rather the end of a part's number or a trace's letter than a unit.
  const bool isOfBareName = IsBareName(before);
  const bool isLetter = word == "M" || (word == "A" && !isOfBareName);
  const bool isUnit = word == "m" || word == "in" || word == "A";
  const bool isDoubtful = isJoined ? isLetter || (NeedsQuantity(word) && !isUnit)
                                   : NeedsQuantity(word) && !isOfBareName && !before.ends_with(" in");
  if (isDoubtful) found.kind = UnitStatement::Kind::kNone;
  if (found.kind == UnitStatement::Kind::kNone) return inBrackets;
  found.hasBrackets = inBrackets.hasBrackets;
  return found;
}

}  // namespace texturon
