// SPDX-License-Identifier: Apache-2.0

#include "ui/plots/profile_heading.h"

#include <QEvent>
#include <QHBoxLayout>
#include <algorithm>

#include "analysis/captions.h"
#include "analysis/region_choice.h"
#include "presentation/requirement_texts.h"
#include "presentation/table_rows.h"
#include "ui/colours.h"
#include "ui/language.h"
#include "ui/qt_text.h"

namespace texturon {

CHeading::CHeading(CTexturonDoc& doc, QWidget* parent)
    : QWidget(parent), doc_(doc), label_(new QLabel(this)), verdict_(new QPushButton(this)) {
  label_->setTextFormat(Qt::PlainText);
  label_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  label_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  label_->setObjectName("heading");
  verdict_->setObjectName("verdict");
  verdict_->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
  verdict_->setCursor(Qt::PointingHandCursor);
  auto* const layout = new QHBoxLayout(this);
  const int gap = fontMetrics().averageCharWidth();
  layout->setContentsMargins(gap, 2, gap, 0);
  layout->addWidget(label_, 1);
  layout->addWidget(verdict_, 0, Qt::AlignTop);
  connect(verdict_, &QPushButton::clicked, this, &CHeading::VerdictClicked);
  connect(&doc_, &CTexturonDoc::Changed, this, &CHeading::Update);
  Update();
}

void CHeading::Update() {
  const Document& document = doc_.document();
  ShowVerdict();
  if (!doc_.HasProfile()) {
    lines_ = QStringList{tr("Open a profile, or drop one here.")};
    return Elide();
  }
  const ProfileSet& profiles = document.profiles;
  QString first = FromText(profiles.identification);
  if (first.isEmpty()) first = FromPath(profiles.sourceFile.filename());
  const std::filesystem::path& file = doc_.settingsFile();
  if (document.settings.display.ShowINIPathInHeading) {
    first += "     " + (file.empty() ? tr("no settings file") : FromPath(file));
  } else if (!file.empty()) {
    first += "     " + FromPath(file.filename());
  }
  const bool metric = document.settings.display.Metric;
  QString stretch = tr("Not evaluated: the profile cannot be analysed with these settings.");
  if (profiles.evaluationRange) {
    stretch = tr("Evaluated: %1")
                  .arg(EngineText(DescribeStretch(*profiles.evaluationRange, profiles.spacingUM,
                                                  profiles.residualSpacingUM, metric)));
  }
  lines_ = QStringList{first, FromText(AnalysisDescription(document)), stretch};
  for (const JudgedRequirement& judged : RequirementsOf(document)) {
    lines_ << tr("Drawing: %1")
                  .arg(FromText(judged.requirement.source + ": ") + EngineText(RequirementVerdict(document, judged)));
  }
  for (QString& line : lines_) line = Readable(line);
  Elide();
}

void CHeading::ShowVerdict() {
  const VerdictCount count = doc_.HasProfile() ? CountVerdicts(doc_.document()) : VerdictCount();
  verdict_->setVisible(doc_.HasProfile());
  const QString shape = "border-radius: 3px; padding: 3px 8px; ";
  if (count.judged == 0) {
    verdict_->setText(tr("No limits set"));
    verdict_->setAccessibleName(verdict_->text());
    verdict_->setToolTip(tr("Limits are entered on the page Parameters of the settings."));
    verdict_->setEnabled(false);
    const QColor ink = palette().color(QPalette::Active, QPalette::WindowText);
    verdict_->setStyleSheet(QString("QPushButton { border: 1px solid %1; color: %1; %2}").arg(ink.name(), shape));
    return;
  }
  const bool isBad = count.failed > 0;
  const bool isOpen = count.undecided > 0;
  const int judged = static_cast<int>(count.judged);
  QString text = tr("%n toleranced parameters within tolerance", nullptr, judged);
  if (isBad) text = tr("%1 of %n toleranced parameters out of tolerance", nullptr, judged).arg(count.failed);
  if (isBad && isOpen) text += tr(", %1 undecided").arg(count.undecided);
  if (!isBad && isOpen) text = tr("%1 of %n toleranced parameters undecided", nullptr, judged).arg(count.undecided);
  QString tip = isBad ? tr("Shows the first row that is out of tolerance.") : QString();
  if (isOpen) tip = tr("Shows what is undecided: %1.").arg(EngineText(count.doubt));
  const char* const sign = isBad ? "\u2717 " : isOpen ? "? " : "\u2713 ";
  verdict_->setText(QString::fromUtf8(sign) + text);
  verdict_->setAccessibleName(text);
  verdict_->setToolTip(tip);
  verdict_->setEnabled(isBad || isOpen);
  const QColor ground = isOpen && !isBad ? UndecidedGround() : VerdictGround(!isBad);
  verdict_->setStyleSheet(QString("QPushButton { background: %1; color: %2; border: none; font-weight: bold; %3}")
                              .arg(ground.name(), QColor(Qt::white).name(), shape));
}

void CHeading::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) ShowVerdict();
}

void CHeading::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Elide();
}

void CHeading::Elide() {
  label_->setToolTip(Text());
  const int hidden = verdict_->isHidden() ? 0 : verdict_->sizeHint().width() + layout()->spacing();
  const int width = std::max(contentsRect().width() - 2 * fontMetrics().averageCharWidth() - hidden, 1);
  QStringList shown;
  for (const QString& line : lines_) shown << fontMetrics().elidedText(line, Qt::ElideMiddle, width);
  label_->setText(shown.join('\n'));
}

}  // namespace texturon
