// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QDialog>
#include <QTabWidget>
#include <QTimer>

#include "ui/sheets/settings_pages.h"
#include "ui/window/texturon_doc.h"

class QLabel;

namespace texturon {

/// A sheet of pages whose entries are applied to the document as they are made; Cancel puts the former settings back.
class CLiveSheet : public QDialog {
  Q_OBJECT

public:
  CLiveSheet(CTexturonDoc& doc, const QString& title, QWidget* parent);

  /// Applies what was entered so far at once.
  void ApplyNow();
  QTabWidget& Pages() { return *pages_; }

signals:
  /// Entries that were in force have been taken back by Cancel; what they were for, as a list.
  void PutBack(const QString& titles);

protected:
  void AddPage(CSettingsPage* page, const QString& title);
  Settings& Working() { return working_; }
  void showEvent(QShowEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void done(int result) override;

private:
  void OnEdited();
  void OnChanged();
  void ShowFault();

  CTexturonDoc& doc_;
  Settings working_;
  Settings former_;  ///< to go back to: as it was when the sheet was opened, with what others have changed since
  Settings seen_;    ///< the document's when they were looked at last
  bool applies_ = false;
  bool hasEdited_ = false;
  QTabWidget* pages_;
  QLabel* fault_;
  QTimer delay_;
};

/// The settings of the analysis.
class CSettingsSheet : public CLiveSheet {
  Q_OBJECT

public:
  CSettingsSheet(CTexturonDoc& doc, QWidget* parent);
  /// Turns to the limits of a parameter.
  void ShowParameter(const QString& name);
};

inline constexpr char kPrimaryRatios[] = "PRIMARY_BEARING_RATIOS";
inline constexpr char kRoughnessRatios[] = "ROUGHNESS_BEARING_RATIOS";
inline constexpr char kPrimaryHtps[] = "PRIMARY_HTPS";
inline constexpr char kRoughnessHtps[] = "ROUGHNESS_HTPS";

/// The rows of one section.
template <const char* section>
class CSectionPage : public CRowsPage {
public:
  explicit CSectionPage(Settings& settings) : CRowsPage(settings, section) {}
};

class CPBearingRatioPage : public CSectionPage<kPrimaryRatios> {
  using CSectionPage::CSectionPage;
};
class CRBearingRatioPage : public CSectionPage<kRoughnessRatios> {
  using CSectionPage::CSectionPage;
};
class CPagePHtp : public CSectionPage<kPrimaryHtps> {
  using CSectionPage::CSectionPage;
};
class CPageRHtp : public CSectionPage<kRoughnessHtps> {
  using CSectionPage::CSectionPage;
};

/// The configurable rows: material ratios, and heights between two of them.
class CBearingRatioSheet : public CLiveSheet {
  Q_OBJECT

public:
  CBearingRatioSheet(CTexturonDoc& doc, QWidget* parent);
};

}  // namespace texturon
