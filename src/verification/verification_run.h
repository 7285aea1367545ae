// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "verification/software_standard.h"

namespace texturon {

/// A value as it was found, beside the known one.
struct VerifiedValue {
  std::string name;
  std::string unit;    ///< metric, Windows-1252
  std::string format;  ///< "memory", or the extension of the file that it went through
  std::string formula;
  double known = 0.0;
  double tolerance = 0.0;       ///< with what the format keeps of heights and spacing
  std::optional<double> found;  ///< none: not defined
  bool passes = false;

  double Difference() const { return found ? *found - known : 0.0; }
  /// Part of the tolerance that the difference takes; above 1: missed.
  double Share() const;
};

struct VerifiedStandard {
  std::string family;
  std::string title;
  std::size_t points = 0;
  std::vector<VerifiedValue> values;  ///< from memory first, then format by format
  std::vector<std::string> faults;    ///< a file that was not written or read, or keeps less than it must: sentences

  bool Passes() const;
  /// The value that comes nearest to its tolerance, or misses it most.
  const VerifiedValue* Worst() const;
};

/// Analyses every standard as it is, and as it comes back from every format that holds it, written into a folder that
/// is there. A value passes within its tolerance, which for a file grows by what the format keeps: heights to half its
/// step, which may move every height's row by two of them on either side, and the spacing as it was read. `advances` is
/// asked after each standard; false: give up.
std::vector<VerifiedStandard> VerifyStandards(std::span<const SoftwareStandard> standards,
                                              const std::filesystem::path& folder,
                                              const std::function<bool(std::size_t done)>& advances = {});

/// A folder for these files alone, and away with it.
class VerificationFolder {
public:
  explicit VerificationFolder(const std::filesystem::path& temporaryFolder);
  ~VerificationFolder();
  VerificationFolder(const VerificationFolder&) = delete;
  VerificationFolder& operator=(const VerificationFolder&) = delete;

  /// Empty where none could be made.
  const std::filesystem::path& Path() const { return path_; }

private:
  std::filesystem::path path_;
};

}  // namespace texturon
