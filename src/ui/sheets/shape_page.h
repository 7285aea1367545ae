// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <qcustomplot.h>

#include "ui/sheets/setting_rows_model.h"
#include "ui/sheets/settings_pages.h"

class QHBoxLayout;
class QPushButton;
class QTableView;

namespace texturon {

/// The page of a nominal shape: entries, below them the list that describes it and a preview of it with
/// the entries for its limits.
class CShapePage : public CFieldsPage {
  Q_OBJECT

public:
  void Refresh() override;
  void Reset() override;
  QString Fault() const override;
  void TakeDefaults(const Settings& defaults, Settings& settings) const override;
  std::vector<const SettingKey*> Keys() const override;
  CSettingRowsModel& Rows() { return *rows_; }
  QTableView& Table() { return *table_; }
  QCustomPlot& Preview() { return *preview_; }
  bool eventFilter(QObject* watched, QEvent* event) override;

protected:
  /// Keys of the preview's limits: left, right, lower, upper.
  using Limits = std::array<std::string_view, 4>;

  CShapePage(Settings& settings, std::string_view page, std::string_view section, const char* listTitle,
             std::function<QString(int)> rowName, std::string_view limitsSection, const Limits& limits,
             QWidget* parent);

  /// The shape within the limits, and the points that it goes through, if any.
  virtual std::vector<FreeFormPoint> CurveOf(std::size_t count) const = 0;
  virtual std::vector<FreeFormPoint> GivenPoints() const { return {}; }
  /// Sets the limits to what there is to see.
  virtual void Fit() = 0;
  QPushButton* AddButton(const QString& text, const std::function<void()>& run);
  void showEvent(QShowEvent* event) override;
  /// To be called when the constructor of the derived class has ended.
  void Begin();

private:
  void DrawPreview();
  double Limit(std::size_t i) const;

  CSettingRowsModel* rows_;
  QTableView* table_;
  QHBoxLayout* buttons_;
  QCustomPlot* preview_;
  std::array<const SettingKey*, 4> limits_;
  bool isComplete_ = false;
};

}  // namespace texturon
