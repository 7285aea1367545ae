#include "ui/texturon_view.h"

#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "core/captions.h"
#include "core/profile_marks.h"
#include "core/units.h"
#include "ui/profile_plot.h"
#include "ui/qt_text.h"

namespace texturon {

CTexturonView::CTexturonView(CTexturonDoc& doc, QWidget* parent)
    : QWidget(parent), doc_(doc), heading_(new QLabel(this)), graph_(new CClickableProfileGraph(this)) {
  heading_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  heading_->setContentsMargins(8, 4, 8, 0);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(heading_);
  layout->addWidget(graph_, 1);
  connect(&doc_, &CTexturonDoc::Changed, this, &CTexturonView::Update);
  connect(graph_, &CClickableProfileGraph::CursorsMoved, this, &CTexturonView::ReadoutChanged);
  Update();
}

void CTexturonView::SetShown(ProfileKind kind, bool shown) {
  ShownProfiles profiles = ShownProfilesOf(doc_.document().settings.display);
  if (profiles[static_cast<std::size_t>(kind)] == shown) return;
  profiles[static_cast<std::size_t>(kind)] = shown;
  DisplaySettings display = doc_.document().settings.display;
  SetShownProfiles(display, profiles);
  doc_.ReplaceDisplay(std::move(display));
}

bool CTexturonView::IsShown(ProfileKind kind) const {
  return ShownProfilesOf(doc_.document().settings.display)[static_cast<std::size_t>(kind)];
}

void CTexturonView::Update() {
  const Document& document = doc_.document();
  const bool metric = document.settings.display.Metric;
  const DisplaySettings& display = document.settings.display;
  const ShownProfiles shown = ShownProfilesOf(display);
  Basis basis{document.profiles.sourcePath,
              metric,
              shown,
              display.ProfileAutoScale,
              display.ProfileYMaxUM,
              display.ProfileYMinUM,
              display.Profile11AspectRatio};
  const bool isSame = basis == shownBasis_;
  const bool isSameRecord = std::get<0>(basis) == std::get<0>(shownBasis_) && metric == std::get<1>(shownBasis_);
  shownBasis_ = std::move(basis);
  DrawProfiles(*graph_, document, shown, !isSame);
  if (!isSameRecord) graph_->FetchCursors();
  const bool any = doc_.HasProfile();
  graph_->ShowCursors(any && (display.CursorDisplayType & kUprightCursors) != 0,
                      any && (display.CursorDisplayType & kLevelCursors) != 0);
  heading_->setText(doc_.HasProfile()
                        ? FromText(document.profiles.identification + "     " + AnalysisDescription(document))
                        : tr("Open a profile, or drop one here."));
}

std::pair<double, double> CTexturonView::BetweenCursorsMM() const {
  const double toMM = doc_.document().settings.display.Metric ? 1.0 : kMillimetresPerInch;
  const auto [first, second] = graph_->UprightCursors();
  return {std::min(first, second) * toMM, std::max(first, second) * toMM};
}

QString CTexturonView::Readout() const {
  const Document& document = doc_.document();
  const bool metric = document.settings.display.Metric;
  const double toMM = metric ? 1.0 : kMillimetresPerInch;
  const double toUM = metric ? 1.0 : kMicrometresPerMicroinch;
  const auto [x1, x2] = graph_->UprightCursors();
  const auto [y1, y2] = graph_->LevelCursors();
  // The heights are those of the finest profile in view.
  const ShownProfiles shown = ShownProfilesOf(document.settings.display);
  auto kind = ProfileKind::kRaw;
  for (const ProfileKind candidate :
       {ProfileKind::kWaviness, ProfileKind::kFormSuppressed, ProfileKind::kPrimary, ProfileKind::kRoughness}) {
    if (shown[static_cast<std::size_t>(candidate)]) kind = candidate;
  }
  return FromText(CursorReadout(document, kind,
                                {.xMM = {x1 * toMM, x2 * toMM},
                                 .yUM = {y1 * toUM, y2 * toUM},
                                 .hasX = graph_->HasUprightCursors(),
                                 .hasY = graph_->HasLevelCursors()}));
}

}  // namespace texturon
