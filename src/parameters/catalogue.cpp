// SPDX-License-Identifier: Apache-2.0

#include "parameters/catalogue.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/number_text.h"
#include "base/text.h"

namespace texturon {
namespace {

// Understood in test plans besides the name that the row itself has there.
constexpr std::string_view kOlderPlanName = "A2";
constexpr std::string_view kRowOfOlderPlanName = "Rvo";

ParameterDef MakeRow(const ParameterSelection& selection) {
  ParameterDef row;
  row.name = selection.name;
  row.selected = selection.selected;
  row.tolerance = selection.tolerance;
  if (const MasterRow* master = FindMasterRow(selection.name)) {
    row.quantity = master->quantity;
    row.format = master->format;
  }
  return row;
}

/// The decimals of a row, or as many more as a small value needs for three significant digits. Whole numbers need none;
/// what is below kLeastShown is the rounding of a computation.
constexpr int kMostDecimals = 9;
constexpr double kLeastShown = 1e-9;
int DecimalsShown(double value, int decimals) {
  const double size = std::abs(value);
  if (!(size >= kLeastShown) || size == std::trunc(size)) return decimals;
  double scaled = size;  // in units of the last decimal
  for (int i = 0; i < decimals; ++i) scaled *= 10.0;
  while (scaled < 100.0 && decimals < kMostDecimals) {
    scaled *= 10.0;
    ++decimals;
  }
  return decimals;
}

}  // namespace

std::string ParameterDef::NameWithEdition() const {
  if (edition == Edition::k1997) return name;
  std::string whole = name;
  std::replace(whole.begin(), whole.end(), ',', ';');
  return whole + "/" + std::string(NameOf(edition));
}

const MasterRow* FindOwnMasterRow(std::string_view name) {
  const auto rows = MasterCatalogue();
  const auto own = std::find_if(rows.begin(), rows.end(),
                                [name](const MasterRow& row) { return EqualIgnoringCase(row.name, name); });
  return own != rows.end() ? &*own : nullptr;
}

const MasterRow* FindMasterRow(std::string_view name) {
  if (const MasterRow* const own = FindOwnMasterRow(name)) return own;
  if (name.size() < 2) return nullptr;
  const auto rows = MasterCatalogue();
  const auto sibling = std::find_if(rows.begin(), rows.end(), [name](const MasterRow& row) {
    return row.details.family != ParameterFamily::kMotif && EqualIgnoringCase(row.name.substr(1), name.substr(1));
  });
  return sibling != rows.end() ? &*sibling : nullptr;
}

std::vector<ParameterSelection> DefaultSelection() {
  std::vector<ParameterSelection> selection;
  for (const MasterRow& master : MasterCatalogue()) {
    ParameterSelection row;
    row.name = master.name;
    row.selectionRef = static_cast<std::int32_t>(selection.size());
    selection.push_back(row);
  }
  return selection;
}

ParameterCatalogue MakeWorkingList(std::span<const ParameterSelection> selection, const ParameterCatalogue& former) {
  ParameterCatalogue catalogue;
  for (const ParameterSelection& selected : selection.first(std::min(selection.size(), kMostParameters))) {
    ParameterDef row = MakeRow(selected);
    const auto before = std::find_if(former.rows.begin(), former.rows.end(),
                                     [&row](const ParameterDef& candidate) { return candidate.name == row.name; });
    if (before != former.rows.end()) {
      row.value = before->value;
      row.valid = before->valid;
      row.reason = before->reason;
    }
    catalogue.rows.push_back(std::move(row));
  }
  return catalogue;
}

std::string PrintedUnit(std::string_view unit) {
  return unit == "%%" ? "%" : std::string(unit);
}

std::string ShownValue(const ParameterDef& row, bool metric) {
  if (!row.valid) return {};
  const double value = row.quantity.Shown(row.value, metric);
  const int decimals = DecimalsShown(value, row.format.decimals.In(metric));
  if (row.format.scientific) return ScientificText(value, decimals);
  return FixedText(std::abs(value) < kLeastShown ? 0.0 : value, decimals);
}

std::string ReasonOf(const ParameterDef& row, bool metric) {
  if (!row.valid) return ReasonText(row.reason, metric);
  if (std::isfinite(row.value)) return {};
  return ReasonText({std::isnan(row.value) ? Why::kZeroByZero : Why::kInfinite}, metric);
}

LimitsInForce LimitsOf(const Tolerance& tolerance) {
  if (!tolerance.toleranced) return {};
  const bool hasUpper = tolerance.upperLimit != 0.0 || (tolerance.bilateral && tolerance.lowerLimit != 0.0);
  if (!hasUpper) return {};
  return {.lower = tolerance.bilateral ? std::optional(tolerance.lowerLimit) : std::nullopt,
          .upper = tolerance.upperLimit};
}

bool IsWithin(double value, const LimitsInForce& limits) {
  return (!limits.upper || value <= *limits.upper) && (!limits.lower || value >= *limits.lower);
}

std::string ExternalToCatalogueName(std::string_view external) {
  if (external == kOlderPlanName) return std::string(kRowOfOlderPlanName);
  for (const MasterRow& row : MasterCatalogue()) {
    if (!row.details.planName.empty() && row.details.planName == external) return std::string(row.name);
  }
  return std::string(external);
}

std::string CatalogueToExternalName(std::string_view name) {
  const MasterRow* const row = FindOwnMasterRow(name);
  const bool isMapped = row != nullptr && row->name == name && !row->details.planName.empty();
  return std::string(isMapped ? row->details.planName : name);
}

ParameterFamily FamilyOfRow(std::string_view name) {
  const MasterRow* const row = FindOwnMasterRow(name);
  if (row == nullptr) return ParameterFamily::kByLetter;
  const ParameterFamily family = row->details.family;
  return family == ParameterFamily::kMotif || row->name == name ? family : ParameterFamily::kByLetter;
}

bool IsRkFamily(std::string_view name) {
  return FamilyOfRow(name) == ParameterFamily::kDerivedCore;
}

}  // namespace texturon
