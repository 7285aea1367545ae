// SPDX-License-Identifier: Apache-2.0

#include "ui/sheets/region_dialogs.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "base/quantity.h"
#include "settings/settings_table.h"
#include "ui/colours.h"
#include "ui/language.h"
#include "ui/plots/clickable_profile_graph.h"
#include "ui/qt_text.h"
#include "ui/sheets/setting_field.h"

namespace texturon {
namespace {

constexpr const char* kFaultColour = "#D55E00";

QPushButton* AddButtons(QDialog& dialog, QVBoxLayout& layout) {
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  layout.addWidget(buttons);
  return buttons->button(QDialogButtonBox::Ok);
}

}  // namespace

void CStretchBar::Show(std::int32_t pointCount, const std::optional<ComputeRange>& stretch) {
  pointCount_ = pointCount;
  stretch_ = stretch;
  update();
}

QSize CStretchBar::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 60, fontMetrics().height() * 2};
}

void CStretchBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRect all = rect().adjusted(0, 0, -1, -1);
  painter.fillRect(all, palette().color(QPalette::Base));
  const double perPoint = all.width() / static_cast<double>(std::max(pointCount_ - 1, 1));
  const auto part = [&](const IndexRange& range) {
    const int left = static_cast<int>(std::max(range.first, 0) * perPoint);
    const int right = static_cast<int>(std::min(range.last, pointCount_ - 1) * perPoint);
    return QRect(left, all.top(), std::max(right - left, 1), all.height());
  };
  if (stretch_) {
    painter.fillRect(part(stretch_->range), CurveColour(0, palette()));
    if (stretch_->exclusion) {
      painter.fillRect(part(*stretch_->exclusion), palette().color(QPalette::Base));
      painter.fillRect(part(*stretch_->exclusion), QBrush(CurveColour(1, palette()), Qt::BDiagPattern));
    }
  }
  painter.setPen(palette().color(QPalette::Text));
  painter.drawRect(all);
}

CRegionDialog::CRegionDialog(const Document& document, QWidget* parent)
    : QDialog(parent),
      document_(document),
      region_(document.scope.region.value_or(RegionChoice{})),
      mode_(new QComboBox(this)),
      bar_(new CStretchBar(this)),
      readout_(new QLabel(this)) {
  setWindowTitle(tr("Profile Region"));
  auto* const layout = new QVBoxLayout(this);
  auto* const form = new QFormLayout;
  layout->addLayout(form);
  // By RegionMode.
  mode_->addItems({tr("From the start on"), tr("A length from the start"), tr("Up to the end"),
                   tr("A length up to the end"), tr("Between start and end")});
  region_.mode = region_.mode >= kFromStart && region_.mode < kBetweenOffsets ? region_.mode : kBetweenOffsets;
  mode_->setCurrentIndex(region_.mode);
  mode_->setObjectName("mode");
  form->addRow(tr("&Region"), mode_);
  AddEntry(*form, tr("&Start, from the first point"), &RegionChoice::startMM, &RegionChoice::ReadsStart);
  AddEntry(*form, tr("&End, from the last point"), &RegionChoice::endOffsetMM, &RegionChoice::ReadsEndOffset);
  AddEntry(*form, tr("&Length"), &RegionChoice::lengthMM, &RegionChoice::ReadsLength);
  layout->addWidget(bar_);
  layout->addWidget(readout_);
  readout_->setObjectName("stretch");
  layout->addStretch(1);
  ok_ = AddButtons(*this, *layout);
  connect(mode_, &QComboBox::currentIndexChanged, this, &CRegionDialog::Take);
  Take();
}

void CRegionDialog::AddEntry(QFormLayout& form, const QString& title, double RegionChoice::*length,
                             bool (RegionChoice::*isRead)() const) {
  const bool metric = document_.settings.display.Metric;
  auto* const row = new QHBoxLayout;
  auto* const line = new QLineEdit(FromText(RegionLengthText(region_.*length, metric)), this);
  line->setFixedWidth(line->fontMetrics().averageCharWidth() * 22);
  auto* const reason = new QLabel(this);
  reason->setStyleSheet(QString("color: %1;").arg(WarningColour(IsDark(palette())).name()));
  row->addWidget(line);
  row->addWidget(new QLabel(FromText(kLengthMM.Unit(metric)), this));
  row->addWidget(reason, 1);
  auto* const label = new QLabel(title, this);
  label->setBuddy(line);
  form.addRow(label, row);
  line->setObjectName(QString("length%1").arg(entries_.size()));
  entries_.push_back({length, isRead, line, reason});
  connect(line, &QLineEdit::textEdited, this, &CRegionDialog::Take);
}

void CRegionDialog::Take() {
  const ProfileSet& profiles = document_.profiles;
  const bool metric = document_.settings.display.Metric;
  region_.mode = mode_->currentIndex();
  bool isRight = true;
  for (const Entry& entry : entries_) {
    const bool isRead = (region_.*entry.isRead)();
    const LengthEntry length = ReadRegionLength(ToText(entry.line->text()), profiles.LengthMM(), metric);
    const QString fault = isRead ? EngineText(length.fault) : QString();
    if (length.ok()) region_.*entry.length = length.lengthMM;
    entry.line->setEnabled(isRead);
    entry.line->setStyleSheet(fault.isEmpty() ? QString()
                                              : QString("QLineEdit { border: 2px solid %1; }").arg(kFaultColour));
    entry.line->setAccessibleDescription(fault);
    entry.reason->setText(fault);
    isRight = isRight && fault.isEmpty();
  }
  const auto range = isRight ? ResolveRegion(region_, profiles.pointCount, profiles.spacingUM) : std::nullopt;
  ok_->setEnabled(range.has_value());
  bar_->Show(profiles.pointCount, range ? std::optional(ComputeRange{*range, {}}) : std::nullopt);
  if (range) {
    readout_->setText(EngineText(DescribeStretch(*range, profiles.spacingUM, profiles.spacingUM, metric)));
  } else {
    readout_->setText(isRight ? tr("Too few points: the last must be %1 or more behind the first.").arg(kLeastSteps)
                              : tr("An entry cannot be used."));
  }
}

CClearApertureDialog::CClearApertureDialog(const Document& document, QWidget* parent)
    : QDialog(parent),
      document_(document),
      working_(document.settings),
      bar_(new CStretchBar(this)),
      readout_(new QLabel(this)) {
  setWindowTitle(tr("Clear Aperture Setting"));
  auto* const layout = new QVBoxLayout(this);
  auto* const form = new QFormLayout;
  layout->addLayout(form);
  const std::pair<QString, std::string_view> rows[] = {
      {tr("&Diameter of the clear aperture"), "AsphereClearApertureDiameterMM"},
      {tr("&Middle zone that no fit uses"), "AsphereClearApertureCentralDiscardMM"}};
  for (const auto& [title, key] : rows) {
    auto* const field = new CSettingField(*FindSetting("ANALYSIS", key), working_, false, this);
    auto* const label = new QLabel(title, this);
    label->setBuddy(field->focusProxy());
    form->addRow(label, field);
    fields_.push_back(field);
    connect(field, &CSettingField::Edited, this, &CClearApertureDialog::Take);
  }
  layout->addWidget(bar_);
  layout->addWidget(readout_);
  readout_->setObjectName("stretch");
  readout_->setWordWrap(true);
  layout->addStretch(1);
  ok_ = AddButtons(*this, *layout);
  Take();
}

void CClearApertureDialog::Take() {
  const bool isRight =
      std::all_of(fields_.begin(), fields_.end(), [](const CSettingField* field) { return field->Fault().isEmpty(); });
  ok_->setEnabled(isRight);
  bar_->Show(document_.profiles.pointCount, std::nullopt);
  if (!isRight) return readout_->setText(tr("An entry cannot be used."));
  if (!RequestedForm(document_.settings.analysis).hasClearAperture) {
    return readout_->setText(
        tr("The form that is removed is no asphere: the clear aperture has no effect until it is."));
  }
  const auto preview = PreviewAperture(document_, working_.analysis);
  if (!preview) return readout_->setText(tr("No asphere is fitted yet to show the aperture about."));
  const auto* const stretch = std::get_if<ComputeRange>(&*preview);
  if (stretch == nullptr) return readout_->setText(EngineText(std::get<std::string_view>(*preview)));
  bar_->Show(document_.profiles.pointCount, *stretch);
  const double spacingUM = document_.profiles.spacingUM;
  readout_->setText(
      tr("About the present apex: %1")
          .arg(EngineText(DescribeStretch(stretch->range, spacingUM, spacingUM, document_.settings.display.Metric))));
}

}  // namespace texturon
