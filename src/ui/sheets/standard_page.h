// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <vector>

#include "ui/sheets/settings_pages.h"

class QPlainTextEdit;

namespace texturon {

/// The page of the editions: its entries, then the features that are rows of their own, one a line.
class CStandardPage : public CFieldsPage {
  Q_OBJECT

public:
  explicit CStandardPage(Settings& settings, QWidget* parent = nullptr);

  void Refresh() override;
  void Reset() override;
  QString Fault() const override;
  void TakeDefaults(const Settings& defaults, Settings& settings) const override;
  std::vector<const SettingKey*> Keys() const override;

private:
  void Take();

  QPlainTextEdit* features_;
  QLabel* reason_;
};

}  // namespace texturon
