// SPDX-License-Identifier: Apache-2.0

#include "ui/sheets/settings_pages.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "base/quantity.h"
#include "presentation/cutoff_proposal.h"
#include "settings/cutoff_choices.h"
#include "settings/setting_entry.h"
#include "ui/language.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

QString ColumnTitle(const SettingKey& key, bool metric) {
  // In several lines, so that ten rows of nine columns fit a small screen.
  const QString title = QObject::tr(key.entry.shortTitle).replace(' ', '\n');
  const QString unit = FromText(EntryUnit(key, metric));
  return unit.isEmpty() ? title : QString("%1\n%2").arg(title, unit);
}

void SortByRank(std::vector<const SettingKey*>& keys) {
  std::stable_sort(keys.begin(), keys.end(),
                   [](const SettingKey* a, const SettingKey* b) { return a->entry.rank < b->entry.rank; });
}

std::vector<const SettingKey*> KeysOf(SettingGroup group) {
  std::vector<const SettingKey*> keys;
  for (const SettingKey& key : SettingsTable()) {
    if (key.entry.group == group) keys.push_back(&key);
  }
  SortByRank(keys);
  return keys;
}

/// A row whose label is as wide as any, in several lines where it is long.
QLabel* AddRow(QFormLayout& form, const QString& title, QWidget& field) {
  constexpr int kLabelWidth = 27;
  auto* const label = new QLabel(QString(title).replace('&', "&&"), form.parentWidget());
  label->setWordWrap(true);
  label->setFixedWidth(label->fontMetrics().averageCharWidth() * kLabelWidth);
  label->setBuddy(field.focusProxy() != nullptr ? field.focusProxy() : &field);
  form.setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  form.addRow(label, &field);
  return label;
}

}  // namespace

void CSettingsPage::Refresh() {
  for (CSettingField* const field : fields_) field->Refresh();
}

void CSettingsPage::Reset() {
  for (CSettingField* const field : fields_) field->Reset();
  Refresh();
}

QString CSettingsPage::Fault() const {
  for (const CSettingField* const field : fields_) {
    if (!field->Fault().isEmpty()) return field->Title() + ": " + field->Fault();
  }
  return {};
}

void CSettingsPage::LeadToFault() {
  for (CSettingField* const field : fields_) {
    if (!field->Fault().isEmpty()) return field->setFocus();
  }
}

std::vector<const SettingKey*> CSettingsPage::Keys() const {
  std::vector<const SettingKey*> keys;
  for (const CSettingField* const field : fields_) keys.push_back(field->Place().key);
  return keys;
}

void CSettingsPage::TakeDefaults(const Settings& defaults, Settings& settings) const {
  for (const SettingKey* const key : Keys()) {
    const SettingBinding& binding = key->binding;
    const std::size_t count =
        binding.isRepeated() ? std::min(binding.rows->count(defaults), binding.rows->count(settings)) : 1;
    for (std::size_t row = 0; row < count; ++row) binding.set(settings, row, binding.get(defaults, row));
  }
}

CSettingField* CSettingsPage::MakeField(std::string_view section, std::string_view key, bool isCell) {
  auto* const field = new CSettingField(*FindSetting(section, key), settings_, isCell, this);
  connect(field, &CSettingField::Edited, this, &CSettingsPage::Edited);
  fields_.push_back(field);
  return field;
}

CFieldsPage::CFieldsPage(Settings& settings, std::string_view page, QWidget* parent) : CSettingsPage(settings, parent) {
  auto* const layout = new QVBoxLayout(this);
  for (const SettingGroupTitles& group : SettingGroups()) {
    if (group.page != page) continue;
    auto* const box = new QGroupBox(tr(group.title), this);
    auto* const form = new QFormLayout(box);
    for (const SettingKey* const key : KeysOf(group.group)) {
      CSettingField* const field = MakeField(key->binding.section, key->binding.key, false);
      AddRow(*form, field->Title(), *field)->setToolTip(field->Tip());
    }
    layout->addWidget(box);
  }
  layout->addStretch(1);
  CFieldsPage::Refresh();
}

void CFieldsPage::Refresh() {
  CSettingsPage::Refresh();
  for (CSettingField* const field : fields_) field->setEnabled(HasEffect(*field->Place().key, settings_));
}

CFiltersPage::CFiltersPage(Settings& settings, const CTexturonDoc& doc, QWidget* parent)
    : CFieldsPage(settings, "Filters", parent), doc_(doc) {
  auto* const box = new QGroupBox(tr("Cut-offs"), this);
  auto* const form = new QFormLayout(box);
  const std::pair<Cutoff, std::pair<QString, std::string_view>> cutoffs[] = {
      {Cutoff::kLong, {tr("Long-wave, Lc"), "UserLcCutoffMM"}},
      {Cutoff::kShort, {tr("Short-wave, Ls"), "UserLsCutoffMM"}}};
  for (const auto& [cutoff, texts] : cutoffs) {
    auto* const list = new QComboBox(box);
    GuardFromWheel(*list);
    list->setObjectName(FromText(texts.second) + "Choice");
    list->setAccessibleName(texts.first);
    cutoffs_.push_back(list);
    CSettingField* const own = MakeField("ANALYSIS", texts.second, false);
    owns_.push_back(own);
    connect(list, &QComboBox::activated, this, [this, which = cutoff](int index) {
      ChooseCutoff(settings_.analysis, which, static_cast<std::size_t>(index));
      emit Edited();
    });
    connect(own, &CSettingField::Edited, this, [this] { FollowOwnCutoffs(settings_.analysis); });
    AddRow(*form, texts.first, *list);
    AddRow(*form, cutoff == Cutoff::kLong ? tr("Your own Lc") : tr("Your own Ls"), *own)->setToolTip(own->Tip());
  }
  AddProposals(*form);
  static_cast<QVBoxLayout*>(layout())->insertWidget(1, box);
  CFiltersPage::Refresh();
}

void CFiltersPage::Refresh() {
  CFieldsPage::Refresh();
  const bool metric = settings_.display.Metric;
  const SettingKey& key = *FindSetting("ANALYSIS", "LcCutoffMM")->key;
  for (const Cutoff cutoff : {Cutoff::kLong, Cutoff::kShort}) {
    const auto which = static_cast<std::size_t>(cutoff);
    QComboBox* const list = cutoffs_[which];
    list->clear();
    for (const double mm : StandardCutoffsMM(cutoff)) {
      const std::string text = EntryText(key, mm, metric) + " " + EntryUnit(key, metric);
      list->addItem(mm > 0.0 ? FromText(text) : tr("none"));
    }
    list->addItem(tr("your own, entered below"));
    const auto chosen = static_cast<int>(ChosenCutoff(settings_.analysis, cutoff));
    list->setCurrentIndex(chosen);
    owns_[which]->setEnabled(chosen + 1 == list->count());
  }
  ShowProposals();
}

void CFiltersPage::TakeDefaults(const Settings& defaults, Settings& settings) const {
  CFieldsPage::TakeDefaults(defaults, settings);
  const AnalysisSettings& from = defaults.analysis;
  AnalysisSettings& to = settings.analysis;
  to.LcCutoffMM = from.LcCutoffMM;
  to.LsCutoffMM = from.LsCutoffMM;
  to.StandardLcCutoff = from.StandardLcCutoff;
  to.StandardLsCutoff = from.StandardLsCutoff;
}

void CFiltersPage::AddProposals(QFormLayout& form) {
  for (const CutoffBasis basis : {CutoffBasis::kRa, CutoffBasis::kRsm}) {
    auto* const reason = new QLabel(this);
    reason->setWordWrap(true);
    auto* const apply = new QPushButton(this);
    apply->setObjectName(basis == CutoffBasis::kRa ? "cutoffByRa" : "cutoffByRsm");
    connect(apply, &QPushButton::clicked, this, [this, basis] {
      const CutoffProposal proposal = ProposeCutoff(doc_.document(), basis);
      if (!proposal.cutoffMM) return;
      const auto standard = StandardCutoffsMM(Cutoff::kLong);
      const auto found = std::find(standard.begin(), standard.end(), *proposal.cutoffMM);
      ChooseCutoff(settings_.analysis, Cutoff::kLong, static_cast<std::size_t>(found - standard.begin()));
      emit Edited();
    });
    form.addRow(reason);
    form.addRow(apply);
    proposals_.emplace_back(reason, apply);
  }
  // What is proposed goes by the results, which come a moment after an entry.
  connect(&doc_, &CTexturonDoc::Changed, this, &CFiltersPage::ShowProposals);
}

void CFiltersPage::ShowProposals() {
  constexpr CutoffBasis kBases[] = {CutoffBasis::kRa, CutoffBasis::kRsm};
  for (std::size_t i = 0; i < proposals_.size(); ++i) {
    const CutoffProposal proposal = ProposeCutoff(doc_.document(), kBases[i]);
    const auto& [reason, apply] = proposals_[i];
    reason->setText(Readable(EngineText(proposal.reason)));
    const bool differs = proposal.cutoffMM && *proposal.cutoffMM != settings_.analysis.LcCutoffMM;
    apply->setVisible(differs);
    if (!differs) continue;
    const QString cutoff =
        FromText(LengthText(*proposal.cutoffMM, settings_.display.Metric, {.metric = 2, .imperial = 4}));
    apply->setText(i == 0 ? tr("Take %1 (not periodic)").arg(cutoff) : tr("Take %1 (periodic)").arg(cutoff));
  }
}

CRowsPage::CRowsPage(Settings& settings, std::string_view section, QWidget* parent) : CSettingsPage(settings, parent) {
  auto* const outer = new QVBoxLayout(this);
  auto* const grid = new QGridLayout;
  outer->addLayout(grid);
  outer->addStretch(1);
  int column = 1;
  std::vector<const SettingKey*> keys;
  for (const SettingKey& key : SettingsTable()) {
    if (key.binding.section == section && key.binding.isRepeated()) keys.push_back(&key);
  }
  SortByRank(keys);
  for (const SettingKey* const each : keys) {
    const SettingKey& key = *each;
    auto* const title = new QLabel(this);
    titles_.emplace_back(title, &key);
    title->setToolTip(EngineText(key.meaning));
    grid->addWidget(title, 0, column);
    for (std::size_t row = 0; row < key.binding.rows->count(settings); ++row) {
      if (column == 1) grid->addWidget(new QLabel(QString::number(row + 1), this), static_cast<int>(row) + 1, 0);
      CSettingField* const field = MakeField(section, KeyOfRow(key.binding, row), true);
      grid->addWidget(field, static_cast<int>(row) + 1, column);
    }
    ++column;
  }
  CRowsPage::Refresh();
}

void CRowsPage::Refresh() {
  CSettingsPage::Refresh();
  for (const auto& [title, key] : titles_) title->setText(ColumnTitle(*key, settings_.display.Metric));
}

}  // namespace texturon
