// SPDX-License-Identifier: Apache-2.0

#include "verification/verification_run.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <system_error>
#include <utility>

#include "analysis/pipeline.h"
#include "base/number_text.h"
#include "formats/extension_table.h"
#include "formats/import.h"
#include "platform/platform.h"

namespace texturon {
namespace {

/// What a format keeps of a record, as docs/formats.md tells.
struct Keeping {
  std::string_view extension;
  double stepUM;        ///< of heights; 0: all digits
  double spacingStep;   ///< absolute, um
  double spacingShare;  ///< relative
  double perSpacing;    ///< relative, times the spacing: PR keeps points a millimetre to two decimals
};

constexpr Keeping kKeeping[] = {
    {".lmt", 1e-6, 5e-7, 0.0, 0.0}, {".sdf", 1e-6, 0.0, 5e-7, 0.0}, {".prf", 1e-5, 0.0, 5e-7, 0.0},
    {".pr", 1e-6, 0.0, 0.0, 5e-6},  {".x3p", 0.0, 0.0, 0.0, 0.0},   {".smd", 0.0, 0.0, 0.0, 0.0},
};

constexpr double kRounding = 1e-9;  // of a record's own figures in double

/// How far a record that came back is from the one that was written.
struct Distance {
  double heightUM = 0.0;      ///< most that a height may have moved
  double spacingShare = 0.0;  ///< relative, as it did
  double rangeUM = 0.0;       ///< from the lowest to the highest height
};

double RangeOf(std::span<const double> heights) {
  const auto [lowest, highest] = std::minmax_element(heights.begin(), heights.end());
  return *highest - *lowest;
}

/// By how much a value may follow. Heights move by half a step; one that a value is counted from moves it as well, so
/// that twice the step covers extremes and means. What has another unit follows by its share of the range.
double ToleranceOf(const KnownValue& known, std::string_view unit, const Distance& distance) {
  const double heights = distance.rangeUM > 0.0 ? 4.0 * distance.heightUM / distance.rangeUM : 0.0;
  const double size = std::max(std::abs(known.value), 1.0);
  if (unit == "\xB5m") {
    return known.tolerance + 4.0 * distance.heightUM + 4.0 * distance.spacingShare * distance.rangeUM;
  }
  if (unit == "mm") return known.tolerance + std::abs(known.value) * (heights + 2.0 * distance.spacingShare);
  return known.tolerance + size * (16.0 * heights + 4.0 * distance.spacingShare);
}

std::optional<double> FormFigure(const Document& document, std::string_view name) {
  const FormGeometry& geometry = document.results.formGeometry;
  if (document.results.formApplied == kNoFormApplied) return std::nullopt;
  for (const FormField& field : FormOf(geometry).fields(geometry)) {
    if (field.name != name) continue;
    if (const double* const number = std::get_if<double>(&field.value)) return *number;
  }
  return std::nullopt;
}

class StandardRun {
public:
  StandardRun(const SoftwareStandard& standard, const std::filesystem::path& folder)
      : standard_(standard), folder_(folder), heights_(HeightsOf(standard).value_or(std::vector<double>{})) {
    result_.family = standard.family;
    result_.title = standard.title;
    result_.points = heights_.size();
  }

  VerifiedStandard Run() {
    Analyse("memory", MakeProfileSet(heights_, standard_.SpacingUM()), {});
    for (const WriterEntry& writer : WriterTable()) GoThrough(writer);
    return std::move(result_);
  }

private:
  void Fault(std::string_view format, const std::string& what) {
    result_.faults.push_back(std::string(format) + " " + what);
  }

  void GoThrough(const WriterEntry& writer) {
    const auto* const keeping = std::find_if(std::begin(kKeeping), std::end(kKeeping),
                                             [&](const Keeping& row) { return row.extension == writer.extension; });
    if (keeping == std::end(kKeeping)) return Fault(writer.extension, "is written, and nobody knows what it keeps.");
    std::filesystem::path path = folder_ / ("standard" + std::string(writer.extension));
    SilentPrompts nobody;
    const ProfileToWrite profile{heights_, standard_.SpacingUM(), "standard", std::tm{.tm_mday = 1, .tm_year = 126},
                                 FlushFile::kNo};
    const FileOutcome written = writer.write(path, profile, nobody);
    if (!written.ok()) return Fault(writer.extension, "is not written: " + written.reason + ".");
    ImportOutcome read = LoadProfileFile(path, {}, nobody);
    if (!read.loaded) return Fault(writer.extension, "is not read again: it " + read.reason + ".");
    const std::vector<double>& back = read.profile.heightsUM;
    if (back.size() != heights_.size()) {
      return Fault(writer.extension,
                   "comes back with " + IntegerText(static_cast<std::int64_t>(back.size())) + " points.");
    }
    const double spacingUM = standard_.SpacingUM();
    Distance distance{.heightUM = 0.5 * keeping->stepUM,
                      .spacingShare = std::abs(read.profile.spacingUM / spacingUM - 1.0),
                      .rangeUM = RangeOf(heights_)};
    double moved = 0.0;
    for (std::size_t i = 0; i < back.size(); ++i) moved = std::max(moved, std::abs(back[i] - heights_[i]));
    if (moved > distance.heightUM * (1.0 + kRounding) + 1e-12 * (1.0 + distance.rangeUM)) {
      Fault(writer.extension, "moves heights by up to " + SignificantText(moved, 3) + " um.");
    }
    const double mostShare = keeping->spacingStep / spacingUM + keeping->spacingShare + keeping->perSpacing * spacingUM;
    if (distance.spacingShare > mostShare + 1e-12) {
      Fault(writer.extension, "has the spacing " + ShortestText(read.profile.spacingUM) + " um.");
    }
    Analyse(writer.extension, MakeProfileSet(std::move(read.profile), "standard"), distance);
  }

  void Analyse(std::string_view format, ProfileSet profiles, const Distance& distance) {
    Document document = DocumentFor(standard_).value_or(MakeDocument());
    SetProfile(document, std::move(profiles));
    SilentPrompts nobody;
    const bool isDone = Compute(document, nobody, {}) == ComputeOutcome::kDone;
    if (!isDone) Fault(format, "is not analysed.");
    auto row = document.catalogue.rows.begin();
    for (const KnownValue& known : standard_.values) {
      VerifiedValue value{
          .name = known.name, .format = std::string(format), .formula = known.formula, .known = known.value};
      if (known.name.starts_with("form.")) {
        value.unit = known.name.ends_with("_um") ? "\xB5m" : "";
        if (isDone) value.found = FormFigure(document, std::string_view(known.name).substr(5));
        value.tolerance = ToleranceOf(known, "", distance);
        if (known.name.ends_with("_um"))
          value.tolerance = std::max(value.tolerance, ToleranceOf(known, "\xB5m", distance));
      } else {
        value.unit = PrintedUnit(row->quantity.metricUnit);
        if (isDone && row->valid && std::isfinite(row->value)) value.found = row->value;
        value.tolerance = ToleranceOf(known, value.unit, distance);
        ++row;
      }
      value.passes = value.found && std::abs(*value.found - known.value) <= value.tolerance;
      result_.values.push_back(std::move(value));
    }
  }

  const SoftwareStandard& standard_;
  const std::filesystem::path& folder_;
  const std::vector<double> heights_;
  VerifiedStandard result_;
};

}  // namespace

double VerifiedValue::Share() const {
  return found ? std::abs(Difference()) / tolerance : std::numeric_limits<double>::infinity();
}

bool VerifiedStandard::Passes() const {
  return faults.empty() && !values.empty() &&
         std::all_of(values.begin(), values.end(), [](const VerifiedValue& value) { return value.passes; });
}

const VerifiedValue* VerifiedStandard::Worst() const {
  const auto worst = std::max_element(values.begin(), values.end(), [](const VerifiedValue& x, const VerifiedValue& y) {
    return x.Share() < y.Share();
  });
  return worst != values.end() ? &*worst : nullptr;
}

std::vector<VerifiedStandard> VerifyStandards(std::span<const SoftwareStandard> standards,
                                              const std::filesystem::path& folder,
                                              const std::function<bool(std::size_t done)>& advances) {
  std::vector<VerifiedStandard> verified;
  for (const SoftwareStandard& standard : standards) {
    verified.push_back(StandardRun(standard, folder).Run());
    if (advances && !advances(verified.size())) break;
  }
  return verified;
}

VerificationFolder::VerificationFolder(const std::filesystem::path& temporaryFolder) {
  constexpr int kMostNames = 100;
  const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
  for (int i = 0; i < kMostNames; ++i) {
    const std::filesystem::path path = temporaryFolder / ("texturon-verify-" + IntegerText(now + i));
    std::error_code error;
    // One that is there may be somebody else's.
    if (!std::filesystem::create_directory(path, error)) continue;
    std::filesystem::permissions(path, std::filesystem::perms::owner_all, error);
    if (IsPrivateFolder(path)) {
      path_ = path;
      return;
    }
  }
}

VerificationFolder::~VerificationFolder() {
  std::error_code ignored;
  if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
}

}  // namespace texturon
