#pragma once

#include <QTableWidget>

namespace texturon {

/// A table of text that is only read and copied: Ctrl+C takes the selected cells, or all of them, as text with tabs.
class CGridCtrl : public QTableWidget {
  Q_OBJECT

public:
  explicit CGridCtrl(const QStringList& titles, QWidget* parent = nullptr);

  void SetCell(int row, int column, const QString& text, Qt::Alignment alignment);
  /// The selected cells, or the whole table with its titles where at most one is selected.
  QString AsText() const;

protected:
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace texturon
