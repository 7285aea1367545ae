// SPDX-License-Identifier: Apache-2.0

#include "ui/window/texturon_doc.h"

#include <QCoreApplication>
#include <algorithm>
#include <exception>
#include <memory>
#include <utility>

#include "analysis/curve_step.h"
#include "base/units.h"
#include "formats/extension_table.h"
#include "platform/diverted_messages.h"
#include "platform/platform.h"
#include "settings/settings_changes.h"
#include "settings/settings_file.h"
#include "ui/language.h"
#include "ui/qt_text.h"
#include "ui/sheets/edition_notice.h"

namespace texturon {
namespace {

/// Nobody answers and nobody can stop it, but the window goes on to be drawn.
class UnattendedPrompts : public SilentPrompts {
public:
  std::unique_ptr<Progress> OpenProgress(std::string_view /*caption*/, std::string_view /*text*/) override {
    class Pump : public Progress {
      bool Advance(int /*percent*/) override {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        return true;
      }
    };
    return std::make_unique<Pump>();
  }
};

}  // namespace

class CTexturonDoc::BusyScope {
public:
  explicit BusyScope(CTexturonDoc& doc) : doc_(doc) { doc_.isBusy_ = true; }
  ~BusyScope() {
    doc_.isBusy_ = false;
    if (doc_.waiting_.empty()) return;
    QMetaObject::invokeMethod(
        &doc_, [doc = &doc_] { doc->RunWaiting(); }, Qt::QueuedConnection);
  }
  BusyScope(const BusyScope&) = delete;
  BusyScope& operator=(const BusyScope&) = delete;

private:
  CTexturonDoc& doc_;
};

CTexturonDoc::CTexturonDoc(Prompts& prompts, Environment environment, QObject* parent)
    : QObject(parent), prompts_(prompts), environment_(std::move(environment)), document_(MakeDocument()) {
  document_.wanted = kNoCurves;
  savedSettings_ = document_.settings;
}

void CTexturonDoc::WhenIdle(std::function<void()> step) {
  if (!isBusy_ && waiting_.empty()) return step();
  waiting_.push_back(std::move(step));
}

void CTexturonDoc::RunWaiting() {
  while (!isBusy_ && !waiting_.empty()) {
    const std::function<void()> step = std::move(waiting_.front());
    waiting_.pop_front();
    step();
  }
}

bool CTexturonDoc::Open(const std::filesystem::path& path) {
  if (isBusy_) {
    WhenIdle([this, path] { Open(path); });
    return false;
  }
  // A pipe would hold the window until somebody writes to it.
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  const bool isFile = std::filesystem::is_regular_file(status) || std::filesystem::is_directory(status);
  if (std::filesystem::exists(status) && !isFile) {
    prompts_.ShowMessage(FileSentence(path, "is no regular file"));
    return false;
  }
  return Show({.path = path});
}

bool CTexturonDoc::OpenBytes(const std::string& name, std::string_view bytes) {
  return Show({.path = name, .bytes = bytes});
}

bool CTexturonDoc::Show(const RecordSource& source) {
  {
    const BusyScope busy(*this);
    // A reader's own message is part of the sentence that names the file.
    DivertedMessages diverted(prompts_);
    Document next = document_;
    RecordSource marked = source;
    marked.import.marksInput = true;  // a report tells what it was made of
    const RunStep loaded = LoadRecord(next, marked, diverted, environment_);
    if (!loaded.ok()) {
      const std::string sentence = FileSentence(source.path, loaded.Reason());
      if (loaded.attempts.empty()) {
        prompts_.ShowMessage(sentence);
      } else {
        prompts_.ShowFailure(sentence, FileSentence(source.path, "cannot be read as a profile"), loaded.attempts);
      }
      return false;
    }
    for (const std::string& message : diverted.messages()) prompts_.ShowMessage(message);
    next.scope.region.reset();
    std::string cause;
    if (!Analyse(next, IfRefused::kKeep, prompts_, cause)) return false;
    const Settings before = std::move(document_.settings);
    document_ = std::move(next);
    whyNotEvaluated_ = std::move(cause);
    NoteRecord(before);
  }
  emit Changed();
  return true;
}

std::string CTexturonDoc::OpenUnattended(const std::filesystem::path& path) {
  {
    const BusyScope busy(*this);
    UnattendedPrompts nobody;
    Document next = document_;
    next.scope.region.reset();
    const bool wasQuiet = std::exchange(next.quietMode, true);
    const bool wroteTrace = std::exchange(next.writesTraceFile, false);
    const RunStep run = RunAnalysis(next, {.path = path, .import = {.marksInput = true}}, nobody, environment_);
    if (!run.ok()) return FileSentence(path, run.Reason());
    next.quietMode = wasQuiet;
    next.writesTraceFile = wroteTrace;
    const Settings before = std::move(document_.settings);
    document_ = std::move(next);
    whyNotEvaluated_.clear();
    NoteRecord(before);
  }
  emit Changed();
  return {};
}

void CTexturonDoc::NoteFile() {
  fileIdentification_ = document_.profiles.identification;
  fileIsInverted_ = document_.profiles.inverted;
}

void CTexturonDoc::NoteRecord(const Settings& before) {
  NoteFile();
  history_.CarryOver(UndoPointOf(document_));
  editGoesOn_ = false;
  // What the analysis itself has set is no change of the user's.
  RepeatChanges(before, document_.settings, savedSettings_);
}

bool CTexturonDoc::IsRenamed() const {
  return HasProfile() && document_.profiles.identification != fileIdentification_;
}

bool CTexturonDoc::IsTurned() const {
  return HasProfile() && document_.profiles.inverted != fileIsInverted_;
}

bool CTexturonDoc::Save(const std::filesystem::path& path) {
  if (isBusy_) return false;
  std::filesystem::path target = path;
  const ProfileToWrite profile{.heightsUM = document_.profiles.raw,
                               .spacingUM = document_.profiles.spacingUM,
                               .identification = document_.profiles.identification,
                               .savedAt = environment_.localTime()};
  if (!WriterFor(target).write(target, profile, prompts_).ok()) return false;
  document_.profiles.sourcePath = TextFromPath(target);
  document_.profiles.sourceFile = target;
  NoteFile();
  emit Changed();
  return true;
}

std::filesystem::path CTexturonDoc::SavedAs(std::filesystem::path path) {
  return path.replace_extension(WriterFor(path).extension);
}

bool CTexturonDoc::LoadSettingsFile(const std::filesystem::path& path) {
  Settings settings = document_.settings;
  const SettingsFileResult result = LoadSettings(path, settings, prompts_);
  if (!result.ok() || !result.found) {
    prompts_.ShowMessage(FileSentence(path, result.ok() ? "does not exist" : result.reason));
    return false;
  }
  // A file without a list goes with that in force, which may have the names of another edition.
  const AnalysisSettings& former = document_.settings.analysis;
  EditionChange change;
  if (settings.analysis.parameters == former.parameters)
    change = TranslateList(ChosenEdition(former), settings.analysis);
  if (const QString notice = EditionNotice(change, settings.analysis); !notice.isEmpty()) {
    prompts_.ShowMessage(ToText(notice));
  }
  settingsFile_ = path;
  ReplaceSettings(std::move(settings));
  WhenIdle([this] { NoteSettingsSaved(); });
  return true;
}

bool CTexturonDoc::SaveSettingsFile(const std::filesystem::path& path) {
  const SettingsFileResult result = SaveSettings(path, document_.settings);
  if (!result.ok()) {
    prompts_.ShowMessage(FileSentence(path, result.reason));
    return false;
  }
  settingsFile_ = path;
  NoteSettingsSaved();
  emit Changed();
  return true;
}

void CTexturonDoc::StartFrom(Settings settings, const std::filesystem::path& file) {
  settingsFile_ = file;
  ReplaceSettings(std::move(settings));
  NoteSettingsSaved();
  history_.Clear();
  editGoesOn_ = false;
  emit Changed();
}

void CTexturonDoc::ReplaceSettings(Settings settings, Edit edit) {
  Change([settings = std::move(settings)](Document& document) { ApplySettings(document, settings); },
         Manner{.edit = edit});
}

void CTexturonDoc::ReplaceSettingsLive(Settings settings, Edit edit) {
  Change([settings = std::move(settings)](Document& document) { ApplySettings(document, settings); },
         Manner{.edit = edit, .isLive = true});
}

void CTexturonDoc::ReplaceDisplay(DisplaySettings display) {
  ChangeInPlace([display = std::move(display)](Document& document) { document.settings.display = display; });
}

void CTexturonDoc::ReplaceAutoLoading(AutoLoadingSettings autoLoading) {
  ChangeInPlace([autoLoading](Document& document) { document.settings.autoLoading = autoLoading; });
}

void CTexturonDoc::ShowUncertainties(const Document& tried, Uncertainties uncertainties) {
  if (isBusy_) return;
  const bool isSame =
      document_.results.request == tried.results.request && document_.profiles.raw == tried.profiles.raw;
  if (!isSame) return;
  document_.results.uncertainties = std::move(uncertainties);
  emit Changed();
}

void CTexturonDoc::Invert() {
  Change([](Document& document) { InvertProfile(document.profiles); });
}

void CTexturonDoc::SetIdentification(std::string identification) {
  // It stands between quotes and commas in the files that are written.
  std::replace(identification.begin(), identification.end(), ',', ';');
  std::replace(identification.begin(), identification.end(), '"', '\'');
  if (isBusy_) return WhenIdle([this, identification] { SetIdentification(identification); });
  UndoPoint former = UndoPointOf(document_);
  if (identification == former.identification) return;
  history_.Note(std::move(former));
  editGoesOn_ = false;
  document_.profiles.identification = identification;
  emit Changed();
}

void CTexturonDoc::ComputeAll() {
  Change([](Document& document) {
    SetWholeCutoffs(document, false);
    document.scope.region.reset();
    document.settings.analysis.AsphereUseClearAperture = false;
  });
}

void CTexturonDoc::ComputeOver(double firstMM, double lastMM) {
  ComputeOver({.mode = kStartAndLength, .startMM = firstMM, .lengthMM = lastMM - firstMM});
}

void CTexturonDoc::ComputeOver(const RegionChoice& region) {
  Change(
      [region](Document& document) {
        // Either would set another stretch.
        SetWholeCutoffs(document, false);
        document.scope.region = region;
        document.settings.analysis.AsphereUseClearAperture = false;
      },
      IfRefused::kDrop);
}

void CTexturonDoc::ComputeOverAperture(double diameterMM, double centralDiscardMM) {
  Change(
      [diameterMM, centralDiscardMM](Document& document) {
        AnalysisSettings& settings = document.settings.analysis;
        settings.AsphereUseClearAperture = true;
        settings.AsphereClearApertureDiameterMM = diameterMM;
        settings.AsphereClearApertureCentralDiscardMM = centralDiscardMM;
      },
      IfRefused::kDrop);
}

void CTexturonDoc::UseWholeCutoffs(bool uses) {
  Change([uses](Document& document) { SetWholeCutoffs(document, uses); }, IfRefused::kDrop);
}

void CTexturonDoc::ExcludeBetween(double firstMM, double lastMM) {
  const std::string_view refusal = RequestedForm(document_.settings.analysis).exclusionRefusal;
  if (!refusal.empty()) return prompts_.ShowMessage(refusal);
  Change([firstMM, lastMM](Document& document) {
    const ProfileSet& profiles = document.profiles;
    const auto indexAt = [&](double mm) {
      return std::clamp(StepsInLength(mm, profiles.spacingUM), 0, profiles.pointCount - 1);
    };
    ExcludeFromForm(document, indexAt(firstMM), indexAt(lastMM));
  });
}

void CTexturonDoc::UseAllDataForForm(bool uses) {
  Change([uses](Document& document) { document.scope.allDataForForm = uses; });
}

void CTexturonDoc::Restore(const UndoPoint& point) {
  Change([point](Document& document) { RestoreUndoPoint(document, point); });
}

void CTexturonDoc::Undo() {
  if (!isBusy_ && CanUndo()) GoTo(history_.GoBack(UndoPointOf(document_)));
}

void CTexturonDoc::Redo() {
  if (!isBusy_ && CanRedo()) GoTo(history_.GoForward(UndoPointOf(document_)));
}

void CTexturonDoc::GoTo(const UndoPoint& point) {
  editGoesOn_ = false;
  {
    const BusyScope busy(*this);
    Document next = document_;
    RestoreUndoPoint(next, point);
    std::string cause;
    if (Analyse(next, IfRefused::kKeep, prompts_, cause)) {
      document_ = std::move(next);
      whyNotEvaluated_ = std::move(cause);
    }
  }
  emit Changed();
}

void CTexturonDoc::SetWanted(const QObject* reader, const WantedResults& wanted) {
  if (wanted_.insert_or_assign(reader, wanted).second) {
    connect(reader, &QObject::destroyed, this, [this, reader] { wanted_.erase(reader); });
  }
  // A step at work has a copy with the wishes of before.
  WhenIdle([this, isLate = isBusy_] {
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
    if (isLate) emit Changed();
  });
}

void CTexturonDoc::Change(const Step& step, const Manner& manner) {
  if (isBusy_) return WhenIdle([this, step, manner] { Change(step, manner); });
  DivertedMessages diverted(prompts_);
  {
    const BusyScope busy(*this);
    Document next = document_;
    step(next);
    const bool isEdit = UndoPointOf(next) != UndoPointOf(document_);
    std::string cause;
    if (Analyse(next, manner.ifRefused, manner.isLive ? diverted : prompts_, cause)) {
      const bool goesOn = manner.edit == Edit::kGoesOn && editGoesOn_;
      UndoPoint former = UndoPointOf(document_);
      // Another rule for the same values: what was tried of them holds.
      const bool isOtherRule = next.settings.decision != document_.settings.decision &&
                               next.results.request == document_.results.request &&
                               next.profiles.raw == document_.profiles.raw;
      if (isOtherRule) next.results.uncertainties = std::move(document_.results.uncertainties);
      document_ = std::move(next);
      whyNotEvaluated_ = std::move(cause);
      if (goesOn) {
        editGoesOn_ = !history_.GoBackIfUndone(UndoPointOf(document_), std::move(former));
      } else {
        if (isEdit) history_.Note(std::move(former));
        editGoesOn_ = isEdit;
      }
    }
  }
  emit Changed();
  if (diverted.messages().empty()) return;
  QStringList sentences;
  for (const std::string& message : diverted.messages()) sentences << EngineText(message);
  emit Complained(sentences.join(' '));
}

void CTexturonDoc::ChangeInPlace(const Step& step) {
  if (isBusy_) return WhenIdle([this, step] { ChangeInPlace(step); });
  step(document_);
  emit Changed();
}

bool CTexturonDoc::Analyse(Document& copy, IfRefused ifRefused, Prompts& prompts, std::string& cause) {
  if (copy.profiles.IsEmpty()) return true;
  try {
    RunStep step = AnalyseRecord(copy, prompts, environment_);
    cause = std::move(step.cause);
    return !step.refused || ifRefused == IfRefused::kKeep;
  } catch (const std::exception& error) {
    prompts.ShowMessage(std::string("Not analysed: ") + error.what() + ".");
    return false;
  }
}

}  // namespace texturon
