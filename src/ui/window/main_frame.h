// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QKeySequence>
#include <QMainWindow>
#include <QUrl>
#include <functional>
#include <memory>
#include <vector>

#include "analysis/document_export.h"
#include "presentation/report_template.h"
#include "ui/window/dialog_prompts.h"
#include "ui/window/texturon_doc.h"

class QAction;
class QLabel;
class QMenu;

namespace texturon {

class CAutoLoading;
class CAutoLoadingSheet;
class CAutosave;
class CCurvePane;
class CLiveSheet;
class CReadoutLabel;
class CTexturonParamView;
class CTexturonView;
class WorkingSettings;

/// The main window: profiles above, the parameters below, a curve beside each where the pane is split. What it shows
/// and asks goes through `prompts` where one is given, else through dialogs of its own.
class CMainFrame : public QMainWindow {
  Q_OBJECT

public:
  explicit CMainFrame(Environment environment, Prompts* prompts = nullptr);
  ~CMainFrame() override;

  CTexturonDoc& Doc() { return *doc_; }
  CTexturonView& View() { return *view_; }
  CTexturonParamView& ParamView() { return *paramView_; }
  CAutoLoading& AutoLoading() { return *autoLoading_; }
  CCurvePane& UpperCurves() { return *upperCurves_; }
  CCurvePane& LowerCurves() { return *lowerCurves_; }
  /// Opens a profile and remembers it in the list of recent files. What the present one would lose is asked about
  /// first.
  bool OpenFile(const std::filesystem::path& path);
  /// Starts from these settings and offers to save them; `store` outlives the window.
  void UseWorkingSettings(WorkingSettings& store);
  /// The same as soon as nothing is at work and no dialog is open.
  void OpenLater(const std::filesystem::path& path);
  /// Opens the first of several files and shows all of them over each other.
  void OpenAll(const std::vector<std::filesystem::path>& files);

  /// What is to become of work that no file holds.
  enum class Unsaved { kSave, kDiscard, kCancel };
  /// What is told, as sentences; the answer.
  using UnsavedQuestion = std::function<Unsaved(const QString& text)>;
  /// Asks in place of the window's own box.
  void AskAboutUnsavedBy(UnsavedQuestion question) { unsavedQuestion_ = std::move(question); }
  /// Asks where the record's identification or sign, or with `withSettings` the settings, are in no file, and saves
  /// them where that is wanted. `remark` is a sentence about the settings. False: nothing may be lost.
  bool SettleUnsaved(bool withSettings, const QString& remark = {});
  /// The session ends: asks where it may, and closes without another word. False: it must not end.
  bool EndSession(bool mayAsk);
  /// Keeps what a crash would lose in a folder of the user's own, until the window has closed.
  void KeepStateIn(const std::filesystem::path& folder);
  /// Asks whether what a crashed window has left shall be as it was.
  void OfferLeftOver();

protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

private:
  /// A command of a menu. By its name the tool bar and the tests find it; the text may change with the language.
  struct Command {
    QString name;
    QString text;
    QKeySequence keys = {};
    QString tip = {};
    bool needsProfile = false;  ///< greyed where none is open
  };

  QAction* AddAction(QMenu& menu, const Command& command);
  QAction* AddCommand(QMenu& menu, const Command& command, const std::function<void()>& run);
  /// A command that is on or off, as the document says.
  QAction* AddSwitch(QMenu& menu, const Command& command, const std::function<bool(const Document&)>& isOn,
                     const std::function<void(bool)>& turn);
  void AddDisplaySwitch(QMenu& menu, const Command& command, bool DisplaySettings::*field);
  void FillToolBar();
  void UpdateState();

  // file_commands.cpp
  void MakeFileMenu();
  void MakeFolderCommands(QMenu& menu);
  CAutoLoadingSheet& ShowAutoLoadingSheet();
  /// The files opened last, newest first.
  void ShowRecentFiles();
  /// Opens one of them, or takes it from the list where it is gone.
  void OpenRecent(const QString& file);
  void Remember(const std::filesystem::path& path);
  /// The profile's name with another ending.
  std::filesystem::path ProposedName(const std::string& ending) const;
  /// Asks for a file and opens it.
  void OnOpen();
  /// Asks for a name and writes the measured profile.
  bool OnSave();
  /// Opens the first file; of a folder, the window for its batch.
  void OnDropped(const QList<QUrl>& urls);
  void OnBatch(const std::filesystem::path& folder);
  void OnSeveral(const std::vector<std::filesystem::path>& files);
  /// The user's own; the default, and a message, where that is not understood.
  ReportTemplate LayoutOfReports();
  void OnReport();
  void OnPrint(bool previews);

  // edit_commands.cpp, analysis_commands.cpp
  void MakeEditMenu();
  void MakeAnalysisMenu();
  void MakeStretchCommands(QMenu& menu);
  void MakeTrustCommands(QMenu& menu);
  template <typename Window>
  void ShowWindowOfProfile();
  /// Shows a sheet, making it where it is asked for the first time.
  template <typename Sheet>
  void ShowSheet();
  /// Gives a sheet its panel, docked where there is room beside the profile.
  void Dock(CLiveSheet& sheet, bool besideTheProfile);
  /// Opens the sheet in which a row of the table is chosen and toleranced.
  void OnParameter(const QString& name);
  /// Where limits are entered, at the row that most drawings name.
  void OpenLimits();

  // export_commands.cpp
  void MakeExportMenu();
  void OnExport(const ExportKind& kind);
  /// Adds a row to the parameter file; `asks`: after asking for one.
  void OnExportParameters(bool asks);
  void OnExportStatistics();
  void OnSavePicture();
  void OnAutoExport(bool on);
  /// False where the user has cancelled.
  bool AskForParameterFile();

  // view_commands.cpp, curve_commands.cpp
  void MakeViewMenu();
  void MakeZoomMenu(QMenu& menu);
  void MakeMarksMenu(QMenu& menu);
  void MakeCursorMenu(QMenu& menu);
  void MakeTableMenu(QMenu& menu);
  /// The menu of the right button over the profiles: commands of the other menus.
  void FillProfileMenu(QMenu& menu);
  void MakePanes();
  void AddCurveCommands(QMenu& menu);

  // main_frame.cpp
  void MakeHelpMenu();
  void MakeLanguageMenu(QMenu& menu);
  /// False where they are saved nowhere; a message has said why, or the user has cancelled.
  bool OnSaveSettings();
  bool OnSaveDefaults();
  bool SaveSettingsInForce();

  std::unique_ptr<DialogPrompts> ownPrompts_;
  CTexturonDoc* doc_;
  CTexturonView* view_;
  CTexturonParamView* paramView_;
  CAutoLoading* autoLoading_;
  CCurvePane* upperCurves_ = nullptr;
  CCurvePane* lowerCurves_ = nullptr;
  QMenu* recentMenu_ = nullptr;
  CReadoutLabel* readout_ = nullptr;
  QList<QAction*> needProfile_;
  QAction* saveDefaults_ = nullptr;
  WorkingSettings* workingSettings_ = nullptr;
  UnsavedQuestion unsavedQuestion_;
  bool isSettled_ = false;  ///< what is unsaved has been asked about
  CAutosave* autosave_ = nullptr;
};

}  // namespace texturon
