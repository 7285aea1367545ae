// SPDX-License-Identifier: Apache-2.0

#include "ui/sheets/setting_dialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>

#include "settings/settings_table.h"
#include "ui/sheets/setting_field.h"

namespace texturon {

CSettingDialog::CSettingDialog(const QString& title, std::string_view section, std::string_view key,
                               const Settings& settings, QWidget* parent)
    : QDialog(parent), working_(settings) {
  setWindowTitle(title);
  auto* const form = new QFormLayout(this);
  auto* const field = new CSettingField(*FindSetting(section, key), working_, false, this);
  auto* const label = new QLabel(field->Title(), this);
  label->setBuddy(field->focusProxy());
  form->addRow(label, field);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(field, &CSettingField::Edited, this,
          [field, ok = buttons->button(QDialogButtonBox::Ok)] { ok->setEnabled(field->Fault().isEmpty()); });
  form->addRow(buttons);
}

}  // namespace texturon
