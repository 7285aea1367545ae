// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QDialog>
#include <functional>
#include <vector>

#include "analysis/compute_range.h"
#include "analysis/region_choice.h"
#include "settings/settings.h"
#include "ui/window/texturon_doc.h"

class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace texturon {

class CSettingField;

/// The record as a bar with the stretch that would be computed over, and below it in words.
class CStretchBar : public QWidget {
  Q_OBJECT

public:
  explicit CStretchBar(QWidget* parent) : QWidget(parent) {}
  void Show(std::int32_t pointCount, const std::optional<ComputeRange>& stretch);
  QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  std::int32_t pointCount_ = 0;
  std::optional<ComputeRange> stretch_;
};

/// Asks for a region of the record. Only the lengths that the chosen kind reads can be entered; what cannot be used is
/// marked with its reason.
class CRegionDialog : public QDialog {
  Q_OBJECT

public:
  explicit CRegionDialog(const Document& document, QWidget* parent = nullptr);
  const RegionChoice& Region() const { return region_; }

private:
  struct Entry {
    double RegionChoice::*length;
    bool (RegionChoice::*isRead)() const;
    QLineEdit* line;
    QLabel* reason;
  };
  void AddEntry(QFormLayout& form, const QString& title, double RegionChoice::*length,
                bool (RegionChoice::*isRead)() const);
  void Take();

  const Document& document_;
  RegionChoice region_;
  QComboBox* mode_;
  std::vector<Entry> entries_;
  CStretchBar* bar_;
  QLabel* readout_;
  QPushButton* ok_;
};

/// Asks for the clear aperture of an asphere and shows it about the apex that was fitted.
class CClearApertureDialog : public QDialog {
  Q_OBJECT

public:
  explicit CClearApertureDialog(const Document& document, QWidget* parent = nullptr);
  const AnalysisSettings& Chosen() const { return working_.analysis; }

private:
  void Take();

  const Document& document_;
  Settings working_;
  std::vector<CSettingField*> fields_;
  CStretchBar* bar_;
  QLabel* readout_;
  QPushButton* ok_;
};

}  // namespace texturon
