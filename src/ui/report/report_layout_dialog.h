// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QDialog>

#include "presentation/report_template.h"

class QComboBox;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QPlainTextEdit;

namespace texturon {

/// Chooses and orders the blocks of a report. Template files are loaded and saved here too.
class CReportLayoutDialog : public QDialog {
  Q_OBJECT

public:
  explicit CReportLayoutDialog(const ReportTemplate& layout, QWidget* parent = nullptr);

  ReportTemplate Chosen() const;

  /// Asks to look again where a character has become a question mark.
  void accept() override;

private:
  bool IsWhole();
  void Show(const ReportTemplate& layout);
  QListWidgetItem* Append(const ReportBlock& block, int row);
  void Add();
  void Move(int steps);
  void ShowText();
  void LoadFile();
  void SaveFile();

  QLineEdit* title_;
  QListWidget* blocks_;
  QComboBox* kinds_;
  QPlainTextEdit* text_;
};

}  // namespace texturon
