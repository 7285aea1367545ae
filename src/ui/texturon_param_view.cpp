#include "ui/texturon_param_view.h"

#include <QHeaderView>
#include <QVBoxLayout>

#include "core/shown_rows.h"
#include "ui/qt_text.h"

namespace texturon {

CTexturonParamView::CTexturonParamView(CTexturonDoc& doc, QWidget* parent)
    : QWidget(parent),
      doc_(doc),
      grid_(new CGridCtrl({tr("Parameter"), tr("Value"), tr("Unit"), tr("Verdict"), tr("Setting")}, this)) {
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(grid_);
  grid_->horizontalHeader()->setStretchLastSection(true);
  connect(&doc_, &CTexturonDoc::Changed, this, &CTexturonParamView::Update);
  Update();
}

void CTexturonParamView::Update() {
  const std::vector<ShownRow> rows = doc_.HasProfile() ? ShownRows(doc_.document()) : std::vector<ShownRow>();
  grid_->setUpdatesEnabled(false);
  grid_->setRowCount(static_cast<int>(rows.size()));
  for (int i = 0; i < grid_->rowCount(); ++i) {
    const ShownRow& row = rows[static_cast<std::size_t>(i)];
    const QString verdict = !row.verdict                     ? QString()
                            : *row.verdict == Verdict::kPass ? tr("pass")
                                                             : tr("out of tolerance");
    grid_->SetCell(i, 0, FromText(row.title), Qt::AlignLeft);
    grid_->SetCell(i, 1, row.value.empty() ? QString::fromUtf8("\u2013") : FromText(row.value), Qt::AlignRight);
    grid_->SetCell(i, 2, FromText(row.unit), Qt::AlignLeft);
    grid_->SetCell(i, 3, verdict, Qt::AlignLeft);
    grid_->SetCell(i, 4, FromText(row.label).trimmed(), Qt::AlignLeft);
    const bool standsOut = row.verdict == Verdict::kFail && row.row.tolerance.highlightIfOut;
    for (int column = 0; standsOut && column < grid_->columnCount(); ++column) {
      grid_->item(i, column)->setBackground(QColor(0xD5, 0x5E, 0x00));
      grid_->item(i, column)->setForeground(Qt::white);
    }
  }
  grid_->setUpdatesEnabled(true);
}

}  // namespace texturon
