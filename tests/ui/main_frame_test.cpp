// SPDX-License-Identifier: Apache-2.0

// The main window: its keys, its commands that act at once, long computations, and that it agrees with the console
// program.

#include <QAccessible>
#include <random>

#include "base/number_text.h"
#include "ui/plots/texturon_view.h"
#include "ui/tables/texturon_param_view.h"
#include "ui/window/keys_dialog.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

using MainFrame = WindowTest;

TEST_F(MainFrame, CommandsChangeTheDocument) {
  EXPECT_FALSE(Child<QAction>(*frame_, "invert").isEnabled()) << "there is nothing to invert yet";
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  const double first = InForce().profiles.raw.front();
  Choose("invert");
  EXPECT_EQ(InForce().profiles.raw.front(), -first);
  Choose("metric");
  EXPECT_FALSE(InForce().settings.display.Metric);
  EXPECT_EQ(frame_->ParamView().Grid().Records()[1].cells[2], FromText("\xB5in"));
  Choose("metric");
  frame_->View().Graph().xAxis->setRange(1.0, 3.0);
  Choose("computeOnZoom");
  EXPECT_EQ(InForce().profiles.computeRange, IndexRange::FromEnds(2000, 6000));
  Choose("computeAll");
  EXPECT_EQ(InForce().profiles.computeRange->count, 8000);
  Choose("useAllDataForFormRemoval");
  EXPECT_TRUE(InForce().scope.allDataForForm);
}

TEST_F(MainFrame, ShowsHidesFetchesAndCloses) {
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  frame_->show();
  const CClickableProfileGraph& graph = frame_->View().Graph();
  EXPECT_EQ(graph.graphCount(), 2);
  Choose("show5");
  EXPECT_EQ(graph.graphCount(), 3);
  EXPECT_EQ(graph.graph(2)->name(), "Roughness Profile");
  Choose("show3");
  EXPECT_EQ(graph.graphCount(), 2);
  frame_->View().Graph().SetUprightCursors(-7.0, 70.0);
  Choose("fetchCursors");
  const auto [first, second] = graph.UprightCursors();
  EXPECT_TRUE(graph.VisibleX().contains(first) && graph.VisibleX().contains(second));
  Choose("about", {[](QWidget& dialog) {
           const QString text = dynamic_cast<QMessageBox&>(dialog).text();
           EXPECT_TRUE(text.contains("Apache-2.0") && text.contains("GNU GPL version 3"));
           dialog.close();
         }});
  Choose("keysAndMouse", {CloseIt});
  Choose("exit");
  EXPECT_FALSE(frame_->isVisible());
}

/// Fails where two texts have the same letter. Profiles and exports have names that are not ours to mark; they are
/// found by their first letter.
void ExpectLettersOfTheirOwn(const QStringList& texts) {
  QMap<QString, QString> letters;
  for (const QString& text : texts) {
    const QString letter = QKeySequence::mnemonic(text).toString();
    if (letter.isEmpty()) continue;
    EXPECT_FALSE(letters.contains(letter)) << text.toStdString() << " and " << letters[letter].toStdString();
    letters[letter] = text;
  }
}

TEST_F(MainFrame, KeysAndLettersAreUniqueAndInTheHelp) {
  const QString help = Child<CGridCtrl>(CKeysDialog(*frame_)).AsText();
  QMap<QString, QString> commands;
  for (const QAction* const action : frame_->findChildren<QAction*>()) {
    for (const QKeySequence& keys : action->shortcuts()) {
      EXPECT_FALSE(commands.contains(keys.toString()))
          << commands[keys.toString()].toStdString() << " and " << action->text().toStdString();
      commands[keys.toString()] = action->text();
    }
    const QString line = action->text().remove('&') + '\t' + action->shortcut().toString(QKeySequence::NativeText);
    EXPECT_TRUE(action->shortcut().isEmpty() || help.contains(line)) << line.toStdString();
  }
  for (const QMenu* const menu : frame_->menuBar()->findChildren<QMenu*>()) {
    QStringList texts;
    // "&Save" and "&Save Settings" have shared a letter for ever: it goes from one to the other.
    for (const QAction* const action : menu->actions()) texts << action->text().replace("&Save Settings", "");
    ExpectLettersOfTheirOwn(texts);
  }
  QStringList texts;
  for (const QAction* const action : frame_->menuBar()->actions()) texts << action->text();
  for (const QLabel* const label : frame_->centralWidget()->findChildren<QLabel*>()) {
    if (label->buddy() != nullptr) texts << label->text();
  }
  EXPECT_GE(texts.size(), 8);
  ExpectLettersOfTheirOwn(texts);
}

/// Every widget of a window that Tab reaches is told by a name; how many there are.
int ExpectNames(const QWidget& window) {
  int stops = 0;
  for (QWidget* const widget : window.findChildren<QWidget*>()) {
    const bool isStop = (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isVisible() && !widget->focusProxy();
    if (!isStop || widget->window() != &window || qobject_cast<QScrollArea*>(widget) != nullptr) continue;
    ++stops;
    QAccessibleInterface* const told = QAccessible::queryAccessibleInterface(widget);
    EXPECT_TRUE(told != nullptr && !told->text(QAccessible::Name).isEmpty())
        << window.windowTitle().toStdString() << ": " << widget->metaObject()->className() << " "
        << widget->objectName().toStdString();
  }
  return stops;
}

TEST_F(MainFrame, WhatTabReachesHasAName) {
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  for (const char* const command : {"splitUpperPane", "splitLowerPane"}) Choose(command);
  frame_->show();
  QTest::qWait(20);
  EXPECT_GE(ExpectNames(*frame_), 8);
  // Whatever the menus open, modal or not; files are asked for by the library.
  QSet<QString> titles;
  const auto look = [&titles](QWidget& window) {
    if (qobject_cast<QFileDialog*>(&window) == nullptr && ExpectNames(window) > 1) titles << window.windowTitle();
    window.close();
  };
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, &timer, [&look] {
    if (QWidget* const modal = QApplication::activeModalWidget()) look(*modal);
  });
  timer.start(20);
  for (QAction* const action : frame_->findChildren<QAction*>()) {
    if (!action->isEnabled() || !action->text().endsWith("...")) continue;
    action->trigger();
    QTest::qWait(5);
    for (QWidget* const window : QApplication::topLevelWidgets()) {
      if (window->isVisible() && window != frame_.get() && qobject_cast<QDialog*>(window) != nullptr) look(*window);
    }
  }
  EXPECT_GE(titles.size(), 6) << QStringList(titles.values()).join(", ").toStdString();
}

/// To the last bit.
TEST_F(MainFrame, AgreesWithTheConsoleOnEverySampleWithEverySettingsFile) {
  const QDir samples(FromPath(Sample("")));
  QStringList settingsFiles = {""};
  for (const QString& name : samples.entryList({"*.ini"})) settingsFiles << samples.filePath(name);
  settingsFiles << FromPath(folder_.Write("robust.ini",
                                          "[ANALYSIS]\nFormRemovalType=4\nPolynomialOrder=3\nFilterType=3\n"
                                          "LcCutoffMM=0.25\nUserDiscardType=2\nResidualType=1\n[DISPLAY]\nMetric=0\n"));
  int compared = 0;
  for (const QString& settings : settingsFiles) {
    MakeFrame(prompts_);
    ASSERT_TRUE(settings.isEmpty() || Doc().LoadSettingsFile(ToPath(settings)));
    for (const QString& name : samples.entryList({"*.lmt"})) {
      ASSERT_TRUE(frame_->OpenFile(ToPath(samples.filePath(name))));
      QStringList arguments = {"analyze", "--json", "--no-trace", samples.filePath(name)};
      if (!settings.isEmpty()) arguments << "--settings" << settings;
      QProcess console;
      console.start(TEXTURON_PROGRAM, arguments);
      ASSERT_TRUE(console.waitForFinished(30'000));
      QJsonArray theirs = QJsonDocument::fromJson(console.readAllStandardOutput()).object()["parameters"].toArray();
      for (const ParameterDef& row : InForce().catalogue.rows) {
        if (!row.selected) continue;
        ASSERT_FALSE(theirs.isEmpty()) << name.toStdString() << " " << settings.toStdString();
        const QJsonObject their = theirs.takeAt(0).toObject();
        ASSERT_EQ(their["name"].toString(), FromText(row.name));
        ASSERT_EQ(their["valid"].toBool(), row.valid) << row.name;
        if (!row.valid || !std::isfinite(row.value)) continue;
        EXPECT_EQ(their["value"].toDouble(), row.value) << row.name << " of " << name.toStdString();
        ++compared;
      }
      EXPECT_TRUE(theirs.isEmpty());
    }
  }
  EXPECT_GT(compared, 1'000);
}

/// In a window with real dialogs, where progress is shown from its first step on.
TEST_F(MainFrame, NothingTouchesTheDocumentInLongWorkAndAllOfItComesAfterwards) {
  DialogPrompts dialogs{nullptr, std::chrono::milliseconds(0)};
  MakeFrame(dialogs);
  frame_->show();
  std::mt19937 random(1);
  std::normal_distribution<double> normal;
  std::string text = "Lumetrace_Data 1.0\nIDENTIFICATION: long\nDATE: d\nSPACING_UM: 0.5\nNUMBER_OF_POINTS: 400000\n";
  text += "PROFILE_UM:\n";
  // A long tail keeps the robust filter at work: 16 passes.
  for (int i = 0; i < 400'000; ++i) text += FixedText(std::exp(2.0 * normal(random)), 5) + "\n";
  ASSERT_TRUE(frame_->OpenFile(folder_.Write("long.lmt", text)));
  const std::int32_t former = InForce().settings.analysis.FilterType;
  {
    const DialogDriver driver({[&](const QWidget& dialog) {
      EXPECT_TRUE(Doc().IsBusy());
      EXPECT_EQ(dialog.windowTitle(), "0.800 mm Robust Filter ...");
      EXPECT_FALSE(frame_->grab().isNull());
      Change([](AnalysisSettings& analysis) { analysis.LsCutoffMM = 0.008; });
      Doc().Invert();
      Doc().SetIdentification("waited");
      DropOn(*frame_, {Sample("turned.lmt")});
      EXPECT_FALSE(frame_->close()) << "the window waits as well";
      EXPECT_EQ(InForce().settings.analysis.FilterType, former) << "the former results are shown on";
      EXPECT_FALSE(InForce().profiles.inverted);
      EXPECT_EQ(InForce().profiles.identification, "long");
      Child<QDialogButtonBox>(dialog).button(QDialogButtonBox::Cancel)->click();
    }});
    Change([](AnalysisSettings& analysis) { analysis.FilterType = kFilterRobustGaussian; });
  }
  EXPECT_TRUE(InForce().profiles.Has(ProfileKind::kWaviness)) << "stopped early, the filter gives the line so far";
  EXPECT_EQ(InForce().settings.analysis.FilterType, kFilterRobustGaussian);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !frame_->isVisible(); }, 60'000)) << "closes once it can";
  EXPECT_TRUE(QTest::qWaitFor([&] { return InForce().profiles.identification == "Turned; generated"; }, 60'000));
  EXPECT_EQ(InForce().settings.analysis.LsCutoffMM, 0.008);
  EXPECT_EQ(InForce().settings.analysis.FilterType, former) << "the settings that came later";
  frame_.reset();
}

TEST(DialogPrompts, QuestionsAndRemarksAreReadable) {
  Application();
  QMainWindow window;
  DialogPrompts prompts(&window);
  QStringList shown;
  QStringList titles;
  const auto accept = [&](QWidget& dialog) {
    titles << dialog.windowTitle();
    shown << Child<QLabel>(dialog).text() << Child(dialog).text();
    dynamic_cast<QDialog&>(dialog).accept();
  };
  const DialogDriver driver({accept, accept});
  prompts.Beside("File: a.txt\nColumns: 1 Raw, 2 Rough");
  EXPECT_EQ(prompts.AskText("Enter the data point spacing (um):", "0.35604927721996726"), "0.35604927721996726");
  EXPECT_EQ(prompts.AskText("Enter it:", "1.5"), "1.5");
  EXPECT_TRUE(titles[0].endsWith(" \u2013 Point Spacing") && titles[1].endsWith("Question")) << titles[0].toStdString();
  EXPECT_EQ(shown, QStringList({"File: a.txt\nColumns: 1 Raw, 2 Rough\n\nEnter the data point spacing (\u00B5m):",
                                "0.3560493", "Enter it:", "1.5"}));
  const std::pair<const char*, const char*> remarks[] = {
      {"the file states no usable point spacing; 0.35604927721996726 um is taken",
       "The file states no usable point spacing; 0.3560493 \u00B5m is taken."},
      {"part.ini: not read", "part.ini: not read."},
      {"The arc fits.", "The arc fits."}};
  for (const auto& [remark, sentence] : remarks) {
    prompts.Notice(remark);
    EXPECT_EQ(window.statusBar()->currentMessage(), QString::fromUtf8(sentence));
  }
}

TEST(ProgressWindow, ComesAfterHalfASecond) {
  Application();
  DialogPrompts prompts(nullptr);
  const auto progress = prompts.OpenProgress("caption", "text");
  QElapsedTimer clock;
  clock.start();
  while (QApplication::activeModalWidget() == nullptr && clock.elapsed() < 5'000) EXPECT_TRUE(progress->Advance(50));
  EXPECT_GE(clock.elapsed(), 500);
  ASSERT_NE(QApplication::activeModalWidget(), nullptr);
  QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape);
  EXPECT_FALSE(progress->Advance(60));
}

}  // namespace
}  // namespace texturon
