// SPDX-License-Identifier: Apache-2.0

#include "parameters/catalogue.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/number_text.h"
#include "base/text.h"

namespace texturon {
namespace {

constexpr std::string_view kMotifNames[] = {"R", "Rx", "AR", "W", "Wx", "Wte", "AW"};

constexpr std::pair<std::string_view, std::string_view> kExternalNames[] = {
    {"Rz", "RzDIN"}, {"RSm", "Rsm"},  {"CV", "Rvo"},        {"A2", "Rvo"},  // A2 is understood but never written
    {"Mr1", "Rmr1"}, {"Mr2", "Rmr2"}, {"Rpk_Star", "Rpk*"}, {"Rvk_Star", "Rvk*"},
};

constexpr std::string_view kRkFamily[] = {"Rpk+k", "Rpk/k", "Rk+vk", "Rvk/k", "Rmr1", "Rmr2", "Rpk*", "Rvk*"};

ParameterDef MakeRow(const ParameterSelection& selection) {
  ParameterDef row;
  row.name = selection.name;
  row.selected = selection.selected;
  row.tolerance = selection.tolerance;
  if (const MasterRow* master = FindMasterRow(selection.name)) {
    row.metricUnit = master->metricUnit;
    row.imperialUnit = master->imperialUnit;
    row.imperialFactor = master->imperialFactor;
    row.format = master->format;
  }
  return row;
}

}  // namespace

const MasterRow* FindMasterRow(std::string_view name) {
  const auto rows = MasterCatalogue();
  const auto own = std::find_if(rows.begin(), rows.end(),
                                [name](const MasterRow& row) { return EqualIgnoringCase(row.name, name); });
  if (own != rows.end()) return &*own;
  if (name.size() < 2) return nullptr;
  const auto sibling = std::find_if(rows.begin(), rows.end(), [name](const MasterRow& row) {
    return !IsMotifName(row.name) && EqualIgnoringCase(row.name.substr(1), name.substr(1));
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
  const double value = metric ? row.value : row.value * row.imperialFactor;
  if (!std::isfinite(value)) return {};
  const int decimals = metric ? row.format.metricDecimals : row.format.imperialDecimals;
  return row.format.scientific ? ScientificText(value, decimals) : FixedText(value, decimals);
}

std::optional<Verdict> JudgeValue(double value, const Tolerance& tolerance) {
  if (!tolerance.toleranced) return std::nullopt;
  const auto passIf = [](bool passes) { return passes ? Verdict::kPass : Verdict::kFail; };
  if (!tolerance.bilateral) return passIf(tolerance.upperLimit == 0.0 || value <= tolerance.upperLimit);
  if (tolerance.upperLimit == 0.0 && tolerance.lowerLimit == 0.0) return Verdict::kPass;
  return passIf(value <= tolerance.upperLimit && value >= tolerance.lowerLimit);
}

std::optional<Verdict> JudgeRow(const ParameterDef& row) {
  if (!row.valid) return std::nullopt;
  return JudgeValue(row.value, row.tolerance);
}

std::string ExternalToCatalogueName(std::string_view external) {
  for (const auto& [outside, inside] : kExternalNames) {
    if (outside == external) return std::string(inside);
  }
  return std::string(external);
}

std::string CatalogueToExternalName(std::string_view name) {
  for (const auto& [outside, inside] : kExternalNames) {
    if (inside == name) return std::string(outside);
  }
  return std::string(name);
}

bool IsRkFamily(std::string_view name) {
  return std::find(std::begin(kRkFamily), std::end(kRkFamily), name) != std::end(kRkFamily);
}

bool IsMotifName(std::string_view name) {
  return std::any_of(std::begin(kMotifNames), std::end(kMotifNames),
                     [name](std::string_view motif) { return EqualIgnoringCase(motif, name); });
}

}  // namespace texturon
