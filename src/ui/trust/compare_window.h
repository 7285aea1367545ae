// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QDialog>

#include "analysis/practice.h"
#include "ui/window/texturon_doc.h"

class QComboBox;
class QLabel;
class QTreeWidget;

namespace texturon {

/// What lies between the values of the profile by two sets of settings, step by step.
class CCompareWindow : public QDialog {
  Q_OBJECT

public:
  CCompareWindow(CTexturonDoc& doc, QWidget* parent);

  /// The side is 0 or 1. False, with a sentence, where the file is none of settings.
  bool UseFile(int side, const std::filesystem::path& path);

private:
  struct Side {
    QComboBox* choice;
    std::filesystem::path file;  ///< of the last entry of the choice
  };

  /// The settings in force, changed as the side says.
  Practice PracticeOf(const Side& side) const;
  void Compare();

  CTexturonDoc& doc_;
  Side sides_[2];
  QLabel* sentence_;
  QTreeWidget* table_;
};

}  // namespace texturon
