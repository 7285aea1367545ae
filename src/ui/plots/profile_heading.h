// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QLabel>
#include <QPushButton>
#include <QWidget>

#include "presentation/table_rows.h"
#include "ui/window/texturon_doc.h"

namespace texturon {

/// What is shown and whether it is good: identification, form and filter, the stretch that was evaluated, and the
/// overall verdict by colour and word. Lines are cut short rather than making the window wide, the settings file before
/// the identification; the tool tip has them whole.
class CHeading : public QWidget {
  Q_OBJECT

public:
  explicit CHeading(CTexturonDoc& doc, QWidget* parent);

  /// The lines, whole.
  QString Text() const { return lines_.join('\n'); }
  QPushButton& Verdict() { return *verdict_; }

signals:
  /// Asks for the first row that is out of tolerance, undecided or without a value, for what it needs to be decided, or
  /// for the place of the limits where there are none.
  void VerdictClicked();

protected:
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

private:
  void Update();
  void ShowVerdict();
  /// What the limits and the drawing come to, in a line. There are limits or a drawing.
  static QString VerdictText(const VerdictCount& count);
  void Elide();
  /// The first line, in a width: with as much of the settings file as fits.
  QString FirstLine(int width) const;
  /// The verdict in as many words as a width has room for.
  void FitVerdict(int width);

  CTexturonDoc& doc_;
  QLabel* label_;
  QPushButton* verdict_;
  QStringList lines_;
  QString identification_;  ///< or what stands in its place, with whether the profile is inverted
  QString verdictText_;
  QString verdictWord_;  ///< for where there is no room for the text
};

}  // namespace texturon
