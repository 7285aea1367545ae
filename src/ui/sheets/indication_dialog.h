// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QDialog>

#include "settings/settings.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace texturon {

/// Takes what stands on a drawing and shows what it means while it is typed. It works on a copy of the settings.
class CIndicationDialog : public QDialog {
  Q_OBJECT

public:
  explicit CIndicationDialog(const Settings& settings, QWidget* parent = nullptr);

  /// The settings that the indication asks for.
  const Settings& Chosen() const { return working_; }

private:
  void Show();

  const Settings former_;
  Settings working_;
  QPlainTextEdit* text_ = nullptr;
  QLabel* meaning_ = nullptr;
  QPushButton* ok_ = nullptr;
};

}  // namespace texturon
