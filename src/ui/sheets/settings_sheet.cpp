// SPDX-License-Identifier: Apache-2.0

#include "ui/sheets/settings_sheet.h"

#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include "analysis/form_table.h"
#include "settings/cutoff_choices.h"
#include "settings/settings_changes.h"
#include "ui/qt_text.h"
#include "ui/sheets/parameters_page.h"
#include "ui/sheets/shape_pages.h"

namespace texturon {
namespace {

/// Time after the last key before the analysis runs.
constexpr int kDelayMS = 250;

/// What the settings that differ are for; at most a few, then three dots.
QString ChangedTitles(const Settings& before, const Settings& after) {
  constexpr int kMost = 4;
  QStringList titles;
  for (const SettingKey& key : SettingsTable()) {
    const SettingBinding& binding = key.binding;
    const std::size_t count = binding.isRepeated() ? binding.rows->count(before) : 1;
    bool differs = binding.isRepeated() && count != binding.rows->count(after);
    for (std::size_t row = 0; row < count && !differs; ++row) {
      differs = binding.get(before, row) != binding.get(after, row);
    }
    const QString title = FromText(key.meaning);
    if (!differs || titles.contains(title)) continue;
    titles << (titles.size() < kMost ? title : QString::fromUtf8("\u2026"));
    if (titles.size() > kMost) break;
  }
  return titles.join(", ");
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
    RepeatChanges(seen_, inForce, former_);
    RepeatChanges(seen_, inForce, working_);
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
    // What was just typed is worth as much as what was applied before.
    ApplyNow();
    const QString titles = ChangedTitles(former_, doc_.document().settings);
    working_ = former_;
    ApplyNow();
    if (!titles.isEmpty()) emit PutBack(titles);
  }
  QDialog::done(result);
}

CSettingsSheet::CSettingsSheet(CTexturonDoc& doc, QWidget* parent) : CLiveSheet(doc, tr("Analysis Settings"), parent) {
  const auto addFields = [this](const char* page) { AddPage(new CFieldsPage(Working(), page), tr(page)); };
  addFields("Form");
  AddPage(new CFiltersPage(Working()), tr("Filters"));
  AddPage(new CParametersPage(Working()), tr("Parameters"));
  for (const char* const page : {"Levels", "Percentages", "Probability", "Motifs"}) addFields(page);
  AddPage(new CAspherePage(Working(), doc), tr("Asphere"));
  addFields("Asphere Tables");
  AddPage(new CFreeFormPage(Working(), doc), tr("Free Form"));
  for (const char* const page : {"Display", "Scales"}) addFields(page);
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
