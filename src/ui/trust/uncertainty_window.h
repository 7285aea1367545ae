// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QDialog>
#include <vector>

#include "analysis/uncertainty_trials.h"
#include "ui/window/texturon_doc.h"

class QComboBox;
class QCustomPlot;
class QGridLayout;
class QLabel;
class QLineEdit;
class QTableWidget;

namespace texturon {

/// The budget of the instrument, what trials with it come to, and what each of its lines contributes to a parameter.
/// The uncertainties then stand beside the values in the window's table and in reports.
class CUncertaintyWindow : public QDialog {
  Q_OBJECT

public:
  explicit CUncertaintyWindow(CTexturonDoc& doc, QWidget* parent);

  /// Puts a budget file into the fields. False, with a sentence, where it is none.
  bool LoadBudget(const std::filesystem::path& path);
  /// Tries the document's profile. False, with a sentence, where nothing came of it.
  bool Try();

protected:
  void changeEvent(QEvent* event) override;

private:
  struct Field {
    std::string key;
    QLineEdit* value;
    QComboBox* distribution;  ///< null where there is none to choose
  };

  QWidget* MakeBudgetFields();
  void AddField(QGridLayout& grid, const std::string& key, std::string_view meaning, std::string_view unit,
                bool hasDistribution);
  BudgetEntries Entries() const;
  void ShowEntries(const BudgetEntries& entries);
  void Save();
  bool Say(const std::string& sentence);
  void ShowResults();
  void DrawContributions(int row);

  CTexturonDoc& doc_;
  std::vector<Field> fields_;
  BudgetEntries others_;  ///< of the file, without a field here: spectrum, repeatability of single parameters
  QLabel* sentence_;
  QTableWidget* table_;
  QCustomPlot* bars_;
  Document tried_;
  std::vector<std::size_t> order_;  ///< which row of those tried stands in each line of the table
  Uncertainties uncertainties_;
  std::vector<std::vector<Sensitivity>> sensitivities_;
};

}  // namespace texturon
