// SPDX-License-Identifier: Apache-2.0

#include "ui/sheets/settings_pages.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>
#include <utility>

#include "settings/cutoff_choices.h"
#include "settings/setting_entry.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

/// Short titles for the columns of a list's table, by what its keys contain.
constexpr std::pair<std::string_view, const char*> kColumnTitles[] = {
    {"HighlightIfOut", "Mark if out"},    {"Toleranced", "Toleranced"},
    {"BilateralTol", "Both limits"},      {"UpperTolLimit", "Upper limit"},
    {"LowerTolLimit", "Lower limit"},     {"Selected", "Show"},
    {"MeanReferenced", "From mean line"}, {"DepthUM", "Depth"},
    {"OffsetPercent", "Reference"},       {"UpperPercent", "Upper ratio"},
    {"LowerPercent", "Lower ratio"},
};

QString ColumnTitle(const SettingKey& key, bool metric) {
  for (const auto& [part, title] : kColumnTitles) {
    if (key.binding.key.find(part) == std::string_view::npos) continue;
    const QString unit = FromText(EntryUnit(key, metric));
    return unit.isEmpty() ? QObject::tr(title) : QString("%1\n%2").arg(QObject::tr(title), unit);
  }
  return FromText(key.binding.key);
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

std::vector<const SettingKey*> CSettingsPage::Keys() const {
  std::vector<const SettingKey*> keys;
  for (const CSettingField* const field : fields_) keys.push_back(field->Place().key);
  return keys;
}

CSettingField* CSettingsPage::MakeField(std::string_view section, std::string_view key, bool isCell) {
  auto* const field = new CSettingField(*FindSetting(section, key), settings_, isCell, this);
  connect(field, &CSettingField::Edited, this, &CSettingsPage::Edited);
  fields_.push_back(field);
  return field;
}

CFieldsPage::CFieldsPage(Settings& settings, const std::vector<GroupSpec>& groups, QWidget* parent)
    : CSettingsPage(settings, parent) {
  auto* const layout = new QVBoxLayout(this);
  for (const GroupSpec& group : groups) {
    auto* const box = new QGroupBox(tr(group.title), this);
    auto* const form = new QFormLayout(box);
    for (const FieldSpec& spec : group.fields) {
      CSettingField* const field = MakeField(spec.section, spec.key, false);
      specs_.push_back(spec);
      const bool saysItself = field->Place().key->binding.type == SettingType::Flag;
      if (saysItself) {
        form->addRow(field);
      } else {
        form->addRow(field->Title(), field);
      }
    }
    layout->addWidget(box);
  }
  layout->addStretch(1);
  CFieldsPage::Refresh();
}

void CFieldsPage::Refresh() {
  CSettingsPage::Refresh();
  for (std::size_t i = 0; i < specs_.size(); ++i) {
    const FieldSpec& spec = specs_[i];
    fields_[i]->setEnabled(spec.needs == nullptr || settings_.analysis.*spec.needs == spec.neededValue);
  }
}

CFiltersPage::CFiltersPage(Settings& settings, QWidget* parent)
    : CFieldsPage(settings,
                  {{"Filter", {{"ANALYSIS", "FilterType"}, {"ANALYSIS", "SplineTension"}}},
                   {"Ends", {{"ANALYSIS", "UserDiscardType"}, {"ANALYSIS", "UserDiscardLengthMM"}}}},
                  parent) {
  auto* const box = new QGroupBox(tr("Cut-offs"), this);
  auto* const form = new QFormLayout(box);
  const std::pair<Cutoff, std::pair<QString, std::string_view>> cutoffs[] = {
      {Cutoff::kLong, {tr("Long-wave, Lc"), "UserLcCutoffMM"}},
      {Cutoff::kShort, {tr("Short-wave, Ls"), "UserLsCutoffMM"}}};
  for (const auto& [cutoff, texts] : cutoffs) {
    auto* const list = new QComboBox(box);
    GuardFromWheel(*list);
    list->setObjectName(FromText(texts.second) + "Choice");
    cutoffs_.push_back(list);
    CSettingField* const own = MakeField("ANALYSIS", texts.second, false);
    owns_.push_back(own);
    specs_.push_back({"ANALYSIS", texts.second});
    connect(list, &QComboBox::activated, this, [this, which = cutoff](int index) {
      ChooseCutoff(settings_.analysis, which, static_cast<std::size_t>(index));
      emit Edited();
    });
    connect(own, &CSettingField::Edited, this, [this] { FollowOwnCutoffs(settings_.analysis); });
    form->addRow(texts.first, list);
    form->addRow(tr("The user's own"), own);
  }
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
    list->addItem(tr("own"));
    const auto chosen = static_cast<int>(ChosenCutoff(settings_.analysis, cutoff));
    list->setCurrentIndex(chosen);
    owns_[which]->setEnabled(chosen + 1 == list->count());
  }
}

CRowsPage::CRowsPage(Settings& settings, std::string_view section, QWidget* parent) : CSettingsPage(settings, parent) {
  auto* const outer = new QVBoxLayout(this);
  auto* const grid = new QGridLayout;
  outer->addLayout(grid);
  outer->addStretch(1);
  int column = 1;
  for (const SettingKey& key : SettingsTable()) {
    if (key.binding.section != section || !key.binding.isRepeated()) continue;
    auto* const title = new QLabel(this);
    titles_.emplace_back(title, &key);
    title->setToolTip(FromText(key.meaning));
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
