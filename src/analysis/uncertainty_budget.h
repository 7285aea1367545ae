// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "parameters/catalogue_table.h"

namespace texturon {

/// What may be off in a measurement. Each stands in one line of a budget.
enum class BudgetItem : std::uint8_t {
  kHeightNoise,
  kNoiseSpectrum,
  kAmplification,
  kSpacing,
  kStraightness,
  kTipRadius,
  kLongCutoff,
  kShortCutoff,
  kStart,
  kOrientation,
  kRepeatability,
};
inline constexpr std::size_t kBudgetItems = 11;

struct BudgetItemRow {
  BudgetItem item;
  std::string_view key;  ///< in budget files
  std::string_view unit;
  std::string_view meaning;
  double most;  ///< that is taken: beyond it no measurement is left to be tried
};
/// In the order of the enumeration.
std::span<const BudgetItemRow> BudgetItems();

/// How the numbers of a line are spread; all have mean 0 and deviation 1.
enum class Distribution : std::uint8_t { kNormal, kUniform, kTriangular, kArcsine };

struct BudgetLine {
  double standard = 0.0;  ///< standard uncertainty in the unit of the item; 0: nothing
  Distribution distribution = Distribution::kNormal;
};

/// One wave of a spectrum of height noise.
struct NoiseWave {
  double wavelengthMM = 0.0;
  double rmsUM = 0.0;
};

/// What an instrument's measurements are uncertain by: standard uncertainties of type B, and what is known of how they
/// act.
struct UncertaintyBudget {
  std::array<BudgetLine, kBudgetItems> lines;
  std::vector<NoiseWave> noiseSpectrum;               ///< of kNoiseSpectrum
  std::optional<double> straightnessWavelengthMM;     ///< none: twice the record
  std::optional<double> tipRadiusUM;                  ///< none: as the file states it
  std::map<std::string, BudgetLine> repeatabilities;  ///< of single parameters, percent; others take the item's

  const BudgetLine& Of(BudgetItem item) const { return lines[static_cast<std::size_t>(item)]; }
  bool Has(BudgetItem item) const;
  /// Percent of the value of a row: the line of its name with the edition, else of its name, else that of all.
  const BudgetLine& RepeatabilityOf(const std::string& name, Edition edition) const;
};

/// Keys and values of a budget.
using BudgetEntries = std::vector<std::pair<std::string, std::string>>;

struct BudgetRead {
  std::optional<UncertaintyBudget> budget;
  std::string reason;  ///< why not, going on where the file's name stops; Windows-1252
};

/// Understands entries or nothing: an unknown key, one that is given twice, what is no number from 0 to the most of its
/// line, or a budget without any line that is above 0 refuses the whole.
BudgetRead MakeBudget(const BudgetEntries& entries);

/// Reads the section UNCERTAINTY_BUDGET of an INI file. A spectrum of noise lies in a file of its own, named from the
/// budget's folder: two numbers a line, wavelength in mm and rms in um; what begins with # or ; is a remark.
BudgetRead ReadBudget(const std::filesystem::path& path);

/// What ReadBudget of this path would read: the budget and the spectrum that it names. Nothing for an empty path.
std::vector<std::filesystem::path> FilesOfBudget(const std::filesystem::path& path);

/// The entries that make this budget again, without a file besides.
BudgetEntries EntriesOf(const UncertaintyBudget& budget);

}  // namespace texturon
