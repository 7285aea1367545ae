// SPDX-License-Identifier: Apache-2.0

#include "ui/sheets/settings_sheet.h"

#include <QDialogButtonBox>
#include <QDockWidget>
#include <QKeyEvent>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <utility>

#include "analysis/form_table.h"
#include "settings/cutoff_choices.h"
#include "settings/settings_changes.h"
#include "ui/language.h"
#include "ui/qt_text.h"
#include "ui/sheets/edition_notice.h"
#include "ui/sheets/parameters_page.h"
#include "ui/sheets/presets.h"
#include "ui/sheets/shape_pages.h"
#include "ui/sheets/standard_page.h"

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
    const QString title = EngineText(key.meaning);
    if (!differs || titles.contains(title)) continue;
    titles << (titles.size() < kMost ? title : QString::fromUtf8("\u2026"));
    if (titles.size() > kMost) break;
  }
  return titles.join(", ");
}

}  // namespace

CLiveSheet::CLiveSheet(CTexturonDoc& doc, const QString& title, QWidget* parent)
    : QWidget(parent),
      doc_(doc),
      working_(doc.document().settings),
      former_(working_),
      pages_(new CPageList(this)),
      fault_(new QLabel(this)),
      leader_(new QPushButton(tr("Show"), this)) {
  setWindowTitle(title);
  fault_->setObjectName("fault");
  fault_->setWordWrap(true);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(pages_, 1);
  auto* const fault = new QHBoxLayout;
  fault->addWidget(fault_, 1);
  fault->addWidget(leader_, 0, Qt::AlignTop);
  layout->addLayout(fault);
  layout->addWidget(MakeFoot());
  leader_->setObjectName("leadToFault");
  leader_->setAutoDefault(false);
  leader_->setToolTip(tr("Leads to the entry that is not applied."));
  leader_->hide();
  connect(leader_, &QPushButton::clicked, this, &CLiveSheet::LeadToFault);
  delay_.setSingleShot(true);
  delay_.setInterval(kDelayMS);
  connect(&delay_, &QTimer::timeout, this, &CLiveSheet::ApplyNow);
  connect(&doc_, &CTexturonDoc::Changed, this, &CLiveSheet::OnChanged);
  connect(&doc_, &CTexturonDoc::Complained, fault_, &QLabel::setText);
  connect(pages_, &CPageList::CurrentChanged, this, &CLiveSheet::AssignPageLetters);
  // Until it is asked for.
  QWidget::setVisible(false);
}

QWidget* CLiveSheet::MakeFoot() {
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &CLiveSheet::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &CLiveSheet::reject);
  // Letters that neither the menus nor the pages take.
  auto* const presets = buttons->addButton(tr("Pre&sets"), QDialogButtonBox::ResetRole);
  auto* const presetMenu = new QMenu(presets);
  presetMenu->setObjectName("presets");
  presetMenu->setToolTipsVisible(true);
  connect(presetMenu, &QMenu::aboutToShow, this, [this, presetMenu] { FillPresets(*presetMenu); });
  presets->setMenu(presetMenu);
  auto* const defaults = buttons->addButton(tr("Defaul&ts"), QDialogButtonBox::ResetRole);
  auto* const menu = new QMenu(defaults);
  connect(menu->addAction(tr("Of This &Page")), &QAction::triggered, this, [this] { TakeDefaults(false); });
  connect(menu->addAction(tr("Of &All Pages")), &QAction::triggered, this, [this] { TakeDefaults(true); });
  defaults->setMenu(menu);
  for (QPushButton* const button : buttons->findChildren<QPushButton*>()) button->setAutoDefault(false);
  return buttons;
}

void CLiveSheet::FillPresets(QMenu& menu) {
  menu.clear();
  bool hasOwn = false;
  for (const Preset& preset : ListPresets()) {
    if (preset.isOwn && !std::exchange(hasOwn, true)) menu.addSeparator();
    QAction* const action = menu.addAction(QString(preset.title).replace('&', "&&"));
    action->setToolTip(preset.remark.isEmpty() ? preset.file : preset.remark);
    connect(action, &QAction::triggered, this, [this, preset] {
      Settings settings = working_;
      if (!ApplyPreset(preset, settings)) return fault_->setText(tr("%1 holds no settings.").arg(preset.file));
      TakeOver(settings);
    });
  }
  menu.addSeparator();
  connect(menu.addAction(tr("&Keep as Preset...")), &QAction::triggered, this, &CLiveSheet::SaveAsPreset);
}

void CLiveSheet::SaveAsPreset() {
  const auto title = doc_.prompts().AskText("Name of the preset:", "");
  if (!title) return;
  const QString failure = SavePreset(FromText(*title), working_);
  if (!failure.isEmpty()) doc_.prompts().ShowMessage(ToText(failure));
}

void CLiveSheet::TakeDefaults(bool ofAllPages) {
  const Settings defaults = MakeDocument().settings;
  Settings settings = working_;
  for (int i = 0; i < pages_->count(); ++i) {
    if (!ofAllPages && i != pages_->currentIndex()) continue;
    pages_->widget(i)->findChild<CSettingsPage*>()->TakeDefaults(defaults, settings);
  }
  TakeOver(settings);
}

void CLiveSheet::TakeOver(const Settings& settings) {
  working_ = settings;
  SettleOwnCutoffs(working_.analysis);
  FollowEdition();
  for (CSettingsPage* const page : findChildren<CSettingsPage*>()) page->Reset();
  ShowFault();
  ApplyNow();
}

void CLiveSheet::NoteList() {
  edition_ = ChosenEdition(working_.analysis);
  list_ = working_.analysis.parameters;
}

void CLiveSheet::FollowEdition() {
  std::vector<ParameterSelection>& list = working_.analysis.parameters;
  editionNotice_.clear();
  const EditionChoice chosen = ChosenEdition(working_.analysis);
  if (list != list_) lists_.clear();
  if (chosen == edition_ || list != list_) return NoteList();
  lists_[edition_] = list;
  if (const auto own = lists_.find(chosen); own != lists_.end()) {
    list = own->second;
  } else {
    editionNotice_ = EditionNotice(TranslateList(edition_, working_.analysis), working_.analysis);
  }
  NoteList();
}

void CLiveSheet::setVisible(bool visible) {
  QWidget::setVisible(visible);
  if (auto* const panel = qobject_cast<QDockWidget*>(parentWidget())) {
    panel->setVisible(visible);
    if (visible) panel->raise();
  }
}

bool CLiveSheet::eventFilter(QObject* watched, QEvent* event) {
  // Who closes the panel cancels.
  if (watched == parentWidget() && event->type() == QEvent::Close) {
    event->ignore();
    reject();
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

void CLiveSheet::AssignPageLetters() {
  QString taken = "STOC";
  if (auto* const frame = qobject_cast<QMainWindow*>(doc_.parent())) {
    QStringList texts;
    for (const QAction* const menu : frame->menuBar()->actions()) texts << menu->text();
    if (frame->centralWidget() != nullptr) {
      for (const QLabel* const label : frame->centralWidget()->findChildren<QLabel*>()) {
        if (label->buddy() != nullptr) texts << label->text();
      }
    }
    for (const QString& text : texts) taken += QKeySequence::mnemonic(text).toString().right(1);
  }
  if (pages_->currentWidget() != nullptr) AssignLetters(*pages_->currentWidget(), taken);
}

void CLiveSheet::AddPage(CSettingsPage* page, const QString& title) {
  auto* const area = new QScrollArea(pages_);
  area->setWidget(page);
  area->setWidgetResizable(true);
  area->setFrameShape(QFrame::NoFrame);
  // It is as wide as what it holds: nobody scrolls a form sideways.
  area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  area->setMinimumWidth(page->minimumSizeHint().width() + area->verticalScrollBar()->sizeHint().width());
  pages_->Add(area, title);
  OrderTabs(*page);
  connect(page, &CSettingsPage::Edited, this, &CLiveSheet::OnEdited);
}

void CLiveSheet::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (event->spontaneous()) return;
  working_ = doc_.document().settings;
  former_ = working_;
  seen_ = working_;
  hasEdited_ = false;
  SettleOwnCutoffs(working_.analysis);
  lists_.clear();
  editionNotice_.clear();
  NoteList();
  for (CSettingsPage* const page : findChildren<CSettingsPage*>()) page->Reset();
  ShowFault();
  AssignPageLetters();
  pages_->Chooser().setFocus();
}

void CLiveSheet::OnEdited() {
  FollowEdition();
  ShowFault();
  for (CSettingsPage* const page : findChildren<CSettingsPage*>()) page->Refresh();
  delay_.start();
}

void CLiveSheet::ApplyNow() {
  delay_.stop();
  if (working_ == doc_.document().settings) return;
  const Settings& inForce = doc_.document().settings;
  const bool computes = working_.analysis != inForce.analysis || working_.autoLoading != inForce.autoLoading ||
                        working_.decision != inForce.decision;
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
  NoteList();
  for (CSettingsPage* const page : findChildren<CSettingsPage*>()) page->Refresh();
}

bool CLiveSheet::LeadToFault() {
  for (int i = 0; i < pages_->count(); ++i) {
    auto* const page = pages_->widget(i)->findChild<CSettingsPage*>();
    if (page->Fault().isEmpty()) continue;
    pages_->setCurrentIndex(i);
    page->LeadToFault();
    return true;
  }
  return false;
}

void CLiveSheet::ShowFault() {
  const auto pages = findChildren<CSettingsPage*>();
  leader_->setVisible(
      std::any_of(pages.begin(), pages.end(), [](const auto* page) { return !page->Fault().isEmpty(); }));
  for (const CSettingsPage* const page : findChildren<CSettingsPage*>()) {
    if (!page->Fault().isEmpty()) return fault_->setText(tr("Not applied: %1.").arg(page->Fault()));
  }
  fault_->setText(editionNotice_);
}

void CLiveSheet::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) return reject();
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!isEnter) return QWidget::keyPressEvent(event);
  // Only the buttons of the foot are pressed by it.
  auto* const button = qobject_cast<QPushButton*>(focusWidget());
  if (button != nullptr && qobject_cast<QDialogButtonBox*>(button->parentWidget()) != nullptr) return button->click();
  accept();
}

void CLiveSheet::accept() {
  // What could not be used is shown rather than lost.
  if (LeadToFault()) return;
  ApplyNow();
  setVisible(false);
}

void CLiveSheet::reject() {
  // What was just typed is worth as much as what was applied before.
  ApplyNow();
  const QString titles = ChangedTitles(former_, doc_.document().settings);
  working_ = former_;
  ApplyNow();
  if (!titles.isEmpty()) emit PutBack(titles);
  setVisible(false);
}

CSettingsSheet::CSettingsSheet(CTexturonDoc& doc, QWidget* parent) : CLiveSheet(doc, tr("Analysis Settings"), parent) {
  const auto addFields = [this](const char* page) { AddPage(new CFieldsPage(Working(), page), tr(page)); };
  addFields("Form");
  AddPage(new CFiltersPage(Working(), doc), tr("Filters"));
  AddPage(new CParametersPage(Working()), tr("Parameters"));
  for (const char* const page : {"Levels", "Percentages", "Probability", "Motifs"}) addFields(page);
  AddPage(new CAspherePage(Working(), doc), tr("Asphere"));
  addFields("Asphere Tables");
  AddPage(new CFreeFormPage(Working(), doc), tr("Free Form"));
  for (const char* const page : {"Display", "Scales"}) addFields(page);
  AddPage(new CStandardPage(Working()), tr("Standard"));
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
  AddPage(new CPBearingRatioPage(Working()), tr("Primary Ratios"));
  AddPage(new CRBearingRatioPage(Working()), tr("Roughness Ratios"));
  AddPage(new CPagePHtp(Working()), tr("Primary Htp"));
  AddPage(new CPageRHtp(Working()), tr("Roughness Htp"));
}

}  // namespace texturon
