// SPDX-License-Identifier: Apache-2.0

#include "ui/tables/texturon_param_view.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QSettings>
#include <QToolButton>
#include <QVBoxLayout>

#include "parameters/catalogue.h"
#include "presentation/shown_rows.h"
#include "ui/language.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

constexpr const char* kAllKey = "table/all";
constexpr const char* kTolerancedKey = "table/tolerancedFirst";

QString TitleOf(RowGroup group) {
  switch (group) {
    case RowGroup::kRoughness:
      return QObject::tr("Roughness, R");
    case RowGroup::kPrimary:
      return QObject::tr("Primary profile, P");
    case RowGroup::kWaviness:
      return QObject::tr("Waviness, W");
    case RowGroup::kMotif:
      return QObject::tr("Motifs");
    case RowGroup::kForm:
      return QObject::tr("Form-suppressed profile, F");
    case RowGroup::kRatio:
      break;
  }
  return QObject::tr("Bearing ratios and Htp");
}

QString LabelOf(const ShownRow& row) {
  return EngineText(ToText(FromText(row.label).trimmed()));
}

/// The limits in the unit of the row; empty without.
QString LimitsText(const Document& document, const ShownRow& row) {
  const LimitsInForce limits = LimitsOf(row.row.tolerance);
  const auto text = [&](double limit) {
    const std::string shown =
        ShownNumber(row.row.quantity, limit, document.settings.display.Metric, row.row.format.decimals);
    return Readable(FromText(row.unit.empty() ? shown : shown + " " + row.unit));
  };
  if (limits.lower && limits.upper)
    return CTexturonParamView::tr("Limits: %1 to %2").arg(text(*limits.lower), text(*limits.upper));
  if (limits.upper) return CTexturonParamView::tr("Upper limit: %1").arg(text(*limits.upper));
  return {};
}

/// What the row is, by which standard, why it has no value, and the settings that it depends on.
QString TipOf(const Document& document, const ShownRow& row) {
  const ParameterExplanation explanation = ExplainRow(document, row.row);
  QStringList lines{FromText(row.title)};
  for (const std::string& text : {explanation.definition, explanation.source}) {
    if (!text.empty()) lines << EngineText(text);
  }
  const bool isOld = row.row.edition == Edition::k1997;
  const MasterRow* const master = isOld ? FindMasterRow(row.row.name) : nullptr;
  const std::string name = master != nullptr ? OtherName(*master) : std::string();
  if (!name.empty()) lines << EngineText(name);
  if (!row.reason.empty()) lines << CTexturonParamView::tr("No value: %1.").arg(EngineText(row.reason));
  if (!row.doubt.empty()) lines << CTexturonParamView::tr("No plain verdict: %1.").arg(EngineText(row.doubt));
  if (const QString limits = LimitsText(document, row); !limits.isEmpty()) lines << limits;
  for (const auto& [meaning, value] : explanation.settings) {
    // What a meaning says about its values is nothing beside one of them.
    lines << EngineText(meaning).section(';', 0, 0) + ": " + EngineText(value);
  }
  const QString label = LabelOf(row);
  if (!label.isEmpty()) lines << Readable(label);
  return lines.join('\n');
}

}  // namespace

CTexturonParamView::CTexturonParamView(CTexturonDoc& doc, QWidget* parent)
    : QWidget(parent),
      doc_(doc),
      choice_{.showsAll = QSettings().value(kAllKey).toBool(),
              .tolerancedFirst = QSettings().value(kTolerancedKey).toBool()},
      count_(new QLabel(this)),
      all_(new QToolButton(this)),
      grid_(new CGridCtrl({tr("Parameter"), tr("Value"), tr("Unit"), tr("Verdict"), tr("Setting")}, {1}, this)) {
  grid_->setAccessibleName(tr("Parameters"));
  all_->setObjectName("allParametersButton");
  all_->setCheckable(true);
  auto* const head = new QHBoxLayout;
  head->setContentsMargins(fontMetrics().averageCharWidth(), 0, 0, 0);
  head->addWidget(count_);
  head->addSpacing(fontMetrics().averageCharWidth());
  head->addWidget(all_);
  head->addStretch(1);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addLayout(head);
  layout->addWidget(grid_);
  connect(&doc_, &CTexturonDoc::Changed, this, &CTexturonParamView::Update);
  connect(grid_, &CGridCtrl::RecordActivated, this, [this](int record) { emit ParameterActivated(names_[record]); });
  connect(all_, &QToolButton::clicked, this, [this](bool on) {
    TableChoice choice = choice_;
    choice.showsAll = on;
    Choose(choice);
  });
  grid_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(grid_, &QWidget::customContextMenuRequested, this, [this](const QPoint& place) {
    QMenu menu(this);
    FillMenu(menu, grid_->RecordAt(grid_->rowAt(place.y()), grid_->columnAt(place.x())));
    menu.exec(grid_->viewport()->mapToGlobal(place));
  });
  Update();
}

void CTexturonParamView::FillMenu(QMenu& menu, int record) {
  const auto copy = [](const QString& text) { QApplication::clipboard()->setText(text); };
  const bool isRow = record >= 0 && record < names_.size() && !names_[record].isEmpty();
  const auto add = [&](const QString& text, const auto& run) { menu.addAction(text, this, run)->setEnabled(isRow); };
  const bool hasSeveral = grid_->selectionModel()->selectedIndexes().size() > 1;
  menu.addAction(tr("Copy &Rows"), this,
                 [this, copy, hasSeveral, record] {
                   copy(hasSeveral ? grid_->AsText() : grid_->Records()[record].cells.join('\t') + '\n');
                 })
      ->setEnabled(hasSeveral || isRow);
  add(tr("Copy &Value"), [this, copy, record] { copy(grid_->Records()[record].cells[1]); });
  menu.addSeparator();
  add(tr("&Limits of This Row..."), [this, record] { emit ParameterActivated(names_[record]); });
  add(tr("&Explain..."), [this, record] { Explain(record); });
}

void CTexturonParamView::Explain(int record) {
  const CGridCtrl::Record& row = grid_->Records()[record];
  QMessageBox box(QMessageBox::NoIcon, row.cells[0], row.tip, QMessageBox::Close, this);
  box.setTextFormat(Qt::PlainText);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
  box.exec();
}

void CTexturonParamView::Choose(const TableChoice& choice) {
  choice_ = choice;
  QSettings().setValue(kAllKey, choice.showsAll);
  QSettings().setValue(kTolerancedKey, choice.tolerancedFirst);
  Update();
  emit ChoiceChanged();
}

void CTexturonParamView::ShowFirstBad() {
  const VerdictCount count = CountVerdicts(doc_.document());
  if (!count.firstBad) return;
  const QString title = FromText(*count.firstBad);
  for (int i = 0; i < grid_->Records().size(); ++i) {
    if (grid_->Records()[i].cells[0] == title) return grid_->Select(i);
  }
}

void CTexturonParamView::Update() {
  QList<CGridCtrl::Record> records;
  names_.clear();
  const TableRows table = doc_.HasProfile() ? RowsOfTable(doc_.document(), choice_) : TableRows();
  std::optional<RowGroup> group;
  for (const auto& [row, ofGroup] : table.rows) {
    const bool isFirst = choice_.tolerancedFirst && row.row.tolerance.toleranced;
    if (table.isGrouped && !isFirst && group != ofGroup) {
      group = ofGroup;
      records << CGridCtrl::Record{.cells = {TitleOf(ofGroup), {}, {}, {}, {}}, .isHeading = true};
      names_ << QString();
    }
    const bool lacksValue = !row.verdict && row.row.tolerance.toleranced;
    const QString verdict = lacksValue    ? tr("no value")
                            : row.verdict ? EngineText(VerdictWord(*row.verdict))
                                          : QString();
    names_ << FromText(row.row.name);
    records << CGridCtrl::Record{
        .cells = {FromText(row.title),
                  row.value.empty() ? QString::fromUtf8("\u2013") : FromText(row.ValueAndUncertainty()),
                  FromText(row.unit), verdict, LabelOf(row)},
        .standsOut = row.verdict == Acceptance::kFail && row.row.tolerance.highlightIfOut,
        .tip = TipOf(doc_.document(), row),
        .isUndecided = lacksValue || row.verdict == Acceptance::kUndecided};
  }
  const auto shown = static_cast<int>(table.rows.size());
  const auto selected = static_cast<int>(table.selected);
  all_->setVisible(table.isGrouped);
  all_->setChecked(choice_.showsAll);
  all_->setText(choice_.showsAll ? tr("Common ones only") : tr("Show all %1").arg(selected));
  count_->setText(shown == selected ? tr("%n parameters", nullptr, shown)
                                    : tr("%1 of %n parameters", nullptr, selected).arg(shown));
  grid_->Show(records, ColumnsOfTable(doc_.document().settings.display));
}

}  // namespace texturon
