// SPDX-License-Identifier: Apache-2.0

#include "presentation/instrument_comparison.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "base/number_text.h"
#include "base/text.h"
#include "formats/unit_words.h"
#include "parameters/catalogue.h"

namespace texturon {
namespace {

const ParameterDef* RowOf(const Document& document, std::string_view name) {
  const std::string catalogueName = ExternalToCatalogueName(name);
  const auto& rows = document.catalogue.rows;
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const ParameterDef& row) {
    return row.selected && row.valid && row.edition == Edition::k1997 && EqualIgnoringCase(row.name, catalogueName);
  });
  return found != rows.end() ? &*found : nullptr;
}

/// What a value in one unit is multiplied by in the other; nothing where they are no units of one quantity.
std::optional<double> Factor(std::string_view from, std::string_view to) {
  if (from == to) return 1.0;
  const auto fromUM = MicrometresPerUnit(from);
  const auto toUM = MicrometresPerUnit(to);
  if (!fromUM || !toUM) return std::nullopt;
  return *fromUM / *toUM;
}

}  // namespace

std::vector<InstrumentMatch> MatchInstrument(const Document& document) {
  std::vector<InstrumentMatch> matches;
  for (const InstrumentValue& value : document.profiles.instrumentValues) {
    const MasterRow* const known = FindOwnMasterRow(ExternalToCatalogueName(value.name));
    if (known == nullptr || !std::isfinite(value.value)) continue;
    if (!Factor(PrintedUnit(known->quantity.metricUnit), value.unit)) continue;
    InstrumentMatch match{.instrument = value, .here = {}};
    const ParameterDef* const ours = RowOf(document, value.name);
    const auto factor = ours != nullptr ? Factor(PrintedUnit(ours->quantity.metricUnit), value.unit) : std::nullopt;
    if (factor) match.here = ours->value * *factor;
    matches.push_back(std::move(match));
  }
  return matches;
}

std::vector<ComparedValue> CompareWithInstrument(const Document& document) {
  constexpr int kFigures = 6;
  constexpr int kFiguresOfDifference = 3;
  std::vector<ComparedValue> compared;
  for (const InstrumentValue& value : document.profiles.instrumentValues) {
    ComparedValue row{.name = value.name, .unit = value.unit, .instrument = ShortestText(value.value)};
    const ParameterDef* const ours = RowOf(document, value.name);
    const auto factor = ours != nullptr ? Factor(PrintedUnit(ours->quantity.metricUnit), value.unit) : std::nullopt;
    if (factor) {
      const double here = ours->value * *factor;
      row.here = SignificantText(here, kFigures);
      row.difference = SignificantText(here - value.value, kFiguresOfDifference);
    }
    compared.push_back(std::move(row));
  }
  return compared;
}

}  // namespace texturon
