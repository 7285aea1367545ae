// SPDX-License-Identifier: Apache-2.0

#include "ui/folders/folder_batch_window.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableView>
#include <algorithm>
#include <utility>

#include "analysis/decision.h"
#include "analysis/file_clash.h"
#include "analysis/verdict_trials.h"
#include "base/date_text.h"
#include "base/number_text.h"
#include "platform/platform.h"
#include "presentation/shown_rows.h"
#include "presentation/table_rows.h"
#include "settings/settings_text.h"
#include "ui/colours.h"
#include "ui/language.h"
#include "ui/qt_text.h"
#include "ui/several/trend_pane.h"
#include "ui/trust/known_budget.h"
#include "ui/window/file_dialogs.h"
#include "unattended/folder_files.h"

namespace texturon {
namespace {

constexpr int kFixedColumns = 2;
constexpr int kMostJobs = 256;
constexpr int kCollectEveryMS = 100;

std::string TitleOf(const ColumnValue& column) {
  return column.unit.empty() ? column.name : column.name + " / " + column.unit;
}

/// What the limits come to, in the words of the main window.
QString ToleranceText(const BatchRow& row) {
  const auto out = std::count_if(row.columns.begin(), row.columns.end(),
                                 [](const ColumnValue& column) { return column.outOfTolerance; });
  const auto open =
      std::count_if(row.columns.begin(), row.columns.end(), [](const ColumnValue& column) { return column.undecided; });
  const auto isLimited = [](const ColumnValue& column) { return column.limits.lower || column.limits.upper; };
  const auto missing = std::count_if(row.columns.begin(), row.columns.end(), [&](const ColumnValue& column) {
    return isLimited(column) && !column.value && !column.outOfTolerance && !column.undecided;
  });
  QStringList parts;
  if (out > 0) parts << QObject::tr("%n out of tolerance", nullptr, static_cast<int>(out));
  if (open > 0) parts << QObject::tr("%n undecided", nullptr, static_cast<int>(open));
  if (missing > 0) parts << QObject::tr("%n without a value", nullptr, static_cast<int>(missing));
  if (!parts.isEmpty()) return parts.join(", ");
  return std::any_of(row.columns.begin(), row.columns.end(), isLimited) ? QObject::tr("within tolerance")
                                                                        : QObject::tr("no limits set");
}

/// The sentence on a failure without its file, which stands beside it.
QString ReasonText(const BatchRow& row) {
  QString text = EngineText(row.reason);
  const QString path = FromText(TextFromPath(row.path)) + ' ';
  if (text.startsWith(path)) text.remove(0, path.size());
  return AsSentence(text);
}

QString ResultText(const BatchRow& row) {
  if (!row.reason.empty()) return ReasonText(row);
  if (!row.remarks.empty()) return ToleranceText(row) + " - " + EngineText(row.remarks.front());
  return ToleranceText(row);
}

/// All that there is to say of a file.
QString ResultTip(const BatchRow& row) {
  QStringList lines(row.reason.empty() ? ToleranceText(row) : ReasonText(row));
  for (const std::string& remark : row.remarks) lines << EngineText(remark);
  return lines.join('\n');
}

/// A figure in the unit shown with the decimals of its row.
QString Figure(ParameterDef row, double shown, bool metric) {
  row.valid = true;
  row.value = shown / row.quantity.Factor(metric);
  return FromText(ShownValue(row, metric));
}

QStringList SummaryTitles() {
  return {QObject::tr("Parameter"), QObject::tr("Files"),   QObject::tr("Mean"), QObject::tr("Standard deviation"),
          QObject::tr("Minimum"),   QObject::tr("Maximum"), QObject::tr("Unit"), QObject::tr("Out of tolerance")};
}

/// Puts what stands in the order of the rows into that in which they are looked at.
template <typename Item>
void PutInOrder(std::vector<Item>& items, const std::vector<std::size_t>& order) {
  if (items.size() != order.size()) return;
  std::vector<Item> ordered;
  ordered.reserve(items.size());
  for (const std::size_t place : order) ordered.push_back(std::move(items[place]));
  items = std::move(ordered);
}

}  // namespace

void CBatchResults::Clear() {
  beginResetModel();
  rows_.clear();
  titles_.clear();
  endResetModel();
}

void CBatchResults::Add(std::vector<BatchRow> rows) {
  if (rows.empty()) return;
  if (titles_.empty()) {
    const auto first = std::find_if(rows.begin(), rows.end(), [](const BatchRow& row) { return row.reason.empty(); });
    if (first != rows.end() && !first->columns.empty()) {
      beginInsertColumns({}, kFixedColumns, kFixedColumns + static_cast<int>(first->columns.size()) - 1);
      for (const ColumnValue& column : first->columns) titles_.push_back(TitleOf(column));
      endInsertColumns();
    }
  }
  beginInsertRows({}, rowCount(), rowCount() + static_cast<int>(rows.size()) - 1);
  std::move(rows.begin(), rows.end(), std::back_inserter(rows_));
  endInsertRows();
}

QList<QStringList> CBatchResults::AllCells() const {
  QList<QStringList> lines(1);
  for (int column = 0; column < columnCount(); ++column)
    lines[0] << headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
  for (int row = 0; row < rowCount(); ++row) {
    QStringList cells;
    for (int column = 0; column < columnCount(); ++column) cells << data(index(row, column), Qt::EditRole).toString();
    lines << cells;
  }
  return lines;
}

QString CBatchResults::AsText() const {
  QString text;
  for (const QStringList& cells : AllCells()) text += cells.join('\t') + '\n';
  return text;
}

QString CBatchResults::AsCommaList() const {
  const EnglishScope english;
  QString text;
  for (QStringList cells : AllCells()) {
    for (QString& cell : cells) {
      if (cell.contains(',') || cell.contains('"') || cell.contains('\n')) {
        cell = '"' + cell.replace('"', "\"\"") + '"';
      }
    }
    text += cells.join(',') + "\r\n";
  }
  return text;
}

int CBatchResults::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int CBatchResults::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kFixedColumns + static_cast<int>(titles_.size());
}

QVariant CBatchResults::data(const QModelIndex& index, int role) const {
  const BatchRow& row = Row(index.row());
  const auto column = static_cast<std::size_t>(index.column());
  if (index.column() < kFixedColumns) {
    const bool isName = index.column() == 0;
    if (role == Qt::DisplayRole || role == Qt::EditRole)
      return isName ? FromPath(row.path.filename()) : ResultText(row);
    if (role == Qt::ToolTipRole) return isName ? FromPath(row.path) : ResultTip(row);
    return {};
  }
  if (column - kFixedColumns >= row.columns.size()) return {};
  const ColumnValue& cell = row.columns[column - kFixedColumns];
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole: {
      // As it is read, and as it is copied and filed.
      const QString text = cell.text.empty() ? QString::fromUtf8("\u2013") : FromText(cell.text);
      return role == Qt::DisplayRole ? Readable(text) : text;
    }
    case Qt::TextAlignmentRole:
      return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
    case Qt::BackgroundRole:
      if (cell.undecided) return UndecidedGround();
      return cell.outOfTolerance ? QVariant(VerdictGround(false)) : QVariant();
    case Qt::ForegroundRole:
      return cell.outOfTolerance || cell.undecided ? QVariant(QColor(Qt::white)) : QVariant();
    case Qt::ToolTipRole:
      return cell.undecided ? tr("undecided") : QVariant();
    default:
      return {};
  }
}

QVariant CBatchResults::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Vertical || role != Qt::DisplayRole) return {};
  if (section == 0) return tr("File");
  if (section == 1) return tr("Result");
  return FromText(titles_[static_cast<std::size_t>(section - kFixedColumns)]);
}

CFolderBatchWindow::CFolderBatchWindow(CTexturonDoc& doc, QWidget* parent) : QDialog(parent), doc_(doc) {
  setWindowTitle(tr("Batch of a Folder"));
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  auto* const outer = new QVBoxLayout(this);
  MakeForm(*outer);
  MakeTables(*outer);
  timer_.setInterval(kCollectEveryMS);
  connect(&timer_, &QTimer::timeout, this, &CFolderBatchWindow::Collect);
  ResizeInCharacters(*this, 170, 46);
}

CFolderBatchWindow::~CFolderBatchWindow() {
  stops_ = true;
  if (worker_.joinable()) worker_.join();
}

void CFolderBatchWindow::MakeForm(QLayout& layout) {
  auto* const form = new QFormLayout;
  static_cast<QVBoxLayout&>(layout).addLayout(form);
  const auto addLine = [this, form](const QString& title, const char* name, const QString& tip, const auto& ask) {
    auto* const row = new QHBoxLayout;
    auto* const line = new QLineEdit(this);
    line->setObjectName(name);
    line->setToolTip(tip);
    row->addWidget(line, 1);
    auto* const label = new QLabel(title, this);
    label->setBuddy(line);
    if constexpr (!std::is_null_pointer_v<std::decay_t<decltype(ask)>>) {
      auto* const button = new QPushButton(tr("Browse..."), this);
      button->setAutoDefault(false);
      row->addWidget(button);
      connect(button, &QPushButton::clicked, this, [line, ask] {
        if (const auto chosen = ask(ToPath(line->text()))) line->setText(FromPath(*chosen));
      });
    }
    form->addRow(label, row);
    return line;
  };
  folder_ = addLine(tr("&Folder"), "folder", {},
                    [this](const auto& former) { return AskFolder(this, tr("Folder to analyse"), former); });
  mask_ = addLine(tr("&Mask"), "mask", tr("Empty: every file whose extension has a reader."), nullptr);
  parameterFile_ = addLine(tr("&Parameter file"), "parameterFile",
                           tr("Gets a row for each file. Empty: the results are only shown."),
                           [this](const auto& former) { return AskParameterFile(this, former); });
  jobs_ = new QSpinBox(this);
  jobs_->setRange(1, kMostJobs);
  jobs_->setValue(static_cast<int>(std::max(1U, std::thread::hardware_concurrency())));
  jobs_->setMaximumWidth(fontMetrics().averageCharWidth() * 12);
  resume_ = new QCheckBox(tr("&Leave out files that have a row"), this);
  resume_->setObjectName("resume");
  auto* const row = new QHBoxLayout;
  row->addWidget(jobs_);
  row->addSpacing(fontMetrics().averageCharWidth() * 2);
  row->addWidget(resume_);
  row->addStretch(1);
  auto* const label = new QLabel(tr("Files at a &time"), this);
  label->setBuddy(jobs_);
  form->addRow(label, row);
}

void CFolderBatchWindow::MakeTables(QLayout& layout) {
  auto* const run = new QHBoxLayout;
  start_ = new QPushButton(tr("&Start"), this);
  start_->setObjectName("start");
  start_->setDefault(true);
  connect(start_, &QPushButton::clicked, this, [this] { IsRunning() ? Stop() : OnStart(); });
  bar_ = new QProgressBar(this);
  run->addWidget(start_);
  run->addWidget(bar_, 1);
  static_cast<QVBoxLayout&>(layout).addLayout(run);
  state_ = new QLabel(this);
  state_->setObjectName("state");
  state_->setWordWrap(true);
  layout.addWidget(state_);
  tabs_ = new QTabWidget(this);
  results_ = new CBatchResults(this);
  table_ = new QTableView(tabs_);
  table_->setObjectName("files");
  table_->setAccessibleName(tr("Files"));
  table_->setModel(results_);
  table_->setAlternatingRowColors(true);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
  table_->setTabKeyNavigation(false);
  connect(table_, &QTableView::activated, this,
          [this](const QModelIndex& index) { emit OpenRequested(FromPath(results_->Row(index.row()).path)); });
  summary_ = new CGridCtrl(SummaryTitles(), {1, 2, 3, 4, 5, 7}, tabs_);
  trend_ = new CTrendPane(tabs_);
  connect(trend_, &CTrendPane::Activated, this,
          [this](int file) { emit OpenRequested(FromPath(results_->Row(file).path)); });
  tabs_->addTab(MakeFilesPage(), tr("F&iles"));
  tabs_->addTab(trend_, tr("T&rend"));
  tabs_->addTab(summary_, tr("St&atistics"));
  static_cast<QVBoxLayout&>(layout).addWidget(tabs_, 1);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  auto* const copy = buttons->addButton(tr("&Copy"), QDialogButtonBox::ActionRole);
  connect(copy, &QPushButton::clicked, this, &CFolderBatchWindow::Copy);
  save_ = buttons->addButton(tr("Sa&ve..."), QDialogButtonBox::ActionRole);
  save_->setToolTip(tr(
      "The table of files as .csv, the trend as .svg or .png, or a page of both charts and the statistics as .pdf."));
  save_->setEnabled(false);
  connect(save_, &QPushButton::clicked, this, &CFolderBatchWindow::OnSave);
  for (QAbstractButton* const button : buttons->buttons()) static_cast<QPushButton*>(button)->setAutoDefault(false);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* const copyKey = new QAction(table_);
  copyKey->setShortcut(QKeySequence::Copy);
  copyKey->setShortcutContext(Qt::WidgetShortcut);
  connect(copyKey, &QAction::triggered, this, &CFolderBatchWindow::Copy);
  table_->addAction(copyKey);
  layout.addWidget(buttons);
}

QWidget* CFolderBatchWindow::MakeFilesPage() {
  auto* const page = new QWidget(tabs_);
  auto* const layout = new QVBoxLayout(page);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(table_, 1);
  // There from the beginning: the table does not jump when a file is chosen.
  details_ = new QLabel(page);
  details_->setObjectName("details");
  details_->setWordWrap(true);
  details_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  details_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  details_->setMinimumHeight(2 * fontMetrics().lineSpacing());
  details_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  details_->setMargin(fontMetrics().averageCharWidth() / 2);
  layout->addWidget(details_);
  connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this](const QModelIndex& index) {
    details_->setText(index.isValid() ? ResultTip(results_->Row(index.row())) : QString());
  });
  return page;
}

void CFolderBatchWindow::SpreadReasons() {
  const int columns = results_->columnCount();
  // Alone, the reasons have the whole width.
  table_->horizontalHeader()->setStretchLastSection(columns == kFixedColumns);
  if (columns == kFixedColumns) return;
  for (; spread_ < results_->rowCount(); ++spread_) {
    const bool isFailure = !results_->Row(spread_).reason.empty();
    if (isFailure) table_->setSpan(spread_, 1, 1, columns - 1);
  }
}

void CFolderBatchWindow::FitReasons() {
  table_->resizeColumnToContents(1);
  // A long reason has what room the parameters leave, and pushes none of them out of sight; pointed at, it is shown
  // whole.
  const int others = table_->horizontalHeader()->length() - table_->columnWidth(1);
  const int room = std::max(table_->viewport()->width() - others, fontMetrics().averageCharWidth() * 36);
  table_->setColumnWidth(1, std::min(table_->columnWidth(1), room));
}

void CFolderBatchWindow::ChooseFolder(const std::filesystem::path& folder) {
  if (!IsRunning()) folder_->setText(FromPath(folder));
}

void CFolderBatchWindow::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  const std::string& known = doc_.document().settings.display.ParameterFile;
  if (parameterFile_->text().isEmpty() && !MayBeCut(known)) parameterFile_->setText(FromText(known));
}

void CFolderBatchWindow::OnStart() {
  const auto refuse = [this](const QString& sentence, QLineEdit* field) {
    state_->setText(sentence);
    field->setFocus();
  };
  const std::filesystem::path parameterFile = ToPath(parameterFile_->text());
  if (folder_->text().isEmpty()) return refuse(tr("Say which folder."), folder_);
  if (parameterFile.empty() && resume_->isChecked()) {
    return refuse(tr("Without a parameter file there are no rows to leave files out by."), parameterFile_);
  }
  std::vector<std::filesystem::path> outputs;
  if (!parameterFile.empty()) outputs.push_back(parameterFile);
  FolderFiles listed = FilesToAnalyse(ToPath(folder_->text()), ToText(mask_->text()), outputs);
  if (!listed.reason.empty()) return refuse(EngineText(FileSentence(ToPath(folder_->text()), listed.reason)), folder_);
  if (listed.files.empty()) return refuse(tr("There is no file to analyse."), mask_);
  Start(std::move(listed.files), parameterFile);
}

void CFolderBatchWindow::Start(std::vector<std::filesystem::path> files, const std::filesystem::path& parameterFile) {
  table_->clearSpans();
  spread_ = 0;
  details_->clear();
  results_->Clear();
  trend_->Clear();
  summary_->Show({});
  save_->setEnabled(false);
  folderOfRun_ = folder_->text();
  bar_->setRange(0, static_cast<int>(files.size()));
  bar_->setValue(0);
  state_->setText(tr("%n to analyse", nullptr, static_cast<int>(files.size())));
  start_->setText(tr("&Stop"));
  settings_ = MakeDocument();
  ApplySettings(settings_, doc_.document().settings);
  order_ = OrderOfInterest(settings_);
  stops_ = false;
  hasEnded_ = false;
  outcome_ = {};
  remarks_.clear();
  budget_ = KnownBudget();
  const DecisionSettings& decision = settings_.settings.decision;
  if (const std::string remark = RemarkOnRule(decision, budget_.has_value());
      IsGuarded(decision.DecisionRule) && !remark.empty()) {
    remarks_.push_back(remark);
  }
  FolderBatchOptions options{.files = std::move(files),
                             .parameterFile = parameterFile,
                             .failuresFile = {},
                             .summaryFile = {},
                             .jobs = jobs_->value(),
                             .resume = resume_->isChecked()};
  worker_ = std::thread([this, options = std::move(options), environment = doc_.environment()] {
    const auto fileDone = [this](const std::filesystem::path& path, const FileAnalysis& analysis) {
      const std::lock_guard lock(mutex_);
      arrived_.push_back({path, analysis.reason, analysis.columns, analysis.remarks});
    };
    const auto remarked = [this](const std::string& sentence) { remarks_.push_back(sentence); };
    outcome_ = RunFolderBatch(options, {.start = settings_, .uncertainty = budget_ ? &*budget_ : nullptr}, environment,
                              {.fileFailed = {},
                               .fileRemarked = {},
                               .remarked = remarked,
                               .fileDone = fileDone,
                               .advanced = {},
                               .stops = [this] { return stops_.load(); }});
    hasEnded_ = true;
  });
  timer_.start();
}

void CFolderBatchWindow::Stop() {
  stops_ = true;
  state_->setText(tr("Stops after the files at hand..."));
}

void CFolderBatchWindow::Collect() {
  const bool hasEnded = hasEnded_;
  std::vector<BatchRow> rows;
  {
    const std::lock_guard lock(mutex_);
    rows.swap(arrived_);
  }
  for (BatchRow& row : rows) PutInOrder(row.columns, order_);
  const bool isFirst = results_->rowCount() == 0 && !rows.empty();
  std::vector<CTrendPane::File> files;
  for (const BatchRow& row : rows) files.push_back({row.columns, row.path});
  if (!files.empty()) trend_->Add(files);
  const bool hadColumns = results_->columnCount() > kFixedColumns;
  results_->Add(std::move(rows));
  SpreadReasons();
  if (isFirst || (!hadColumns && results_->columnCount() > kFixedColumns)) {
    table_->resizeColumnsToContents();
    FitReasons();
  }
  bar_->setValue(results_->rowCount());
  if (!hasEnded) return;
  worker_.join();
  timer_.stop();
  start_->setText(tr("&Start"));
  FitReasons();
  ShowOutcome();
}

QString CFolderBatchWindow::OutcomeText() const {
  const BatchSummary& summary = outcome_.summary;
  QString text = tr("%1 analysed, %2 failed").arg(summary.analysed).arg(summary.failed);
  if (summary.remarked > 0) text += tr(", %1 with remarks").arg(summary.remarked);
  if (outcome_.skipped > 0) text += tr(", %1 left out because they have rows").arg(outcome_.skipped);
  text += ".";
  if (!outcome_.reason.empty()) text += " " + EngineText(outcome_.reason);
  if (!outcome_.next.empty()) text += " " + tr("Stopped before %1.").arg(FromPath(outcome_.next.filename()));
  for (const std::string& remark : remarks_) text += " " + EngineText(remark);
  if (budget_) text += " " + BudgetInUse(settings_.settings.decision);
  return text.trimmed();
}

void CFolderBatchWindow::ShowOutcome() {
  const BatchSummary& summary = outcome_.summary;
  state_->setText(OutcomeText());
  bar_->setRange(0, std::max(static_cast<int>(outcome_.total), 1));
  bar_->setValue(outcome_.complete() ? bar_->maximum() : results_->rowCount());
  summary_->Show(SummaryRecords());
  save_->setEnabled(summary.analysed > 0);
}

ProcessPage CFolderBatchWindow::Page() const {
  const EnglishScope english;
  return {.heading = {folderOfRun_, QString::fromStdString(DateText(doc_.environment().localTime())), OutcomeText()},
          .titles = SummaryTitles(),
          .statistics = SummaryRecords()};
}

QString CFolderBatchWindow::SaveAs(const std::filesystem::path& file) {
  const QString name = FromPath(file);
  QString reason;
  RunFiles files{.reads = {}, .writes = {file, ToPath(parameterFile_->text())}};
  for (int row = 0; row < results_->rowCount(); ++row) files.reads.push_back(results_->Row(row).path);
  if (const std::string clash = FileClash(files); !clash.empty()) return EngineText(clash);
  if (name.endsWith(".csv", Qt::CaseInsensitive)) {
    const QByteArray text = results_->AsCommaList().toUtf8();
    const FileOutcome outcome =
        ReplaceFile(file, std::string_view(text.constData(), static_cast<std::size_t>(text.size())));
    return outcome.ok() ? QString() : EngineText(FileSentence(file, outcome.reason));
  }
  return WriteProcess(name, trend_->Series(), Page(), reason) ? QString() : EngineText(ToText(reason));
}

void CFolderBatchWindow::OnSave() {
  const auto file = AskFileToSave(
      this, {.title = tr("Save the results"),
             .filters = "Comma Separated Values (*.csv)|*.csv|PDF (*.pdf)|*.pdf|SVG (*.svg)|*.svg|PNG (*.png)|*.png||",
             .extension = "csv",
             .proposal = "batch.csv"});
  if (!file) return;
  const QString fault = SaveAs(*file);
  state_->setText(fault.isEmpty() ? tr("Wrote %1").arg(FromPath(*file)) : fault);
}

QList<CGridCtrl::Record> CFolderBatchWindow::SummaryRecords() const {
  QList<CGridCtrl::Record> records;
  const bool metric = settings_.settings.display.Metric;
  const std::vector<ShownRow> shown = ShownRows(settings_);
  std::vector<ColumnSummary> columns = outcome_.summary.columns;
  PutInOrder(columns, order_);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const ColumnSummary& column = columns[i];
    QStringList cells = {FromText(column.name), QString::number(column.count)};
    const double values[] = {column.mean, column.StandardDeviation(), column.minimum, column.maximum};
    for (const double value : values) {
      const bool hasValue = column.count > 0;
      // As the values that it is of.
      cells << (hasValue && columns.size() == order_.size() ? Figure(shown[order_[i]].row, value, metric)
                : hasValue                                  ? FromText(SummaryFigure(value))
                                                            : QString());
    }
    QString out = QString::number(column.outOfTolerance);
    if (column.undecided > 0) out += ", " + tr("%n undecided", nullptr, static_cast<int>(column.undecided));
    cells << FromText(column.unit) << out;
    records << CGridCtrl::Record{
        .cells = cells, .standsOut = column.outOfTolerance > 0, .isUndecided = column.undecided > 0};
  }
  return records;
}

void CFolderBatchWindow::Copy() {
  const bool isSummary = tabs_->currentWidget() == summary_;
  QApplication::clipboard()->setText(isSummary ? summary_->AsText() : results_->AsText());
}

void CFolderBatchWindow::done(int result) {
  if (IsRunning()) Stop();
  QDialog::done(result);
}

}  // namespace texturon
