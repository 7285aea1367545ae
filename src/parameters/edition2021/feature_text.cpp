// SPDX-License-Identifier: Apache-2.0

#include "parameters/edition2021/feature_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <vector>

#include "base/number_text.h"
#include "base/text.h"
#include "base/units.h"

namespace texturon {
namespace {

constexpr std::array kPieces = {"FC", "type", "pruning", "significance", "attribute", "statistic"};

template <typename Value>
struct Word {
  std::string_view word;
  Value value;
};

constexpr Word<FeatureAttribute> kPrunings[] = {{"Wolfprune", FeatureAttribute::kLocalDepth},
                                                {"Width", FeatureAttribute::kWidth},
                                                {"VolS", FeatureAttribute::kVolume},
                                                {"DevLength", FeatureAttribute::kLineLength}};
constexpr Word<FeatureAttribute> kAttributes[] = {
    {"HDh", FeatureAttribute::kLocalDepth}, {"PVh", FeatureAttribute::kHeight},
    {"HDw", FeatureAttribute::kWidth},      {"HDv", FeatureAttribute::kVolume},
    {"HDl", FeatureAttribute::kLineLength}, {"Curvature", FeatureAttribute::kCurvature},
    {"Count", FeatureAttribute::kCount},
};
constexpr Word<FeatureStatistic> kStatistics[] = {
    {"Mean", FeatureStatistic::kMean},      {"Max", FeatureStatistic::kMax},
    {"Min", FeatureStatistic::kMin},        {"StdDev", FeatureStatistic::kDeviation},
    {"Sum", FeatureStatistic::kSum},        {"Perc", FeatureStatistic::kShareAbove},
    {"Hist", FeatureStatistic::kHistogram}, {"Density", FeatureStatistic::kDensity},
};
constexpr Word<FeatureSignificance> kSignificances[] = {
    {"All", FeatureSignificance::kAll},         {"Top", FeatureSignificance::kMostExtreme},
    {"Bot", FeatureSignificance::kMostExtreme}, {"Open", FeatureSignificance::kOpen},
    {"Closed", FeatureSignificance::kClosed},
};

template <typename Value, std::size_t Size>
std::optional<Value> Find(const Word<Value> (&words)[Size], std::string_view word) {
  const auto* const found = std::find_if(std::begin(words), std::end(words),
                                         [&](const auto& row) { return EqualIgnoringCase(row.word, word); });
  return found != std::end(words) ? std::optional(found->value) : std::nullopt;
}

/// A piece as its word and what follows it.
struct Piece {
  std::string_view word;
  std::string_view rest;
};
Piece Split(std::string_view text) {
  const std::size_t blank = std::min(text.find(' '), text.size());
  return {text.substr(0, blank), TrimBlanks(text.substr(blank))};
}

/// "5 %", "0.5", "0.5 um", "0.1 mm".
std::optional<FeatureLevel> ParseLevel(std::string_view text, std::string_view unit) {
  const ParsedDouble number = ParseDouble(text);
  if (!number.usable() || number.length == 0) return std::nullopt;
  const std::string_view rest = TrimBlanks(text.substr(number.length));
  if (rest == "%") return FeatureLevel{number.value, true};
  if (!rest.empty() && !EqualIgnoringCase(rest, unit) && !(unit == "um" && rest == "\xB5m")) return std::nullopt;
  return FeatureLevel{number.value, false};
}

bool ReadType(std::string_view text, FeatureParameter& feature) {
  if (text.size() != 1) return false;
  const char type = UpperAscii(text.front());
  feature.ofHills = type == 'H' || type == 'P';
  return feature.ofHills || type == 'D' || type == 'V';
}

bool ReadPruning(std::string_view text, FeatureParameter& feature) {
  const Piece piece = Split(text);
  if (EqualIgnoringCase(piece.word, "None")) return piece.rest.empty();
  feature.pruning = Find(kPrunings, piece.word);
  if (!feature.pruning) return false;
  if (EqualIgnoringCase(piece.rest, "opt")) return true;
  const bool isLength = feature.pruning == FeatureAttribute::kWidth || feature.pruning == FeatureAttribute::kLineLength;
  feature.threshold = ParseLevel(piece.rest, isLength ? "mm" : "um");
  const bool mayBePercent =
      feature.pruning == FeatureAttribute::kWidth || feature.pruning == FeatureAttribute::kLocalDepth;
  return feature.threshold && feature.threshold->value >= 0.0 && (mayBePercent || !feature.threshold->isPercent);
}

bool ReadSignificance(std::string_view text, FeatureParameter& feature) {
  const Piece piece = Split(text);
  const auto significance = Find(kSignificances, piece.word);
  if (!significance) return false;
  feature.significance = *significance;
  if (feature.significance == FeatureSignificance::kAll) return piece.rest.empty();
  const auto level = ParseLevel(piece.rest, "um");
  if (!level) return false;
  if (feature.significance != FeatureSignificance::kMostExtreme) {
    feature.level = *level;
    return !level->isPercent || (level->value >= 0.0 && level->value <= 100.0);
  }
  constexpr double kMost = 1e9;
  if (level->isPercent || !(level->value >= 1.0 && level->value <= kMost)) return false;
  feature.count = static_cast<std::size_t>(level->value);
  return static_cast<double>(feature.count) == level->value;
}

bool ReadAttribute(std::string_view text, FeatureParameter& feature) {
  const auto attribute = Find(kAttributes, text);
  if (attribute) feature.attribute = *attribute;
  return attribute.has_value();
}

bool ReadStatistic(std::string_view text, FeatureParameter& feature) {
  const Piece piece = Split(text);
  const auto statistic = Find(kStatistics, piece.word);
  if (!statistic) return false;
  feature.statistic = *statistic;
  if (feature.statistic != FeatureStatistic::kShareAbove) return piece.rest.empty();
  const ParsedDouble number = ParseDouble(piece.rest);
  feature.above = number.value;
  return number.usable() && number.length == piece.rest.size() && number.length > 0;
}

}  // namespace

Quantity FeatureParameter::Unit() const {
  constexpr double kPerInchPerCentimetre = 2.54;
  constexpr Quantity kNumber = {"", ""};
  if (statistic == FeatureStatistic::kShareAbove) return kNumber;
  const bool isDensity = statistic == FeatureStatistic::kDensity;
  switch (attribute) {
    case FeatureAttribute::kLocalDepth:
    case FeatureAttribute::kHeight:
    case FeatureAttribute::kVolume:
      if (!isDensity) return kHeightUM;
      return {"\xB5m/cm", "\xB5in/in", kMicroinchesPerMicrometre * kPerInchPerCentimetre};
    case FeatureAttribute::kWidth:
    case FeatureAttribute::kLineLength:
      if (!isDensity) return kLengthMM;
      return {"mm/cm", "in/in", kInchesPerMillimetre * kPerInchPerCentimetre};
    case FeatureAttribute::kCurvature:
      if (!isDensity) return {"1/\xB5m", "1/\xB5in", kMicrometresPerMicroinch};
      return {"1/\xB5m/cm", "1/\xB5in/in", kMicrometresPerMicroinch * kPerInchPerCentimetre};
    case FeatureAttribute::kCount:
      break;
  }
  if (!isDensity) return kNumber;
  return {"1/cm", "1/in", kPerInchPerCentimetre};
}

bool IsFeatureText(std::string_view text) {
  const std::size_t end = text.find(';');
  return end != std::string_view::npos && EqualIgnoringCase(TrimBlanks(text.substr(0, end)), "FC");
}

FeatureTextResult ParseFeature(std::string_view text) {
  std::vector<std::string_view> pieces;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(';', begin), text.size());
    pieces.push_back(TrimBlanks(text.substr(begin, end - begin)));
    begin = end + 1;
  }
  FeatureTextResult result;
  if (pieces.size() != kPieces.size()) {
    result.fault = "has " + IntegerText(static_cast<std::int64_t>(pieces.size())) +
                   " pieces where six belong: FC; type; pruning; significance; attribute; statistic";
    return result;
  }
  FeatureParameter feature;
  const auto refuse = [&](std::size_t piece) {
    result.fault = "has " + Quoted(pieces[piece]) + " where the " + kPieces[piece] + " belongs";
    return result;
  };
  if (!EqualIgnoringCase(pieces[0], "FC")) return refuse(0);
  using Reader = bool (*)(std::string_view, FeatureParameter&);
  constexpr Reader kReaders[] = {ReadType, ReadPruning, ReadSignificance, ReadAttribute, ReadStatistic};
  for (std::size_t i = 0; i < std::size(kReaders); ++i) {
    if (!kReaders[i](pieces[i + 1], feature)) return refuse(i + 1);
  }
  result.feature = feature;
  return result;
}

}  // namespace texturon
