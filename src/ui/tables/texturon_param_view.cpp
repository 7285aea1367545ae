// SPDX-License-Identifier: Apache-2.0

#include "ui/tables/texturon_param_view.h"

#include <QVBoxLayout>

#include "presentation/shown_rows.h"
#include "ui/qt_text.h"

namespace texturon {

CTexturonParamView::CTexturonParamView(CTexturonDoc& doc, QWidget* parent)
    : QWidget(parent),
      doc_(doc),
      grid_(new CGridCtrl({tr("Parameter"), tr("Value"), tr("Unit"), tr("Verdict"), tr("Setting")}, {1}, this)) {
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(grid_);
  connect(&doc_, &CTexturonDoc::Changed, this, &CTexturonParamView::Update);
  connect(grid_, &CGridCtrl::RecordActivated, this, [this](int record) { emit ParameterActivated(names_[record]); });
  Update();
}

void CTexturonParamView::Update() {
  QList<CGridCtrl::Record> records;
  names_.clear();
  if (doc_.HasProfile()) {
    for (const ShownRow& row : ShownRows(doc_.document())) {
      const QString verdict = !row.verdict                     ? QString()
                              : *row.verdict == Verdict::kPass ? tr("pass")
                                                               : tr("out of tolerance");
      names_ << FromText(row.row.name);
      records << CGridCtrl::Record{
          {FromText(row.title), row.value.empty() ? QString::fromUtf8("\u2013") : FromText(row.value),
           FromText(row.unit), verdict, FromText(row.label).trimmed()},
          row.verdict == Verdict::kFail && row.row.tolerance.highlightIfOut};
    }
  }
  grid_->Show(records, ColumnsOfTable(doc_.document().settings.display));
}

}  // namespace texturon
