// SPDX-License-Identifier: Apache-2.0

#include "analysis/uncertainty_budget.h"

#include <algorithm>
#include <cmath>

#include "base/charset.h"
#include "base/ini_file.h"
#include "base/number_text.h"
#include "base/text.h"
#include "parameters/catalogue.h"
#include "parameters/edition2021/edition_table.h"
#include "platform/platform.h"

namespace texturon {
namespace {

using enum BudgetItem;

constexpr std::string_view kSection = "UNCERTAINTY_BUDGET";
constexpr std::string_view kOf2021 = "/2021";
constexpr std::string_view kDistributionPart = ".Distribution";
constexpr std::string_view kSpectrumFile = "HeightNoiseSpectrumFile";
constexpr std::string_view kStraightnessWave = "StraightnessWavelengthMM";
constexpr std::string_view kTipRadiusKey = "TipRadiusUM";
constexpr std::size_t kMostWaves = 1000;
constexpr double kMostPercent = 100.0;
constexpr double kMostUM = 1e6;
constexpr double kMostMM = 1e6;
constexpr double kMostDegrees = 90.0;

constexpr BudgetItemRow kItems[] = {
    {kHeightNoise, "HeightNoiseUM", "um", "rms of white height noise", kMostUM},
    {kNoiseSpectrum, "HeightNoiseSpectrum", "um", "waves of height noise, each with a phase of chance", kMostUM},
    {kAmplification, "AmplificationPercent", "%", "factor of all heights", kMostPercent},
    {kSpacing, "SpacingPercent", "%", "factor of all lengths along the trace", kMostPercent},
    {kStraightness, "StraightnessUM", "um", "rms of one wave of the guide, with a phase of chance", kMostUM},
    {kTipRadius, "TipRadiusUncertaintyUM", "um", "radius of the tip, whose trace is the surface widened by it",
     kMostUM},
    {kLongCutoff, "LcTolerancePercent", "%", "cut-off at which the long-wave filter passes half", kMostPercent},
    {kShortCutoff, "LsTolerancePercent", "%", "cut-off at which the short-wave filter passes half", kMostPercent},
    {kStart, "StartPositionMM", "mm", "place of the trace along itself", kMostMM},
    {kOrientation, "OrientationDegrees", "deg", "angle between the trace and the normal of the lay", kMostDegrees},
    {kRepeatability, "RepeatabilityPercent", "%", "what repeated measurements of a parameter scatter by, besides",
     kMostPercent},
};

struct DistributionName {
  Distribution distribution;
  std::string_view name;
};
constexpr DistributionName kDistributions[] = {{Distribution::kNormal, "normal"},
                                               {Distribution::kUniform, "uniform"},
                                               {Distribution::kTriangular, "triangular"},
                                               {Distribution::kArcsine, "arcsine"}};

std::optional<double> FromZeroOn(std::string_view text) {
  const ParsedDouble number = ParseDouble(text);
  const bool isWhole = number.usable() && number.length == text.size();
  return isWhole && number.value >= 0.0 ? std::optional(number.value) : std::nullopt;
}

/// "0.25 0.003, 0.1 0.001", or a pair a line.
std::optional<std::vector<NoiseWave>> ReadWaves(std::string_view text, std::string_view ends) {
  std::vector<NoiseWave> waves;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of(ends), text.size());
    std::string_view pair = TrimBlanks(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (pair.empty() || pair.front() == '#' || pair.front() == ';') continue;
    const std::size_t blank = pair.find_first_of(" \t,");
    if (blank == std::string_view::npos || waves.size() == kMostWaves) return std::nullopt;
    const auto length = FromZeroOn(pair.substr(0, blank));
    const auto rms = FromZeroOn(TrimBlanks(pair.substr(blank + 1)));
    if (!length || !rms || *length == 0.0 || *rms > kMostUM) return std::nullopt;
    waves.push_back({*length, *rms});
  }
  return waves;
}

double RmsOf(const std::vector<NoiseWave>& waves) {
  double squares = 0.0;
  for (const NoiseWave& wave : waves) squares += wave.rmsUM * wave.rmsUM;
  return std::sqrt(squares);
}

/// Takes the entries in; the first that is not understood ends it.
class BudgetMaker {
public:
  BudgetRead Make(const BudgetEntries& entries) {
    for (std::size_t i = 0; i < entries.size(); ++i) {
      const auto& [key, value] = entries[i];
      const auto isSame = [&name = key](const auto& entry) { return EqualIgnoringCase(entry.first, name); };
      const auto former = entries.begin() + static_cast<std::ptrdiff_t>(i);
      if (std::any_of(entries.begin(), former, isSame)) return {.budget = {}, .reason = key + ": is given twice"};
      const std::string fault = Take(key, value);
      if (!fault.empty()) return {.budget = {}, .reason = key + ": " + fault};
    }
    if (budget_.Has(kHeightNoise) && budget_.Has(kNoiseSpectrum)) {
      return {.budget = {}, .reason = "has both HeightNoiseUM and a spectrum of the noise"};
    }
    const bool hasOwn = std::any_of(budget_.repeatabilities.begin(), budget_.repeatabilities.end(),
                                    [](const auto& entry) { return entry.second.standard > 0.0; });
    const bool hasLine = std::any_of(budget_.lines.begin(), budget_.lines.end(),
                                     [](const BudgetLine& line) { return line.standard > 0.0; });
    if (!hasLine && !hasOwn) return {.budget = {}, .reason = "holds no uncertainty above 0"};
    return {.budget = std::move(budget_), .reason = {}};
  }

private:
  std::string Take(const std::string& key, const std::string& value) {
    if (EqualIgnoringCase(key, kItems[static_cast<std::size_t>(kNoiseSpectrum)].key)) {
      const auto waves = ReadWaves(value, ",");
      if (!waves) return Quoted(value) + " is no list of wavelengths and rms values, 1000 at most";
      budget_.noiseSpectrum = *waves;
      budget_.lines[static_cast<std::size_t>(kNoiseSpectrum)].standard = RmsOf(*waves);
      return {};
    }
    if (EqualIgnoringCase(key.substr(key.size() - std::min(key.size(), kDistributionPart.size())), kDistributionPart)) {
      return TakeDistribution(key.substr(0, key.size() - kDistributionPart.size()), value);
    }
    const auto number = FromZeroOn(value);
    if (!number) return Quoted(value) + " is no number from 0 on";
    if (EqualIgnoringCase(key, kStraightnessWave) || EqualIgnoringCase(key, kTipRadiusKey)) {
      if (*number == 0.0) return "must be above 0";
      (EqualIgnoringCase(key, kTipRadiusKey) ? budget_.tipRadiusUM : budget_.straightnessWavelengthMM) = *number;
      return {};
    }
    BudgetLine* const line = LineOf(key);
    if (line == nullptr) return "is no key of a budget";
    if (*number > MostOf(key))
      return Quoted(value) + " is above " + ShortestText(MostOf(key)) + ", the most that is taken";
    line->standard = *number;
    return {};
  }

  static double MostOf(std::string_view key) {
    const auto* const row = std::find_if(std::begin(kItems), std::end(kItems),
                                         [key](const BudgetItemRow& item) { return EqualIgnoringCase(key, item.key); });
    return row != std::end(kItems) ? row->most : kMostPercent;  // of the repeatability of one parameter
  }

  std::string TakeDistribution(const std::string& key, const std::string& value) {
    BudgetLine* const line = LineOf(key);
    if (line == nullptr) return "is no key of a budget";
    if (line == &budget_.lines[static_cast<std::size_t>(kNoiseSpectrum)]) {
      return "the waves of a spectrum have a phase of chance and no distribution";
    }
    for (const DistributionName& row : kDistributions) {
      if (!EqualIgnoringCase(row.name, value)) continue;
      line->distribution = row.distribution;
      return {};
    }
    return Quoted(value) + " is none of normal, uniform, triangular, arcsine";
  }

  BudgetLine* LineOf(std::string_view key) {
    for (const BudgetItemRow& row : kItems) {
      if (EqualIgnoringCase(key, row.key)) return &budget_.lines[static_cast<std::size_t>(row.item)];
    }
    const std::string_view repeatability = kItems[static_cast<std::size_t>(kRepeatability)].key;
    if (!StartsWithIgnoringCase(key, std::string(repeatability) + ".")) return nullptr;
    const std::string name(key.substr(repeatability.size() + 1));
    const std::string plain = name.substr(0, name.size() - (name.ends_with(kOf2021) ? kOf2021.size() : 0));
    const bool isOf2021 = ParseEditionName(plain).fault.empty();
    const bool isKnown = isOf2021 || FindOwnMasterRow(ExternalToCatalogueName(plain)) != nullptr;
    if (!isKnown || (plain.size() < name.size() && !isOf2021)) return nullptr;
    for (auto& [former, line] : budget_.repeatabilities) {
      if (EqualIgnoringCase(former, name)) return &line;
    }
    return &budget_.repeatabilities[name];
  }

  UncertaintyBudget budget_;
};

void AppendLine(BudgetEntries& entries, const std::string& key, const BudgetLine& line) {
  entries.emplace_back(key, ShortestText(line.standard));
  if (line.distribution == Distribution::kNormal) return;
  const auto index = static_cast<std::size_t>(line.distribution);
  entries.emplace_back(key + std::string(kDistributionPart), kDistributions[index].name);
}

}  // namespace

std::span<const BudgetItemRow> BudgetItems() {
  return kItems;
}

bool UncertaintyBudget::Has(BudgetItem item) const {
  if (item == kRepeatability && !repeatabilities.empty()) return true;
  return Of(item).standard > 0.0;
}

const BudgetLine& UncertaintyBudget::RepeatabilityOf(const std::string& name, Edition edition) const {
  const bool isOf2021 = edition == Edition::k2021;
  const auto find = [this](const auto& holds) {
    return std::find_if(repeatabilities.begin(), repeatabilities.end(),
                        [&holds](const auto& entry) { return holds(entry.first); });
  };
  const std::string whole = name + std::string(isOf2021 ? kOf2021 : "");
  auto own = find([&](const std::string& key) { return EqualIgnoringCase(key, whole); });
  if (own == repeatabilities.end()) {
    own = find(
        [&](const std::string& key) { return EqualIgnoringCase(isOf2021 ? key : ExternalToCatalogueName(key), name); });
  }
  return own != repeatabilities.end() ? own->second : Of(kRepeatability);
}

BudgetRead MakeBudget(const BudgetEntries& entries) {
  return BudgetMaker().Make(entries);
}

BudgetRead ReadBudget(const std::filesystem::path& path) {
  const FileBytes file = ReadRegularFile(path);
  if (!file.ok()) return {.budget = {}, .reason = file.reason};
  const IniFile ini(TextOfFile(file.bytes, IsUtf8(file.bytes)));
  BudgetEntries entries;
  for (const IniEntry& entry : ini.Entries()) {
    if (!EqualIgnoringCase(entry.section, kSection)) continue;
    if (!EqualIgnoringCase(entry.key, kSpectrumFile)) {
      entries.emplace_back(entry.key, entry.value);
      continue;
    }
    const FileBytes spectrum = ReadRegularFile(path.parent_path() / PathFromText(entry.value));
    if (!spectrum.ok()) return {.budget = {}, .reason = "names " + Quoted(entry.value) + ", which " + spectrum.reason};
    const auto waves = ReadWaves(spectrum.bytes, "\r\n");
    if (!waves || waves->empty()) {
      return {.budget = {},
              .reason = "names " + Quoted(entry.value) +
                        ", which is no list of wavelengths (mm) and rms values (um), a pair a line, 1000 at most"};
    }
    std::string list;
    for (const NoiseWave& wave : *waves) {
      list += (list.empty() ? "" : ", ") + ShortestText(wave.wavelengthMM) + " " + ShortestText(wave.rmsUM);
    }
    entries.emplace_back(kItems[static_cast<std::size_t>(kNoiseSpectrum)].key, list);
  }
  if (entries.empty()) return {.budget = {}, .reason = "has no section [" + std::string(kSection) + "] with keys"};
  return MakeBudget(entries);
}

std::vector<std::filesystem::path> FilesOfBudget(const std::filesystem::path& path) {
  if (path.empty()) return {};
  std::vector<std::filesystem::path> files = {path};
  const FileBytes file = ReadRegularFile(path);
  const IniFile ini(TextOfFile(file.bytes, IsUtf8(file.bytes)));
  for (const IniEntry& entry : ini.Entries()) {
    if (EqualIgnoringCase(entry.section, kSection) && EqualIgnoringCase(entry.key, kSpectrumFile)) {
      files.push_back(path.parent_path() / PathFromText(entry.value));
    }
  }
  return files;
}

BudgetEntries EntriesOf(const UncertaintyBudget& budget) {
  BudgetEntries entries;
  for (const BudgetItemRow& row : kItems) {
    const std::string key(row.key);
    const BudgetLine& line = budget.Of(row.item);
    if (row.item == kNoiseSpectrum) {
      std::string list;
      for (const NoiseWave& wave : budget.noiseSpectrum) {
        list += (list.empty() ? "" : ", ") + ShortestText(wave.wavelengthMM) + " " + ShortestText(wave.rmsUM);
      }
      if (!list.empty()) entries.emplace_back(key, list);
    } else if (line.standard > 0.0) {
      AppendLine(entries, key, line);
    }
  }
  for (const auto& [name, line] : budget.repeatabilities) AppendLine(entries, "RepeatabilityPercent." + name, line);
  if (budget.straightnessWavelengthMM) {
    entries.emplace_back(kStraightnessWave, ShortestText(*budget.straightnessWavelengthMM));
  }
  if (budget.tipRadiusUM) entries.emplace_back(kTipRadiusKey, ShortestText(*budget.tipRadiusUM));
  return entries;
}

}  // namespace texturon
