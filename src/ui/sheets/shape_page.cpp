// SPDX-License-Identifier: Apache-2.0

#include "ui/sheets/shape_page.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/colours.h"
#include "ui/plots/plot_axes.h"
#include "ui/plots/plot_items.h"

namespace texturon {

CShapePage::CShapePage(Settings& settings, std::string_view page, std::string_view section, const char* listTitle,
                       std::function<QString(int)> rowName, std::string_view limitsSection, const Limits& limits,
                       QWidget* parent)
    : CFieldsPage(settings, page, parent),
      rows_(new CSettingRowsModel(settings, section, std::move(rowName), this)),
      table_(new QTableView(this)),
      buttons_(new QHBoxLayout),
      preview_(new QCustomPlot(this)) {
  auto* const left = new QWidget(this);
  left->setLayout(layout());
  left->layout()->setContentsMargins(0, 0, 0, 0);
  auto* const list = new QGroupBox(tr(listTitle), this);
  auto* const listLayout = new QVBoxLayout(list);
  table_->setModel(rows_);
  table_->setTabKeyNavigation(false);
  table_->setAccessibleName(tr(listTitle));
  table_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  table_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
  table_->horizontalHeader()->setStretchLastSection(true);
  table_->horizontalHeader()->setDefaultSectionSize(fontMetrics().averageCharWidth() * 20);
  listLayout->addWidget(table_, 1);
  listLayout->addLayout(buttons_);
  AddButton(tr("&Add"), [this] {
    const int row = table_->currentIndex().isValid() ? table_->currentIndex().row() : rows_->rowCount() - 1;
    const int added = rows_->AddBehind(row);
    if (added >= 0) table_->setCurrentIndex(rows_->index(added, 0));
  });
  AddButton(tr("&Remove"), [this] {
    std::vector<int> rows;
    for (const QModelIndex& index : table_->selectionModel()->selectedIndexes()) rows.push_back(index.row());
    if (!rows.empty()) rows_->Remove(rows);
  });
  connect(rows_, &CSettingRowsModel::Edited, this, &CSettingsPage::Edited);

  auto* const preview = new QGroupBox(tr("Preview"), this);
  auto* const previewLayout = new QVBoxLayout(preview);
  preview_->axisRect()->setupFullAxesBox(true);
  preview_->setMinimumSize(fontMetrics().averageCharWidth() * 40, fontMetrics().height() * 9);
  preview_->installEventFilter(this);
  ApplyPalette(*preview_);
  previewLayout->addWidget(preview_, 1);
  auto* const ends = new QGridLayout;
  const QString names[] = {tr("X from"), tr("to"), tr("Z from"), tr("to")};
  for (int i = 0; i < 4; ++i) {
    const auto end = static_cast<std::size_t>(i);
    CSettingField* const field = MakeField(limitsSection, limits[end], false);
    limits_[end] = field->Place().key;
    auto* const label = new QLabel(names[i], preview);
    label->setBuddy(field);
    ends->addWidget(label, i / 2, i % 2 * 2);
    ends->addWidget(field, i / 2, i % 2 * 2 + 1);
  }
  ends->setColumnStretch(1, 1);
  ends->setColumnStretch(3, 1);
  auto* const fit = new QPushButton(tr("&Fit"), preview);
  fit->setObjectName("fit");
  fit->setToolTip(tr("Sets the limits to what there is to see."));
  fit->setAutoDefault(false);
  connect(fit, &QPushButton::clicked, this, [this] {
    Fit();
    emit Edited();
  });
  ends->addWidget(fit, 0, 4, 2, 1);
  previewLayout->addLayout(ends);

  table_->setMinimumHeight(fontMetrics().height() * 9);
  auto* const all = new QVBoxLayout(this);
  all->addWidget(left);
  all->addWidget(list, 1);
  all->addWidget(preview, 1);
}

QPushButton* CShapePage::AddButton(const QString& text, const std::function<void()>& run) {
  auto* const button = new QPushButton(text, this);
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, run);
  buttons_->addWidget(button);
  return button;
}

void CShapePage::Begin() {
  isComplete_ = true;
  CShapePage::Refresh();
}

void CShapePage::Refresh() {
  CFieldsPage::Refresh();
  if (!isComplete_) return;
  rows_->Refresh();
  DrawPreview();
}

void CShapePage::Reset() {
  rows_->Reset();
  CFieldsPage::Reset();
}

QString CShapePage::Fault() const {
  const QString fault = CFieldsPage::Fault();
  return fault.isEmpty() ? rows_->Fault() : fault;
}

void CShapePage::TakeDefaults(const Settings& defaults, Settings& settings) const {
  CFieldsPage::TakeDefaults(defaults, settings);
  // The list as a whole, however long it is; each page has but one.
  const bool isAsphere = rows_->Keys().front()->binding.section == "ASPHERIC_PARAMETERS";
  if (isAsphere) settings.analysis.asphereCoefficients = defaults.analysis.asphereCoefficients;
  if (!isAsphere) settings.analysis.freeFormPoints = defaults.analysis.freeFormPoints;
}

std::vector<const SettingKey*> CShapePage::Keys() const {
  std::vector<const SettingKey*> keys = CFieldsPage::Keys();
  for (const SettingKey* const key : rows_->Keys()) keys.push_back(key);
  return keys;
}

double CShapePage::Limit(std::size_t i) const {
  return std::get<double>(limits_[i]->binding.get(settings_, 0));
}

void CShapePage::DrawPreview() {
  if (!isVisible()) return;
  Document shown;
  shown.settings.display.Metric = settings_.display.Metric;
  const ShownUnits units = UnitsOf(shown);
  ClearDrawing(*preview_);
  preview_->xAxis->setLabel(tr("X in %1").arg(units.lengthName));
  preview_->yAxis->setLabel(tr("Z in %1").arg(units.heightName));
  QCPGraph* const curve = preview_->addGraph();
  curve->setPen(QPen(CurveColour(0, palette()), 1.5));
  const std::vector<FreeFormPoint> shape = CurveOf(kMostScreenPoints);
  for (const FreeFormPoint& point : shape) curve->addData(point.xMM * units.length, point.zUM * units.height);
  if (shape.empty()) {
    auto* const reason = new QCPItemText(preview_);
    reason->position->setType(QCPItemPosition::ptAxisRectRatio);
    reason->position->setCoords(0.5, 0.5);
    reason->setColor(palette().color(QPalette::Text));
    reason->setText(GivenPoints().empty() ? tr("Nothing lies between these limits.")
                                          : tr("The points give no curve: there must be four or more,\n"
                                               "and X must rise from each to the next."));
  }
  QCPGraph* const points = preview_->addGraph();
  points->setLineStyle(QCPGraph::lsNone);
  points->setScatterStyle(
      QCPScatterStyle(QCPScatterStyle::ssCircle, CurveColour(1, palette()), fontMetrics().height() / 3.0));
  QVector<QCPGraphData> given;
  for (const FreeFormPoint& point : GivenPoints()) {
    given.push_back({point.xMM * units.length, point.zUM * units.height});
  }
  points->data()->set(given, false);
  if (Limit(1) > Limit(0)) preview_->xAxis->setRange(Limit(0) * units.length, Limit(1) * units.length);
  if (Limit(3) > Limit(2)) preview_->yAxis->setRange(Limit(2) * units.height, Limit(3) * units.height);
  preview_->replot();
}

void CShapePage::showEvent(QShowEvent* event) {
  CFieldsPage::showEvent(event);
  DrawPreview();
}

bool CShapePage::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() == QEvent::PaletteChange) {
    ApplyPalette(*preview_);
    DrawPreview();
  }
  return false;
}

}  // namespace texturon
