// SPDX-License-Identifier: Apache-2.0

#include "ui/sheets/settings_sheet.h"

#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <string_view>
#include <utility>

#include "analysis/form_table.h"
#include "settings/cutoff_choices.h"
#include "settings/settings_changes.h"
#include "ui/qt_text.h"
#include "ui/sheets/shape_pages.h"

namespace texturon {
namespace {

/// Time after the last key before the analysis runs.
constexpr int kDelayMS = 250;

std::vector<FieldSpec> Fields(std::string_view section, std::initializer_list<std::string_view> keys) {
  std::vector<FieldSpec> fields;
  for (const std::string_view key : keys) fields.push_back({section, key});
  return fields;
}

std::vector<GroupSpec> FormGroups() {
  constexpr auto kForm = &AnalysisSettings::FormRemovalType;
  constexpr auto kThin = &AnalysisSettings::FormRemovalDataReductionMethod;
  GroupSpec form{"Form", Fields("ANALYSIS", {"FormRemovalType", "ResidualType"})};
  for (const FormRow& row : FormTable()) {
    for (const auto& [section, key] : row.keys) {
      if (!key.empty()) form.fields.push_back({section, key, kForm, row.number});
    }
  }
  return {std::move(form),
          {"Points of the fit",
           {{"ANALYSIS", "FormRemovalDataReductionMethod"},
            {"ANALYSIS", "FormRemovalNumberOfPoints", kThin, kThinToPoints},
            {"ANALYSIS", "FormRemovalReductionSpacingUM", kThin, kThinToSpacing}}},
          {"Stylus", {{"ANALYSIS", "CompTipRadiusWhenAvailble"}}}};
}

std::vector<GroupSpec> LevelGroups() {
  return {
      {"Levels", Fields("ANALYSIS", {"PrimaryHSCHeight", "RoughnessHSCHeight", "PrimaryVCHeight", "RoughnessVCHeight",
                                     "PrimaryPcLevel", "RoughnessPcLevel", "WavinessPcLevel"})},
      {"Envelopes and windows",
       Fields("ANALYSIS", {"ClosingRadiusForWvoid", "OpeningRadiusForWcvx", "WindowWidthForWseg", "WxpEndRegionsMM"})}};
}

std::vector<GroupSpec> ElementGroups() {
  return {{"Profile elements: least height",
           Fields("ANALYSIS", {"PsmPzPercent", "WsmWzPercent", "WcWzPercent", "RsmRzPercent", "RcRzPercent"})},
          {"Profile elements: least width",
           Fields("ANALYSIS", {"PsmSamplingLengthPercent", "WsmSamplingLengthPercent", "WcSamplingLengthPercent",
                               "RsmSamplingLengthPercent", "RcSamplingLengthPercent"})}};
}

std::vector<GroupSpec> TableGroups() {
  return {
      {"Sag table", Fields("ANALYSIS", {"SagTableLengthMM", "SagTableSpacingMM", "SagTableType", "SagTableFileName"})},
      {"Aspheric residual",
       Fields("ANALYSIS", {"AspResidualLengthMM", "AspResidualSpacingMM", "AspResidualFileType",
                           "AsphereResidualPadding", "AsphereResidualOffsetUM", "AspResidualFileName"})},
      {"MOD files", Fields("ASPHERIC_PARAMETERS", {"AsphereMODFileComment"})}};
}

std::vector<GroupSpec> DisplayGroups() {
  return {
      {"Window", Fields("DISPLAY", {"Metric", "UpperIsSplit", "LowerIsSplit", "ShowINIPathInHeading"})},
      {"Profile", Fields("DISPLAY", {"ShowClosingProfile", "ShowOpeningProfile", "ShowFilterTrans", "ShowXAxisValues",
                                     "CursorDisplayType", "ShowExtremeSlopes", "ExtremeSlopePlotDegrees"})},
      {"Parameters", Fields("DISPLAY", {"ParameterColumns", "PrimaryAsTpa", "RoughnessAsTpi"})},
      {"Curves", Fields("DISPLAY", {"BrcAdfType", "ShowRkLines"})},
      {"Report", Fields("DISPLAY", {"CompanyName", "LogoFile"})}};
}

std::vector<GroupSpec> ScaleGroups() {
  return {{"Profile", Fields("DISPLAY", {"ProfileAutoScale", "ProfileYMaxUM", "ProfileYMinUM", "Profile11AspectRatio",
                                         "ProfileAutoYSpacing", "ProfileYGridSpacingUM", "ProfileYGridStartUM"})},
          {"Spectrum", Fields("DISPLAY", {"SpectrumAutoScale", "SpectrumYMaxUM", "SpectrumYMinUM"})}};
}

}  // namespace

CLiveSheet::CLiveSheet(CTexturonDoc& doc, const QString& title, QWidget* parent)
    : QDialog(parent),
      doc_(doc),
      working_(doc.document().settings),
      former_(working_),
      pages_(new QTabWidget(this)),
      fault_(new QLabel(this)) {
  setWindowTitle(title);
  fault_->setObjectName("fault");
  fault_->setWordWrap(true);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(pages_, 1);
  layout->addWidget(fault_);
  layout->addWidget(buttons);
  delay_.setSingleShot(true);
  delay_.setInterval(kDelayMS);
  connect(&delay_, &QTimer::timeout, this, &CLiveSheet::ApplyNow);
  connect(&doc_, &CTexturonDoc::Changed, this, &CLiveSheet::OnChanged);
  connect(&doc_, &CTexturonDoc::Complained, fault_, &QLabel::setText);
}

void CLiveSheet::AddPage(CSettingsPage* page, const QString& title) {
  auto* const area = new QScrollArea(pages_);
  area->setWidget(page);
  area->setWidgetResizable(true);
  area->setFrameShape(QFrame::NoFrame);
  pages_->addTab(area, title);
  connect(page, &CSettingsPage::Edited, this, &CLiveSheet::OnEdited);
}

void CLiveSheet::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  working_ = doc_.document().settings;
  former_ = working_;
  seen_ = working_;
  hasEdited_ = false;
  SettleOwnCutoffs(working_.analysis);
  for (CSettingsPage* const page : findChildren<CSettingsPage*>()) page->Reset();
  ShowFault();
  pages_->setFocus();
}

void CLiveSheet::OnEdited() {
  ShowFault();
  for (CSettingsPage* const page : findChildren<CSettingsPage*>()) page->Refresh();
  delay_.start();
}

void CLiveSheet::ApplyNow() {
  delay_.stop();
  if (working_ == doc_.document().settings) return;
  const Settings& inForce = doc_.document().settings;
  const bool computes = working_.analysis != inForce.analysis || working_.autoLoading != inForce.autoLoading;
  applies_ = true;
  if (computes) {
    // All that is entered before the sheet closes is one edit.
    doc_.ReplaceSettingsLive(working_, hasEdited_ ? CTexturonDoc::Edit::kGoesOn : CTexturonDoc::Edit::kNew);
    hasEdited_ = true;
  } else {
    doc_.ReplaceDisplay(working_.display);
  }
  applies_ = false;
}

void CLiveSheet::OnChanged() {
  if (!isVisible()) return;
  const Settings& inForce = doc_.document().settings;
  if (applies_) {
    // The analysis itself sets some settings.
    working_ = inForce;
  } else {
    hasEdited_ = false;
    CarryChanges(seen_, inForce, former_);
    CarryChanges(seen_, inForce, working_);
  }
  seen_ = inForce;
  for (CSettingsPage* const page : findChildren<CSettingsPage*>()) page->Refresh();
}

void CLiveSheet::ShowFault() {
  fault_->clear();
  for (const CSettingsPage* const page : findChildren<CSettingsPage*>()) {
    if (!page->Fault().isEmpty()) return fault_->setText(tr("Not applied: %1.").arg(page->Fault()));
  }
}

void CLiveSheet::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!isEnter) return QDialog::keyPressEvent(event);
  // Enter ends an entry, not the sheet.
  if (auto* const button = qobject_cast<QPushButton*>(focusWidget())) return button->click();
  focusNextChild();
}

void CLiveSheet::done(int result) {
  if (result == QDialog::Accepted) {
    // What could not be used is shown rather than lost.
    for (int i = 0; i < pages_->count(); ++i) {
      if (!pages_->widget(i)->findChild<CSettingsPage*>()->Fault().isEmpty()) return pages_->setCurrentIndex(i);
    }
    ApplyNow();
  } else {
    working_ = former_;
    ApplyNow();
  }
  QDialog::done(result);
}

CSettingsSheet::CSettingsSheet(CTexturonDoc& doc, QWidget* parent) : CLiveSheet(doc, tr("Analysis Settings"), parent) {
  AddPage(new CFieldsPage(Working(), FormGroups()), tr("Form"));
  AddPage(new CFiltersPage(Working()), tr("Filters"));
  AddPage(new CParametersPage(Working()), tr("Parameters"));
  AddPage(new CFieldsPage(Working(), LevelGroups()), tr("Levels"));
  AddPage(new CFieldsPage(Working(), ElementGroups()), tr("Percentages"));
  AddPage(new CFieldsPage(Working(),
                          {{"Regions of Rpq and Rvq",
                            Fields("RXQ_PARAMETERS", {"RqFittingMethod", "UPLPercent", "LPLPercent", "UVLPercent",
                                                      "LVLPercent", "RxqValleyCountHeightUm", "RxqMinimumValleyCount",
                                                      "RxqUpperValleyCountPercent", "RxqLowerValleyCountPercent"})}}),
          tr("Probability"));
  AddPage(new CFieldsPage(Working(), {{"Motifs", Fields("MOTIF_PARAMETERS", {"MotifAMM", "MotifBMM", "UseTHMotif",
                                                                             "UseTHShortMotifCombination",
                                                                             "MotifRProfile", "MotifWProfile"})}}),
          tr("Motifs"));
  AddPage(new CAspherePage(Working(), doc), tr("Asphere"));
  AddPage(new CFieldsPage(Working(), TableGroups()), tr("Asphere Tables"));
  AddPage(new CFreeFormPage(Working(), doc), tr("Free Form"));
  AddPage(new CFieldsPage(Working(), DisplayGroups()), tr("Display"));
  AddPage(new CFieldsPage(Working(), ScaleGroups()), tr("Scales"));
  ResizeInCharacters(*this, 175, 46);
}

void CSettingsSheet::ShowParameter(const QString& name) {
  for (int i = 0; i < Pages().count(); ++i) {
    auto* const page = Pages().widget(i)->findChild<CParametersPage*>();
    if (page == nullptr || !page->ShowParameter(name)) continue;
    Pages().setCurrentIndex(i);
    return;
  }
}

CBearingRatioSheet::CBearingRatioSheet(CTexturonDoc& doc, QWidget* parent)
    : CLiveSheet(doc, tr("Bearing Ratios and Htp"), parent) {
  AddPage(new CPBearingRatioPage(Working()), tr("Primary Bearing Ratios"));
  AddPage(new CRBearingRatioPage(Working()), tr("Roughness Bearing Ratios"));
  AddPage(new CPagePHtp(Working()), tr("Primary Htp"));
  AddPage(new CPageRHtp(Working()), tr("Roughness Htp"));
  ResizeInCharacters(*this, 150, 30);
}

}  // namespace texturon
