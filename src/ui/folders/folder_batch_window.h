// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QAbstractTableModel>
#include <QDialog>
#include <QTimer>
#include <atomic>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "ui/several/process_page.h"
#include "ui/tables/grid_ctrl.h"
#include "ui/window/texturon_doc.h"
#include "unattended/folder_batch.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QSpinBox;
class QTabWidget;
class QTableView;

namespace texturon {

class CTrendPane;

/// One file of a batch.
struct BatchRow {
  std::filesystem::path path;
  std::string reason;  ///< why it gave nothing
  std::vector<ColumnValue> columns;
  std::vector<std::string> remarks;  ///< of the reader, and cautions
};

/// The files of a batch with their verdicts and parameters.
class CBatchResults : public QAbstractTableModel {
  Q_OBJECT

public:
  using QAbstractTableModel::QAbstractTableModel;

  void Clear();
  void Add(std::vector<BatchRow> rows);
  const BatchRow& Row(int row) const { return rows_[static_cast<std::size_t>(row)]; }
  /// All of it as text with tabs, titles first.
  QString AsText() const;
  /// The same for a file, in English: with commas between the cells, quoted where they hold one.
  QString AsCommaList() const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
  QList<QStringList> AllCells() const;

  std::vector<BatchRow> rows_;
  std::vector<std::string> titles_;
};

/// Analyses all files of a folder by the document's settings while the main window goes on to be used.
class CFolderBatchWindow : public QDialog {
  Q_OBJECT

public:
  CFolderBatchWindow(CTexturonDoc& doc, QWidget* parent);
  ~CFolderBatchWindow() override;

  void ChooseFolder(const std::filesystem::path& folder);
  bool IsRunning() const { return worker_.joinable(); }
  const CBatchResults& Results() const { return *results_; }
  /// Writes the table of files (.csv), the trend (.svg, .png) or a page of all (.pdf). A sentence where that fails.
  QString SaveAs(const std::filesystem::path& file);
  /// What the page holds besides its charts: of the run, in English.
  ProcessPage Page() const;

signals:
  void OpenRequested(const QString& file);

protected:
  /// Closing the window stops the run.
  void done(int result) override;
  void showEvent(QShowEvent* event) override;

private:
  void MakeForm(QLayout& layout);
  void MakeTables(QLayout& layout);
  /// The table with what there is to say of the chosen file under it.
  QWidget* MakeFilesPage();
  /// A failed file has no values: its reason takes their room.
  void SpreadReasons();
  void FitReasons();
  void OnStart();
  void Start(std::vector<std::filesystem::path> files, const std::filesystem::path& parameterFile);
  void Stop();
  void Collect();
  void ShowOutcome();
  QString OutcomeText() const;
  QList<CGridCtrl::Record> SummaryRecords() const;
  void Copy();
  void OnSave();

  CTexturonDoc& doc_;
  QLineEdit* folder_;
  QLineEdit* mask_;
  QLineEdit* parameterFile_;
  QSpinBox* jobs_;
  QCheckBox* resume_;
  QPushButton* start_;
  QProgressBar* bar_;
  QLabel* state_;
  QTabWidget* tabs_;
  QTableView* table_;
  CBatchResults* results_;
  QLabel* details_;
  int spread_ = 0;  ///< rows that have been looked at for that
  CTrendPane* trend_;
  QPushButton* save_;
  QString folderOfRun_;
  CGridCtrl* summary_;
  QTimer timer_;

  // Of the run at hand.
  Document settings_;
  std::vector<std::size_t> order_;            ///< in which its rows are looked at
  std::optional<UncertaintyRequest> budget_;  ///< what the verdicts of a guarded rule go by
  std::thread worker_;
  std::atomic<bool> stops_ = false;
  std::atomic<bool> hasEnded_ = false;
  FolderBatchOutcome outcome_;  ///< once it has ended
  std::mutex mutex_;
  std::vector<BatchRow> arrived_;
  std::vector<std::string> remarks_;  ///< of the run, once it has ended
};

}  // namespace texturon
