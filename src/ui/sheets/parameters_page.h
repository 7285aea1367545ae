// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "ui/sheets/settings_pages.h"

class QLabel;
class QLineEdit;
class QTableWidget;
class QTableWidgetItem;

namespace texturon {

/// The parameters of the edition in force: which are shown, in which order, within which limits, and by which rules
/// these are kept.
class CParametersPage : public CSettingsPage {
  Q_OBJECT

public:
  explicit CParametersPage(Settings& settings, QWidget* parent = nullptr);

  void Refresh() override;
  void Reset() override;
  QString Fault() const override;
  void LeadToFault() override;
  void TakeDefaults(const Settings& defaults, Settings& settings) const override;
  std::vector<const SettingKey*> Keys() const override;
  /// Moves the current row up (-1) or down (1).
  void Move(int by);
  /// Makes a parameter's row the current one, its lower limit to be typed. False: there is no such row.
  bool ShowParameter(const QString& name);
  /// Selects all parameters or none.
  void SelectAll(bool selected);

private:
  void OnItem(QTableWidgetItem* item);
  void Mark(QTableWidgetItem& item, const QString& fault);
  void DropFaults();
  void Filter(const QString& text);
  /// Makes what is shown the settings' list.
  void Take();
  /// A limit that has been typed is one to compare with; the lower one counts where both do.
  void LetCount(const QTableWidgetItem& limit);
  /// Makes the column of the names as wide as they are.
  void FitNames();
  /// Below the table: what was left out, and which limits count for one row of two.
  void ShowNote();
  /// The name, with its editions where rows of both are shown.
  QString TitleOf(const std::string& name) const;
  /// Unit or definition, of both editions where they differ.
  QString TextOf(const std::string& name, bool isUnit) const;

  Settings shown_;  ///< with all rows that are offered
  QTableWidget* table_;
  QLineEdit* filter_;
  QLabel* note_;
  int gone_ = 0;                                   ///< rows that the list had no room for
  std::map<std::pair<int, int>, QString> faults_;  ///< by row and column
};

}  // namespace texturon
