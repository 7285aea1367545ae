// SPDX-License-Identifier: Apache-2.0

#include "ui/sheets/indication_dialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/ini_file.h"
#include "base/text.h"
#include "platform/platform.h"
#include "presentation/requirement_texts.h"
#include "ui/language.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

/// With a reason where the settings name a table that is not read.
ClassTableResult ClassesOf(const StandardSettings& standard) {
  if (standard.ClassTable.empty()) return {BuiltInClasses(), {}};
  return ReadClassTable(PathFromText(standard.ClassTable));
}

/// What the text means, in the language of the window.
QString MeaningInWords(const IndicationResult& read) {
  if (!read.fault.empty()) return EngineText(IndicationFault(read));
  QStringList lines;
  for (const Requirement& requirement : read.requirements) {
    if (!lines.isEmpty()) lines << QString();
    lines << FromText(requirement.source);
    for (const auto& [title, line] : MeaningOf({requirement, std::nullopt})) {
      const QStringList parts = FromText(line).split(" of ");
      const bool isSections = title == "Sections" && parts.size() == 2;
      const auto part = [&parts](int i) { return EngineText(ToText(parts[i])); };
      lines << EngineText(title) + ": " +
                   (isSections ? QObject::tr("%1 of %2 each").arg(part(0), part(1)) : EngineText(line));
    }
  }
  return lines.join('\n');
}

}  // namespace

CIndicationDialog::CIndicationDialog(const Settings& settings, QWidget* parent)
    : QDialog(parent), former_(settings), working_(settings) {
  setWindowTitle(tr("Drawing Indication"));
  auto* const column = new QVBoxLayout(this);
  auto* const label = new QLabel(tr("What stands on the drawing:"), this);
  text_ = new QPlainTextEdit(FromText(settings.analysis.standard.Indication), this);
  text_->setObjectName("indication");
  text_->setTabChangesFocus(true);
  text_->setMaximumHeight(fontMetrics().height() * 4);
  text_->setAccessibleName(label->text());
  label->setBuddy(text_);
  meaning_ = new QLabel(this);
  meaning_->setObjectName("meaning");
  meaning_->setWordWrap(true);
  meaning_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  meaning_->setMinimumSize(fontMetrics().averageCharWidth() * 60, fontMetrics().height() * 12);
  meaning_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  ok_ = buttons->button(QDialogButtonBox::Ok);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(text_, &QPlainTextEdit::textChanged, this, &CIndicationDialog::Show);
  for (QWidget* const widget : {static_cast<QWidget*>(label), static_cast<QWidget*>(text_),
                                static_cast<QWidget*>(meaning_), static_cast<QWidget*>(buttons)}) {
    column->addWidget(widget);
  }
  column->setStretchFactor(meaning_, 1);
  Show();
}

void CIndicationDialog::Show() {
  const std::string text = ToText(text_->toPlainText());
  const StandardSettings& standard = former_.analysis.standard;
  const ClassTableResult classes = ClassesOf(standard);
  ok_->setEnabled(false);
  if (!classes.reason.empty()) {
    meaning_->setText(tr("Class table: %1 %2.").arg(FromText(standard.ClassTable), EngineText(classes.reason)));
    return;
  }
  const IndicationResult read = ReadIndication(text, classes.classes);
  QString meaning = TrimBlanks(text).empty() ? QString() : MeaningInWords(read);
  working_ = former_;
  bool isUsable = read.fault.empty();
  bool isTogether = true;
  for (std::size_t i = 0; i < read.requirements.size(); ++i) {
    const Requirement& requirement = read.requirements[i];
    isUsable = isUsable && requirement.missing.empty();
    if (!isUsable) break;
    if (i == 0) {
      ApplyRequirement(requirement, working_.analysis);
    } else {
      isTogether = isTogether && AddRequirement(requirement, former_.analysis, working_.analysis);
    }
  }
  if (!isTogether) meaning += "\n\n" + tr("The requirements are measured in different ways; enter one at a time.");
  if (isUsable && working_.analysis.standard.Indication.size() > kIniValueLength) {
    meaning += "\n\n" + tr("It is longer than the 63 characters that a settings file keeps.");
  }
  meaning_->setText(meaning);
  ok_->setEnabled(isUsable && isTogether);
}

}  // namespace texturon
