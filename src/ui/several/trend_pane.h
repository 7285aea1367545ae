// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QWidget>
#include <filesystem>
#include <functional>
#include <vector>

#include "analysis/file_analysis.h"
#include "ui/several/trend_plots.h"

class QComboBox;
class QLabel;

namespace texturon {

/// A chosen parameter over the files of a batch: chart and histogram with limits, mean and three-sigma lines, and how
/// capable the process is. A click on a point asks for its file.
class CTrendPane : public QWidget {
  Q_OBJECT

public:
  explicit CTrendPane(QWidget* parent = nullptr);

  /// One file: what it gave, nothing where it failed, and when it was written.
  struct File {
    std::vector<ColumnValue> columns;
    std::filesystem::path path;
  };
  void Clear();
  void Add(const std::vector<File>& files);
  const TrendSeries& Series() const { return series_; }
  QCustomPlot& Chart() { return *chart_; }
  QCustomPlot& Histogram() { return *histogram_; }

signals:
  /// The number of a file, from 0.
  void Activated(int file);

protected:
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

private:
  void Draw();
  /// As many numbers up an axis as have room there.
  void SpaceTicks();
  TrendSeries SeriesOf(const QString& title) const;

  QComboBox* parameter_;
  QComboBox* order_;
  QLabel* capability_;
  QCustomPlot* chart_;
  QCustomPlot* histogram_;
  std::vector<File> files_;
  std::vector<double> timesS_;
  TrendSeries series_;
};

}  // namespace texturon
