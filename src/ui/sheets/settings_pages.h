// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QWidget>
#include <utility>
#include <vector>

#include "settings/settings.h"
#include "ui/sheets/setting_field.h"
#include "ui/window/texturon_doc.h"

class QFormLayout;
class QLabel;
class QPushButton;

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
  /// Puts the cursor into that entry, wherever on the page it is.
  virtual void LeadToFault();
  /// Puts the page's own entries of `defaults` into `settings`.
  virtual void TakeDefaults(const Settings& defaults, Settings& settings) const;
  /// The keys that can be set here.
  virtual std::vector<const SettingKey*> Keys() const;

signals:
  void Edited();

protected:
  CSettingField* MakeField(std::string_view section, std::string_view key, bool isCell);

  Settings& settings_;
  std::vector<CSettingField*> fields_;
};

/// A page of groups of entries, made from the rows of the settings table that belong to it.
class CFieldsPage : public CSettingsPage {
  Q_OBJECT

public:
  CFieldsPage(Settings& settings, std::string_view page, QWidget* parent = nullptr);

  void Refresh() override;
};

/// The page of the filters: the cut-offs chosen from the standard ones or the user's own, then the other entries.
class CFiltersPage : public CFieldsPage {
  Q_OBJECT

public:
  CFiltersPage(Settings& settings, const CTexturonDoc& doc, QWidget* parent = nullptr);

  void Refresh() override;
  void TakeDefaults(const Settings& defaults, Settings& settings) const override;

private:
  /// What the standard's tables propose, with a button each.
  void AddProposals(QFormLayout& form);
  void ShowProposals();

  const CTexturonDoc& doc_;
  std::vector<std::pair<QLabel*, QPushButton*>> proposals_;
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

}  // namespace texturon
