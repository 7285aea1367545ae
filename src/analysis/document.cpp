// SPDX-License-Identifier: Apache-2.0

#include "analysis/document.h"

#include <utility>

#include "parameters/edition2021/edition_list.h"

namespace texturon {

namespace {

DiscardSetting DiscardOf(const Settings& settings) {
  return {settings.analysis.UserDiscardType, settings.analysis.UserDiscardLengthMM};
}

}  // namespace

Document MakeDocument() {
  Document document;
  Settings settings;
  settings.analysis.parameters = DefaultSelection();
  ApplySettings(document, std::move(settings));
  return document;
}

void ApplySettings(Document& document, Settings settings) {
  std::optional<DiscardSetting>& replaced = document.scope.wholeCutoffs;
  if (replaced && DiscardOf(settings) != DiscardOf(document.settings)) replaced = DiscardOf(settings);
  document.settings = std::move(settings);
  document.catalogue = MakeEditionList(document.settings.analysis, document.catalogue);
}

void SetProfile(Document& document, ProfileSet profiles) {
  document.profiles = std::move(profiles);
  document.results = {};
  for (ParameterDef& row : document.catalogue.rows) {
    row.valid = false;
    row.reason = {Why::kNotComputed};
  }
}

IndexRange FormRange(const Document& document) {
  const ProfileSet& profiles = document.profiles;
  if (!profiles.computeRange) return {};
  const bool allData = document.results.request && document.results.request->scope.allDataForForm;
  return allData ? IndexRange::FromCount(0, profiles.pointCount) : *profiles.computeRange;
}

void InvertProfile(ProfileSet& profiles) {
  for (double& height : profiles.raw) height = -height;
  profiles.inverted = !profiles.inverted;
}

void SetWholeCutoffs(Document& document, bool uses) {
  AnalysisScope& scope = document.scope;
  if (scope.wholeCutoffs.has_value() == uses) return;
  if (uses) {
    scope.wholeCutoffs = DiscardOf(document.settings);
    return;
  }
  document.settings.analysis.UserDiscardType = scope.wholeCutoffs->type;
  document.settings.analysis.UserDiscardLengthMM = scope.wholeCutoffs->lengthMM;
  scope.wholeCutoffs.reset();
  scope.region.reset();
}

void ExcludeFromForm(Document& document, std::int32_t first, std::int32_t last) {
  document.scope.exclusion = IndexRange::FromEnds(first, last);
  if (!document.scope.region) document.scope.region = RegionChoice{.mode = kFromStart};
}

}  // namespace texturon
