// SPDX-License-Identifier: Apache-2.0

// The panes of curves in the main window, and their commands in its View menu.

#include <QMenu>
#include <QSettings>
#include <QSplitter>
#include <tuple>

#include "analysis/decision.h"
#include "presentation/table_rows.h"
#include "ui/plots/curve_pane.h"
#include "ui/plots/texturon_view.h"
#include "ui/tables/texturon_param_view.h"
#include "ui/window/main_frame.h"

namespace texturon {
namespace {

/// Two widgets side by side whose shares are kept from one start to the next.
QSplitter* MakeSplitter(Qt::Orientation orientation, QWidget* first, QWidget* second, const QString& name, int share) {
  auto* const splitter = new QSplitter(orientation);
  splitter->setObjectName(name);
  splitter->addWidget(first);
  splitter->addWidget(second);
  splitter->setChildrenCollapsible(false);
  splitter->setStretchFactor(0, share);
  splitter->setStretchFactor(1, 2);
  // In shares of what there will be.
  constexpr int kMany = 1'000;
  splitter->setSizes({share * kMany, 2 * kMany});
  const QString key = "splitters/" + name;
  splitter->restoreState(QSettings().value(key).toByteArray());
  QObject::connect(splitter, &QSplitter::splitterMoved, splitter,
                   [splitter, key] { QSettings().setValue(key, splitter->saveState()); });
  return splitter;
}

}  // namespace

void CMainFrame::MakePanes() {
  upperCurves_ = new CCurvePane(*doc_, "upper", CCurvePane::kBearingRatio);
  lowerCurves_ = new CCurvePane(*doc_, "lower", CCurvePane::kSpectrum);
  QSplitter* const upper = MakeSplitter(Qt::Horizontal, view_, upperCurves_, "upper", 3);
  QSplitter* const lower = MakeSplitter(Qt::Horizontal, paramView_, lowerCurves_, "lower", 3);
  setCentralWidget(MakeSplitter(Qt::Vertical, upper, lower, "panes", 3));
  const auto split = [this] {
    const DisplaySettings& display = doc_->document().settings.display;
    upperCurves_->setVisible(display.UpperIsSplit);
    lowerCurves_->setVisible(display.LowerIsSplit);
  };
  connect(doc_, &CTexturonDoc::Changed, this, split);
  connect(&view_->Transmission(), &CTransmissionInset::Clicked, this, [this] {
    if (auto* const command = findChild<QAction*>("filterCurve")) command->trigger();
  });
  connect(&view_->Heading(), &CHeading::VerdictClicked, this, [this] {
    const VerdictCount count = CountVerdicts(doc_->document());
    if (count.judged + count.missing == 0) return OpenLimits();
    paramView_->ShowFirstBad();
    auto* const trials = findChild<QAction*>("uncertainty");
    if (LacksUncertainty(doc_->document()) && trials != nullptr) trials->trigger();
  });
  split();
}

void CMainFrame::AddCurveCommands(QMenu& menu) {
  AddDisplaySwitch(menu,
                   {.name = "splitUpperPane",
                    .text = tr("Split &Upper Pane"),
                    .keys = QKeySequence(Qt::CTRL | Qt::Key_B),
                    .tip = tr("A curve beside the profile, or none.")},
                   &DisplaySettings::UpperIsSplit);
  AddDisplaySwitch(menu,
                   {.name = "splitLowerPane",
                    .text = tr("Split &Lower Pane"),
                    .keys = QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_B),
                    .tip = tr("A curve beside the parameters, or none.")},
                   &DisplaySettings::LowerIsSplit);
  QMenu* const curves = menu.addMenu(tr("Cur&ve Beside the Profile"));
  const std::tuple<const char*, QString, CCurvePane::Curve> choices[] = {
      {"bearingRatioCurve", tr("&Bearing Ratio and Amplitudes"), CCurvePane::kBearingRatio},
      {"probabilityCurve", tr("&Probability"), CCurvePane::kProbability},
      {"spectrumCurve", tr("&Spectrum"), CCurvePane::kSpectrum},
      {"motifCurve", tr("&Motifs"), CCurvePane::kMotifs},
      {"filterCurve", tr("&Filters"), CCurvePane::kFilters}};
  for (const auto& [name, title, curve] : choices) {
    AddCommand(*curves, {.name = name, .text = title, .tip = tr("Shows this curve beside the profile.")},
               [this, curve = curve] {
                 upperCurves_->Choose(curve);
                 DisplaySettings display = doc_->document().settings.display;
                 display.UpperIsSplit = true;
                 doc_->ReplaceDisplay(std::move(display));
               });
  }
}

}  // namespace texturon
