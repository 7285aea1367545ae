// SPDX-License-Identifier: Apache-2.0

#include "ui/plots/profile_heading.h"

#include <QEvent>
#include <QGridLayout>
#include <QRegularExpression>
#include <algorithm>

#include "analysis/cautions.h"
#include "presentation/head_texts.h"
#include "presentation/requirement_texts.h"
#include "ui/colours.h"
#include "ui/language.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

/// Between the parts of the first line.
const QString kGap(5, ' ');

QString DrawingText(std::string_view source, std::string_view verdict) {
  return CHeading::tr("Drawing: %1").arg(FromText(source) + ": " + EngineText(verdict));
}

QString WithoutBrackets(QString line) {
  static const QRegularExpression brackets(" *\\([^()]*\\)");
  return line.remove(brackets);
}

/// A line that is too wide without what matters less: what stands in brackets, then its last parts.
QString WithoutLess(const QString& line, int width, const QFontMetrics& metrics) {
  const auto isWide = [&](const QString& text) { return metrics.horizontalAdvance(text) > width; };
  QString shorter = isWide(line) ? WithoutBrackets(line) : line;
  for (qsizetype at = shorter.lastIndexOf(", "); isWide(shorter) && at > 0; at = shorter.lastIndexOf(", ")) {
    shorter.truncate(at);
  }
  if (isWide(shorter)) shorter = shorter.section(" / ", 0, 0);
  return metrics.elidedText(shorter, Qt::ElideRight, width);
}

/// A line that is too wide as two, broken where a part ends, and only shortened where that does not do.
QString InTwo(const QString& line, int width, const QFontMetrics& metrics) {
  if (metrics.horizontalAdvance(line) <= width) return line;
  for (const char* const end : {" / ", ", ", " = ", "   "}) {
    qsizetype at = line.lastIndexOf(end);
    while (at > 0 && metrics.horizontalAdvance(line.left(at)) > width) at = line.lastIndexOf(end, at - 1);
    if (at <= 0) continue;
    const qsizetype first = line[at] == ',' ? at + 1 : at;
    QString rest = line.mid(first).trimmed();
    if (rest.startsWith("/ ")) rest.remove(0, 2);
    if (metrics.horizontalAdvance(rest) <= width) return line.left(first) + '\n' + rest;
  }
  const QString plain = WithoutBrackets(line);
  return plain != line ? InTwo(plain, width, metrics) : WithoutLess(line, width, metrics);
}

}  // namespace

CHeading::CHeading(CTexturonDoc& doc, QWidget* parent)
    : QWidget(parent), doc_(doc), label_(new QLabel(this)), verdict_(new QPushButton(this)) {
  label_->setTextFormat(Qt::PlainText);
  label_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  label_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  label_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  label_->setObjectName("heading");
  verdict_->setObjectName("verdict");
  verdict_->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
  verdict_->setMinimumWidth(1);  // it says less where there is less room
  verdict_->setCursor(Qt::PointingHandCursor);
  // The verdict lies beside the first line alone: the others have the whole width.
  auto* const layout = new QGridLayout(this);
  const int gap = fontMetrics().averageCharWidth();
  layout->setContentsMargins(gap, 2, gap, 0);
  layout->addWidget(label_, 0, 0);
  layout->addWidget(verdict_, 0, 0, Qt::AlignTop | Qt::AlignRight);
  connect(verdict_, &QPushButton::clicked, this, &CHeading::VerdictClicked);
  connect(&doc_, &CTexturonDoc::Changed, this, &CHeading::Update);
  Update();
}

void CHeading::Update() {
  const Document& document = doc_.document();
  ShowVerdict();
  if (!doc_.HasProfile()) {
    identification_.clear();
    lines_ = QStringList{tr("Open a profile, or drop one here.")};
    return Elide();
  }
  const ProfileSet& profiles = document.profiles;
  QString first = FromText(profiles.identification);
  if (first.isEmpty()) first = FromPath(profiles.sourceFile.filename());
  if (profiles.inverted) first += kGap + tr("inverted");
  identification_ = Readable(first);
  const std::filesystem::path& file = doc_.settingsFile();
  if (document.settings.display.ShowINIPathInHeading) {
    first += kGap + (file.empty() ? tr("no settings file") : FromPath(file));
  } else if (!file.empty()) {
    first += kGap + FromPath(file.filename());
  }
  const std::string& cause = doc_.WhyNotEvaluated();
  QString stretch = cause.empty() ? tr("Not evaluated: the profile cannot be analysed with these settings.")
                                  : tr("Not evaluated: %1.").arg(EngineText(cause));
  if (profiles.evaluationRange) stretch = tr("Evaluated: %1").arg(EngineText(EvaluatedForReaders(document)));
  lines_ = QStringList{first, FromText(AnalysisForReaders(document)), stretch};
  for (const Caution& caution : CautionsOf(document)) lines_ << EngineText(caution.sentence);
  for (const JudgedRequirement& judged : RequirementsOf(document)) {
    lines_ << DrawingText(judged.requirement.source, RequirementVerdict(document, judged));
  }
  for (QString& line : lines_) line = Readable(line);
  Elide();
}

void CHeading::ShowVerdict() {
  const VerdictCount count = doc_.HasProfile() ? CountVerdicts(doc_.document()) : VerdictCount();
  verdict_->setVisible(doc_.HasProfile());
  const QString shape = "border-radius: 3px; padding: 3px 8px; ";
  if (count.judged + count.missing == 0 && !count.drawing) {
    verdictText_ = tr("No limits set");
    verdictWord_ = verdictText_;
    verdict_->setText(verdictText_);
    verdict_->setAccessibleName(verdictText_);
    verdict_->setToolTip(tr("Limits are entered on the page Parameters of the settings. A click opens it."));
    verdict_->setEnabled(true);
    const QColor ink = palette().color(QPalette::Active, QPalette::WindowText);
    verdict_->setStyleSheet(QString("QPushButton { border: 1px solid %1; color: %1; %2}").arg(ink.name(), shape));
    return;
  }
  const bool isDrawingBad = count.drawing == Acceptance::kFail;
  const bool isDrawingOpen = count.drawing == Acceptance::kUndecided;
  const bool isBad = count.failed > 0 || isDrawingBad;
  const bool isOpen = count.undecided + count.missing > 0 || isDrawingOpen;
  QStringList cautions;
  QString text = VerdictText(count);
  for (const Caution& caution : CautionsOf(doc_.document())) {
    cautions << EngineText(caution.sentence);
    text += EngineText(caution.brief);
  }
  QString tip = count.missing > 0 ? tr("Shows the first row with limits that has no value.") : QString();
  if (count.failed > 0) tip = tr("Shows the first row that is out of tolerance.");
  if (count.undecided + count.doubted > 0) tip = tr("Shows what is undecided: %1.").arg(EngineText(count.doubt));
  if (isDrawingBad || isDrawingOpen)
    tip += (tip.isEmpty() ? "" : "\n") + DrawingText(count.drawingSource, count.drawingText);
  for (const QString& caution : cautions) tip += (tip.isEmpty() ? "" : "\n") + caution;
  const char* const sign = isBad ? "\u2717 " : isOpen ? "? " : cautions.isEmpty() ? "\u2713 " : "! ";
  verdictText_ = QString::fromUtf8(sign) + text;
  verdictWord_ = QString::fromUtf8(sign) + (isBad && count.failed == 0 ? tr("not conforming")
                                            : isBad                    ? tr("out of tolerance")
                                            : isOpen                   ? tr("undecided")
                                            : count.judged > 0         ? tr("within tolerance")
                                                                       : tr("conforming"));
  verdict_->setText(verdictText_);
  verdict_->setAccessibleName(text);
  verdict_->setToolTip(tip.isEmpty() ? text : text + '\n' + tip);
  verdict_->setEnabled(isBad || isOpen);
  const QColor ground = isBad                ? VerdictGround(false)
                        : isOpen             ? UndecidedGround()
                        : cautions.isEmpty() ? VerdictGround(true)
                                             : CautionGround();
  verdict_->setStyleSheet(QString("QPushButton { background: %1; color: %2; border: none; font-weight: bold; %3}")
                              .arg(ground.name(), QColor(Qt::white).name(), shape));
}

QString CHeading::VerdictText(const VerdictCount& count) {
  const bool isBad = count.failed > 0;
  const int judged = static_cast<int>(count.judged);
  QString text = tr("%n toleranced parameters within tolerance", nullptr, judged);
  if (isBad) text = tr("%1 of %n toleranced parameters out of tolerance", nullptr, judged).arg(count.failed);
  if (count.doubted > 0) text += " (" + EngineText(count.doubt) + ")";
  if (count.undecided > 0) {
    text = isBad ? text + tr(", %1 undecided").arg(count.undecided)
                 : tr("%1 of %n toleranced parameters undecided", nullptr, judged).arg(count.undecided);
  }
  if (count.missing > 0) {
    text = judged > 0 ? text + tr(", %1 without a value").arg(count.missing)
                      : tr("%n toleranced parameters without a value", nullptr, static_cast<int>(count.missing));
  }
  // The drawing may ask for more than its rows do: for more profiles, or for settings that nobody has said.
  if (count.judged + count.missing == 0) {
    const QString verdicts[] = {tr("Drawing conforming"), tr("Drawing not conforming"), tr("Drawing undecided")};
    return verdicts[static_cast<std::size_t>(*count.drawing)];
  }
  if (count.drawing == Acceptance::kFail) text += tr(", drawing not conforming");
  if (count.drawing == Acceptance::kUndecided && count.undecided + count.missing == 0)
    text += tr(", drawing undecided");
  return text;
}

void CHeading::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::PaletteChange) return;
  ShowVerdict();
  Elide();
}

void CHeading::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Elide();
}

QString CHeading::FirstLine(int width) const {
  const QFontMetrics metrics = fontMetrics();
  const QString& whole = lines_.front();
  if (metrics.horizontalAdvance(whole) <= width || identification_.isEmpty()) return whole;
  const QString file = whole.mid(identification_.size() + kGap.size());
  // A path that tells neither its beginning nor its end tells nothing.
  const int room = width - metrics.horizontalAdvance(identification_ + kGap);
  const QString name = file.section('/', -1);
  for (const QString& part : {file, name}) {
    constexpr int kLeastCharacters = 8;
    const int least = std::min(metrics.horizontalAdvance(name), kLeastCharacters * metrics.averageCharWidth());
    if (!part.isEmpty() && room >= (part == name ? least : metrics.horizontalAdvance(name) + least)) {
      return identification_ + kGap + metrics.elidedText(part, Qt::ElideMiddle, room);
    }
  }
  return identification_;
}

void CHeading::FitVerdict(int width) {
  verdict_->setText(verdictText_);
  if (verdict_->sizeHint().width() <= width) return;
  verdict_->setText(verdictWord_);
  const int over = verdict_->sizeHint().width() - width;
  if (over <= 0) return;
  const int room = verdict_->fontMetrics().horizontalAdvance(verdictWord_) - over;
  verdict_->setText(verdict_->fontMetrics().elidedText(verdictWord_, Qt::ElideRight, std::max(room, 0)));
}

void CHeading::Elide() {
  label_->setToolTip(Text());
  const int gap = fontMetrics().averageCharWidth();
  const int whole = std::max(contentsRect().width() - 2 * gap, 1);
  // In a low window a line more would be one of the profile's.
  constexpr int kLeastLines = 24;
  const bool hasRoom = parentWidget()->height() > kLeastLines * fontMetrics().lineSpacing();
  const bool isAlone = verdict_->isHidden();
  const int identification = fontMetrics().horizontalAdvance(identification_) + gap;
  int above = 0;
  int beside = whole;
  if (!isAlone) {
    FitVerdict(whole);
    bool fits = identification + verdict_->sizeHint().width() <= whole;
    if (!fits && !hasRoom) {
      FitVerdict(std::max(whole - identification, 1));
      fits = verdict_->text() == verdictWord_;
    }
    // Where neither would be whole beside the other, the verdict has a line of its own.
    if (!fits) FitVerdict(whole);
    const QSize badge = verdict_->sizeHint();
    above = std::max(badge.height() - (fits ? fontMetrics().lineSpacing() : 0), 0);
    if (fits) beside = std::max(whole - badge.width() - gap, 1);
  }
  label_->setContentsMargins(0, above, 0, 0);
  QStringList shown;
  for (qsizetype i = 0; i < lines_.size(); ++i) {
    const QString line = i == 0 ? FirstLine(beside) : lines_[i];
    const int width = i == 0 ? beside : whole;
    shown << (hasRoom  ? InTwo(line, width, fontMetrics())
              : i == 0 ? fontMetrics().elidedText(line, Qt::ElideMiddle, width)
                       : WithoutLess(line, width, fontMetrics()));
  }
  label_->setText(shown.join('\n'));
}

}  // namespace texturon
