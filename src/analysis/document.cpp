// SPDX-License-Identifier: Apache-2.0

#include "analysis/document.h"

#include <utility>

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
  if (document.wholeCutoffLength && DiscardOf(settings) != DiscardOf(document.settings)) {
    document.discardWithoutWholeCutoffs = DiscardOf(settings);
  }
  document.settings = std::move(settings);
  document.catalogue = MakeWorkingList(document.settings.analysis.parameters, document.catalogue);
}

void SetProfile(Document& document, ProfileSet profiles) {
  document.profiles = std::move(profiles);
  document.results = {};
}

bool HasProfile(const Document& document, ProfileKind kind) {
  const ProfileSet& profiles = document.profiles;
  const AnalysisResults& results = document.results;
  switch (kind) {
    case ProfileKind::kRaw:
      return !profiles.IsEmpty();
    case ProfileKind::kFormSuppressed:
      return results.formRemoved;
    case ProfileKind::kPrimary:
      return results.primaryComputed;
    case ProfileKind::kWaviness:
      return profiles.wavinessComputed;
    case ProfileKind::kRoughness:
      return results.roughnessComputed;
    case ProfileKind::kClosing:
      return !profiles.closing.empty();
    case ProfileKind::kOpening:
      return !profiles.opening.empty();
  }
  return false;
}

void InvertProfile(ProfileSet& profiles) {
  for (double& height : profiles.raw) height = -height;
  profiles.inverted = !profiles.inverted;
}

void SetWholeCutoffs(Document& document, bool uses) {
  if (document.wholeCutoffLength == uses) return;
  document.wholeCutoffLength = uses;
  if (uses) {
    document.discardWithoutWholeCutoffs = DiscardOf(document.settings);
    return;
  }
  document.regionSet = false;
  document.settings.analysis.UserDiscardType = document.discardWithoutWholeCutoffs.type;
  document.settings.analysis.UserDiscardLengthMM = document.discardWithoutWholeCutoffs.lengthMM;
}

void ExcludeFromForm(Document& document, std::int32_t first, std::int32_t last) {
  document.excludeSet = true;
  document.excludeFirst = first;
  document.excludeLast = last;
  if (document.regionSet) return;
  document.regionSet = true;
  document.regionMode = 0;
  document.regionStartMM = 0.0;
}

}  // namespace texturon
