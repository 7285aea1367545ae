#include "ui/texturon_doc.h"

#include <algorithm>
#include <utility>

#include "core/curve_step.h"
#include "core/pipeline.h"
#include "core/platform.h"
#include "core/settings_file.h"
#include "core/units.h"
#include "formats/extension_table.h"
#include "formats/import.h"

namespace texturon {

CTexturonDoc::CTexturonDoc(Prompts& prompts, Environment environment, QObject* parent)
    : QObject(parent), prompts_(prompts), environment_(std::move(environment)), document_(MakeDocument()) {
  document_.wanted = kNoCurves;
}

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
  ReplaceSettings(std::move(settings));
  return true;
}

bool CTexturonDoc::SaveSettingsFile(const std::filesystem::path& path) {
  const SettingsFileResult result = SaveSettings(path, document_.settings);
  if (!result.ok()) prompts_.ShowMessage(FileSentence(path, result.reason));
  return result.ok();
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
  Recompute();
}

void CTexturonDoc::ComputeOver(double firstMM, double lastMM) {
  const Document former = document_;
  document_.regionSet = true;
  document_.regionMode = 1;
  document_.regionStartMM = firstMM;
  document_.regionLengthMM = lastMM - firstMM;
  if (Compute(document_, prompts_, environment_) == ComputeOutcome::kRefused) document_ = former;
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

void CTexturonDoc::SetWanted(const QObject* reader, const WantedResults& wanted) {
  if (wanted_.insert_or_assign(reader, wanted).second) {
    connect(reader, &QObject::destroyed, this, [this, reader] { wanted_.erase(reader); });
  }
  WantedResults& all = document_.wanted;
  all = kNoCurves;
  for (const auto& [view, results] : wanted_) {
    all.spectrum = all.spectrum || results.spectrum;
    all.heightCurves = all.heightCurves || results.heightCurves;
    all.coreRoughness = all.coreRoughness || results.coreRoughness;
    all.probability = all.probability || results.probability;
    all.motifs = all.motifs || results.motifs;
  }
  if (HasProfile()) ComputeMissingCurves(document_);
}

void CTexturonDoc::Recompute() {
  if (HasProfile()) Compute(document_, prompts_, environment_);
  emit Changed();
}

}  // namespace texturon
