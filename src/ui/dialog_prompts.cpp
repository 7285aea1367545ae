#include "ui/dialog_prompts.h"

#include <QApplication>
#include <QInputDialog>
#include <QMainWindow>
#include <QMessageBox>
#include <QProgressDialog>
#include <QStatusBar>

#include "ui/qt_text.h"

namespace texturon {
namespace {

/// A window that shows itself only when the work takes long enough to be waited for.
class ProgressWindow : public Progress {
public:
  ProgressWindow(const QString& caption, const QString& text, QWidget* parent)
      : dialog_(text, QObject::tr("Cancel"), 0, 100, parent) {
    dialog_.setWindowTitle(caption);
    dialog_.setWindowModality(Qt::WindowModal);
  }

  bool Advance(int percent) override {
    dialog_.setValue(std::min(percent, 99));
    QApplication::processEvents();
    return !dialog_.wasCanceled();
  }

private:
  QProgressDialog dialog_;
};

}  // namespace

void DialogPrompts::ShowMessage(std::string_view text) {
  QMessageBox::warning(parent_, QApplication::applicationDisplayName(), FromText(text));
}

void DialogPrompts::Notice(std::string_view text) {
  if (auto* const window = qobject_cast<QMainWindow*>(parent_))
    window->statusBar()->showMessage(FromText(text), 10'000);
}

bool DialogPrompts::AskYesNo(std::string_view question) {
  return QMessageBox::question(parent_, QApplication::applicationDisplayName(), FromText(question)) == QMessageBox::Yes;
}

std::optional<std::string> DialogPrompts::AskText(std::string_view prompt, std::string_view preset) {
  bool accepted = false;
  const QString text = QInputDialog::getText(parent_, QApplication::applicationDisplayName(), FromText(prompt),
                                             QLineEdit::Normal, FromText(preset), &accepted);
  if (!accepted) return std::nullopt;
  return ToText(text);
}

std::optional<std::size_t> DialogPrompts::ChooseFromList(std::string_view title, std::span<const std::string> lines) {
  QStringList items;
  for (const std::string& line : lines) items << FromText(line);
  bool accepted = false;
  const QString chosen = QInputDialog::getItem(parent_, QApplication::applicationDisplayName(), FromText(title), items,
                                               0, false, &accepted);
  if (!accepted) return std::nullopt;
  return static_cast<std::size_t>(items.indexOf(chosen));
}

std::unique_ptr<Progress> DialogPrompts::OpenProgress(std::string_view caption, std::string_view text) {
  return std::make_unique<ProgressWindow>(FromText(caption), FromText(text), parent_);
}

void DialogPrompts::SetBusy(bool busy) {
  if (busy) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

}  // namespace texturon
