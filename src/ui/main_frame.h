#pragma once

#include <QMainWindow>
#include <functional>
#include <memory>

#include "core/document_export.h"
#include "ui/dialog_prompts.h"
#include "ui/texturon_doc.h"

class QAction;
class QLabel;
class QMenu;

namespace texturon {

class CCurvePane;
class CTexturonParamView;
class CTexturonView;

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
  CCurvePane& UpperCurves() { return *upperCurves_; }
  CCurvePane& LowerCurves() { return *lowerCurves_; }
  /// Opens a profile and remembers it in the list of recent files.
  bool OpenFile(const std::filesystem::path& path);

protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

private:
  void MakeFileMenu();
  void MakeExportMenu();
  void MakeViewMenu();
  void MakeAnalysisMenu();
  void MakeHelpMenu();
  void MakePanes();
  void AddCurveCommands(QMenu& menu);
  QAction* AddCommand(QMenu& menu, const QString& text, const QKeySequence& keys, const QString& tip,
                      const std::function<void()>& run);
  /// A command that is on or off, as the document says.
  void AddSwitch(QMenu& menu, const QString& text, const QString& tip, const std::function<bool(const Document&)>& isOn,
                 const std::function<void(bool)>& turn);
  void AddDisplaySwitch(QMenu& menu, const QString& text, bool DisplaySettings::*field, const QString& tip);
  /// Shows a sheet, making it where it is asked for the first time.
  template <typename Sheet>
  void ShowSheet();
  void ShowRecentFiles();
  void OnOpen();
  void OnSaveAs();
  void OnReport();
  void OnPrint(bool previews);
  void OnExport(const ExportKind& kind, bool asMod);
  void OnExportParameters(bool asks);
  void UpdateState();

  std::unique_ptr<DialogPrompts> ownPrompts_;
  CTexturonDoc* doc_;
  CTexturonView* view_;
  CTexturonParamView* paramView_;
  CCurvePane* upperCurves_ = nullptr;
  CCurvePane* lowerCurves_ = nullptr;
  QMenu* recentMenu_ = nullptr;
  QLabel* readout_ = nullptr;
  QList<QAction*> needProfile_;
};

}  // namespace texturon
