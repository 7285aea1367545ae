// SPDX-License-Identifier: Apache-2.0

#include "ui/window/dialog_prompts.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QInputDialog>
#include <QLabel>
#include <QListWidget>
#include <QMainWindow>
#include <QMessageBox>
#include <QProgressBar>
#include <QStatusBar>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "base/number_text.h"
#include "ui/language.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

constexpr qint64 kPumpEveryMS = 30;

class ProgressWindow : public Progress {
public:
  ProgressWindow(const QString& caption, const QString& text, std::chrono::milliseconds showAfter, QWidget* parent)
      : dialog_(parent), showAfter_(showAfter), bar_(new QProgressBar(&dialog_)) {
    dialog_.setObjectName("progress");
    dialog_.setWindowTitle(caption);
    // Open sheets must wait as well.
    dialog_.setWindowModality(Qt::ApplicationModal);
    bar_->setRange(0, 100);
    bar_->setMinimumWidth(dialog_.fontMetrics().averageCharWidth() * 50);
    auto* const layout = new QVBoxLayout(&dialog_);
    if (!text.isEmpty()) layout->addWidget(new QLabel(QString(text).replace("&&", "&"), &dialog_));
    layout->addWidget(bar_);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, &dialog_);
    layout->addWidget(buttons);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog_, &QDialog::reject);
    QObject::connect(&dialog_, &QDialog::rejected, &dialog_, [this] { isClosed_ = true; });
    sinceStart_.start();
  }

  bool Advance(int percent) override {
    bar_->setValue(std::clamp(percent, 0, 100));
    if (isClosed_) return false;
    const qint64 now = sinceStart_.elapsed();
    const bool shows = dialog_.isHidden() && now >= showAfter_.count();
    if (shows) {
      // Whoever waits for the wait cursor must be able to see what to click.
      QApplication::setOverrideCursor(Qt::ArrowCursor);
      hasCursor_ = true;
      dialog_.show();
    }
    if (shows || now - pumpedAt_ >= kPumpEveryMS) {
      // Before the window is there, nothing keeps the user from starting something else.
      QApplication::processEvents(dialog_.isHidden() ? QEventLoop::ExcludeUserInputEvents : QEventLoop::AllEvents);
      pumpedAt_ = sinceStart_.elapsed();
    }
    return !isClosed_;
  }

  ~ProgressWindow() override {
    if (hasCursor_) QApplication::restoreOverrideCursor();
  }

private:
  QDialog dialog_;
  std::chrono::milliseconds showAfter_;
  QProgressBar* bar_;
  QElapsedTimer sinceStart_;
  qint64 pumpedAt_ = 0;
  bool isClosed_ = false;
  bool hasCursor_ = false;
};

/// Of the window of a question: the program, and what is asked about.
QString TitleOf(std::string_view question) {
  const std::pair<std::string_view, QString> subjects[] = {
      {"Enter the new identification", QObject::tr("Identification")},
      {"Enter the data point spacing", QObject::tr("Point Spacing")},
      {"Enter the trace length", QObject::tr("Trace Length")},
      {"Enter the column number", QObject::tr("Column")},
      {"Name of the preset", QObject::tr("Keep as Preset")},
      {"Input File", QObject::tr("Choose a Profile")},
      {"Replace it?", QObject::tr("Replace a File")},
      {"Export anyway?", QObject::tr("Export")},
      {"geometry selected", QObject::tr("Sign of the Radius")},
      {"The program ended while", QObject::tr("Unsaved Changes")}};
  const auto subject = std::find_if(std::begin(subjects), std::end(subjects), [question](const auto& each) {
    return question.find(each.first) != std::string_view::npos;
  });
  return QuestionTitle(subject != std::end(subjects) ? subject->second : QObject::tr("Question"));
}

/// The ordinary cursor while something is asked in the middle of a computation.
class AskingScope {
public:
  AskingScope() { QApplication::setOverrideCursor(Qt::ArrowCursor); }
  ~AskingScope() { QApplication::restoreOverrideCursor(); }
  AskingScope(const AskingScope&) = delete;
  AskingScope& operator=(const AskingScope&) = delete;
};

}  // namespace

QString QuestionTitle(const QString& subject) {
  return QApplication::applicationDisplayName() + QString::fromUtf8(" \u2013 ") + subject;
}

void DialogPrompts::ShowMessage(std::string_view text) {
  const AskingScope asking;
  QMessageBox::warning(parent_, QApplication::applicationDisplayName(), EngineText(text));
}

void DialogPrompts::ShowFailure(std::string_view sentence, std::string_view brief, std::string_view details) {
  const AskingScope asking;
  QMessageBox box(QMessageBox::Warning, QApplication::applicationDisplayName(), EngineText(brief), QMessageBox::Ok,
                  parent_);
  box.setDetailedText(EngineText(sentence) + "\n\n" + EngineText(details));
  box.exec();
}

void DialogPrompts::Notice(std::string_view text) {
  if (auto* const window = qobject_cast<QMainWindow*>(parent_))
    window->statusBar()->showMessage(AsSentence(EngineText(text)), 10'000);
}

QString DialogPrompts::TakeBeside() {
  QStringList lines;
  for (const QString& line : FromText(std::exchange(beside_, {})).split('\n', Qt::SkipEmptyParts)) {
    lines << Readable(EngineText(ToText(line)));
  }
  return lines.isEmpty() ? QString() : lines.join('\n') + "\n\n";
}

bool DialogPrompts::AskYesNo(std::string_view question) {
  const AskingScope asking;
  return QMessageBox::question(parent_, TitleOf(question), EngineText(question)) == QMessageBox::Yes;
}

std::optional<std::string> DialogPrompts::AskText(std::string_view prompt, std::string_view preset) {
  const AskingScope asking;
  bool accepted = false;
  // A number with all its digits would only be read as noise; left alone it is what it was.
  const bool isNumber = ParseDouble(preset).usable();
  const QString shown = isNumber ? WithShortNumbers(FromText(preset)) : FromText(preset);
  const QString text = QInputDialog::getText(parent_, TitleOf(prompt), TakeBeside() + Readable(EngineText(prompt)),
                                             QLineEdit::Normal, shown, &accepted);
  if (!accepted) return std::nullopt;
  if (text == shown) return std::string(preset);
  const std::string kept = ToText(text);
  if (FromText(kept) != text) ShowMessage("Characters that the files cannot hold have become question marks.");
  return kept;
}

std::optional<std::size_t> DialogPrompts::ChooseFromList(std::string_view title, std::span<const std::string> lines) {
  const AskingScope asking;
  QDialog dialog(parent_);
  dialog.setWindowTitle(TitleOf(title));
  auto* const layout = new QVBoxLayout(&dialog);
  auto* const label = new QLabel(TakeBeside() + EngineText(title), &dialog);
  auto* const list = new QListWidget(&dialog);
  label->setBuddy(list);
  list->setMinimumWidth(dialog.fontMetrics().averageCharWidth() * 70);
  for (const std::string& line : lines) list->addItem(FromText(line).replace('\t', "    "));
  list->setCurrentRow(0);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  QObject::connect(list, &QListWidget::itemActivated, &dialog, &QDialog::accept);
  for (QWidget* const part :
       {static_cast<QWidget*>(label), static_cast<QWidget*>(list), static_cast<QWidget*>(buttons)})
    layout->addWidget(part);
  if (dialog.exec() != QDialog::Accepted || list->currentRow() < 0) return std::nullopt;
  return static_cast<std::size_t>(list->currentRow());
}

std::unique_ptr<Progress> DialogPrompts::OpenProgress(std::string_view caption, std::string_view text) {
  return std::make_unique<ProgressWindow>(EngineText(caption), EngineText(text), showAfter_, parent_);
}

void DialogPrompts::SetBusy(bool busy) {
  if (busy) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

}  // namespace texturon
