// SPDX-License-Identifier: Apache-2.0

#include "ui/sheets/parameters_page.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "parameters/catalogue.h"
#include "parameters/edition2021/edition_list.h"
#include "presentation/shown_rows.h"
#include "settings/setting_entry.h"
#include "ui/colours.h"
#include "ui/language.h"
#include "ui/qt_text.h"
#include "ui/sheets/edition_notice.h"

namespace texturon {
namespace {

/// Keys of the columns; those without one are only read.
constexpr std::string_view kColumns[] = {"Selected%02d",
                                         {},
                                         "Toleranced%02d",
                                         "BilateralTol%02d",
                                         "MetricLowerTolLimit%02d",
                                         "MetricUpperTolLimit%02d",
                                         "HighlightIfOut%02d",
                                         {}};

constexpr int kUnitColumn = 1;
constexpr int kTolerancedColumn = 2;
constexpr int kBothColumn = 3;
constexpr int kLimitColumn = 4;

const SettingKey* KeyOfColumn(int column) {
  const std::string_view name = kColumns[column];
  for (const SettingKey& key : SettingsTable()) {
    if (key.binding.section == "PARAMETERS" && key.binding.key == name) return &key;
  }
  return nullptr;
}

}  // namespace

CParametersPage::CParametersPage(Settings& settings, QWidget* parent)
    : CSettingsPage(settings, parent),
      shown_(settings),
      table_(new QTableWidget(0, std::size(kColumns), this)),
      filter_(new QLineEdit(this)),
      note_(new QLabel(this)) {
  filter_->setPlaceholderText(tr("Find"));
  filter_->setClearButtonEnabled(true);
  filter_->setToolTip(tr("Find by name or definition"));
  filter_->setAccessibleName(filter_->toolTip());
  table_->setAccessibleName(tr("Parameters"));
  QStringList titles;
  for (int column = 0; column < table_->columnCount(); ++column) {
    const SettingKey* const key = KeyOfColumn(column);
    // In two lines, so that the columns are as narrow as what they hold.
    titles << (key != nullptr          ? tr(key->entry.shortTitle).replace(' ', '\n')
               : column == kUnitColumn ? tr("Limits\nin")
                                       : tr("Definition"));
  }
  table_->setObjectName("parameters");
  table_->setHorizontalHeaderLabels(titles);
  for (int column = 0; column < table_->columnCount(); ++column) {
    const SettingKey* const key = KeyOfColumn(column);
    if (key != nullptr) table_->horizontalHeaderItem(column)->setToolTip(EngineText(key->meaning));
  }
  table_->verticalHeader()->setVisible(false);
  table_->horizontalHeader()->setStretchLastSection(true);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setTabKeyNavigation(false);
  table_->setWordWrap(false);
  table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().height() + 8);
  auto* const layout = new QVBoxLayout(this);
  auto* const buttons = new QHBoxLayout;
  buttons->addWidget(filter_, 1);
  const std::pair<QString, std::function<void()>> commands[] = {{tr("&Up"), [this] { Move(-1); }},
                                                                {tr("&Down"), [this] { Move(1); }},
                                                                {tr("&All"), [this] { SelectAll(true); }},
                                                                {tr("&None"), [this] { SelectAll(false); }}};
  for (const auto& [text, run] : commands) {
    auto* const button = new QPushButton(text, this);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, run);
    buttons->addWidget(button);
  }
  layout->addLayout(buttons);
  layout->addWidget(table_, 1);
  note_->setObjectName("note");
  note_->setWordWrap(true);
  note_->setVisible(false);
  layout->addWidget(note_);
  // What the limits are kept by.
  auto* const rules = new QGridLayout;
  for (const std::string_view key : {"DecisionRule", "AcceptanceRule"}) {
    CSettingField* const field = MakeField("DECISION", key, false);
    auto* const label = new QLabel(field->Title(), this);
    label->setBuddy(field->focusProxy());
    label->setToolTip(field->Tip());
    label->setWordWrap(true);  // a long one must not make the sheet too wide to stand beside the profile
    const int row = rules->rowCount();
    rules->addWidget(label, row, 0);
    rules->addWidget(field, row, 1);
  }
  rules->setColumnStretch(1, 1);
  layout->addLayout(rules);
  connect(filter_, &QLineEdit::textChanged, this, &CParametersPage::Filter);
  connect(table_, &QTableWidget::itemChanged, this, &CParametersPage::OnItem);
  CParametersPage::Refresh();
  table_->resizeColumnsToContents();
  table_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  // The definition has at least as much as tells what it is about; the whole is its tip.
  constexpr int kLeastDefinition = 12;
  const int last = table_->columnCount() - 1;
  int width =
      table_->fontMetrics().averageCharWidth() * kLeastDefinition + table_->verticalScrollBar()->sizeHint().width();
  for (int column = 0; column < last; ++column) width += table_->columnWidth(column);
  table_->setMinimumWidth(width + 2 * table_->frameWidth());
}

void CParametersPage::Refresh() {
  CSettingsPage::Refresh();
  const QSignalBlocker quiet(table_);
  const auto isNamed = [](const ParameterSelection& a, const ParameterSelection& b) { return a.name == b.name; };
  const std::vector<ParameterSelection> before = std::move(shown_.analysis.parameters);
  shown_.analysis.parameters = OfferedRows(settings_.analysis);
  const std::vector<ParameterSelection>& rows = shown_.analysis.parameters;
  // What could not be used belongs to rows that stand elsewhere now.
  if (!std::equal(before.begin(), before.end(), rows.begin(), rows.end(), isNamed)) DropFaults();
  table_->setRowCount(static_cast<int>(rows.size()));
  for (int row = 0; row < table_->rowCount(); ++row) {
    const std::string& name = rows[static_cast<std::size_t>(row)].name;
    for (int column = 0; column < table_->columnCount(); ++column) {
      QTableWidgetItem* item = table_->item(row, column);
      if (item == nullptr) table_->setItem(row, column, item = new QTableWidgetItem);
      if (faults_.contains({row, column})) continue;
      const SettingKey* const key = KeyOfColumn(column);
      Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
      if (key == nullptr) {
        item->setText(TextOf(name, column == kUnitColumn));
      } else {
        const SettingValue value = key->binding.get(shown_, static_cast<std::size_t>(row));
        if (const bool* const flag = std::get_if<bool>(&value)) {
          flags |= Qt::ItemIsUserCheckable;
          item->setCheckState(*flag ? Qt::Checked : Qt::Unchecked);
          if (column == 0) {
            item->setText(TitleOf(name));
            item->setToolTip(item->text());
          }
        } else {
          flags |= Qt::ItemIsEditable;
          item->setText(FromText(EntryText(*key, value, true)));
        }
      }
      if (column + 1 == table_->columnCount()) item->setToolTip(item->text());
      item->setFlags(flags);
    }
  }
  FitNames();
  ShowNote();
}

void CParametersPage::ShowNote() {
  QStringList sentences;
  if (gone_ > 0) sentences << tr("A list holds 128 parameters; %n more left out. Take others off.", nullptr, gone_);
  if (const QString notice = TwoUnitsNotice(settings_.analysis); !notice.isEmpty()) sentences << notice;
  note_->setText(sentences.join(' '));
  note_->setVisible(!sentences.isEmpty());
}

void CParametersPage::FitNames() {
  // A name with its editions is read whole; the definition, which has its tip, gives the room.
  constexpr int kMostCharacters = 26;
  const int most = table_->fontMetrics().averageCharWidth() * kMostCharacters;
  table_->resizeColumnToContents(0);
  if (table_->columnWidth(0) > most) table_->setColumnWidth(0, most);
}

QString CParametersPage::TitleOf(const std::string& name) const {
  if (ChosenEdition(settings_.analysis) != EditionChoice::kBoth) return FromText(name);
  const bool isOld = FindMasterRow(name) != nullptr;
  const bool isNew = ParseEditionName(name).row != nullptr;
  if (!isOld && !isNew) return FromText(name);
  const QString edition = isOld && isNew ? tr("both") : FromText(NameOf(isNew ? Edition::k2021 : Edition::k1997));
  return QString("%1 (%2)").arg(FromText(name), edition);
}

QString CParametersPage::TextOf(const std::string& name, bool isUnit) const {
  const EditionChoice chosen = ChosenEdition(settings_.analysis);
  const auto textOf = [isUnit](const auto& row) {
    return Readable(EngineText(isUnit ? PrintedUnit(row.quantity.metricUnit) : std::string(row.definition)));
  };
  const MasterRow* const master = chosen == EditionChoice::k2021 ? nullptr : FindMasterRow(name);
  const QString alias = master != nullptr && !isUnit ? EngineText(OtherName(*master)) : QString();
  const EditionRow* const row = chosen == EditionChoice::k1997 ? nullptr : ParseEditionName(name).row;
  if (master == nullptr) return row != nullptr ? textOf(*row) : QString();
  const QString before = textOf(*master);
  if (row == nullptr) return alias.isEmpty() ? before : before + ' ' + alias;
  const QString now = textOf(*row);
  if (now == before) return now;
  return isUnit ? (before.isEmpty() ? "1" : before) + " / " + (now.isEmpty() ? "1" : now)
                : QString("1997: %1 2021: %2").arg(before, now);
}

bool CParametersPage::ShowParameter(const QString& name) {
  const auto& rows = shown_.analysis.parameters;
  const auto row = std::find_if(rows.begin(), rows.end(), [&](const auto& each) { return each.name == ToText(name); });
  if (row == rows.end()) return false;
  filter_->clear();
  table_->setCurrentCell(static_cast<int>(row - rows.begin()), kLimitColumn);
  table_->scrollToItem(table_->currentItem(), QAbstractItemView::PositionAtCenter);
  table_->setFocus();
  return true;
}

void CParametersPage::DropFaults() {
  for (const auto& [cell, fault] : faults_) Mark(*table_->item(cell.first, cell.second), {});
  faults_.clear();
}

void CParametersPage::Reset() {
  const QSignalBlocker quiet(table_);
  DropFaults();
  gone_ = 0;
  CSettingsPage::Reset();
}

void CParametersPage::Take() {
  gone_ = static_cast<int>(TakeOfferedRows(shown_.analysis.parameters, settings_.analysis));
  ShowNote();
  emit Edited();
}

QString CParametersPage::Fault() const {
  return faults_.empty() ? CSettingsPage::Fault() : faults_.begin()->second;
}

void CParametersPage::LeadToFault() {
  if (faults_.empty()) return CSettingsPage::LeadToFault();
  const auto [row, column] = faults_.begin()->first;
  // What Find has put away is seen again.
  filter_->clear();
  table_->setCurrentCell(row, column, QItemSelectionModel::NoUpdate);
  table_->scrollToItem(table_->item(row, column), QAbstractItemView::PositionAtCenter);
  table_->setFocus();
}

void CParametersPage::TakeDefaults(const Settings& defaults, Settings& settings) const {
  settings.analysis.parameters = defaults.analysis.parameters;
  settings.decision = defaults.decision;
}

void CParametersPage::Mark(QTableWidgetItem& item, const QString& fault) {
  item.setBackground(fault.isEmpty() ? QBrush() : QBrush(VerdictGround(false)));
  item.setForeground(fault.isEmpty() ? QBrush() : QBrush(Qt::white));
  item.setToolTip(fault);
  // A selected row would hide it.
  if (!fault.isEmpty()) table_->clearSelection();
}

std::vector<const SettingKey*> CParametersPage::Keys() const {
  std::vector<const SettingKey*> keys = CSettingsPage::Keys();
  for (int column = 0; column < table_->columnCount(); ++column) {
    if (const SettingKey* const key = KeyOfColumn(column)) keys.push_back(key);
  }
  return keys;
}

void CParametersPage::OnItem(QTableWidgetItem* item) {
  const SettingKey* const key = KeyOfColumn(item->column());
  if (key == nullptr) return;
  const auto row = static_cast<std::size_t>(item->row());
  if ((item->flags() & Qt::ItemIsUserCheckable) != 0) {
    key->binding.set(shown_, row, item->checkState() == Qt::Checked);
  } else {
    const EntryReading entry = ReadEntry(*key, ToText(item->text()), true);
    const QSignalBlocker quiet(table_);
    const std::pair cell(item->row(), item->column());
    faults_.erase(cell);
    if (!entry.ok()) faults_[cell] = FromText(shown_.analysis.parameters[row].name + ": ") + EngineText(entry.fault);
    Mark(*item, EngineText(entry.fault));
    if (!entry.ok()) return emit Edited();
    key->binding.set(shown_, row, entry.value);
    LetCount(*item);
  }
  Take();
}

void CParametersPage::LetCount(const QTableWidgetItem& limit) {
  const auto row = static_cast<std::size_t>(limit.row());
  const bool isLower = limit.column() == kLimitColumn;
  Tolerance& tolerance = shown_.analysis.parameters[row].tolerance;
  if ((isLower ? tolerance.lowerLimit : tolerance.upperLimit) == 0.0) return;
  tolerance.toleranced = true;
  table_->item(limit.row(), kTolerancedColumn)->setCheckState(Qt::Checked);
  if (!isLower) return;
  tolerance.bilateral = true;
  table_->item(limit.row(), kBothColumn)->setCheckState(Qt::Checked);
}

void CParametersPage::Move(int by) {
  std::vector<ParameterSelection>& rows = shown_.analysis.parameters;
  const int from = table_->currentRow();
  const int to = from + by;
  if (from < 0 || to < 0 || to >= static_cast<int>(rows.size()) || !faults_.empty()) return;
  std::swap(rows[static_cast<std::size_t>(from)], rows[static_cast<std::size_t>(to)]);
  for (std::size_t i = 0; i < rows.size(); ++i) rows[i].selectionRef = static_cast<std::int32_t>(i);
  Take();
  table_->setCurrentCell(to, std::max(table_->currentColumn(), 0));
}

void CParametersPage::SelectAll(bool selected) {
  for (int row = 0; row < table_->rowCount(); ++row) {
    // What the search hides stays as it is.
    if (!table_->isRowHidden(row)) shown_.analysis.parameters[static_cast<std::size_t>(row)].selected = selected;
  }
  Take();
}

void CParametersPage::Filter(const QString& text) {
  const auto has = [&](int row, int column) {
    return table_->item(row, column)->text().contains(text, Qt::CaseInsensitive);
  };
  // Definitions are looked into where no name has the text: "Ra" is not sought for "range" and "spectral".
  bool isName = false;
  for (int row = 0; row < table_->rowCount(); ++row) isName = isName || has(row, 0);
  for (int row = 0; row < table_->rowCount(); ++row) {
    table_->setRowHidden(row, !has(row, isName ? 0 : table_->columnCount() - 1));
  }
  // Who looks for a row by its other name is led to it.
  const auto& rows = shown_.analysis.parameters;
  const auto named = std::find_if(rows.begin(), rows.end(), [&](const auto& each) {
    const MasterRow* const master = FindMasterRow(each.name);
    return master != nullptr && !text.isEmpty() && FromText(master->details.planName) == text;
  });
  if (named == rows.end()) return;
  const auto row = static_cast<int>(named - rows.begin());
  table_->setRowHidden(row, false);
  table_->setCurrentCell(row, 0);
  table_->scrollToItem(table_->item(row, 0));
}

}  // namespace texturon
