// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QTimer>
#include <QWidget>
#include <map>
#include <vector>

#include "parameters/edition2021/edition_list.h"
#include "ui/sheets/page_list.h"
#include "ui/sheets/settings_pages.h"
#include "ui/window/texturon_doc.h"

class QLabel;
class QMenu;
class QPushButton;

namespace texturon {

/// A sheet of pages whose entries are applied to the document as they are made; Cancel and Escape put the former
/// settings back, OK and Enter keep the new ones. It stands in a panel of its window, which is docked or floats and is
/// seen while the sheet is.
class CLiveSheet : public QWidget {
  Q_OBJECT

public:
  CLiveSheet(CTexturonDoc& doc, const QString& title, QWidget* parent);

  void accept();
  void reject();
  /// Defaults for the page that is seen, or for all.
  void TakeDefaults(bool ofAllPages);
  void setVisible(bool visible) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

  /// Applies what was entered so far at once.
  void ApplyNow();
  CPageList& Pages() { return *pages_; }

signals:
  /// Entries that were in force have been taken back by Cancel; what they were for, as a list.
  void PutBack(const QString& titles);

protected:
  void AddPage(CSettingsPage* page, const QString& title);
  Settings& Working() { return working_; }
  void showEvent(QShowEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

private:
  void OnEdited();
  void OnChanged();
  void ShowFault();
  /// To the first entry that cannot be used; false: there is none.
  bool LeadToFault();
  QWidget* MakeFoot();
  void FillPresets(QMenu& menu);
  void SaveAsPreset();
  /// The page's letters must not be those of the window around it.
  void AssignPageLetters();
  /// Another edition has other names: translates the list of parameters where it is still that of the edition before.
  /// Gone back to, an edition has its own list again as long as nobody changes the other. Says what could not follow.
  void FollowEdition();
  void NoteList();
  /// Shows entries that did not come from a field, and applies them.
  void TakeOver(const Settings& settings);

  CTexturonDoc& doc_;
  Settings working_;
  Settings former_;  ///< to go back to: as it was when the sheet was opened, with what others have changed since
  Settings seen_;    ///< the document's when they were looked at last
  EditionChoice edition_ = EditionChoice::k1997;  ///< that `list_` was made under
  std::vector<ParameterSelection> list_;
  std::map<EditionChoice, std::vector<ParameterSelection>> lists_;  ///< that `list_` was translated from
  QString editionNotice_;
  bool applies_ = false;
  bool hasEdited_ = false;
  CPageList* pages_;
  QLabel* fault_;
  QPushButton* leader_;  ///< to what is not applied
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
