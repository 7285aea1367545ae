#include "ui/texturon_view.h"

#include <QVBoxLayout>

#include "core/captions.h"
#include "core/units.h"
#include "ui/qt_text.h"

namespace texturon {

CTexturonView::CTexturonView(CTexturonDoc& doc, QWidget* parent)
    : QWidget(parent), doc_(doc), heading_(new QLabel(this)), graph_(new CClickableProfileGraph(this)) {
  shown_[static_cast<std::size_t>(ProfileKind::kPrimary)] = true;
  shown_[static_cast<std::size_t>(ProfileKind::kWaviness)] = true;
  heading_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  heading_->setContentsMargins(8, 4, 8, 0);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(heading_);
  layout->addWidget(graph_, 1);
  connect(&doc_, &CTexturonDoc::Changed, this, [this] { Update(false); });
  Update(true);
}

void CTexturonView::SetShown(ProfileKind kind, bool shown) {
  shown_[static_cast<std::size_t>(kind)] = shown;
  Update(true);
}

void CTexturonView::Update(bool showsAll) {
  const Document& document = doc_.document();
  const bool metric = document.settings.display.Metric;
  const double heightFactor = metric ? 1.0 : kMicroinchesPerMicrometre;
  const double lengthFactor = kMillimetresPerMicrometre * (metric ? 1.0 : kInchesPerMillimetre);
  graph_->xAxis->setLabel(metric ? tr("X in mm") : tr("X in inches"));
  graph_->yAxis->setLabel(FromText(metric ? "height in \xB5m" : "height in \xB5in"));
  std::vector<std::vector<double>> scaled;
  scaled.reserve(shown_.size());
  std::vector<CClickableProfileGraph::Curve> curves;
  for (std::size_t i = 0; i < shown_.size(); ++i) {
    const auto kind = static_cast<ProfileKind>(i);
    if (!shown_[i] || !HasProfile(document, kind)) continue;
    const Profile profile = document.profiles.View(kind);
    std::span<const double> heights = profile.Heights();
    if (!metric) {
      std::vector<double>& copy = scaled.emplace_back(heights.begin(), heights.end());
      for (double& height : copy) height *= heightFactor;
      heights = copy;
    }
    const AnalysisSettings& settings = document.settings.analysis;
    const double ballMM =
        kind == ProfileKind::kOpening ? settings.OpeningRadiusForWcvx : settings.ClosingRadiusForWvoid;
    curves.push_back({.name = FromText(ProfileTitle(kind, ballMM)),
                      .colour = CurveColour(static_cast<int>(i)),
                      .heights = heights,
                      .firstX = profile.range.first * profile.spacingUM * lengthFactor,
                      .step = profile.spacingUM * lengthFactor});
  }
  const bool isSame = document.profiles.sourcePath == shownSource_ && metric == shownMetric_;
  shownSource_ = document.profiles.sourcePath;
  shownMetric_ = metric;
  graph_->SetCurves(curves, showsAll || !isSame);
  heading_->setText(doc_.HasProfile()
                        ? FromText(document.profiles.identification + "     " + AnalysisDescription(document))
                        : tr("Open a profile, or drop one here."));
}

}  // namespace texturon
