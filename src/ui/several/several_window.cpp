// SPDX-License-Identifier: Apache-2.0

#include "ui/several/several_window.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>
#include <map>
#include <optional>
#include <thread>

#include "analysis/acceptance.h"
#include "analysis/analysis_run.h"
#include "analysis/cautions.h"
#include "analysis/file_clash.h"
#include "analysis/verdict_trials.h"
#include "base/date_text.h"
#include "base/number_text.h"
#include "base/quantity.h"
#include "platform/platform.h"
#include "platform/prompts.h"
#include "presentation/requirement_texts.h"
#include "presentation/table_rows.h"
#include "settings/setting_choices.h"
#include "ui/colours.h"
#include "ui/flow_layout.h"
#include "ui/language.h"
#include "ui/plots/clickable_profile_graph.h"
#include "ui/qt_text.h"
#include "ui/report/report.h"
#include "ui/tables/grid_ctrl.h"
#include "ui/trust/known_budget.h"
#include "ui/window/file_dialogs.h"

namespace texturon {
namespace {

constexpr std::size_t kMostProfiles = 100;
constexpr ProfileKind kKinds[] = {ProfileKind::kRoughness, ProfileKind::kPrimary, ProfileKind::kWaviness,
                                  ProfileKind::kFormSuppressed};
enum Alignment { kByStart, kByCursor, kByCorrelation };

/// Takes one of several profiles of a file and tells how many there are.
class ChoosingPrompts : public SilentPrompts {
public:
  explicit ChoosingPrompts(std::size_t wanted) : wanted_(wanted) {}
  std::optional<std::size_t> ChooseFromList(std::string_view /*title*/, std::span<const std::string> lines) override {
    count = lines.size();
    return wanted_ < lines.size() ? std::optional(wanted_) : std::nullopt;
  }
  std::size_t count = 1;

private:
  std::size_t wanted_;
};

/// What a guarded rule goes by. Why there is nothing though there is a budget; else empty.
QString TryByKnownBudget(Document& document) {
  const auto budget = KnownBudget();
  if (!budget) return {};
  return EngineText(TryForVerdicts(document, &*budget, std::max(1U, std::thread::hardware_concurrency())));
}

/// The wait cursor while it lives.
class BusyCursor {
public:
  BusyCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
  ~BusyCursor() { QApplication::restoreOverrideCursor(); }
  BusyCursor(const BusyCursor&) = delete;
  BusyCursor& operator=(const BusyCursor&) = delete;
};

}  // namespace

CSeveralWindow::CSeveralWindow(CTexturonDoc& doc, QWidget* parent) : QDialog(parent), doc_(doc) {
  setWindowTitle(tr("Several Profiles"));
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  auto* const outer = new QVBoxLayout(this);
  outer->addLayout(MakeChoices());
  auto* const upright = new QSplitter(Qt::Vertical, this);
  auto* const upper = new QSplitter(upright);
  list_ = new QListWidget(upper);
  list_->setObjectName("profiles");
  list_->setAccessibleName(tr("Profiles"));
  graph_ = new CClickableProfileGraph(upper);
  graph_->setAccessibleName(tr("Overlay"));
  graph_->ShowCursors(true, false);
  connect(graph_, &CClickableProfileGraph::CursorsMoved, this, &CSeveralWindow::LabelCursors);
  graph_->ShowXValues(true);
  upper->addWidget(list_);
  upper->addWidget(graph_);
  upper->setStretchFactor(1, 4);
  tableRoom_ = new QWidget(upright);
  new QVBoxLayout(tableRoom_);
  tableRoom_->layout()->setContentsMargins(0, 0, 0, 0);
  table_ = new CGridCtrl({tr("Parameter")}, {}, tableRoom_);
  tableRoom_->layout()->addWidget(table_);
  upright->addWidget(upper);
  upright->addWidget(tableRoom_);
  upright->setStretchFactor(0, 2);
  upright->setStretchFactor(1, 1);
  outer->addWidget(upright, 1);
  drawing_ = new QLabel(this);
  drawing_->setObjectName("drawing");
  drawing_->setWordWrap(true);
  drawing_->setTextFormat(Qt::PlainText);
  drawing_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  drawing_->setVisible(false);
  outer->addWidget(drawing_);
  state_ = new QLabel(this);
  state_->setObjectName("state");
  state_->setWordWrap(true);
  outer->addWidget(state_);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  auto* const copy = buttons->addButton(tr("&Copy"), QDialogButtonBox::ActionRole);
  connect(copy, &QPushButton::clicked, this, [this] { QApplication::clipboard()->setText(table_->AsText()); });
  auto* const report = buttons->addButton(tr("Re&port..."), QDialogButtonBox::ActionRole);
  report->setToolTip(tr("The report of the chosen profile, with the statistics of all."));
  connect(report, &QPushButton::clicked, this, [this] { AskForReport(); });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  outer->addWidget(buttons);
  for (QPushButton* const button : findChildren<QPushButton*>()) button->setAutoDefault(false);
  connect(list_, &QListWidget::itemChanged, this, [this](const QListWidgetItem* item) {
    if (isFilling_) return;
    entries_[static_cast<std::size_t>(list_->row(item))]->isShown = item->checkState() == Qt::Checked;
    DrawOverlay();
  });
  connect(list_, &QListWidget::itemActivated, this, [this](const QListWidgetItem* item) {
    emit OpenRequested(FromPath(entries_[static_cast<std::size_t>(list_->row(item))]->document.profiles.sourceFile));
  });
  connect(&doc_, &CTexturonDoc::Changed, this, &CSeveralWindow::OnSettingsChanged);
  ResizeInCharacters(*this, 185, 42);
  DrawOverlay();
}

CSeveralWindow::~CSeveralWindow() = default;

QLayout* CSeveralWindow::MakeChoices() {
  auto* const row = new CFlowLayout;
  const auto addButton = [this, row](const QString& text, const auto& act) {
    auto* const button = new QPushButton(text, this);
    connect(button, &QPushButton::clicked, this, act);
    row->addWidget(button);
    return button;
  };
  addButton(tr("&Add..."), [this] {
    const auto files = AskFilesToOpen(this, {.title = tr("Profiles to add"), .filters = ProfileFilters()});
    if (!files.empty()) AddFiles(files);
  });
  addButton(tr("&Remove"), [this] { RemoveChosen(); });
  const auto addChoice = [this, row](const QString& title, const QStringList& items, const char* name) {
    // A name and its box stay together where the row is broken.
    auto* const both = new QWidget(this);
    auto* const pair = new QHBoxLayout(both);
    pair->setContentsMargins(0, 0, 0, 0);
    auto* const label = new QLabel(title, both);
    auto* const box = new QComboBox(both);
    label->setBuddy(box);
    box->setObjectName(name);
    box->addItems(items);
    pair->addWidget(label);
    pair->addWidget(box);
    row->addWidget(both);
    return box;
  };
  QStringList kinds;
  for (const ProfileKind kind : kKinds) kinds << EngineText(ProfileTitle(kind));
  kind_ = addChoice(tr("&Profile:"), kinds, "kind");
  alignment_ = addChoice(tr("A&ligned by:"), {tr("Start"), tr("Cursor"), tr("Best correlation")}, "alignment");
  alignHere_ = addButton(tr("Ali&gn Chosen Here"), [this] { AlignChosenHere(); });
  alignHere_->setToolTip(tr("The place under the first cursor is the one by which the chosen profile is aligned."));
  const auto addBox = [this, row](const QString& text, const char* name, const QString& tip) {
    auto* const box = new QCheckBox(text, this);
    box->setObjectName(name);
    box->setToolTip(tip);
    row->addWidget(box);
    connect(box, &QCheckBox::toggled, this, [this] { DrawOverlay(); });
    return box;
  };
  mean_ = addBox(tr("&Mean"), "mean", tr("The mean of the profiles that are ticked."));
  band_ = addBox(tr("&Band"), "band", tr("The lowest and highest of them at each place."));
  difference_ = addBox(tr("&Difference"), "difference", tr("Where two are ticked: the first minus the second."));
  QStringList rules;
  for (const SettingChoice& choice : ChoicesOf(*FindSetting("DECISION", "AcceptanceRule")->key)) {
    rules << EngineText(choice.name);
  }
  rule_ = addChoice(tr("R&ule:"), rules, "rule");
  const AcceptanceRule chosen = AcceptanceRuleOf(doc_.document().settings.decision.AcceptanceRule);
  for (std::size_t i = 0; i < AcceptanceRules().size(); ++i) {
    if (AcceptanceRules()[i].rule == chosen) rule_->setCurrentIndex(static_cast<int>(i));
  }
  rule_->setToolTip(tr("max: no value beyond a limit; 16 %: at most that share of them; median: not the median."));
  connect(kind_, &QComboBox::currentIndexChanged, this, [this] {
    DrawOverlay();
    graph_->StartAnew();
  });
  connect(alignment_, &QComboBox::currentIndexChanged, this, [this] {
    DrawOverlay();
    graph_->StartAnew();
  });
  connect(rule_, &QComboBox::currentIndexChanged, this, [this] { ShowTable(); });
  return row;
}

void CSeveralWindow::AddFiles(const std::vector<std::filesystem::path>& files) {
  faults_.clear();
  {
    const BusyCursor busy;
    for (const std::filesystem::path& file : files) AddFile(file);
  }
  FillList();
  DrawOverlay();
  graph_->StartAnew();
  graph_->FetchCursors();
  ShowTable();
}

void CSeveralWindow::AddFile(const std::filesystem::path& file) {
  std::size_t count = 1;
  std::map<std::string, QStringList> failed;  // the numbers of the profiles by the reason
  for (std::size_t i = 0; i < count; ++i) {
    if (entries_.size() == kMostProfiles) {
      faults_ << tr("At most %n profiles are shown at once.", nullptr, static_cast<int>(kMostProfiles));
      break;
    }
    ChoosingPrompts prompts(i);
    auto entry = std::make_unique<Entry>();
    entry->document = MakeDocument();
    entry->document.writesTraceFile = false;
    ApplySettings(entry->document, doc_.document().settings);
    const RunStep step = RunAnalysis(entry->document, {.path = file}, prompts, doc_.environment());
    count = prompts.count;
    if (!step.ok()) {
      failed[step.Reason()] << QString::number(i + 1);
      continue;
    }
    entry->name = FromPath(file.filename());
    if (count > 1) entry->name += QString(" (%1)").arg(i + 1);
    NoteRemarks(*entry);
    entries_.push_back(std::move(entry));
  }
  for (const auto& [reason, numbers] : failed) {
    const bool isAll = static_cast<std::size_t>(numbers.size()) == count;
    const QString which = isAll ? QString() : QString(" (%1)").arg(numbers.join(", "));
    faults_ << EngineText(FileSentence(ToPath(FromPath(file) + which), reason));
  }
}

void CSeveralWindow::Tell(const QString& sentences) {
  state_->setText(sentences);
  state_->setVisible(!sentences.isEmpty());
}

void CSeveralWindow::NoteRemarks(Entry& entry) {
  entry.remarks.clear();
  const QString doubt = TryByKnownBudget(entry.document);
  if (!doubt.isEmpty()) entry.remarks << tr("%1 has no uncertainty: %2.").arg(entry.name, doubt);
  for (const Caution& caution : CautionsOf(entry.document)) {
    entry.remarks << entry.name + ": " + EngineText(caution.sentence);
  }
}

void CSeveralWindow::RemoveChosen() {
  const int row = list_->currentRow();
  if (row < 0) return;
  entries_.erase(entries_.begin() + row);
  FillList();
  DrawOverlay();
  ShowTable();
}

bool CSeveralWindow::WriteReportFile(const std::filesystem::path& file, QString& reason) const {
  if (entries_.empty()) {
    reason = tr("There are no profiles.");
    return false;
  }
  QString fault;
  ReportChoice choice{.layout = UsersReportTemplate(fault)};
  if (!fault.isEmpty()) {
    reason = fault;
    return false;
  }
  if (!choice.layout.Has(ReportBlockKind::kStatistics)) {
    reason = tr("The layout of the report has no block for several profiles.");
    return false;
  }
  SeveralResults results;
  RunFiles files{.reads = {}, .writes = {file}};
  for (const auto& entry : entries_) {
    results.Add(entry->document);
    choice.several.profiles.emplace_back(IntegerText(static_cast<std::int64_t>(results.Count())), ToText(entry->name));
    files.reads.push_back(entry->document.profiles.sourceFile);
  }
  if (const std::string clash = FileClash(files); !clash.empty()) {
    reason = EngineText(clash);
    return false;
  }
  choice.several.rows = results.Rows(AcceptanceRules()[static_cast<std::size_t>(rule_->currentIndex())].rule,
                                     doc_.document().settings.decision.DecisionRule);
  choice.several.requirements = results.Requirements();
  const auto chosen = static_cast<std::size_t>(std::max(list_->currentRow(), 0));
  return WriteReport(FromPath(file), entries_[chosen]->document, DateText(doc_.environment().localTime()), reason,
                     choice);
}

void CSeveralWindow::AskForReport() {
  const auto file = AskFileToSave(this, {.title = tr("Report"),
                                         .filters = "PDF (*.pdf)|*.pdf|HTML (*.html)|*.html|All Files (*.*)|*.*||",
                                         .extension = "pdf",
                                         .proposal = {}});
  if (!file) return;
  QString reason;
  Tell(WriteReportFile(*file, reason) ? tr("Wrote %1").arg(FromPath(*file)) : EngineText(ToText(reason)));
}

void CSeveralWindow::AlignChosenHere() {
  const int row = list_->currentRow();
  std::vector<std::size_t> shown;
  const std::vector<OverlaidProfile> overlay = Overlay(shown);
  const auto at = std::find(shown.begin(), shown.end(), static_cast<std::size_t>(std::max(row, 0)));
  if (row < 0 || at == shown.end()) {
    Tell(tr("Choose a profile in the list first."));
    return;
  }
  const bool metric = doc_.document().settings.display.Metric;
  const double placeUM = graph_->UprightCursors().first / (kMillimetresPerMicrometre * kLengthMM.Factor(metric));
  entries_[*at]->cursorUM = placeUM - overlay[static_cast<std::size_t>(at - shown.begin())].startUM;
  alignment_->setCurrentIndex(kByCursor);
  DrawOverlay();
}

ProfileKind CSeveralWindow::Kind() const {
  return kKinds[static_cast<std::size_t>(std::max(kind_->currentIndex(), 0))];
}

QColor CSeveralWindow::ColourOf(std::size_t entry) const {
  return CurveColour(static_cast<int>(entry % kCurveColours), palette());
}

std::vector<OverlaidProfile> CSeveralWindow::Overlay(std::vector<std::size_t>& shown) const {
  std::vector<OverlaidProfile> overlay;
  std::vector<double> cursors;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    const Entry& entry = *entries_[i];
    if (!entry.isShown || !entry.document.profiles.Has(Kind())) continue;
    const Profile profile = entry.document.profiles.View(Kind());
    if (profile.range.count < 1 || !(profile.spacingUM > 0.0)) continue;
    overlay.push_back({.heightsUM = profile.Heights(), .spacingUM = profile.spacingUM});
    cursors.push_back(entry.cursorUM);
    shown.push_back(i);
  }
  switch (alignment_->currentIndex()) {
    case kByCursor:
      AlignByCursor(overlay, cursors);
      break;
    case kByCorrelation: {
      const BusyCursor busy;
      AlignByCorrelation(overlay);
      break;
    }
    default:
      AlignByStart(overlay);
  }
  return overlay;
}

void CSeveralWindow::FillList() {
  isFilling_ = true;
  const int row = list_->currentRow();
  list_->clear();
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    auto* const item = new QListWidgetItem(entries_[i]->name, list_);
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    item->setCheckState(entries_[i]->isShown ? Qt::Checked : Qt::Unchecked);
    item->setToolTip(FromPath(entries_[i]->document.profiles.sourceFile));
    QPixmap sample(fontMetrics().height(), fontMetrics().height());
    sample.fill(ColourOf(i));
    item->setIcon(sample);
  }
  list_->setCurrentRow(std::min(std::max(row, 0), list_->count() - 1));
  isFilling_ = false;
}

void CSeveralWindow::DrawOverlay() {
  const bool metric = doc_.document().settings.display.Metric;
  const double lengthFactor = kMillimetresPerMicrometre * kLengthMM.Factor(metric);
  const double heightFactor = kHeightUM.Factor(metric);
  graph_->SetXTitle(metric ? tr("X in mm") : tr("X in inch"));
  graph_->yAxis->setLabel(tr("height in %1").arg(FromText(kHeightUM.Unit(metric))));
  std::vector<std::size_t> shown;
  const std::vector<OverlaidProfile> overlay = Overlay(shown);
  std::vector<CClickableProfileGraph::Curve> curves;
  const auto add = [&](const QString& name, const QColor& colour, std::span<const double> heights, double startUM,
                       double spacingUM, double width, Qt::PenStyle style) {
    curves.push_back({.name = name,
                      .colour = colour,
                      .width = width,
                      .heights = heights,
                      .firstX = startUM * lengthFactor,
                      .step = spacingUM * lengthFactor,
                      .heightFactor = heightFactor,
                      .style = style});
  };
  for (std::size_t i = 0; i < overlay.size(); ++i) {
    add(entries_[shown[i]]->name, ColourOf(shown[i]), overlay[i].heightsUM, overlay[i].startUM, overlay[i].spacingUM,
        0.0, Qt::SolidLine);
  }
  drawn_.clear();
  drawn_.reserve(4);  // the graph looks at them until it is drawn
  const QColor ink = palette().color(QPalette::Text);
  const bool wantsBand = mean_->isChecked() || band_->isChecked();
  if (const auto band = wantsBand ? BandOf(overlay) : std::nullopt) {
    const auto addBand = [&](const QString& name, const std::vector<double>& heights, double width,
                             Qt::PenStyle style) {
      drawn_.push_back(heights);
      add(name, ink, drawn_.back(), band->mean.startUM, band->mean.spacingUM, width, style);
    };
    if (mean_->isChecked()) addBand(tr("mean"), band->mean.heightsUM, 2.0, Qt::SolidLine);
    if (band_->isChecked()) {
      addBand(tr("lowest"), band->lowestUM, 0.0, Qt::DotLine);
      addBand(tr("highest"), band->highestUM, 0.0, Qt::DotLine);
    }
  }
  const bool hasDifference = difference_->isChecked() && overlay.size() == 2;
  if (const auto difference = hasDifference ? DifferenceOf(overlay[0], overlay[1]) : std::nullopt) {
    drawn_.push_back(difference->heightsUM);
    // Which from which, where a difference of names is not lost at their ends.
    constexpr int kMostLetters = 24;
    const QFontMetrics metrics = graph_->fontMetrics();
    const auto nameOf = [&](std::size_t i) {
      return metrics.elidedText(entries_[shown[i]]->name, Qt::ElideMiddle, kMostLetters * metrics.averageCharWidth());
    };
    add(tr("difference: %1 %2 %3").arg(nameOf(0), QChar(0x2212), nameOf(1)), ink, drawn_.back(), difference->startUM,
        difference->spacingUM, 1.5, Qt::DotLine);
  }
  graph_->SetCurves(curves, {});
  LabelCursors();
  graph_->replot(QCustomPlot::rpQueuedReplot);
  QString text = Faults().replace('\n', ' ');
  if (difference_->isChecked() && overlay.size() != 2) text += " " + tr("The difference is that of two: tick two.");
  if (wantsBand && !overlay.empty() && curves.size() == overlay.size()) {
    text += " " + tr("The profiles have no stretch in common.");
  }
  text += " " + BudgetInUse(doc_.document().settings.decision);
  Tell(text.trimmed());
}

void CSeveralWindow::LabelCursors() {
  const bool metric = doc_.document().settings.display.Metric;
  const auto [first, second] = graph_->UprightCursors();
  const auto text = [metric](const char* name, double place) {
    return name + Readable(FromText(LengthText(place / kLengthMM.Factor(metric), metric)));
  };
  graph_->SetCursorLabels({text("X1 ", first), text("X2 ", second), QString(), QString()});
}

void CSeveralWindow::ShowTable() {
  const bool metric = doc_.document().settings.display.Metric;
  SeveralResults results;
  QStringList titles = {tr("Parameter")};
  for (const auto& entry : entries_) {
    results.Add(entry->document);
    titles << entry->name;
  }
  ShowDrawing(results);
  titles << tr("Mean") << tr("Standard deviation") << tr("Range") << tr("Unit") << tr("Verdict");
  QSet<int> numbers;
  const int figures = static_cast<int>(entries_.size()) + 3;
  for (int column = 1; column <= figures; ++column) numbers << column;
  const AcceptanceRule rule = AcceptanceRules()[static_cast<std::size_t>(std::max(rule_->currentIndex(), 0))].rule;
  QList<CGridCtrl::Record> records;
  std::vector<SeveralRow> rows = results.Rows(rule, doc_.document().settings.decision.DecisionRule);
  // What is judged and what is common are not looked for.
  std::stable_sort(rows.begin(), rows.end(), [](const SeveralRow& one, const SeveralRow& other) {
    return RankOfInterest(one.row) < RankOfInterest(other.row);
  });
  for (const SeveralRow& row : rows) {
    constexpr std::size_t kLongestInTitle = 28;
    const std::string& label = row.label;
    const bool isLong = label.size() > kLongestInTitle;
    QStringList cells = {FromText(isLong ? row.title : row.title + label)};
    QStringList tip;
    if (isLong) tip << FromText(label).trimmed();
    if (row.acceptance) tip << EngineText(row.acceptance->by);
    const auto add = [&](const std::optional<double>& value) {
      const std::string text = row.Shown(value, metric);
      cells << (text.empty() ? QString::fromUtf8("\u2013") : Readable(FromText(text)));
    };
    for (const auto& value : row.values) add(value);
    for (const auto& value : {row.statistics.mean, row.statistics.standardDeviation, row.statistics.Range()})
      add(value);
    cells << Readable(FromText(PrintedUnit(row.row.quantity.Unit(metric))));
    cells << (row.acceptance ? EngineText(VerdictWord(row.acceptance->verdict)) : QString());
    const bool isBad = row.acceptance && row.acceptance->verdict == Acceptance::kFail;
    records << CGridCtrl::Record{.cells = cells,
                                 .standsOut = isBad,
                                 .tip = tip.join('\n'),
                                 .isUndecided = row.acceptance && row.acceptance->verdict == Acceptance::kUndecided};
  }
  // A table has its columns from the beginning.
  delete table_;
  table_ = new CGridCtrl(titles, numbers, tableRoom_);
  tableRoom_->layout()->addWidget(table_);
  table_->setAccessibleName(tr("Parameters of the profiles"));
  table_->Show(records);
}

void CSeveralWindow::ShowDrawing(const SeveralResults& results) {
  QStringList lines;
  for (const JudgedRequirement& judged : results.Requirements()) {
    const std::string verdict = RequirementVerdict(entries_.front()->document, judged);
    lines << tr("Drawing: %1").arg(FromText(judged.requirement.source) + ": " + Readable(EngineText(verdict)));
  }
  drawing_->setText(lines.join('\n'));
  drawing_->setVisible(!lines.isEmpty());
}

void CSeveralWindow::OnSettingsChanged() {
  const bool isOld = std::any_of(entries_.begin(), entries_.end(), [this](const auto& entry) {
    return !(entry->document.settings == doc_.document().settings);
  });
  if (!isOld) return;
  faults_.clear();
  const BusyCursor busy;
  for (const auto& entry : entries_) {
    SilentPrompts nobody;
    entry->remarks.clear();
    ApplySettings(entry->document, doc_.document().settings);
    const RunStep step = AnalyseRecord(entry->document, nobody, doc_.environment());
    if (!step.ok()) faults_ << entry->name + " " + EngineText(step.Reason()) + ".";
    if (!step.ok()) continue;
    NoteRemarks(*entry);
  }
  DrawOverlay();
  ShowTable();
}

QString CSeveralWindow::Faults() const {
  QStringList all = faults_;
  for (const auto& entry : entries_) all += entry->remarks;
  return all.join('\n');
}

}  // namespace texturon
