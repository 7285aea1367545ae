#include "ui/texturon_view.h"

#include <QVBoxLayout>
#include <utility>

#include "core/captions.h"
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
  const ShownProfiles shown = ShownProfilesOf(document.settings.display);
  const bool isSame = document.profiles.sourcePath == shownSource_ && metric == shownMetric_ && shown == shown_;
  shownSource_ = document.profiles.sourcePath;
  shownMetric_ = metric;
  shown_ = shown;
  DrawProfiles(*graph_, document, shown, !isSame);
  heading_->setText(doc_.HasProfile()
                        ? FromText(document.profiles.identification + "     " + AnalysisDescription(document))
                        : tr("Open a profile, or drop one here."));
}

}  // namespace texturon
