#include "ui/main_frame.h"

#include <QActionGroup>
#include <QApplication>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>
#include <utility>

#include "core/date_text.h"
#include "core/platform.h"
#include "core/units.h"
#include "export/parameter_file.h"
#include "ui/curve_views.h"
#include "ui/qt_text.h"
#include "ui/report.h"
#include "ui/settings_sheet.h"
#include "ui/texturon_param_view.h"
#include "ui/texturon_view.h"

namespace texturon {
namespace {

constexpr int kMostRecent = 8;
constexpr const char* kRecentKey = "recentFiles";

}  // namespace

CMainFrame::CMainFrame(Environment environment, Prompts* prompts) {
  if (prompts == nullptr) {
    ownPrompts_ = std::make_unique<DialogPrompts>(this);
    prompts = ownPrompts_.get();
  }
  doc_ = new CTexturonDoc(*prompts, std::move(environment), this);
  view_ = new CTexturonView(*doc_, this);
  paramView_ = new CTexturonParamView(*doc_, this);
  upper_ = new QSplitter(Qt::Horizontal, this);
  upper_->addWidget(view_);
  upper_->addWidget(new CTexturonBRCView(*doc_, upper_));
  upper_->addWidget(new CTexturonSpectView(*doc_, upper_));
  upper_->setStretchFactor(0, 3);
  upper_->setStretchFactor(1, 1);
  upper_->setStretchFactor(2, 1);
  upper_->widget(1)->setVisible(false);
  upper_->widget(2)->setVisible(false);
  auto* const panes = new QSplitter(Qt::Vertical, this);
  panes->addWidget(upper_);
  panes->addWidget(paramView_);
  panes->setStretchFactor(0, 3);
  panes->setStretchFactor(1, 2);
  setCentralWidget(panes);
  setAcceptDrops(true);
  resize(1200, 800);
  addToolBar(tr("Commands"))->setObjectName("commands");
  MakeFileMenu();
  MakeExportMenu();
  MakeViewMenu();
  MakeAnalysisMenu();
  MakeHelpMenu();
  readout_ = new QLabel(this);
  readout_->setObjectName("readout");
  statusBar()->addPermanentWidget(readout_);
  connect(view_, &CTexturonView::ReadoutChanged, this, [this] { readout_->setText(view_->Readout()); });
  connect(doc_, &CTexturonDoc::Changed, this, &CMainFrame::UpdateState);
  UpdateState();
}

CMainFrame::~CMainFrame() = default;

QAction* CMainFrame::AddCommand(QMenu& menu, const QString& text, const QKeySequence& keys, const QString& tip,
                                const std::function<void()>& run) {
  QAction* const action = menu.addAction(text);
  action->setShortcut(keys);
  action->setStatusTip(tip);
  connect(action, &QAction::triggered, this, [run] { run(); });
  return action;
}

void CMainFrame::MakeFileMenu() {
  QMenu* const menu = menuBar()->addMenu(tr("&File"));
  auto* const bar = findChild<QToolBar*>("commands");
  bar->addAction(AddCommand(*menu, tr("&Open..."), QKeySequence::Open, tr("Opens a profile."), [this] { OnOpen(); }));
  recentMenu_ = menu->addMenu(tr("Recent &Files"));
  connect(recentMenu_, &QMenu::aboutToShow, this, &CMainFrame::ShowRecentFiles);
  needProfile_ << AddCommand(*menu, tr("&Save As..."), QKeySequence::Save, tr("Writes the measured profile."),
                             [this] { OnSaveAs(); });
  menu->addSeparator();
  AddCommand(*menu, tr("&Load Settings"), {}, tr("Loads settings from an existing file."), [this] {
    const QString file = QFileDialog::getOpenFileName(this, {}, {}, tr("Initialization Files (*.ini);;All Files (*)"));
    if (!file.isEmpty()) doc_->LoadSettingsFile(ToPath(file));
  });
  AddCommand(*menu, tr("&Save Settings"), {}, tr("Saves the current configuration to a file."), [this] {
    const QString file = QFileDialog::getSaveFileName(this, {}, {}, tr("Initialization Files (*.ini);;All Files (*)"));
    if (!file.isEmpty()) doc_->SaveSettingsFile(ToPath(file));
  });
  menu->addSeparator();
  needProfile_ << AddCommand(*menu, tr("Report as P&DF..."), {}, tr("Writes the report to a file."),
                             [this] { OnReport(); });
  needProfile_ << AddCommand(*menu, tr("Print Pre&view..."), {}, tr("Shows the report as it would be printed."),
                             [this] { OnPrint(true); });
  needProfile_ << AddCommand(*menu, tr("&Print..."), QKeySequence::Print, tr("Prints the report."),
                             [this] { OnPrint(false); });
  menu->addSeparator();
  AddCommand(*menu, tr("E&xit"), QKeySequence::Quit, tr("Ends the program."), [this] { close(); });
}

void CMainFrame::MakeExportMenu() {
  QMenu* const menu = menuBar()->addMenu(tr("&Export"));
  needProfile_ << AddCommand(*menu, tr("&Export Parameters"), QKeySequence(Qt::CTRL | Qt::Key_E),
                             tr("Adds a row to the parameter file."), [this] { OnExportParameters(false); });
  needProfile_ << AddCommand(*menu, tr("Export Parameters &As..."), {}, tr("Adds a row to another parameter file."),
                             [this] { OnExportParameters(true); });
  menu->addSeparator();
  for (const ExportKind& kind : ExportKinds()) {
    needProfile_ << AddCommand(*menu, FromText(kind.menu) + "...", {}, tr("Writes it to a file."),
                               [this, &kind] { OnExport(kind, false); });
    if (kind.makeMod == nullptr) continue;
    needProfile_ << AddCommand(*menu, tr("%1 as MOD...").arg(FromText(kind.menu)), {}, tr("Writes it as form data."),
                               [this, &kind] { OnExport(kind, true); });
  }
}

void CMainFrame::MakeViewMenu() {
  QMenu* const menu = menuBar()->addMenu(tr("&View"));
  constexpr std::pair<ProfileKind, Qt::Key> kKinds[] = {
      {ProfileKind::kRaw, Qt::Key_1},       {ProfileKind::kFormSuppressed, Qt::Key_2},
      {ProfileKind::kPrimary, Qt::Key_3},   {ProfileKind::kWaviness, Qt::Key_4},
      {ProfileKind::kRoughness, Qt::Key_5}, {ProfileKind::kClosing, Qt::Key_6},
      {ProfileKind::kOpening, Qt::Key_7},
  };
  for (const auto& [kind, key] : kKinds) {
    QString title = FromText(ProfileTitle(kind, 1000.0));
    title = title.left(title.indexOf(" (") < 0 ? title.size() : title.indexOf(" ("));
    QAction* const action = menu->addAction(title);
    action->setCheckable(true);
    action->setChecked(view_->IsShown(kind));
    action->setShortcut(QKeySequence(Qt::CTRL | key));
    connect(action, &QAction::toggled, this, [this, shown = kind](bool on) { view_->SetShown(shown, on); });
    connect(doc_, &CTexturonDoc::Changed, action,
            [this, action, shown = kind] { action->setChecked(view_->IsShown(shown)); });
  }
  menu->addSeparator();
  const std::pair<QString, int> curves[] = {{tr("&Bearing Ratio and Amplitudes"), 1}, {tr("&Spectrum"), 2}};
  for (const auto& [title, index] : curves) {
    QAction* const action = menu->addAction(title);
    action->setCheckable(true);
    action->setShortcut(QKeySequence(Qt::CTRL | (index == 1 ? Qt::Key_B : Qt::Key_P)));
    connect(action, &QAction::toggled, this, [this, pane = index](bool on) { upper_->widget(pane)->setVisible(on); });
  }
  menu->addSeparator();
  needProfile_ << AddCommand(*menu, tr("Zoom &Back"), QKeySequence(Qt::ALT | Qt::Key_Left), tr("The former view."),
                             [this] { view_->Graph().GoBack(); });
  needProfile_ << AddCommand(*menu, tr("Show &All"), QKeySequence(Qt::CTRL | Qt::Key_0), tr("The whole profile."),
                             [this] { view_->Graph().ShowAll(); });
  AddDisplaySwitch(*menu, tr("1:1 Aspe&ct Ratio"), &DisplaySettings::Profile11AspectRatio,
                   tr("The same scale for both axes, where the profile is high enough to be seen then."));
  AddDisplaySwitch(*menu, tr("A&uto Scale"), &DisplaySettings::ProfileAutoScale,
                   tr("Off: between the fixed heights of the settings."));
  const std::pair<QString, std::int32_t> cursors[] = {{tr("&X Cursors"), kUprightCursors},
                                                      {tr("&Y Cursors"), kLevelCursors}};
  for (const auto& [title, bit] : cursors) {
    AddSwitch(
        *menu, title, {},
        [bit = bit](const Document& document) { return (document.settings.display.CursorDisplayType & bit) != 0; },
        [this, bit = bit](bool on) {
          DisplaySettings display = doc_->document().settings.display;
          display.CursorDisplayType = on ? display.CursorDisplayType | bit : display.CursorDisplayType & ~bit;
          doc_->ReplaceDisplay(std::move(display));
        });
  }
  needProfile_ << AddCommand(*menu, tr("&Fetch Cursors"), {}, tr("Puts the cursors where they can be seen."),
                             [this] { view_->Graph().FetchCursors(); });
  menu->addSeparator();
  AddDisplaySwitch(*menu, tr("&Rk Lines"), &DisplaySettings::ShowRkLines, tr("The construction lines of Rk."));
  AddDisplaySwitch(*menu, tr("&Metric"), &DisplaySettings::Metric, tr("Off: inches and microinches."));
}

void CMainFrame::AddSwitch(QMenu& menu, const QString& text, const QString& tip,
                           const std::function<bool(const Document&)>& isOn, const std::function<void(bool)>& turn) {
  QAction* const action = menu.addAction(text);
  action->setCheckable(true);
  action->setStatusTip(tip);
  action->setChecked(isOn(doc_->document()));
  connect(action, &QAction::toggled, this, [this, isOn, turn](bool on) {
    if (isOn(doc_->document()) != on) turn(on);
  });
  connect(doc_, &CTexturonDoc::Changed, action, [this, action, isOn] { action->setChecked(isOn(doc_->document())); });
}

void CMainFrame::AddDisplaySwitch(QMenu& menu, const QString& text, bool DisplaySettings::*field, const QString& tip) {
  AddSwitch(
      menu, text, tip, [field](const Document& document) { return document.settings.display.*field; },
      [this, field](bool on) {
        DisplaySettings display = doc_->document().settings.display;
        display.*field = on;
        doc_->ReplaceDisplay(std::move(display));
      });
}

template <typename Sheet>
void CMainFrame::ShowSheet() {
  auto* sheet = findChild<Sheet*>();
  if (sheet == nullptr) sheet = new Sheet(*doc_, this);
  sheet->show();
  sheet->raise();
  sheet->activateWindow();
}

void CMainFrame::MakeAnalysisMenu() {
  QMenu* const menu = menuBar()->addMenu(tr("&Analysis"));
  needProfile_ << AddCommand(*menu, tr("Compute &All"), QKeySequence(Qt::Key_F5), tr("Analyses the whole record."),
                             [this] { doc_->ComputeAll(); });
  needProfile_ << AddCommand(*menu, tr("Compute on &Zoom"), QKeySequence(Qt::Key_F6),
                             tr("Analyses the stretch in view."), [this] {
                               const QCPRange range = view_->Graph().VisibleX();
                               const double toMM = doc_->document().settings.display.Metric ? 1.0 : kMillimetresPerInch;
                               doc_->ComputeOver(std::max(range.lower, 0.0) * toMM, range.upper * toMM);
                             });
  needProfile_ << AddCommand(*menu, tr("Compute Between X &Cursors"), QKeySequence(Qt::Key_F7),
                             tr("Analyses the stretch between the upright cursors."), [this] {
                               const auto [first, last] = view_->BetweenCursorsMM();
                               doc_->ComputeOver(std::max(first, 0.0), last);
                             });
  menu->addSeparator();
  needProfile_ << AddCommand(*menu, tr("&Exclude Between Cursors"), QKeySequence(Qt::Key_F8),
                             tr("Excludes the cursor region from form removal."), [this] {
                               const auto [first, last] = view_->BetweenCursorsMM();
                               doc_->ExcludeBetween(first, last);
                             });
  AddSwitch(
      *menu, tr("Use all data for &Form Removal"), {},
      [](const Document& document) { return document.useAllDataForForm; },
      [this](bool on) { doc_->UseAllDataForForm(on); });
  menu->addSeparator();
  AddCommand(*menu, tr("&Settings..."), QKeySequence(Qt::CTRL | Qt::Key_T),
             tr("Form, filters, parameters and everything else that the analysis goes by."),
             [this] { ShowSheet<CSettingsSheet>(); });
  AddCommand(*menu, tr("Bearing &Ratios and Htp..."), {}, tr("Rows of material ratios and of heights between them."),
             [this] { ShowSheet<CBearingRatioSheet>(); });
  menu->addSeparator();
  needProfile_ << AddCommand(*menu, tr("&Invert"), {}, tr("Turns the profile upside down."),
                             [this] { doc_->Invert(); });
  needProfile_ << AddCommand(*menu, tr("I&dentification..."), {}, tr("Names the measurement."), [this] {
    const auto text =
        doc_->prompts().AskText("Enter the new identification:", doc_->document().profiles.identification);
    if (text) doc_->SetIdentification(*text);
  });
}

void CMainFrame::MakeHelpMenu() {
  QMenu* const menu = menuBar()->addMenu(tr("&Help"));
  AddCommand(*menu, tr("&About"), {}, tr("What this program is."), [this] {
    QMessageBox::about(
        this, tr("About Texturon"),
        tr("<b>Texturon</b> %1<p>Surface texture analysis of profiles.</p><p>The source is licensed under "
           "Apache-2.0. This desktop program links a plotting library under the GNU GPL and is therefore "
           "distributed under the GNU GPL version 3; engine and console program are not affected.</p>")
            .arg(QApplication::applicationVersion()));
  });
}

void CMainFrame::ShowRecentFiles() {
  recentMenu_->clear();
  for (const QString& file : QSettings().value(kRecentKey).toStringList()) {
    connect(recentMenu_->addAction(file), &QAction::triggered, this, [this, file] { OpenFile(ToPath(file)); });
  }
  if (recentMenu_->isEmpty()) recentMenu_->addAction(tr("(none)"))->setEnabled(false);
}

bool CMainFrame::OpenFile(const std::filesystem::path& path) {
  if (!doc_->Open(path)) return false;
  QSettings store;
  QStringList recent = store.value(kRecentKey).toStringList();
  recent.removeAll(FromPath(path));
  recent.prepend(FromPath(path));
  store.setValue(kRecentKey, recent.mid(0, kMostRecent));
  return true;
}

void CMainFrame::OnOpen() {
  const QString file = QFileDialog::getOpenFileName(this, tr("Open a profile"));
  if (!file.isEmpty()) OpenFile(ToPath(file));
}

void CMainFrame::OnSaveAs() {
  const QString file = QFileDialog::getSaveFileName(
      this, tr("Save the profile"), {},
      tr("Native format (*.lmt);;Taylor Hobson (*.prf);;SDF (*.sdf);;PR (*.pr);;All Files (*)"));
  if (!file.isEmpty()) doc_->Save(ToPath(file));
}

void CMainFrame::OnReport() {
  const QString file = QFileDialog::getSaveFileName(this, tr("Report"), {}, tr("PDF (*.pdf);;All Files (*)"));
  if (file.isEmpty()) return;
  QString reason;
  const std::string time = DateText(doc_->environment().localTime());
  if (!WriteReport(file, doc_->document(), time, reason)) doc_->prompts().ShowMessage(ToText(reason));
}

void CMainFrame::OnPrint(bool previews) {
  QPrinter printer;
  printer.setResolution(kReportResolution);
  printer.setDocName(windowTitle());
  const auto print = [this](QPrinter* target) {
    if (PrintReport(*target, doc_->document(), DateText(doc_->environment().localTime())) == 0) {
      doc_->prompts().ShowMessage("The printer cannot be used.");
    }
  };
  if (previews) {
    QPrintPreviewDialog preview(&printer, this);
    connect(&preview, &QPrintPreviewDialog::paintRequested, this, print);
    preview.exec();
  } else if (QPrintDialog(&printer, this).exec() == QDialog::Accepted) {
    print(&printer);
  }
}

void CMainFrame::OnExport(const ExportKind& kind, bool asMod) {
  const ExportResult result = (asMod ? kind.makeMod : kind.make)(doc_->document(), doc_->prompts());
  if (!result.ok()) {
    doc_->prompts().ShowMessage("Not exported: " + result.reason + ".");
    return;
  }
  const QString filter = asMod ? tr("FTS MOD File (*.mod)") : tr("Comma Separated Values (*.csv);;All Files (*)");
  const QString file = QFileDialog::getSaveFileName(this, FromText(kind.menu), {}, filter);
  if (file.isEmpty()) return;
  const FileOutcome outcome = ReplaceFile(ToPath(file), result.text);
  if (!outcome.ok()) doc_->prompts().ShowMessage(FileSentence(ToPath(file), outcome.reason));
}

void CMainFrame::OnExportParameters(bool asks) {
  Settings settings = doc_->document().settings;
  if (asks || settings.display.ParameterFile.empty()) {
    const QString file = QFileDialog::getSaveFileName(
        this, tr("Parameter file"), FromText(settings.display.ParameterFile),
        tr("Comma Separated Values (*.csv);;All Files (*)"), nullptr, QFileDialog::DontConfirmOverwrite);
    if (file.isEmpty()) return;
    settings.display.ParameterFile = ToText(file);
    doc_->ReplaceSettings(settings);
  }
  const ParameterFileText text = ParameterFileTextOf(doc_->document(), DateText(doc_->environment().localTime()));
  const std::filesystem::path path = PathFromText(settings.display.ParameterFile);
  if (AppendParameters(path, text.header, text.row, doc_->prompts()).written) {
    statusBar()->showMessage(tr("Added a row to %1").arg(FromPath(path)), 5'000);
  }
}

void CMainFrame::UpdateState() {
  for (QAction* const action : needProfile_) action->setEnabled(doc_->HasProfile());
  const QString file = FromText(doc_->document().profiles.sourcePath);
  setWindowTitle(file.isEmpty() ? QApplication::applicationDisplayName()
                                : QString("%1 - %2").arg(file, QApplication::applicationDisplayName()));
}

void CMainFrame::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void CMainFrame::dropEvent(QDropEvent* event) {
  for (const QUrl& url : event->mimeData()->urls()) {
    if (url.isLocalFile()) OpenFile(ToPath(url.toLocalFile()));
  }
}

}  // namespace texturon
