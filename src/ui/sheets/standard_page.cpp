// SPDX-License-Identifier: Apache-2.0

#include "ui/sheets/standard_page.h"

#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <string>
#include <utility>

#include "base/ini_file.h"
#include "parameters/edition2021/edition_table.h"
#include "ui/language.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

QString LinesOf(const std::vector<std::string>& features) {
  QStringList lines;
  for (const std::string& feature : features) lines << FromText(feature);
  return lines.join('\n');
}

std::vector<std::string> FeaturesOf(const QString& text) {
  std::vector<std::string> features;
  for (const QString& line : text.split('\n')) {
    if (const QString feature = line.trimmed(); !feature.isEmpty()) features.push_back(ToText(feature));
  }
  return features;
}

}  // namespace

CStandardPage::CStandardPage(Settings& settings, QWidget* parent)
    : CFieldsPage(settings, "Standard", parent), features_(new QPlainTextEdit(this)), reason_(new QLabel(this)) {
  constexpr int kLines = 5;
  auto* const box = new QGroupBox(tr("Feature parameters, one a line"), this);
  auto* const column = new QVBoxLayout(box);
  features_->setObjectName("features");
  features_->setTabChangesFocus(true);
  features_->setLineWrapMode(QPlainTextEdit::NoWrap);
  features_->setAccessibleName(box->title());
  features_->setPlaceholderText("R: FC; D; Wolfprune 5 %; Bot 5; HDh; Mean");
  features_->setFixedHeight(fontMetrics().lineSpacing() * kLines);
  reason_->setWordWrap(true);
  reason_->setVisible(false);
  column->addWidget(features_);
  column->addWidget(reason_);
  auto* const boxes = static_cast<QVBoxLayout*>(layout());
  boxes->insertWidget(boxes->count() - 1, box);
  connect(features_, &QPlainTextEdit::textChanged, this, &CStandardPage::Take);
  CStandardPage::Refresh();
}

void CStandardPage::Refresh() {
  CFieldsPage::Refresh();
  const std::vector<std::string>& features = settings_.analysis.standard.features;
  if (!reason_->text().isEmpty() || FeaturesOf(features_->toPlainText()) == features) return;
  const QSignalBlocker quiet(features_);
  features_->setPlainText(LinesOf(features));
}

void CStandardPage::Reset() {
  reason_->clear();
  reason_->setVisible(false);
  CFieldsPage::Reset();
}

QString CStandardPage::Fault() const {
  return reason_->text().isEmpty() ? CFieldsPage::Fault() : reason_->text();
}

void CStandardPage::Take() {
  std::vector<std::string> features = FeaturesOf(features_->toPlainText());
  QString fault;
  if (features.size() > kMostFeatures) fault = tr("there are at most %1 features").arg(kMostFeatures);
  for (const std::string& feature : features) {
    const EditionName name = ParseEditionName(feature);
    if (!fault.isEmpty()) break;
    if (!name.feature) {
      const std::string why = name.fault.empty() ? "is no feature: FC; type; pruning; ..." : name.fault;
      fault = FromText(feature) + " " + EngineText(why);
    } else if (feature.size() > kIniValueLength) {
      fault = tr("%1 is longer than the 63 characters that a settings file keeps").arg(FromText(feature));
    }
  }
  reason_->setText(fault);
  reason_->setVisible(!fault.isEmpty());
  if (fault.isEmpty()) settings_.analysis.standard.features = std::move(features);
  emit Edited();
}

void CStandardPage::TakeDefaults(const Settings& defaults, Settings& settings) const {
  CFieldsPage::TakeDefaults(defaults, settings);
  settings.analysis.standard.features = defaults.analysis.standard.features;
}

std::vector<const SettingKey*> CStandardPage::Keys() const {
  std::vector<const SettingKey*> keys = CFieldsPage::Keys();
  keys.push_back(FindSetting("STANDARD", "Features")->key);
  keys.push_back(FindSetting("STANDARD", "Feature00")->key);
  return keys;
}

}  // namespace texturon
