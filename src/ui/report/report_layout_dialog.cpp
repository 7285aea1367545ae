// SPDX-License-Identifier: Apache-2.0

#include "ui/report/report_layout_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

#include "ui/language.h"
#include "ui/qt_text.h"
#include "ui/report/report.h"
#include "ui/window/file_dialogs.h"

namespace texturon {
namespace {

constexpr int kKindRole = Qt::UserRole;
constexpr int kTextRole = Qt::UserRole + 1;
constexpr const char* kTemplateFilters = "Report templates (*.ini)|*.ini|All Files (*.*)|*.*||";

QString MeaningOf(ReportBlockKind kind) {
  QString meaning = EngineText(ReportBlockOf(kind).meaning);
  meaning[0] = meaning[0].toUpper();
  return meaning;
}

ReportBlockKind KindOf(const QListWidgetItem& item) {
  return static_cast<ReportBlockKind>(item.data(kKindRole).toInt());
}

}  // namespace

CReportLayoutDialog::CReportLayoutDialog(const ReportTemplate& layout, QWidget* parent)
    : QDialog(parent),
      title_(new QLineEdit(this)),
      blocks_(new QListWidget(this)),
      kinds_(new QComboBox(this)),
      text_(new QPlainTextEdit(this)) {
  setWindowTitle(tr("Report Layout"));
  blocks_->setDragDropMode(QAbstractItemView::InternalMove);
  blocks_->setAccessibleName(tr("Blocks of the report in their order"));
  text_->setAccessibleName(tr("Text of the block"));
  text_->setMaximumHeight(5 * fontMetrics().lineSpacing());
  for (const ReportBlockRow& row : ReportBlocks()) kinds_->addItem(MeaningOf(row.kind), static_cast<int>(row.kind));
  kinds_->setAccessibleName(tr("Block to add"));

  auto* const column = new QVBoxLayout;
  const auto button = [&](const QString& text, auto act) {
    auto* const made = new QPushButton(text, this);
    made->setAutoDefault(false);
    connect(made, &QPushButton::clicked, this, act);
    column->addWidget(made);
  };
  button(tr("&Up"), [this] { Move(-1); });
  button(tr("Do&wn"), [this] { Move(1); });
  button(tr("&Remove"), [this] { delete blocks_->takeItem(blocks_->currentRow()); });
  button(tr("&Defaults"), [this] { Show(DefaultReportTemplate()); });
  button(tr("&Load..."), [this] { LoadFile(); });
  button(tr("&Save..."), [this] { SaveFile(); });
  column->addStretch();
  auto* const list = new QHBoxLayout;
  list->addWidget(blocks_, 1);
  list->addLayout(column);
  auto* const adding = new QHBoxLayout;
  auto* const add = new QPushButton(tr("&Add"), this);
  add->setAutoDefault(false);
  connect(add, &QPushButton::clicked, this, &CReportLayoutDialog::Add);
  adding->addWidget(kinds_, 1);
  adding->addWidget(add);
  auto* const form = new QFormLayout(this);
  form->addRow(tr("&Title:"), title_);
  form->addRow(list);
  auto* const label = new QLabel(tr("&Block:"), this);
  label->setBuddy(kinds_);
  form->addRow(label, adding);
  form->addRow(tr("T&ext:"), text_);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  form->addRow(buttons);

  connect(blocks_, &QListWidget::currentItemChanged, this, &CReportLayoutDialog::ShowText);
  connect(text_, &QPlainTextEdit::textChanged, this, [this] {
    QListWidgetItem* const item = blocks_->currentItem();
    if (item != nullptr && text_->isEnabled()) item->setData(kTextRole, text_->toPlainText());
  });
  Show(layout);
  ResizeInCharacters(*this, 80, 28);
}

ReportTemplate CReportLayoutDialog::Chosen() const {
  ReportTemplate layout{.title = ToText(title_->text()), .blocks = {}};
  for (int row = 0; row < blocks_->count(); ++row) {
    const QListWidgetItem& item = *blocks_->item(row);
    layout.blocks.push_back({KindOf(item), ToText(item.data(kTextRole).toString())});
  }
  return layout;
}

void CReportLayoutDialog::Show(const ReportTemplate& layout) {
  title_->setText(FromText(layout.title));
  blocks_->clear();
  for (const ReportBlock& block : layout.blocks) Append(block, blocks_->count());
  blocks_->setCurrentRow(0);
}

QListWidgetItem* CReportLayoutDialog::Append(const ReportBlock& block, int row) {
  auto* const item = new QListWidgetItem(MeaningOf(block.kind));
  item->setData(kKindRole, static_cast<int>(block.kind));
  item->setData(kTextRole, FromText(block.text));
  blocks_->insertItem(row, item);
  return item;
}

void CReportLayoutDialog::Add() {
  const auto kind = static_cast<ReportBlockKind>(kinds_->currentData().toInt());
  blocks_->setCurrentItem(Append({kind}, blocks_->currentRow() + 1));
  if (kind == ReportBlockKind::kText) text_->setFocus();
}

void CReportLayoutDialog::Move(int steps) {
  const int from = blocks_->currentRow();
  const int to = from + steps;
  if (from < 0 || to < 0 || to >= blocks_->count()) return;
  QListWidgetItem* const item = blocks_->takeItem(from);
  blocks_->insertItem(to, item);
  blocks_->setCurrentItem(item);
}

void CReportLayoutDialog::ShowText() {
  const QListWidgetItem* const item = blocks_->currentItem();
  const bool hasText = item != nullptr && KindOf(*item) == ReportBlockKind::kText;
  text_->setEnabled(false);  // what is set here is nobody's entry
  text_->setPlainText(hasText ? item->data(kTextRole).toString() : QString());
  text_->setEnabled(hasText);
}

void CReportLayoutDialog::LoadFile() {
  const auto file = AskFileToOpen(this, {.title = tr("Load a report template"), .filters = kTemplateFilters});
  if (!file) return;
  QString reason;
  const auto layout = LoadReportTemplate(FromPath(*file), reason);
  layout ? Show(*layout) : void(QMessageBox::warning(this, windowTitle(), EngineText(ToText(reason))));
}

bool CReportLayoutDialog::IsWhole() {
  const auto isKept = [](const QString& text) { return FromText(ToText(text)) == text; };
  bool isWhole = isKept(title_->text());
  for (int row = 0; row < blocks_->count(); ++row) {
    isWhole = isWhole && isKept(blocks_->item(row)->data(kTextRole).toString());
  }
  if (isWhole) return true;
  Show(Chosen());
  QMessageBox::warning(this, windowTitle(), tr("Characters that the files cannot hold have become question marks."));
  return false;
}

void CReportLayoutDialog::accept() {
  if (IsWhole()) QDialog::accept();
}

void CReportLayoutDialog::SaveFile() {
  if (!IsWhole()) return;
  const auto file =
      AskFileToSave(this, {.title = tr("Save the report template"), .filters = kTemplateFilters, .extension = "ini"});
  QString reason;
  if (file && !SaveReportTemplate(FromPath(*file), Chosen(), reason)) {
    QMessageBox::warning(this, windowTitle(), EngineText(ToText(reason)));
  }
}

}  // namespace texturon
