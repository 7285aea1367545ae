// SPDX-License-Identifier: Apache-2.0

#include "ui/trust/compare_window.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QTreeWidget>
#include <algorithm>
#include <utility>

#include "base/number_text.h"
#include "parameters/catalogue.h"
#include "platform/platform.h"
#include "presentation/table_rows.h"
#include "settings/settings_file.h"
#include "settings/settings_text.h"
#include "ui/language.h"
#include "ui/qt_text.h"
#include "ui/window/file_dialogs.h"

namespace texturon {
namespace {

constexpr const char* kFile = "file";

QString Figure(const std::optional<double>& value, const Quantity& quantity, bool metric, int figures) {
  return value ? Readable(FromText(SignificantText(quantity.Shown(*value, metric), figures)))
               : QString::fromUtf8("\u2013");
}

}  // namespace

CCompareWindow::CCompareWindow(CTexturonDoc& doc, QWidget* parent)
    : QDialog(parent),
      doc_(doc),
      sentence_(new QLabel(this)),
      tabs_(new QTabWidget(this)),
      table_(new QTreeWidget),
      practices_(new QTableWidget(0, 4)) {
  setWindowTitle(tr("Compare Settings"));
  auto* const layout = new QGridLayout(this);
  const QString names[] = {tr("&From"), tr("T&o")};
  for (int i = 0; i < 2; ++i) {
    Side& side = sides_[i];
    side.choice = new QComboBox(this);
    side.choice->setObjectName(i == 0 ? "from" : "to");
    side.choice->addItem(tr("settings in force"), QString());
    for (const EmbeddedFile& file : PracticeFiles()) {
      side.choice->addItem(FromText(TitleOf(file).title), FromText(file.name));
      side.choice->setItemData(side.choice->count() - 1, FromText(TitleOf(file).remark), Qt::ToolTipRole);
    }
    auto* const label = new QLabel(names[i], this);
    label->setBuddy(side.choice);
    auto* const browse = new QPushButton(tr("Browse..."), this);
    browse->setAutoDefault(false);
    browse->setAccessibleName(tr("Browse for: %1").arg(QString(names[i]).remove('&')));
    layout->addWidget(label, i, 0);
    layout->addWidget(side.choice, i, 1);
    layout->addWidget(browse, i, 2);
    connect(side.choice, &QComboBox::currentIndexChanged, this, [this, &side] {
      side.cutoffMM.reset();
      Compare();
    });
    connect(browse, &QPushButton::clicked, this, [this, i] {
      const auto path = AskFileToOpen(
          this, {.title = tr("Load Settings"), .filters = tr("Settings (*.ini)|*.ini|All Files (*.*)|*.*||")});
      if (path) UseFile(i, *path);
    });
  }
  table_->setAccessibleName(tr("Steps between the values"));
  table_->setHeaderLabels({tr("Parameter"), tr("Change"), tr("Alone"), tr("Value"), tr("Unit")});
  table_->headerItem()->setToolTip(1, tr("What the step adds after those above it"));
  table_->headerItem()->setToolTip(2, tr("What the step does by itself from the first settings"));
  table_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  table_->header()->setStretchLastSection(false);
  practices_->setAccessibleName(tr("Practices, the nearest to the instrument's values first"));
  practices_->setHorizontalHeaderLabels({tr("Practice"), tr("Lc"), tr("Off by"), tr("Within 1 %")});
  practices_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  practices_->setSelectionBehavior(QAbstractItemView::SelectRows);
  practices_->verticalHeader()->hide();
  connect(practices_, &QTableWidget::cellActivated, this, [this](int row) { UseTried(row); });
  tabs_->addTab(table_, tr("The way between them"));
  tabs_->addTab(practices_, tr("What explains the instrument"));
  connect(tabs_, &QTabWidget::currentChanged, this, [this] { Rank(); });
  layout->addWidget(tabs_, 2, 0, 1, 3);
  layout->addWidget(sentence_, 3, 0, 1, 3);
  sentence_->setWordWrap(true);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  buttons->button(QDialogButtonBox::Close)->setAutoDefault(false);
  layout->addWidget(buttons, 4, 0, 1, 3);
  layout->setColumnStretch(1, 1);
  layout->setRowStretch(2, 1);
  connect(&doc_, &CTexturonDoc::Changed, this, [this] {
    isRankOld_ = true;
    if (isVisible()) Compare();
  });
  ResizeInCharacters(*this, 120, 40);
  Compare();
}

bool CCompareWindow::UseFile(int side, const std::filesystem::path& path) {
  Settings settings;
  SilentPrompts nobody;
  const SettingsFileResult loaded = LoadSettings(path, settings, nobody);
  if (!loaded.ok() || !loaded.found) {
    sentence_->setText(EngineText(FileSentence(path, loaded.ok() ? "does not exist" : loaded.reason)));
    return false;
  }
  Side& chosen = sides_[side];
  chosen.file = path;
  int entry = chosen.choice->findData(kFile);
  if (entry < 0) {
    entry = chosen.choice->count();
    chosen.choice->addItem(QString(), kFile);
  }
  chosen.choice->setItemText(entry, FromPath(path.filename()));
  const bool isInForce = chosen.choice->currentIndex() == entry;
  chosen.choice->setCurrentIndex(entry);
  if (isInForce) Compare();
  return true;
}

Practice CCompareWindow::PracticeOf(const Side& side) const {
  Practice practice{.settings = doc_.document().settings, .scope = doc_.document().scope};
  const std::string name = ToText(side.choice->currentData().toString());
  if (name == kFile) {
    SilentPrompts nobody;
    LoadSettings(side.file, practice.settings, nobody);
    TakeScope(IniFile(ReadIniFile(side.file).bytes), practice);
  }
  for (const EmbeddedFile& file : PracticeFiles()) {
    if (file.name == name) TakePractice(file, practice);
  }
  if (side.cutoffMM) practice.settings.analysis.LcCutoffMM = *side.cutoffMM;
  return practice;
}

void CCompareWindow::Compare() {
  table_->clear();
  sentence_->clear();
  Rank();
  if (!doc_.HasProfile()) return;
  const bool metric = doc_.document().settings.display.Metric;
  auto rows = ComparePractices(doc_.document().profiles, PracticeOf(sides_[0]), PracticeOf(sides_[1]));
  const bool isSame = std::all_of(rows.begin(), rows.end(), [](const ComparedRow& row) { return row.steps.empty(); });
  if (isSame && tabs_->currentWidget() == table_) sentence_->setText(tr("Both are the same: choose another for one."));
  // What changes is not looked for among what does not.
  const auto rankOf = [&known = doc_.document().catalogue.rows](const ComparedRow& row) {
    const auto found = std::find_if(known.begin(), known.end(), [&row](const ParameterDef& each) {
      return each.name == row.name || each.NameWithEdition() == row.name;
    });
    return std::pair(row.a == row.b, found == known.end() ? 0 : RankOfInterest(*found));
  };
  std::stable_sort(rows.begin(), rows.end(),
                   [&](const ComparedRow& one, const ComparedRow& other) { return rankOf(one) < rankOf(other); });
  for (const ComparedRow& row : rows) {
    const QString unit = Readable(FromText(PrintedUnit(row.quantity.Unit(metric))));
    const auto value = [&](const std::optional<double>& number) { return Figure(number, row.quantity, metric, 6); };
    const auto change = [&](const std::optional<double>& number) { return Figure(number, row.quantity, metric, 3); };
    const auto align = [](QTreeWidgetItem& item) {
      for (const int column : {1, 2}) item.setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    };
    auto* const line = new QTreeWidgetItem(table_, {FromText(row.name), change(row.Difference()), QString(),
                                                    value(row.a) + QString::fromUtf8(" \u2192 ") + value(row.b), unit});
    align(*line);
    for (const StepChange& step : row.steps) {
      align(*new QTreeWidgetItem(line,
                                 {EngineText(step.step), change(step.change), change(step.alone), QString(), unit}));
    }
    if (!row.steps.empty()) {
      align(*new QTreeWidgetItem(line, {tr("(interaction)"), QString(), change(row.Interaction()), QString(), unit}));
    }
  }
}

void CCompareWindow::Rank() {
  if (tabs_->currentWidget() != practices_ || !isRankOld_) return;
  isRankOld_ = false;
  tried_.clear();
  practices_->setRowCount(0);
  sentence_->clear();
  const Document& document = doc_.document();
  if (!doc_.HasProfile() || document.profiles.instrumentValues.empty()) {
    sentence_->setText(tr("The file brings no values of its instrument."));
    return;
  }
  // Whatever is selected, every value of the instrument is looked for.
  Practice base{.settings = document.settings, .scope = document.scope};
  if (base.settings.analysis.standard.Edition == "1997") base.settings.analysis.parameters = DefaultSelection();
  QApplication::setOverrideCursor(Qt::WaitCursor);
  for (TriedPractice& one : TryPractices(base, document.profiles)) {
    const bool isKnown = std::any_of(tried_.begin(), tried_.end(),
                                     [&one](const TriedPractice& nearer) { return nearer.name == one.name; });
    if (!isKnown) tried_.push_back(std::move(one));  // with its best cut-off
  }
  QApplication::restoreOverrideCursor();
  practices_->setRowCount(static_cast<int>(tried_.size()));
  for (std::size_t i = 0; i < tried_.size(); ++i) {
    const TriedPractice& one = tried_[i];
    PracticeTitle title;
    for (const EmbeddedFile& file : PracticeFiles()) {
      if (file.name == one.name) title = TitleOf(file);
    }
    const QString cells[] = {FromText(title.title), FromText(SignificantText(one.cutoffMM, 3) + " mm"),
                             FromText(FixedText(100.0 * one.deviation, 2) + " %"),
                             tr("%1 of %2").arg(one.Near()).arg(one.matches.size())};
    for (int column = 0; column < practices_->columnCount(); ++column) {
      auto* const item = new QTableWidgetItem(cells[column]);
      item->setToolTip(FromText(title.remark));
      if (column > 0) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
      practices_->setItem(static_cast<int>(i), column, item);
    }
  }
  practices_->resizeColumnsToContents();
  const bool isExplained = !tried_.empty() && tried_.front().deviation <= kExplained;
  sentence_->setText(isExplained ? tr("Double-click a practice for the way to it from the settings in force.")
                                 : tr("None of them comes near the instrument's values."));
}

void CCompareWindow::UseTried(int row) {
  const TriedPractice& one = tried_.at(static_cast<std::size_t>(row));
  const double cutoffMM = one.cutoffMM;
  sides_[0].choice->setCurrentIndex(0);
  Side& to = sides_[1];
  to.choice->setCurrentIndex(to.choice->findData(FromText(one.name)));
  to.cutoffMM = cutoffMM;
  tabs_->setCurrentWidget(table_);
  Compare();
}

}  // namespace texturon
