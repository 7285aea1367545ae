// SPDX-License-Identifier: Apache-2.0

// The Analysis menu of the main window.

#include <QDockWidget>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <algorithm>
#include <type_traits>

#include "base/quantity.h"
#include "ui/plots/texturon_view.h"
#include "ui/qt_text.h"
#include "ui/sheets/indication_dialog.h"
#include "ui/sheets/region_dialogs.h"
#include "ui/sheets/settings_sheet.h"
#include "ui/trust/compare_window.h"
#include "ui/trust/uncertainty_window.h"
#include "ui/window/main_frame.h"

namespace texturon {

template <typename Sheet>
void CMainFrame::ShowSheet() {
  auto* sheet = findChild<Sheet*>();
  if (sheet == nullptr) {
    sheet = new Sheet(*doc_, this);
    Dock(*sheet, std::is_same_v<Sheet, CSettingsSheet>);
    connect(sheet, &CLiveSheet::PutBack, this, [this](const QString& titles) {
      constexpr int kShownMS = 15'000;
      const QString again = doc_->CanRedo() ? tr(" Redo brings the changes back.") : QString();
      const QString message = tr("Put back as it was: %1.").arg(titles) + again;
      statusBar()->showMessage(message, kShownMS);
      // After a redo it would be wrong.
      const auto drop = [this, message] {
        if (statusBar()->currentMessage() == message) statusBar()->clearMessage();
      };
      connect(doc_, &CTexturonDoc::Changed, statusBar(), drop, Qt::SingleShotConnection);
    });
  }
  sheet->show();
  sheet->window()->activateWindow();
}

void CMainFrame::Dock(CLiveSheet& sheet, bool besideTheProfile) {
  constexpr double kMostShare = 0.55;
  constexpr double kMostShareOfNarrow = 0.6;
  int width = sheet.minimumSizeHint().width();
  const bool isNarrow = besideTheProfile && width > kMostShare * this->width();
  if (isNarrow) {
    // With its pages in a box above them it leaves more of the profile.
    sheet.Pages().SetNarrow(true);
    width = sheet.minimumSizeHint().width();
  }
  const QRect screen = this->screen()->availableGeometry();
  const int border = frameGeometry().width() - geometry().width();
  const int widest = isMaximized() ? this->width() : std::max(this->width(), screen.width() - border);
  // Where little would be left of the profile it stands in front of it, at the right.
  const bool isBeside = besideTheProfile && width <= kMostShareOfNarrow * widest;
  const int wanted = std::min(static_cast<int>(width / kMostShareOfNarrow) + 1, widest);
  if (isBeside && wanted > this->width()) resize(wanted, height());
  if (isBeside && geometry().right() > screen.right()) move(screen.left(), y());
  auto* const panel = new QDockWidget(sheet.windowTitle(), this);
  panel->setObjectName(sheet.metaObject()->className());
  panel->setWidget(&sheet);
  panel->installEventFilter(&sheet);
  addDockWidget(Qt::RightDockWidgetArea, panel);
  panel->setFloating(!isBeside);
  if (!isBeside) {
    panel->resize(QSize(width, fontMetrics().height() * 46).boundedTo(screen.size() * 0.9));
    panel->move(std::max(screen.right() - panel->width(), screen.left()), std::max(geometry().top(), screen.top()));
  }
  panel->hide();
}

void CMainFrame::OnParameter(const QString& name) {
  const auto& rows = doc_->document().settings.analysis.parameters;
  const bool isListed =
      std::any_of(rows.begin(), rows.end(), [&](const auto& row) { return row.name == ToText(name); });
  if (!isListed) return ShowSheet<CBearingRatioSheet>();
  ShowSheet<CSettingsSheet>();
  findChild<CSettingsSheet*>()->ShowParameter(name);
}

void CMainFrame::OpenLimits() {
  const auto& rows = doc_->document().settings.analysis.parameters;
  const auto isWanted = [](const ParameterSelection& row) { return row.name == "Ra"; };
  const auto wanted = std::find_if(rows.begin(), rows.end(), isWanted);
  if (rows.empty()) return ShowSheet<CSettingsSheet>();
  OnParameter(FromText(wanted != rows.end() ? wanted->name : rows.front().name));
}

void CMainFrame::MakeStretchCommands(QMenu& menu) {
  AddCommand(menu,
             {.name = "computeAll",
              .text = tr("Compute &All"),
              .keys = QKeySequence(Qt::Key_F5),
              .tip = tr("Analyses the whole record."),
              .needsProfile = true},
             [this] { doc_->ComputeAll(); });
  AddCommand(menu,
             {.name = "computeOnZoom",
              .text = tr("Compute on &Zoom"),
              .keys = QKeySequence(Qt::Key_F6),
              .tip = tr("Analyses the stretch in view."),
              .needsProfile = true},
             [this] {
               const QCPRange range = view_->Graph().VisibleX();
               const bool metric = doc_->document().settings.display.Metric;
               doc_->ComputeOver(kLengthMM.FromShown(std::max(range.lower, 0.0), metric),
                                 kLengthMM.FromShown(range.upper, metric));
             });
  AddCommand(menu,
             {.name = "computeBetweenXCursors",
              .text = tr("Compute Between X &Cursors"),
              .keys = QKeySequence(Qt::Key_F7),
              .tip = tr("Analyses the stretch between the upright cursors."),
              .needsProfile = true},
             [this] {
               const auto [first, last] = view_->BetweenCursorsMM();
               doc_->ComputeOver(std::max(first, 0.0), last);
             });
  AddCommand(menu,
             {.name = "computeOverRegion",
              .text = tr("Compute over &Region..."),
              .keys = QKeySequence(Qt::SHIFT | Qt::Key_F7),
              .tip = tr("Analyses a stretch that is entered."),
              .needsProfile = true},
             [this] {
               CRegionDialog dialog(doc_->document(), this);
               if (dialog.exec() == QDialog::Accepted) doc_->ComputeOver(dialog.Region());
             });
  AddCommand(menu,
             {.name = "computeOverClearAperture",
              .text = tr("Compute over C&lear Aperture"),
              .keys = QKeySequence(Qt::SHIFT | Qt::Key_F6),
              .tip = tr("Analyses an asphere over its clear aperture."),
              .needsProfile = true},
             [this] {
               CClearApertureDialog dialog(doc_->document(), this);
               if (dialog.exec() != QDialog::Accepted) return;
               const AnalysisSettings& chosen = dialog.Chosen();
               doc_->ComputeOverAperture(chosen.AsphereClearApertureDiameterMM,
                                         chosen.AsphereClearApertureCentralDiscardMM);
             });
  AddSwitch(
      menu,
      {.name = "wholeNumberOfCutoffs",
       .text = tr("&Whole Number of Cut-offs"),
       .tip = tr("Makes the evaluation length a whole number of cut-offs; sets region and end discard for it.")},
      [](const Document& document) { return document.scope.wholeCutoffs.has_value(); },
      [this](bool on) { doc_->UseWholeCutoffs(on); });
}

template <typename Window>
void CMainFrame::ShowWindowOfProfile() {
  auto* window = findChild<Window*>();
  if (window == nullptr) window = new Window(*doc_, this);
  window->show();
  window->activateWindow();
}

void CMainFrame::MakeTrustCommands(QMenu& menu) {
  AddCommand(menu,
             {.name = "uncertainty",
              .text = tr("&Uncertainty..."),
              .tip = tr("How sure every value is, by the budget of the instrument, and what contributes to that."),
              .needsProfile = true},
             [this] { ShowWindowOfProfile<CUncertaintyWindow>(); });
  AddCommand(menu,
             {.name = "comparePractices",
              .text = tr("Com&pare Settings..."),
              .tip = tr("What lies between the values by two settings, step by step."),
              .needsProfile = true},
             [this] { ShowWindowOfProfile<CCompareWindow>(); });
}

void CMainFrame::MakeAnalysisMenu() {
  QMenu* const menu = menuBar()->addMenu(tr("&Analysis"));
  MakeStretchCommands(*menu);
  menu->addSeparator();
  AddCommand(*menu,
             {.name = "excludeBetweenCursors",
              .text = tr("&Exclude Between Cursors"),
              .keys = QKeySequence(Qt::Key_F8),
              .tip = tr("Excludes the cursor region from form removal."),
              .needsProfile = true},
             [this] {
               const auto [first, last] = view_->BetweenCursorsMM();
               doc_->ExcludeBetween(first, last);
             });
  AddSwitch(
      *menu, {.name = "useAllDataForFormRemoval", .text = tr("Use all data for &Form Removal")},
      [](const Document& document) { return document.scope.allDataForForm; },
      [this](bool on) { doc_->UseAllDataForForm(on); });
  menu->addSeparator();
  AddCommand(*menu,
             {.name = "settings",
              .text = tr("&Settings..."),
              .keys = QKeySequence(Qt::CTRL | Qt::Key_T),
              .tip = tr("Form, filters, parameters and everything else that the analysis goes by.")},
             [this] { ShowSheet<CSettingsSheet>(); });
  AddCommand(*menu,
             {.name = "drawingIndication",
              .text = tr("Drawing I&ndication..."),
              .tip = tr("Sets filters, lengths, rows and limits by what stands on a drawing.")},
             [this] {
               CIndicationDialog dialog(doc_->document().settings, this);
               if (dialog.exec() == QDialog::Accepted) doc_->ReplaceSettings(dialog.Chosen());
             });
  AddCommand(*menu,
             {.name = "bearingRatiosAndHtp",
              .text = tr("&Bearing Ratios and Htp..."),
              .tip = tr("Rows of material ratios and of heights between them.")},
             [this] { ShowSheet<CBearingRatioSheet>(); });
  MakeTrustCommands(*menu);
  menu->addSeparator();
  AddCommand(
      *menu,
      {.name = "invert", .text = tr("&Invert"), .tip = tr("Turns the profile upside down."), .needsProfile = true},
      [this] { doc_->Invert(); });
  AddCommand(*menu,
             {.name = "identification",
              .text = tr("I&dentification..."),
              .tip = tr("Names the measurement."),
              .needsProfile = true},
             [this] {
               const auto text =
                   doc_->prompts().AskText("Enter the new identification:", doc_->document().profiles.identification);
               if (text) doc_->SetIdentification(*text);
             });
}

}  // namespace texturon
