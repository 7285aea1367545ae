// SPDX-License-Identifier: Apache-2.0

#include "ui/trust/uncertainty_window.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSplitter>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <qcustomplot.h>
#include <thread>

#include "base/ini_file.h"
#include "base/number_text.h"
#include "platform/platform.h"
#include "presentation/shown_rows.h"
#include "presentation/table_rows.h"
#include "presentation/value_place.h"
#include "ui/colours.h"
#include "ui/language.h"
#include "ui/plots/plot_axes.h"
#include "ui/qt_text.h"
#include "ui/trust/known_budget.h"
#include "ui/window/file_dialogs.h"

namespace texturon {
namespace {

constexpr const char* kDistributions[] = {"normal", "uniform", "triangular", "arcsine"};
constexpr std::string_view kSection = "UNCERTAINTY_BUDGET";

QString BudgetFilters() {
  return QObject::tr("Budgets (*.ini)|*.ini|All Files (*.*)|*.*||");
}

/// Broken at blanks so that it leaves the bars their room.
QString InLines(const QString& text) {
  constexpr qsizetype kLongest = 26;
  QString lines;
  qsizetype length = 0;
  for (const QString& word : text.split(' ')) {
    const bool isNew = length > 0 && length + word.size() > kLongest;
    if (length > 0) lines += isNew ? '\n' : ' ';
    length = (isNew ? 0 : length + 1) + word.size();
    lines += word;
  }
  return lines;
}

}  // namespace

CUncertaintyWindow::CUncertaintyWindow(CTexturonDoc& doc, QWidget* parent)
    : QDialog(parent),
      doc_(doc),
      sentence_(new QLabel(this)),
      table_(new QTableWidget(0, 7, this)),
      bars_(new QCustomPlot(this)) {
  setWindowTitle(tr("Uncertainty"));
  sentence_->setObjectName("uncertaintySentence");
  sentence_->setWordWrap(true);
  table_->setAccessibleName(tr("Uncertainty of every parameter"));
  table_->setHorizontalHeaderLabels(
      {tr("Parameter"), tr("Value"), tr("U (k = 2)"), tr("Low"), tr("High"), tr("Bias"), tr("Unit")});
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->verticalHeader()->hide();
  table_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
  table_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  table_->horizontalHeader()->setMinimumSectionSize(fontMetrics().averageCharWidth() * 10);
  table_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  bars_->setAccessibleName(tr("Contributions of the budget's lines"));
  bars_->setMinimumHeight(fontMetrics().height() * 8);
  auto* const results = new QSplitter(Qt::Vertical, this);
  results->addWidget(table_);
  results->addWidget(bars_);
  auto* const layout = new QGridLayout(this);
  // A low screen moves the fields rather than cutting them.
  auto* const fields = new QScrollArea(this);
  fields->setWidget(MakeBudgetFields());
  fields->setWidgetResizable(true);
  fields->setFrameShape(QFrame::NoFrame);
  fields->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  fields->setMinimumWidth(fields->widget()->minimumSizeHint().width() +
                          fields->verticalScrollBar()->sizeHint().width());
  auto* const beside = new QSplitter(this);
  beside->addWidget(fields);
  beside->addWidget(results);
  beside->setStretchFactor(1, 1);
  layout->addWidget(beside, 0, 0);
  layout->addWidget(sentence_, 1, 0);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  buttons->button(QDialogButtonBox::Close)->setAutoDefault(false);
  layout->addWidget(buttons, 2, 0);
  layout->setRowStretch(0, 1);
  connect(table_, &QTableWidget::currentCellChanged, this, [this](int row) { DrawContributions(row); });
  ShowEntries(KnownBudgetEntries());
  DrawContributions(-1);
  ResizeInCharacters(*this, 195, 46);
}

QWidget* CUncertaintyWindow::MakeBudgetFields() {
  auto* const box = new QWidget(this);
  auto* const grid = new QGridLayout(box);
  auto* const what = new QLabel(tr("Standard uncertainties, whatever the distribution; empty: none"), box);
  what->setWordWrap(true);
  grid->addWidget(what, 0, 0, 1, 4);
  for (const BudgetItemRow& item : BudgetItems()) {
    if (item.item == BudgetItem::kNoiseSpectrum) continue;
    AddField(*grid, std::string(item.key), item.meaning, item.unit, true);
  }
  AddField(*grid, "StraightnessWavelengthMM", "length of the guide's wave; empty: twice the record", "mm", false);
  AddField(*grid, "TipRadiusUM", "radius of the tip; empty: as the file states it", "um", false);
  auto* const buttons = new QHBoxLayout;
  grid->addLayout(buttons, grid->rowCount(), 0, 1, 4);
  const auto add = [&](const QString& text, const char* name, const std::function<void()>& act) {
    auto* const button = new QPushButton(text, box);
    button->setObjectName(name);
    button->setAutoDefault(false);
    buttons->addWidget(button);
    connect(button, &QPushButton::clicked, this, act);
    return button;
  };
  add(tr("&Open..."), "openBudget", [this] {
    if (const auto path = AskFileToOpen(this, {.title = tr("Open Budget"), .filters = BudgetFilters()}))
      LoadBudget(*path);
  });
  add(tr("&Save..."), "saveBudget", [this] { Save(); });
  add(tr("&Try"), "tryBudget", [this] { Try(); })->setDefault(true);
  grid->setRowStretch(grid->rowCount(), 1);
  return box;
}

void CUncertaintyWindow::AddField(QGridLayout& grid, const std::string& key, std::string_view meaning,
                                  std::string_view unit, bool hasDistribution) {
  const int line = grid.rowCount();
  QString name = EngineText(meaning);
  if (!name.isEmpty()) name[0] = name[0].toUpper();
  // Two lines of text leave the results their room.
  constexpr int kLabelWidth = 32;
  auto* const label = new QLabel(name, this);
  label->setWordWrap(true);
  label->setFixedWidth(fontMetrics().averageCharWidth() * kLabelWidth);
  auto* const value = new QLineEdit(this);
  value->setObjectName(QString::fromStdString(key));
  value->setAccessibleName(name);
  value->setMaximumWidth(fontMetrics().averageCharWidth() * 12);
  label->setBuddy(value);
  grid.addWidget(label, line, 0);
  grid.addWidget(value, line, 1);
  const QString shownUnit = unit == "um"    ? QString::fromUtf8("\u00B5m")
                            : unit == "deg" ? QString::fromUtf8("\u00B0")
                                            : FromText(unit);
  grid.addWidget(new QLabel(shownUnit, this), line, 2);
  QComboBox* distribution = nullptr;
  if (hasDistribution) {
    distribution = new QComboBox(this);
    distribution->setAccessibleName(tr("Distribution: %1").arg(name));
    distribution->addItems({tr("normal"), tr("uniform"), tr("triangular"), tr("arcsine")});
    grid.addWidget(distribution, line, 3);
  }
  fields_.push_back({key, value, distribution});
}

BudgetEntries CUncertaintyWindow::Entries() const {
  BudgetEntries entries = others_;
  for (const Field& field : fields_) {
    const std::string text = ToText(field.value->text().trimmed());
    if (text.empty()) continue;
    entries.emplace_back(field.key, text);
    if (field.distribution != nullptr && field.distribution->currentIndex() > 0) {
      entries.emplace_back(field.key + ".Distribution", kDistributions[field.distribution->currentIndex()]);
    }
  }
  return entries;
}

bool CUncertaintyWindow::Say(const std::string& sentence) {
  sentence_->setText(BudgetSentence(sentence));
  return false;
}

bool CUncertaintyWindow::LoadBudget(const std::filesystem::path& path) {
  const BudgetRead read = ReadBudget(path);
  if (!read.budget) return Say(FileSentence(path, read.reason));
  ShowEntries(EntriesOf(*read.budget));
  sentence_->setText(FromPath(path));
  return true;
}

void CUncertaintyWindow::ShowEntries(const BudgetEntries& entries) {
  others_.clear();
  for (const Field& field : fields_) {
    field.value->clear();
    if (field.distribution != nullptr) field.distribution->setCurrentIndex(0);
  }
  for (const auto& [key, value] : entries) {
    bool isTaken = false;
    for (const Field& field : fields_) {
      if (key == field.key) {
        field.value->setText(FromText(value));
        isTaken = true;
      } else if (field.distribution != nullptr && key == field.key + ".Distribution") {
        const auto* const found = std::find(std::begin(kDistributions), std::end(kDistributions), value);
        field.distribution->setCurrentIndex(static_cast<int>(found - std::begin(kDistributions)));
        isTaken = true;
      }
    }
    if (!isTaken) others_.emplace_back(key, value);
  }
}

void CUncertaintyWindow::Save() {
  const auto path = AskFileToSave(this, {.title = tr("Save Budget"), .filters = BudgetFilters(), .extension = "ini"});
  if (!path) return;
  IniFile file;
  for (const auto& [key, value] : Entries()) file.Set(kSection, key, value);
  const FileOutcome outcome = ReplaceFile(*path, file.Bytes());
  sentence_->setText(outcome.ok() ? FromPath(*path) : EngineText(FileSentence(*path, outcome.reason)));
}

bool CUncertaintyWindow::Try() {
  const BudgetRead read = MakeBudget(Entries());
  if (!read.budget) return Say(read.reason);
  if (doc_.IsBusy() || !doc_.HasProfile()) return false;
  tried_ = doc_.document();
  const auto progress = doc_.prompts().OpenProgress(ToText(tr("Trials")), ToText(tr("Trials")));
  int shown = -1;
  const TrialOptions options{.jobs = std::max(1U, std::thread::hardware_concurrency()), .advances = [&](int percent) {
                               return percent == shown || progress->Advance(shown = percent);
                             }};
  TrialOutcome trials = RunTrials(tried_, *read.budget, options);
  if (!trials.reason.empty()) return Say(trials.reason);
  SensitivityOutcome sensitivities = FindSensitivities(tried_, *read.budget, options);
  if (!sensitivities.reason.empty()) return Say(sensitivities.reason);
  uncertainties_ = std::move(trials.rows);
  sensitivities_ = std::move(sensitivities.rows);
  KeepBudget(EntriesOf(*read.budget));
  sentence_->clear();
  ShowResults();
  doc_.ShowUncertainties(tried_, uncertainties_);
  return true;
}

void CUncertaintyWindow::ShowResults() {
  const bool metric = tried_.settings.display.Metric;
  const std::vector<ShownRow> rows = ShownRows(tried_);
  table_->setRowCount(0);
  order_ = OrderOfInterest(tried_);
  for (const std::size_t i : order_) {
    const int line = table_->rowCount();
    table_->insertRow(line);
    UncertaintyTexts texts{.value = rows[i].value};
    if (i < uncertainties_.size() && uncertainties_[i]) texts = TextsOf(rows[i].row, *uncertainties_[i], metric);
    QStringList cells{FromText(rows[i].title)};
    for (const std::string& text : {texts.value, texts.expanded, texts.low, texts.high, texts.bias, rows[i].unit}) {
      cells << Readable(FromText(text));
    }
    for (int column = 0; column < cells.size(); ++column) {
      auto* const item = new QTableWidgetItem(cells[column]);
      if (column > 0 && column < 6) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
      table_->setItem(line, column, item);
    }
  }
  if (table_->rowCount() > 0) {
    table_->setCurrentCell(0, 0);
    table_->scrollToItem(table_->currentItem(), QAbstractItemView::PositionAtTop);
  }
  DrawContributions(table_->currentRow());
}

void CUncertaintyWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) DrawContributions(table_->currentRow());
  QDialog::changeEvent(event);
}

/// A bar a line of the budget, the longest first from above.
void CUncertaintyWindow::DrawContributions(int row) {
  ApplyPalette(*bars_);
  bars_->clearPlottables();
  bars_->axisRect()->setVisible(row >= 0);  // empty axes would only ask what they are
  const std::vector<ShownRow> rows = ShownRows(tried_);
  if (row < 0 || static_cast<std::size_t>(row) >= order_.size()) return bars_->replot();
  const std::size_t index = order_[static_cast<std::size_t>(row)];
  if (index >= sensitivities_.size() || index >= rows.size()) return bars_->replot();
  std::vector<Sensitivity> lines = sensitivities_[index];
  std::stable_sort(lines.begin(), lines.end(),
                   [](const Sensitivity& a, const Sensitivity& b) { return a.contribution < b.contribution; });
  auto* const bars = new QCPBars(bars_->yAxis, bars_->xAxis);
  bars->setBrush(CurveColour(0, palette()));
  bars->setPen(Qt::NoPen);
  auto ticker = QSharedPointer<QCPAxisTickerText>::create();
  const Quantity& quantity = rows[index].row.quantity;
  double place = 0.0;
  for (const Sensitivity& line : lines) {
    if (!std::isfinite(line.contribution)) continue;
    bars->addData(place, quantity.Shown(line.contribution, tried_.settings.display.Metric));
    ticker->addTick(place, InLines(EngineText(BudgetItems()[static_cast<std::size_t>(line.item)].meaning)));
    place += 1.0;
  }
  bars_->yAxis->setTicker(ticker);
  bars_->xAxis->setLabel(tr("%1: standard uncertainty\nby each line alone, %2")
                             .arg(FromText(rows[index].title), Readable(FromText(rows[index].unit))));
  bars_->rescaleAxes();
  bars_->xAxis->setRangeLower(0.0);
  bars_->yAxis->setRange(-0.7, std::max(place, 1.0) - 0.3);
  bars_->replot();
}

}  // namespace texturon
