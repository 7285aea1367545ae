#include "ui/texturon_doc.h"

#include <algorithm>
#include <utility>

#include "core/pipeline.h"
#include "core/platform.h"
#include "core/settings_file.h"
#include "core/units.h"
#include "formats/extension_table.h"
#include "formats/import.h"

namespace texturon {

CTexturonDoc::CTexturonDoc(Prompts& prompts, Environment environment, QObject* parent)
    : QObject(parent), prompts_(prompts), environment_(std::move(environment)), document_(MakeDocument()) {}

bool CTexturonDoc::Open(const std::filesystem::path& path) {
  ImportOutcome loaded = LoadProfileFile(path, {}, prompts_);
  if (!loaded.loaded) {
    if (loaded.reason.ends_with('.')) loaded.reason.pop_back();
    prompts_.ShowMessage(FileSentence(path, loaded.reason));
    return false;
  }
  SetProfile(document_, MakeProfileSet(std::move(loaded.profile), TextFromPath(path)));
  document_.regionSet = false;
  Recompute();
  return true;
}

bool CTexturonDoc::Save(const std::filesystem::path& path) {
  std::filesystem::path target = path;
  const ProfileToWrite profile{.heightsUM = document_.profiles.raw,
                               .spacingUM = document_.profiles.spacingUM,
                               .identification = document_.profiles.identification,
                               .savedAt = environment_.localTime()};
  return WriterFor(target).write(target, profile, prompts_).ok();
}

bool CTexturonDoc::LoadSettingsFile(const std::filesystem::path& path) {
  Settings settings = document_.settings;
  const SettingsFileResult result = LoadSettings(path, settings, prompts_);
  if (!result.ok() || !result.found) {
    prompts_.ShowMessage(FileSentence(path, result.ok() ? "does not exist" : result.reason));
    return false;
  }
  settingsFile_ = path;
  ReplaceSettings(std::move(settings));
  return true;
}

bool CTexturonDoc::SaveSettingsFile(const std::filesystem::path& path) {
  const SettingsFileResult result = SaveSettings(path, document_.settings);
  if (!result.ok()) {
    prompts_.ShowMessage(FileSentence(path, result.reason));
    return false;
  }
  settingsFile_ = path;
  emit Changed();
  return true;
}

void CTexturonDoc::ReplaceSettings(Settings settings) {
  ApplySettings(document_, std::move(settings));
  Recompute();
}

void CTexturonDoc::ReplaceDisplay(DisplaySettings display) {
  document_.settings.display = std::move(display);
  emit Changed();
}

void CTexturonDoc::Invert() {
  InvertProfile(document_.profiles);
  Recompute();
}

void CTexturonDoc::SetIdentification(const std::string& identification) {
  document_.profiles.identification = identification;
  emit Changed();
}

void CTexturonDoc::ComputeAll() {
  document_.regionSet = false;
  document_.settings.analysis.AsphereUseClearAperture = false;
  Recompute();
}

void CTexturonDoc::ComputeOver(double firstMM, double lastMM) {
  ComputeOver({.mode = kStartAndLength, .startMM = firstMM, .lengthMM = lastMM - firstMM});
}

void CTexturonDoc::ComputeOver(const RegionChoice& region) {
  Document former = document_;
  SetRegion(document_, region);
  // Either would set another stretch.
  document_.wholeCutoffLength = false;
  document_.settings.analysis.AsphereUseClearAperture = false;
  ComputeOrRestore(std::move(former));
}

void CTexturonDoc::ComputeOverAperture(double diameterMM, double centralDiscardMM) {
  Document former = document_;
  AnalysisSettings& settings = document_.settings.analysis;
  settings.AsphereUseClearAperture = true;
  settings.AsphereClearApertureDiameterMM = diameterMM;
  settings.AsphereClearApertureCentralDiscardMM = centralDiscardMM;
  ComputeOrRestore(std::move(former));
}

void CTexturonDoc::UseWholeCutoffs(bool uses) {
  Document former = document_;
  document_.wholeCutoffLength = uses;
  if (!uses) document_.regionSet = false;
  ComputeOrRestore(std::move(former));
}

void CTexturonDoc::ComputeOrRestore(Document former) {
  if (HasProfile() && Compute(document_, prompts_, environment_) == ComputeOutcome::kRefused) {
    document_ = std::move(former);
  }
  emit Changed();
}

void CTexturonDoc::ExcludeBetween(double firstMM, double lastMM) {
  if (document_.settings.analysis.FormRemovalType == kFormFilter) {
    prompts_.ShowMessage("Cannot exclude with filter-based form removal.");
    return;
  }
  const ProfileSet& profiles = document_.profiles;
  const auto indexAt = [&](double mm) {
    return std::clamp(StepsInLength(mm, profiles.spacingUM), 0, profiles.pointCount - 1);
  };
  ExcludeFromForm(document_, indexAt(firstMM), indexAt(lastMM));
  Recompute();
}

void CTexturonDoc::UseAllDataForForm(bool uses) {
  document_.useAllDataForForm = uses;
  Recompute();
}

void CTexturonDoc::Recompute() {
  if (HasProfile()) Compute(document_, prompts_, environment_);
  emit Changed();
}

}  // namespace texturon
