// SPDX-License-Identifier: Apache-2.0

#include "ui/trust/compare_window.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

#include "base/number_text.h"
#include "parameters/catalogue.h"
#include "platform/platform.h"
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
    : QDialog(parent), doc_(doc), sentence_(new QLabel(this)), table_(new QTreeWidget(this)) {
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
    connect(side.choice, &QComboBox::currentIndexChanged, this, [this] { Compare(); });
    connect(browse, &QPushButton::clicked, this, [this, i] {
      const auto path = AskFileToOpen(
          this, {.title = tr("Load Settings"), .filters = tr("Settings (*.ini)|*.ini|All Files (*.*)|*.*||")});
      if (path) UseFile(i, *path);
    });
  }
  table_->setAccessibleName(tr("Steps between the values"));
  table_->setHeaderLabels({tr("Parameter"), tr("Change"), tr("Alone"), tr("Value"), tr("Unit")});
  table_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  layout->addWidget(table_, 2, 0, 1, 3);
  layout->addWidget(sentence_, 3, 0, 1, 3);
  layout->setColumnStretch(1, 1);
  layout->setRowStretch(2, 1);
  connect(&doc_, &CTexturonDoc::Changed, this, [this] {
    if (isVisible()) Compare();
  });
  ResizeInCharacters(*this, 90, 40);
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
    if (file.name != name) continue;
    const IniFile ini{std::string(file.text)};
    LoadSettingsText(ini, practice.settings);
    TakeScope(ini, practice);
  }
  return practice;
}

void CCompareWindow::Compare() {
  table_->clear();
  sentence_->clear();
  if (!doc_.HasProfile()) return;
  const bool metric = doc_.document().settings.display.Metric;
  const auto rows = ComparePractices(doc_.document().profiles, PracticeOf(sides_[0]), PracticeOf(sides_[1]));
  for (const ComparedRow& row : rows) {
    const QString unit = Readable(FromText(PrintedUnit(row.quantity.Unit(metric))));
    const auto value = [&](const std::optional<double>& number) { return Figure(number, row.quantity, metric, 6); };
    const auto change = [&](const std::optional<double>& number) { return Figure(number, row.quantity, metric, 3); };
    auto* const line = new QTreeWidgetItem(table_, {FromText(row.name), change(row.Difference()), QString(),
                                                    value(row.a) + QString::fromUtf8(" \u2192 ") + value(row.b), unit});
    for (const StepChange& step : row.steps) {
      new QTreeWidgetItem(line, {EngineText(step.step), change(step.change), change(step.alone), QString(), unit});
    }
    if (!row.steps.empty()) {
      new QTreeWidgetItem(line, {tr("(interaction)"), QString(), change(row.Interaction()), QString(), unit});
    }
  }
}

}  // namespace texturon
