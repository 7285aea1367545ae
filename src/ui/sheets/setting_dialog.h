// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QDialog>

#include "settings/settings.h"

namespace texturon {

class CSettingField;

/// Asks for one setting. A wrong entry is marked in its field and cannot be accepted.
class CSettingDialog : public QDialog {
  Q_OBJECT

public:
  CSettingDialog(const QString& title, std::string_view section, std::string_view key, const Settings& settings,
                 QWidget* parent = nullptr);
  const Settings& Chosen() const { return working_; }

private:
  Settings working_;
};

}  // namespace texturon
