// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QDialog>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "analysis/document.h"
#include "analysis/profile_overlay.h"
#include "presentation/several_results.h"
#include "ui/window/texturon_doc.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QListWidget;
class QListWidgetItem;
class QPushButton;

namespace texturon {

class CClickableProfileGraph;
class CGridCtrl;

/// Several profiles, of several files or of one with several, by the settings in force: over each other in one graph
/// and their parameters side by side with mean, deviation, range and the verdict of an acceptance rule.
class CSeveralWindow : public QDialog {
  Q_OBJECT

public:
  CSeveralWindow(CTexturonDoc& doc, QWidget* parent);
  ~CSeveralWindow() override;

  /// Adds every profile of each file; one that gives no result is told and left out.
  void AddFiles(const std::vector<std::filesystem::path>& files);
  std::size_t Count() const { return entries_.size(); }
  CClickableProfileGraph& Graph() { return *graph_; }
  const CGridCtrl& Table() const { return *table_; }
  /// The report of the profile that is chosen in the list, or of the first, with the statistics of all. False with a
  /// sentence in `reason`.
  bool WriteReportFile(const std::filesystem::path& file, QString& reason) const;
  /// What could not be added, a line each; empty: all is there.
  QString Faults() const;

signals:
  void OpenRequested(const QString& file);

private:
  struct Entry {
    Document document;
    QString name;
    double cursorUM = 0.0;  ///< from its first point
    bool isShown = true;
    QStringList remarks;  ///< what its verdict must be read with
  };

  QLayout* MakeChoices();
  void AddFile(const std::filesystem::path& file);
  void Tell(const QString& sentences);
  /// Tries a profile's budget and notes its remarks anew.
  void NoteRemarks(Entry& entry);
  void RemoveChosen();
  void AlignChosenHere();
  void AskForReport();
  /// The profiles that are ticked, where the choice of alignment puts them.
  std::vector<OverlaidProfile> Overlay(std::vector<std::size_t>& shown) const;
  void FillList();
  void DrawOverlay();
  void LabelCursors();
  void ShowTable();
  /// What the drawing in the settings comes to over all profiles, a line each.
  void ShowDrawing(const SeveralResults& results);
  void OnSettingsChanged();
  ProfileKind Kind() const;
  QColor ColourOf(std::size_t entry) const;

  CTexturonDoc& doc_;
  std::vector<std::unique_ptr<Entry>> entries_;
  QStringList faults_;  ///< of the last files that were added, or of the last settings
  QComboBox* kind_;
  QComboBox* alignment_;
  QComboBox* rule_;
  QCheckBox* mean_;
  QCheckBox* band_;
  QCheckBox* difference_;
  QPushButton* alignHere_;
  QListWidget* list_;
  CClickableProfileGraph* graph_;
  QLabel* drawing_;
  QLabel* state_;
  CGridCtrl* table_;
  QWidget* tableRoom_;
  std::vector<std::vector<double>> drawn_;  ///< heights of mean, band and difference while the graph holds them
  bool isFilling_ = false;
};

}  // namespace texturon
