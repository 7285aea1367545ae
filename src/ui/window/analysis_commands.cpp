// SPDX-License-Identifier: Apache-2.0

// The Analysis menu of the main window.

#include <QMenuBar>
#include <algorithm>

#include "base/quantity.h"
#include "ui/plots/texturon_view.h"
#include "ui/qt_text.h"
#include "ui/sheets/region_dialogs.h"
#include "ui/sheets/settings_sheet.h"
#include "ui/window/main_frame.h"

namespace texturon {

template <typename Sheet>
void CMainFrame::ShowSheet() {
  auto* sheet = findChild<Sheet*>();
  if (sheet == nullptr) sheet = new Sheet(*doc_, this);
  sheet->show();
  sheet->raise();
  sheet->activateWindow();
}

void CMainFrame::OnParameter(const QString& name) {
  const auto& rows = doc_->document().settings.analysis.parameters;
  const bool isListed =
      std::any_of(rows.begin(), rows.end(), [&](const auto& row) { return row.name == ToText(name); });
  if (!isListed) return ShowSheet<CBearingRatioSheet>();
  ShowSheet<CSettingsSheet>();
  findChild<CSettingsSheet*>()->ShowParameter(name);
}

void CMainFrame::MakeAnalysisMenu() {
  QMenu* const menu = menuBar()->addMenu(tr("&Analysis"));
  needProfile_ << AddCommand(*menu, tr("Compute &All"), QKeySequence(Qt::Key_F5), tr("Analyses the whole record."),
                             [this] { doc_->ComputeAll(); });
  needProfile_ << AddCommand(*menu, tr("Compute on &Zoom"), QKeySequence(Qt::Key_F6),
                             tr("Analyses the stretch in view."), [this] {
                               const QCPRange range = view_->Graph().VisibleX();
                               const bool metric = doc_->document().settings.display.Metric;
                               doc_->ComputeOver(kLengthMM.FromShown(std::max(range.lower, 0.0), metric),
                                                 kLengthMM.FromShown(range.upper, metric));
                             });
  needProfile_ << AddCommand(*menu, tr("Compute Between X &Cursors"), QKeySequence(Qt::Key_F7),
                             tr("Analyses the stretch between the upright cursors."), [this] {
                               const auto [first, last] = view_->BetweenCursorsMM();
                               doc_->ComputeOver(std::max(first, 0.0), last);
                             });
  needProfile_ << AddCommand(*menu, tr("Compute over &Region..."), QKeySequence(Qt::SHIFT | Qt::Key_F7),
                             tr("Analyses a stretch that is entered."), [this] {
                               CRegionDialog dialog(doc_->document(), this);
                               if (dialog.exec() == QDialog::Accepted) doc_->ComputeOver(dialog.Region());
                             });
  needProfile_ << AddCommand(*menu, tr("Compute over C&lear Aperture"), QKeySequence(Qt::SHIFT | Qt::Key_F6),
                             tr("Analyses an asphere over its clear aperture."), [this] {
                               CClearApertureDialog dialog(doc_->document(), this);
                               if (dialog.exec() != QDialog::Accepted) return;
                               const AnalysisSettings& chosen = dialog.Chosen();
                               doc_->ComputeOverAperture(chosen.AsphereClearApertureDiameterMM,
                                                         chosen.AsphereClearApertureCentralDiscardMM);
                             });
  AddSwitch(
      *menu, tr("&Whole Number of Cut-offs"),
      tr("Makes the evaluation length a whole number of cut-offs; sets region and end discard for it."),
      [](const Document& document) { return document.wholeCutoffLength; },
      [this](bool on) { doc_->UseWholeCutoffs(on); });
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
  AddCommand(*menu, tr("&Bearing Ratios and Htp..."), {}, tr("Rows of material ratios and of heights between them."),
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

}  // namespace texturon
