// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QObject>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "analysis/analysis_run.h"
#include "analysis/document.h"
#include "analysis/edit_history.h"
#include "analysis/region_choice.h"
#include "platform/environment.h"
#include "platform/prompts.h"

namespace texturon {

/// The document of the window: a shell over the engine's, which tells the views when it has changed. Every step either
/// succeeds or leaves it as it was, with a sentence through the prompts.
///
/// A step that computes works on a copy and lets events through while it shows progress or asks. What is asked of the
/// document in the meantime waits until the step has ended; the views go on to show the document as it was.
class CTexturonDoc : public QObject {
  Q_OBJECT

public:
  CTexturonDoc(Prompts& prompts, Environment environment, QObject* parent = nullptr);

  const Document& document() const { return document_; }
  Prompts& prompts() const { return prompts_; }
  const Environment& environment() const { return environment_; }
  bool HasProfile() const { return !document_.profiles.IsEmpty(); }
  /// Why the record in force gave no results at its last analysis: a clause, Windows-1252; empty: it did.
  const std::string& WhyNotEvaluated() const { return whyNotEvaluated_; }
  /// Whether the record is not as its file has it.
  bool IsModified() const { return IsRenamed() || IsTurned(); }
  bool IsRenamed() const;
  bool IsTurned() const;
  /// Whether the analysis's settings, limits among them, are others than those last loaded or saved.
  bool HasUnsavedSettings() const { return document_.settings.analysis != savedSettings_.analysis; }
  /// The settings in force are kept somewhere.
  void NoteSettingsSaved() { savedSettings_ = document_.settings; }
  /// Whether a step is at work or waits.
  bool IsBusy() const { return isBusy_ || !waiting_.empty(); }
  /// Runs `step` at once, or after the step at work and what waits already.
  void WhenIdle(std::function<void()> step);

  /// False also where it has to wait.
  bool Open(const std::filesystem::path& path);
  /// Opens a profile from the content of a file that bears this name, but lies nowhere. Not while a step is at work.
  bool OpenBytes(const std::string& name, std::string_view bytes);
  /// The same where nobody watches: nothing is shown or asked. Returns why there is no analysis, a sentence. Not while
  /// another step is at work.
  std::string OpenUnattended(const std::filesystem::path& path);
  /// Writes the measured record in the format of the extension. From then on the document is that file's.
  bool Save(const std::filesystem::path& path);
  /// The name under which Save writes: every format has its own extension.
  static std::filesystem::path SavedAs(std::filesystem::path path);
  bool LoadSettingsFile(const std::filesystem::path& path);
  bool SaveSettingsFile(const std::filesystem::path& path);
  /// Whether a change is one of its own to be taken back, or goes on with the last.
  enum class Edit { kNew, kGoesOn };
  void ReplaceSettings(Settings settings, Edit edit = Edit::kNew);
  /// The same while somebody types: what the analysis has to say does not come as a box, but by Complained.
  void ReplaceSettingsLive(Settings settings, Edit edit);
  /// The same with settings that come from a file, which nobody takes back.
  void StartFrom(Settings settings, const std::filesystem::path& file);
  /// Settings that change only how results are shown: nothing is computed.
  void ReplaceDisplay(DisplaySettings display);
  /// Settings of what is done to files as they come: nothing is computed.
  void ReplaceAutoLoading(AutoLoadingSettings autoLoading);
  /// Shows them beside the values of the results that were tried; nothing where there are others by now.
  void ShowUncertainties(const Document& tried, Uncertainties uncertainties);
  void Invert();
  /// Commas become semicolons and double quotes single ones, as in the files.
  void SetIdentification(std::string identification);
  /// The file that the settings were last loaded from or saved to; empty: none yet.
  const std::filesystem::path& settingsFile() const { return settingsFile_; }
  /// Over the whole record: without region, whole cut-offs and clear aperture.
  void ComputeAll();
  void ComputeOver(const RegionChoice& region);
  /// Over the clear aperture of an asphere, without its middle zone; both diameters.
  void ComputeOverAperture(double diameterMM, double centralDiscardMM);
  void UseWholeCutoffs(bool uses);
  /// Over a stretch of the record, in mm from its first sample.
  void ComputeOver(double firstMM, double lastMM);
  /// Leaves a stretch of the record out of the form fit.
  void ExcludeBetween(double firstMM, double lastMM);
  void UseAllDataForForm(bool uses);
  /// Puts settings, stretch, identification and sign in force together, as one edit.
  void Restore(const UndoPoint& point);
  /// What a view reads of the results that are made on demand, until it says otherwise. Makes what is missing.
  void SetWanted(const QObject* reader, const WantedResults& wanted);

  bool CanUndo() const { return history_.CanGoBack(); }
  bool CanRedo() const { return history_.CanGoForward(); }
  /// Takes back the last change of the analysis settings, the stretch, the identification or the sign of the heights;
  /// those of the settings also where another profile was opened since.
  void Undo();
  void Redo();

signals:
  void Changed();
  void Complained(const QString& sentences);

private:
  class BusyScope;
  using Step = std::function<void(Document&)>;
  enum class IfRefused { kKeep, kDrop };

  /// Loads and analyses a record in place of the present one.
  bool Show(const RecordSource& source);
  /// Changes a copy, computes it and puts it in the document's place. `ifRefused`: what becomes of a change after which
  /// too few points are left to compute over.
  struct Manner {
    IfRefused ifRefused = IfRefused::kKeep;
    Edit edit = Edit::kNew;
    bool isLive = false;
  };
  void Change(const Step& step, const Manner& manner);
  void Change(const Step& step, IfRefused ifRefused = IfRefused::kKeep) {
    Change(step, Manner{.ifRefused = ifRefused});
  }
  /// Changes what no result depends on and nobody takes back.
  void ChangeInPlace(const Step& step);
  /// False where the copy is not to be used; a message has said why. `cause`: why there are no results of it.
  bool Analyse(Document& copy, IfRefused ifRefused, Prompts& prompts, std::string& cause);
  void GoTo(const UndoPoint& point);
  void RunWaiting();
  /// The record is as its file has it.
  void NoteFile();
  /// Another record is there; `before`: the settings until then.
  void NoteRecord(const Settings& before);

  Prompts& prompts_;
  Environment environment_;
  Document document_;
  std::string whyNotEvaluated_;
  EditHistory history_;
  bool editGoesOn_ = false;  ///< the last state of the history is what the edit that may go on has left
  bool isBusy_ = false;
  std::deque<std::function<void()>> waiting_;
  std::filesystem::path settingsFile_;
  Settings savedSettings_;
  std::string fileIdentification_;
  bool fileIsInverted_ = false;
  std::map<const QObject*, WantedResults> wanted_;
};

}  // namespace texturon
