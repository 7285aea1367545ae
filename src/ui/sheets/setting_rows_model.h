// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QAbstractTableModel>
#include <functional>
#include <map>
#include <utility>
#include <vector>

#include "settings/settings_table.h"

namespace texturon {

/// The rows of a list of the settings as a table, one column for each of its keys; as many rows as the settings take.
/// An entry that cannot be used stays, marked, with the reason when pointed at, and leaves the setting as it was.
class CSettingRowsModel : public QAbstractTableModel {
  Q_OBJECT

public:
  /// `rowName`: what stands beside a row.
  CSettingRowsModel(Settings& settings, std::string_view section, std::function<QString(int)> rowName, QObject* parent);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  /// Shows what the settings say now.
  void Refresh();
  /// Drops the entries that could not be used, then does the same.
  void Reset();
  /// The first of them, with the reason; empty: none.
  QString Fault() const;
  /// A new row behind one (-1: first), a copy of that one. Of a list whose places have a meaning, such as powers, the
  /// new row is the last one and 0. The place of the new row; -1 when there are as many as there may be.
  int AddBehind(int row);
  /// Takes rows away. Where places have a meaning, those before the last row that stays become 0 instead.
  void Remove(const std::vector<int>& rows);
  /// Its keys, and the one that counts the rows.
  std::vector<const SettingKey*> Keys() const;

signals:
  void Edited();

private:
  struct WrongEntry {
    QString text;
    QString fault;
  };

  bool PlacesMatter() const { return columns_.front()->binding.type == SettingType::kCoefficient; }
  void Copy(std::size_t from, std::size_t to);

  Settings& settings_;
  std::function<QString(int)> rowName_;
  std::vector<const SettingKey*> columns_;
  const SettingKey* count_ = nullptr;
  std::map<std::pair<int, int>, WrongEntry> wrong_;
  int shownRows_ = 0;
};

}  // namespace texturon
