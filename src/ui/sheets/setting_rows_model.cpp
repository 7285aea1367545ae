// SPDX-License-Identifier: Apache-2.0

#include "ui/sheets/setting_rows_model.h"

#include <QBrush>
#include <QColor>
#include <algorithm>

#include "settings/setting_entry.h"
#include "ui/colours.h"
#include "ui/language.h"
#include "ui/qt_text.h"

namespace texturon {

CSettingRowsModel::CSettingRowsModel(Settings& settings, std::string_view section, std::function<QString(int)> rowName,
                                     QObject* parent)
    : QAbstractTableModel(parent), settings_(settings), rowName_(std::move(rowName)) {
  for (const SettingKey& key : SettingsTable()) {
    if (key.binding.section != section || key.binding.rows == nullptr) continue;
    if (key.binding.isRepeated()) {
      columns_.push_back(&key);
    } else {
      count_ = &key;
    }
  }
  shownRows_ = CSettingRowsModel::rowCount();
}

int CSettingRowsModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(count_->binding.rows->count(settings_));
}

int CSettingRowsModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant CSettingRowsModel::data(const QModelIndex& index, int role) const {
  if (index.row() >= rowCount()) return {};
  const auto wrong = wrong_.find({index.row(), index.column()});
  const bool isWrong = wrong != wrong_.end();
  const SettingKey& key = *columns_[static_cast<std::size_t>(index.column())];
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      if (isWrong) return wrong->second.text;
      return FromText(
          EntryText(key, key.binding.get(settings_, static_cast<std::size_t>(index.row())), settings_.display.Metric));
    case Qt::ToolTipRole:
      return isWrong ? wrong->second.fault : QString();
    case Qt::BackgroundRole:
      return isWrong ? QVariant(QBrush(VerdictGround(false))) : QVariant();
    case Qt::ForegroundRole:
      return isWrong ? QVariant(QBrush(Qt::white)) : QVariant();
    case Qt::TextAlignmentRole:
      return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
    default:
      return {};
  }
}

QVariant CSettingRowsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole) return {};
  if (orientation == Qt::Vertical) return rowName_(section);
  const SettingKey& key = *columns_[static_cast<std::size_t>(section)];
  const QString unit = FromText(EntryUnit(key, settings_.display.Metric));
  if (unit.isEmpty()) return tr("Coefficient");
  // X%06d(mm), Z%06d(um)
  return tr("%1 in %2").arg(FromText(key.binding.key.substr(0, 1)), unit);
}

Qt::ItemFlags CSettingRowsModel::flags(const QModelIndex& index) const {
  return QAbstractTableModel::flags(index) | Qt::ItemIsEditable;
}

bool CSettingRowsModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || !index.isValid()) return false;
  const SettingKey& key = *columns_[static_cast<std::size_t>(index.column())];
  const EntryReading entry = ReadEntry(key, ToText(value.toString()), settings_.display.Metric);
  if (entry.ok()) {
    wrong_.erase({index.row(), index.column()});
    key.binding.set(settings_, static_cast<std::size_t>(index.row()), entry.value);
  } else {
    wrong_[{index.row(), index.column()}] = {value.toString(), EngineText(entry.fault)};
  }
  emit dataChanged(index, index);
  emit Edited();
  return true;
}

void CSettingRowsModel::Refresh() {
  if (shownRows_ != rowCount()) return Reset();
  if (shownRows_ == 0) return;
  emit dataChanged(index(0, 0), index(shownRows_ - 1, columnCount() - 1));
  emit headerDataChanged(Qt::Vertical, 0, shownRows_ - 1);
}

void CSettingRowsModel::Reset() {
  beginResetModel();
  wrong_.clear();
  shownRows_ = rowCount();
  endResetModel();
}

QString CSettingRowsModel::Fault() const {
  if (wrong_.empty()) return {};
  return tr("row %1: %2").arg(rowName_(wrong_.begin()->first.first), wrong_.begin()->second.fault);
}

void CSettingRowsModel::Copy(std::size_t from, std::size_t to) {
  for (const SettingKey* const key : columns_) key->binding.set(settings_, to, key->binding.get(settings_, from));
}

int CSettingRowsModel::AddBehind(int row) {
  const SettingRows& rows = *count_->binding.rows;
  const std::size_t count = rows.count(settings_);
  if (count >= rows.most) return -1;
  std::size_t place = count;
  rows.resize(settings_, count + 1);
  if (!PlacesMatter()) {
    place = static_cast<std::size_t>(std::clamp(row + 1, 0, static_cast<int>(count)));
    for (std::size_t i = count; i > place; --i) Copy(i - 1, i);
    if (place > 0) Copy(place - 1, place);
  }
  Reset();
  emit Edited();
  return static_cast<int>(place);
}

void CSettingRowsModel::Remove(const std::vector<int>& rows) {
  const std::size_t count = count_->binding.rows->count(settings_);
  std::vector<bool> goes(count, false);
  for (const int row : rows) goes[static_cast<std::size_t>(row)] = true;
  std::size_t kept = 0;
  if (PlacesMatter()) {
    kept = count;
    while (kept > 0 && goes[kept - 1]) --kept;
    for (std::size_t i = 0; i < kept; ++i) {
      if (goes[i]) columns_.front()->binding.set(settings_, i, 0.0);
    }
  } else {
    for (std::size_t i = 0; i < count; ++i) {
      if (goes[i]) continue;
      if (kept < i) Copy(i, kept);
      ++kept;
    }
  }
  count_->binding.rows->resize(settings_, kept);
  Reset();
  emit Edited();
}

std::vector<const SettingKey*> CSettingRowsModel::Keys() const {
  std::vector<const SettingKey*> keys = columns_;
  keys.push_back(count_);
  return keys;
}

}  // namespace texturon
