// SPDX-License-Identifier: Apache-2.0

#include "ui/plots/texturon_view.h"

#include <QEvent>
#include <QLabel>
#include <QScrollBar>
#include <QSettings>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "base/quantity.h"
#include "presentation/cursor_measures.h"
#include "ui/language.h"
#include "ui/plots/plot_axes.h"
#include "ui/plots/profile_plot.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

/// Steps of the scroll bar along the whole record.
constexpr double kScrollSteps = 1e6;
constexpr const char* kMeasuresKey = "cursors/measures";

}  // namespace

CTexturonView::CTexturonView(CTexturonDoc& doc, QWidget* parent)
    : QWidget(parent),
      doc_(doc),
      heading_(new CHeading(doc, this)),
      graph_(new CClickableProfileGraph(this)),
      transmission_(new CTransmissionInset(this)),
      scroll_(new QScrollBar(Qt::Horizontal, this)),
      measures_(new QLabel(this)),
      showsMeasures_(QSettings().value(kMeasuresKey).toBool()) {
  graph_->setAccessibleName(tr("Profiles"));
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  auto* const head = new QHBoxLayout;
  head->addWidget(heading_, 1);
  head->addWidget(transmission_);
  layout->addLayout(head);
  layout->addWidget(graph_, 1);
  layout->addWidget(scroll_);
  layout->addWidget(measures_);
  measures_->setObjectName("measures");
  measures_->setWordWrap(true);
  measures_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  measures_->setContentsMargins(fontMetrics().averageCharWidth(), 0, 0, 0);
  scroll_->setObjectName("alongX");
  scroll_->setAccessibleName(tr("Place along the profile"));
  connect(&doc_, &CTexturonDoc::Changed, this, &CTexturonView::Update);
  connect(graph_, &CClickableProfileGraph::CursorsMoved, this, [this] {
    std::array<QString, 4> labels;
    const std::array<std::string, 4> texts =
        CursorLabels(doc_.document(), ReadKind(ShownProfilesOf(doc_.document().settings.display)), Places());
    std::transform(texts.begin(), texts.end(), labels.begin(),
                   [](const std::string& text) { return Readable(FromText(text)); });
    graph_->SetCursorLabels(labels);
    UpdateMeasures();
    emit ReadoutChanged();
  });
  connect(graph_, &CClickableProfileGraph::ViewChanged, this, &CTexturonView::ShowScroll);
  connect(scroll_, &QScrollBar::valueChanged, this, [this](int value) {
    const QCPRange whole = graph_->WholeX();
    const QCPRange view = graph_->VisibleX();
    const double lower = whole.lower + value / kScrollSteps * whole.size();
    graph_->ScrollX({lower, lower + view.size()});
  });
  // Not the view's own palette: the graph gets its own before or after that, as it comes.
  graph_->installEventFilter(this);
  transmission_->installEventFilter(this);
  Update();
}

void CTexturonView::SetShown(std::size_t curve, bool shown) {
  ShownProfiles profiles = ShownProfilesOf(doc_.document().settings.display);
  if (profiles[curve] == shown) return;
  profiles[curve] = shown;
  DisplaySettings display = doc_.document().settings.display;
  SetShownProfiles(display, profiles);
  doc_.ReplaceDisplay(std::move(display));
}

void CTexturonView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  transmission_->SetRoom(width() >= heading_->minimumSizeHint().width() + transmission_->maximumWidth());
}

bool CTexturonView::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() == QEvent::PaletteChange) {
    // Whichever gets its palette last.
    ApplyPalette(*graph_);
    Update();
  }
  return false;
}

void CTexturonView::Update() {
  const Document& document = doc_.document();
  const DisplaySettings& display = document.settings.display;
  const bool metric = display.Metric;
  const ShownProfiles shown = ShownProfilesOf(display);
  Basis basis{document.profiles.sourceFile,
              metric,
              shown,
              display.ProfileAutoScale,
              display.ProfileYMaxUM,
              display.ProfileYMinUM,
              display.Profile11AspectRatio};
  const bool isSame = basis == shownBasis_;
  const bool isSameRecord = std::get<0>(basis) == std::get<0>(shownBasis_) && metric == std::get<1>(shownBasis_);
  shownBasis_ = std::move(basis);
  transmission_->Show(document);
  graph_->ShowXValues(display.ShowXAxisValues);
  const std::optional<IndexRange> former = stretch_;
  stretch_ = IsOverStretch(document) ? document.profiles.computeRange : std::nullopt;
  const bool isOtherStretch = stretch_ && (!isSameRecord || stretch_ != former);
  const ViewAfter kept = isOtherStretch ? ViewAfter::kSameWithRest : ViewAfter::kSame;
  DrawProfiles(*graph_, document, shown, isSame ? kept : ViewAfter::kWhole);
  if (!isSameRecord) graph_->FetchCursors();
  const bool any = doc_.HasProfile();
  graph_->ShowCursors(any && (display.CursorDisplayType & kUprightCursors) != 0,
                      any && (display.CursorDisplayType & kLevelCursors) != 0);
  ShowScroll();
  if (isOtherStretch && graph_->IsStretchFlat()) emit StretchIsFlat();
}

void CTexturonView::ShowScroll() {
  const QSignalBlocker quiet(scroll_);
  const QCPRange whole = graph_->WholeX();
  const QCPRange view = graph_->VisibleX();
  const double toSteps = whole.size() > 0.0 ? kScrollSteps / whole.size() : 0.0;
  const double page = std::min(view.size() * toSteps, kScrollSteps);
  // With nothing beside the view the bar is grey.
  scroll_->setRange(0, static_cast<int>(kScrollSteps - page));
  scroll_->setPageStep(std::max(static_cast<int>(page), 1));
  scroll_->setSingleStep(std::max(static_cast<int>(page / 20.0), 1));
  scroll_->setValue(static_cast<int>(std::clamp((view.lower - whole.lower) * toSteps, 0.0, kScrollSteps)));
}

std::pair<double, double> CTexturonView::BetweenCursorsMM() const {
  const auto [first, second] = Places().xMM;
  return {std::min(first, second), std::max(first, second)};
}

CursorPlaces CTexturonView::Places() const {
  const bool metric = doc_.document().settings.display.Metric;
  const auto [x1, x2] = graph_->UprightCursors();
  const auto [y1, y2] = graph_->LevelCursors();
  return {.xMM = {kLengthMM.FromShown(x1, metric), kLengthMM.FromShown(x2, metric)},
          .yUM = {kHeightUM.FromShown(y1, metric), kHeightUM.FromShown(y2, metric)},
          .hasX = graph_->HasUprightCursors(),
          .hasY = graph_->HasLevelCursors()};
}

QString CTexturonView::Readout() const {
  const Document& document = doc_.document();
  return Readable(
      EngineReadout(CursorReadout(document, ReadKind(ShownProfilesOf(document.settings.display)), Places())));
}

QString CTexturonView::Measures() const {
  const Document& document = doc_.document();
  if (!graph_->HasUprightCursors()) return {};
  return Readable(
      EngineReadout(MeasureText(document, ReadKind(ShownProfilesOf(document.settings.display)), BetweenCursorsMM())));
}

void CTexturonView::ShowMeasures(bool shown) {
  showsMeasures_ = shown;
  QSettings().setValue(kMeasuresKey, shown);
  UpdateMeasures();
}

void CTexturonView::UpdateMeasures() {
  // They go through the whole record: not for nobody.
  const QString text = showsMeasures_ ? Measures() : QString();
  measures_->setText(text);
  measures_->setVisible(!text.isEmpty());
}

void CTexturonView::ShowSamplingLength() {
  const Document& document = doc_.document();
  const double length = kLengthMM.Shown(document.settings.analysis.LcCutoffMM, document.settings.display.Metric);
  const double middle = graph_->VisibleX().center();
  graph_->ShowX({middle - 0.5 * length, middle + 0.5 * length});
}

}  // namespace texturon
