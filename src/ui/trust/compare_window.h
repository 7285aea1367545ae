// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QDialog>
#include <optional>
#include <vector>

#include "analysis/practice.h"
#include "presentation/practice_ranking.h"
#include "ui/window/texturon_doc.h"

class QComboBox;
class QLabel;
class QTabWidget;
class QTableWidget;
class QTreeWidget;

namespace texturon {

/// What lies between the values of the profile by two sets of settings, step by step; and, where the file brings its
/// instrument's own values, which practice explains them best.
class CCompareWindow : public QDialog {
  Q_OBJECT

public:
  CCompareWindow(CTexturonDoc& doc, QWidget* parent);

  /// The side is 0 or 1. False, with a sentence, where the file is none of settings.
  bool UseFile(int side, const std::filesystem::path& path);

private:
  struct Side {
    QComboBox* choice;
    std::filesystem::path file;      ///< of the last entry of the choice
    std::optional<double> cutoffMM;  ///< in place of that of the practice
  };

  /// The settings in force, changed as the side says.
  Practice PracticeOf(const Side& side) const;
  void Compare();
  /// Tries all practices where their page is looked at and the profile has changed.
  void Rank();
  /// Goes from the settings in force to a practice that was tried.
  void UseTried(int row);

  CTexturonDoc& doc_;
  Side sides_[2];
  QLabel* sentence_;
  QTabWidget* tabs_;
  QTreeWidget* table_;
  QTableWidget* practices_;
  std::vector<TriedPractice> tried_;
  bool isRankOld_ = true;
};

}  // namespace texturon
