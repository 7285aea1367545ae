// SPDX-License-Identifier: Apache-2.0

#include "ui/plots/curve_pane.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSettings>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "ui/plots/filter_view.h"
#include "ui/plots/motif_view.h"
#include "ui/plots/probability_graph.h"
#include "ui/plots/texturon_brc_view.h"
#include "ui/plots/texturon_spect_view.h"

namespace texturon {
namespace {

constexpr CCurvePane::Curve kCurves[] = {CCurvePane::kBearingRatio, CCurvePane::kProbability, CCurvePane::kSpectrum,
                                         CCurvePane::kMotifs, CCurvePane::kFilters};
/// What is stored, by Curve.
constexpr const char* kStoredNames[] = {"bearing-ratio", "probability", "spectrum", "motifs", "filters"};

}  // namespace

CCurvePane::CCurvePane(CTexturonDoc& doc, const QString& name, Curve preset, QWidget* parent)
    : QWidget(parent), name_(name), choice_(new QComboBox(this)), views_(new QStackedWidget(this)) {
  setObjectName(name);
  // Letters that no menu has.
  auto* const label = new QLabel(name == "upper" ? tr("Cu&rve:") : tr("C&urve:"), this);
  label->setBuddy(choice_);
  auto* const head = new QHBoxLayout;
  head->addWidget(label);
  head->addWidget(choice_, 1);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(head);
  layout->addWidget(views_, 1);
  for (const Curve curve : kCurves) choice_->addItem(TitleOf(curve));
  views_->addWidget(new CTexturonBRCView(doc, views_));
  views_->addWidget(new CProbabilityGraph(doc, views_));
  views_->addWidget(new CTexturonSpectView(doc, views_));
  views_->addWidget(new CMotifView(doc, views_));
  views_->addWidget(new CFilterView(doc, views_));
  connect(choice_, &QComboBox::currentIndexChanged, views_, &QStackedWidget::setCurrentIndex);
  const QString stored = QSettings().value("curves/" + name).toString();
  choice_->setCurrentIndex(preset);
  for (const Curve curve : kCurves) {
    if (stored == kStoredNames[curve]) choice_->setCurrentIndex(curve);
  }
  connect(choice_, &QComboBox::currentIndexChanged, this,
          [this](int index) { QSettings().setValue("curves/" + name_, kStoredNames[index]); });
}

QString CCurvePane::TitleOf(Curve curve) {
  const QString titles[] = {tr("Bearing Ratio and Amplitudes"), tr("Probability"), tr("Spectrum"), tr("Motifs"),
                            tr("Filters")};
  return titles[curve];
}

void CCurvePane::Choose(Curve curve) {
  choice_->setCurrentIndex(curve);
}

CCurvePane::Curve CCurvePane::Chosen() const {
  return static_cast<Curve>(choice_->currentIndex());
}

CCurveView& CCurvePane::View() {
  return *static_cast<CCurveView*>(views_->currentWidget());
}

QSize CCurvePane::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 80, fontMetrics().height() * 20};
}

}  // namespace texturon
