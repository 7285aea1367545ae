// SPDX-License-Identifier: Apache-2.0

#include "analysis/edition_json.h"

#include "analysis/feature_histogram.h"
#include "base/charset.h"
#include "parameters/edition2021/edition_list.h"

namespace texturon {

std::string_view EditionTitle(const Document& document) {
  switch (ChosenEdition(document.settings.analysis)) {
    case EditionChoice::k2021:
      return kEdition2021Title;
    case EditionChoice::kBoth:
      return "both";
    case EditionChoice::k1997:
      break;
  }
  return {};
}

void WriteEditionOfRow(JsonWriter& json, const Document& document, const ParameterDef& row) {
  const EditionChoice chosen = ChosenEdition(document.settings.analysis);
  const bool isUsual = chosen == EditionChoice::k2021 ? row.edition == Edition::k2021 : row.edition == Edition::k1997;
  if (chosen == EditionChoice::kBoth || !isUsual) {
    json.Key("edition");
    json.Text(NameOf(row.edition));
  }
  if (!row.difference.empty()) {
    json.Key("difference");
    json.Text(Utf8FromWindows1252(row.difference));
  }
  if (const auto histogram = HistogramOf(document, row)) {
    json.Key("histogram");
    json.BeginObject();
    json.Key("edges");
    json.Numbers(histogram->edges);
    json.Key("counts");
    json.Integers(histogram->counts);
    json.EndObject();
  }
}

}  // namespace texturon
