// SPDX-License-Identifier: Apache-2.0

// Several profiles over each other, and a process over many files.

#include <cmath>

#include "support/small_profiles.h"
#include "ui/folders/folder_batch_window.h"
#include "ui/language.h"
#include "ui/plots/clickable_profile_graph.h"
#include "ui/several/several_window.h"
#include "ui/several/trend_pane.h"
#include "ui/tables/grid_ctrl.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class Several : public WindowTest {
protected:
  Several() {
    Change([](AnalysisSettings& analysis) {
      analysis.parameters = {{.name = "Pt", .tolerance = {.toleranced = true, .upperLimit = 1.15}}};
      analysis.FormRemovalType = kFormNone;
      analysis.LsCutoffMM = 0.0;
    });
    Choose("severalProfiles");
    window_ = &Child<CSeveralWindow>(*frame_);
  }

  std::filesystem::path Write(const char* name, double height) {
    return folder_.Write(name, SmallProfile(400, height));
  }
  QString Cell(const char* title) {
    const CGridCtrl& table = window_->Table();
    for (int column = 0; column < table.columnCount(); ++column) {
      if (table.horizontalHeaderItem(column)->text() == title) return table.item(0, column)->text();
    }
    return "no such column";
  }
  QString State() { return Child<QLabel>(*window_, "state").text(); }
  /// Heights of a curve of the graph, as drawn.
  QCPRange HeightsOf(const QString& name) {
    for (int i = 0; i < window_->Graph().graphCount(); ++i) {
      bool isThere = false;
      const QCPGraph& graph = *window_->Graph().graph(i);
      if (graph.name() == name) return graph.getValueRange(isThere);
    }
    return {0.0, 0.0};
  }

  CSeveralWindow* window_;
};

TEST_F(Several, ValuesStandSideBySideWithTheVerdictOfTheRule) {
  window_->AddFiles(
      {Write("a.lmt", 1.0), folder_.Write("bad.lmt", "damaged"), Write("b.lmt", 1.1), Write("c.lmt", 1.2)});
  EXPECT_EQ(window_->Count(), 3U);
  EXPECT_LT(window_->minimumSizeHint().width(), 600) << "its row of choices is broken where a screen is narrow";
  EXPECT_TRUE(window_->Faults().contains("bad.lmt")) << window_->Faults().toStdString();
  window_->AddFiles({std::filesystem::path(TEXTURON_SOURCE_DIR) / "tests/golden/files/formats/grid.sdf"});
  EXPECT_EQ(window_->Faults().count("grid.sdf"), 1) << "for both of its profiles: " << window_->Faults().toStdString();
  const std::pair<const char*, const char*> cells[] = {{"a.lmt", "1.0000"}, {"c.lmt", "1.2000"},
                                                       {"Mean", "1.1000"},  {"Standard deviation", "0.1000"},
                                                       {"Range", "0.2000"}, {"Verdict", "out of tolerance"}};
  for (const auto& [title, text] : cells) EXPECT_EQ(Cell(title).toStdString(), text) << title;
  Child<QComboBox>(*window_, "rule").setCurrentText("median rule");
  EXPECT_EQ(Cell("Verdict"), "within tolerance");
  Child<QListWidget>(*window_, "profiles").setCurrentRow(2);
  Press(*window_, "&Remove");
  Child<QComboBox>(*window_, "rule").setCurrentText("max rule");
  EXPECT_EQ(Cell("Verdict"), "within tolerance");
  auto& drawing = Child<QLabel>(*window_, "drawing");
  EXPECT_TRUE(drawing.isHidden());
  Change([](AnalysisSettings& analysis) {
    analysis.parameters.front().tolerance.upperLimit = 1.05;
    analysis.standard.Indication = "U Pt 9";
  });
  EXPECT_TRUE(drawing.text().startsWith("Drawing: U Pt 9: ")) << drawing.text().toStdString();
  EXPECT_EQ(Cell("Verdict"), "out of tolerance") << "settings of the window are those of the table";
  Change([](AnalysisSettings& analysis) { analysis.parameters = {{.name = "Rmr1"}}; });
  EXPECT_EQ(Cell("Unit"), "%");
}

TEST_F(Several, TheReportHasTheStatisticsOfAll) {
  QString reason;
  EXPECT_FALSE(window_->WriteReportFile(folder_ / "r.html", reason)) << "nothing to report";
  window_->AddFiles({Write("a.lmt", 1.0), Write("b.lmt", 1.1), Write("c.lmt", 1.2)});
  EXPECT_FALSE(window_->WriteReportFile(folder_ / "b.lmt", reason)) << "one of the profiles";
  ASSERT_TRUE(window_->WriteReportFile(folder_ / "r.html", reason)) << reason.toStdString();
  const std::string report = folder_.Read("r.html");
  for (const char* const text : {"out of tolerance (maximum)", "b.lmt", "c.lmt"}) {
    EXPECT_NE(report.find(text), std::string::npos) << text;
  }
}

TEST_F(Several, MeanBandAndDifferenceAreDrawnOverTheProfiles) {
  window_->AddFiles({Write("a.lmt", 1.0), Write("b.lmt", 3.0)});
  window_->show();
  Child<QComboBox>(*window_, "kind").setCurrentIndex(1);
  for (const char* const box : {"mean", "band", "difference"}) Child<QCheckBox>(*window_, box).setChecked(true);
  window_->Graph().replot();
  // Saw-teeth in step: the mean is one of 2, the band their own extremes, the difference one of 2 again.
  const std::pair<const char*, double> curves[] = {
      {"a.lmt", 1.0}, {"b.lmt", 3.0}, {"mean", 2.0}, {"highest", 2.0}, {"difference: a.lmt \u2212 b.lmt", 2.0}};
  for (const auto& [name, height] : curves) EXPECT_NEAR(HeightsOf(name).size(), height, 0.01) << name;
  EXPECT_EQ(State(), "");
  Child<QListWidget>(*window_, "profiles").item(1)->setCheckState(Qt::Unchecked);
  window_->Graph().replot();
  EXPECT_TRUE(State().contains("tick two")) << State().toStdString();
  EXPECT_NEAR(HeightsOf("mean").size(), 1.0, 1e-6);
}

TEST_F(Several, AProfileIsMovedToWhereItIsAligned) {
  window_->AddFiles({Write("a.lmt", 1.0), Write("b.lmt", 1.0)});
  window_->Graph().SetUprightCursors(0.05, 0.1);
  Child<QListWidget>(*window_, "profiles").setCurrentRow(1);
  Press(*window_, "Ali&gn Chosen Here");
  EXPECT_EQ(Child<QComboBox>(*window_, "alignment").currentText(), "Cursor");
  EXPECT_NEAR(window_->Graph().WholeX().lower, -0.05, 1e-9);
}

TEST(Trend, ShowsWhatAProcessKeeps) {
  Application();
  CTrendPane pane;
  std::vector<CTrendPane::File> files;
  for (const double value : {1.0, 2.0, 3.0}) {
    files.push_back(
        {{{.name = "Ra", .value = value, .outOfTolerance = value > 2.5, .unit = "\xB5m", .limits = {.upper = 2.5}}},
         "a.lmt"});
  }
  files.push_back({{}, "failed.lmt"});
  pane.Add(files);
  // Mean 2, s 1: Cpk = (2.5 - 2) / 3.
  EXPECT_EQ(Child<QLabel>(pane, "capability").text(),
            QString::fromUtf8("n 3    mean 2 \u00B5m    s 1 \u00B5m    Cpk 0.1667"));
  pane.resize(900, 400);
  pane.show();
  QTest::qWait(20);
  for (const QCPAxis* const axis : {pane.Chart().xAxis, pane.Histogram().yAxis}) {
    for (const QString& tick : axis->tickVectorLabels()) EXPECT_FALSE(tick.contains('.')) << "there is no half a file";
  }
  int opened = -1;
  QObject::connect(&pane, &CTrendPane::Activated, [&opened](int file) { opened = file; });
  const QPointF place(pane.Chart().xAxis->coordToPixel(2.0), pane.Chart().yAxis->coordToPixel(2.0));
  QTest::mouseClick(&pane.Chart(), Qt::LeftButton, {}, place.toPoint());
  EXPECT_EQ(opened, 1);
}

TEST(Trend, ShowsInLittleRoomOnlyWhatIsWhole) {
  Application();
  CTrendPane pane;
  std::vector<CTrendPane::File> files;
  for (const double value : {1.0, 2.0, 3.0, 2.1}) {
    files.push_back({{{.name = "RzDIN", .value = value, .unit = "\xB5m", .limits = {.upper = 2.5}}}, "a.lmt"});
  }
  pane.Add(files);
  for (const QSize size : {QSize(640, 130), QSize(900, 500)}) {
    pane.resize(size);
    pane.show();
    QTest::qWait(50);
    for (QCustomPlot* const plot : {&pane.Chart(), &pane.Histogram()}) {
      plot->replot();
      plot->replot();
      EXPECT_EQ(plot->yAxis->label().isEmpty(), size.height() < 200);
      std::vector<QRectF> names;
      for (int i = 0; i < plot->itemCount(); ++i) {
        const auto* const name = qobject_cast<QCPItemText*>(plot->item(i));
        if (name == nullptr || !name->visible()) continue;
        const QRectF box(name->topLeft->pixelPosition(), name->bottomRight->pixelPosition());
        for (const QRectF& other : names) EXPECT_FALSE(other.adjusted(1, 1, -1, -1).intersects(box));
        names.push_back(box);
      }
      EXPECT_GE(names.size(), 1U) << "the limit is named first";
      const double bars = plot->yAxis->coordToPixel(2.0);
      for (const QRectF& name : names) EXPECT_TRUE(plot == &pane.Chart() || name.bottom() < bars + 2.0);
    }
  }
}

class Process : public WindowTest {};

TEST_F(Process, IsShownWithoutAParameterFileAndSaved) {
  Change([](AnalysisSettings& analysis) { analysis.parameters = {{.name = "Pt"}}; });
  std::filesystem::create_directory(folder_ / "in");
  for (int i = 0; i < 4; ++i) {
    folder_.Write("in/" + std::to_string(i) + ".lmt", SmallProfile(i < 3 ? 400 : 60, 1.0 + 0.1 * i));
  }
  Choose("batchOfAFolder");
  auto& window = Child<CFolderBatchWindow>(*frame_);
  window.ChooseFolder(folder_ / "in");
  Child(window, "parameterFile").clear();
  Child<QPushButton>(window, "start").click();
  ASSERT_TRUE(QTest::qWaitFor([&window] { return !window.IsRunning(); }, 30'000));
  EXPECT_EQ(window.Results().rowCount(), 4);
  EXPECT_EQ(Child<CTrendPane>(window).Series().values.size(), 4U);
  // Files are English, whatever the window speaks.
  UseLanguage("de");
  const CBatchResults& results = window.Results();
  EXPECT_EQ(results.data(results.index(3, 1), Qt::DisplayRole).toString().section(" - ", 1),
            "Weniger als eine Einzelmessstrecke ausgewertet: 0.6000 mm von 0.8000 mm.");
  const std::pair<const char*, const char*> files[] = {
      {"out.csv", "File,Result,Pt"}, {"out.pdf", "%PDF-1.4"}, {"out.svg", "<?xml"}, {"out.png", "\x89PNG"}};
  for (const auto& [name, start] : files) {
    EXPECT_EQ(window.SaveAs(folder_ / name), "") << name;
    EXPECT_TRUE(folder_.Read(name).starts_with(start)) << name;
  }
  EXPECT_NE(folder_.Read("out.csv").find(" - Less than one sampling length evaluated"), std::string::npos);
  Child<QLabel>(window, "state").setText("out.csv geschrieben");
  EXPECT_EQ(window.Page().heading.last(), "4 analysed, 0 failed, 1 with remarks.");
  EXPECT_EQ(window.Page().titles.first(), "Parameter");
  UseLanguage("en");
  EXPECT_TRUE(window.SaveAs(folder_ / "in/2.lmt").contains("2.lmt")) << "a measurement is not written over";
  EXPECT_EQ(folder_.Read("in/2.lmt"), SmallProfile(400, 1.2));
}

}  // namespace
}  // namespace texturon
