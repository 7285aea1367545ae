// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QWidget>

#include "settings/setting_choices.h"
#include "settings/settings_table.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;

namespace texturon {

/// The entry of one setting, made from its row of the settings table: a box to tick, a list to choose from or a line to
/// type into. What cannot be used is marked, with the reason beside it, and leaves the setting as it was before. Its
/// object name is SECTION.Key.
class CSettingField : public QWidget {
  Q_OBJECT

public:
  /// `isCell`: one of many in a table, which shows the reason when pointed at instead of beside it.
  CSettingField(const SettingPlace& place, Settings& settings, bool isCell, QWidget* parent = nullptr);

  /// Shows what the settings say, unless the entry is wrong or means the same.
  void Refresh();
  /// Drops an entry that could not be used.
  void Reset();
  const SettingPlace& Place() const { return place_; }
  /// What stands before the entry: its short title where it has one, else its meaning.
  QString Title() const;
  /// What the entry is for, beginning with a capital.
  QString Meaning() const;
  /// The meaning and the key.
  QString Tip() const { return Meaning() + "\n" + objectName(); }
  /// Why the entry cannot be used; empty: it is in the settings.
  const QString& Fault() const { return fault_; }

signals:
  void Edited();

private:
  void MakeEditor();
  bool IsCurvature() const;
  /// Below the unit of a curvature, the radius that it stands for.
  QString RadiusText(const SettingValue& value, bool metric) const;
  void Take(const QString& text);
  void Put(const SettingValue& value);
  void Mark(const QString& fault);

  SettingPlace place_;
  Settings& settings_;
  bool isCell_;
  std::vector<SettingChoice> choices_;
  QString fault_;
  std::optional<SettingValue> before_;  ///< what the setting was when the typing began
  QCheckBox* box_ = nullptr;
  QComboBox* list_ = nullptr;
  QLineEdit* line_ = nullptr;
  QLabel* unit_ = nullptr;
  QLabel* reason_ = nullptr;
};

/// Lets a list be turned by the wheel only once it has the focus: a page that scrolls under the pointer changes
/// nothing.
void GuardFromWheel(QComboBox& list);

}  // namespace texturon
