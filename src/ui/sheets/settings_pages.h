// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QWidget>
#include <map>
#include <utility>
#include <vector>

#include "settings/settings.h"
#include "ui/sheets/setting_field.h"

class QGridLayout;
class QLabel;
class QLineEdit;
class QTableWidget;
class QTableWidgetItem;

namespace texturon {

/// A page of a settings sheet. It works on the sheet's settings and says when they have changed.
class CSettingsPage : public QWidget {
  Q_OBJECT

public:
  explicit CSettingsPage(Settings& settings, QWidget* parent = nullptr) : QWidget(parent), settings_(settings) {}

  /// Shows what the settings say now.
  virtual void Refresh();
  /// Drops what could not be used, then does the same.
  virtual void Reset();
  /// The first entry that cannot be used, with the reason; empty: none.
  virtual QString Fault() const;
  /// The keys that can be set here.
  virtual std::vector<const SettingKey*> Keys() const;

signals:
  void Edited();

protected:
  CSettingField* MakeField(std::string_view section, std::string_view key, bool isCell);

  Settings& settings_;
  std::vector<CSettingField*> fields_;
};

/// An entry of a page: a key, and the setting that it depends on (enabled while that one has `neededValue`).
struct FieldSpec {
  std::string_view section;
  std::string_view key;
  std::int32_t AnalysisSettings::*needs = nullptr;
  std::int32_t neededValue = 0;
};

struct GroupSpec {
  const char* title;
  std::vector<FieldSpec> fields;
};

/// A page of groups of entries.
class CFieldsPage : public CSettingsPage {
  Q_OBJECT

public:
  CFieldsPage(Settings& settings, const std::vector<GroupSpec>& groups, QWidget* parent = nullptr);

  void Refresh() override;

protected:
  std::vector<FieldSpec> specs_;
};

/// The page of the filters: the cut-offs chosen from the standard ones or the user's own, then the other entries.
class CFiltersPage : public CFieldsPage {
  Q_OBJECT

public:
  explicit CFiltersPage(Settings& settings, QWidget* parent = nullptr);

  void Refresh() override;

private:
  std::vector<QComboBox*> cutoffs_;
  std::vector<CSettingField*> owns_;
};

/// A page with the rows of a section as a table.
class CRowsPage : public CSettingsPage {
  Q_OBJECT

public:
  CRowsPage(Settings& settings, std::string_view section, QWidget* parent = nullptr);

  void Refresh() override;

private:
  std::vector<std::pair<QLabel*, const SettingKey*>> titles_;
};

/// The parameters: which are shown, in which order, within which limits.
class CParametersPage : public CSettingsPage {
  Q_OBJECT

public:
  explicit CParametersPage(Settings& settings, QWidget* parent = nullptr);

  void Refresh() override;
  void Reset() override;
  QString Fault() const override;
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
  void Filter(const QString& text);

  QTableWidget* table_;
  QLineEdit* filter_;
  std::map<std::pair<int, int>, QString> faults_;  ///< by row and column
};

}  // namespace texturon
