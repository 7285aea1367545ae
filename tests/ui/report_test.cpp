// SPDX-License-Identifier: Apache-2.0

#include "ui/report/report.h"

#include <QImage>
#include <QXmlStreamReader>
#include <gtest/gtest.h>
#include <set>

#include "support/loaded_document.h"
#include "support/row_value.h"
#include "support/scratch_folder.h"
#include "ui/qt_text.h"
#include "ui/report/page_flow.h"
#include "ui/report/report_layout_dialog.h"
#include "ui/report/table_fit.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

TEST(PageFlow, FillsPagesInOrderAndLetsPiecesGrow) {
  std::vector<std::pair<std::string, QRect>> painted;
  const auto paint = [&](const std::string& name) {
    return [&painted, name](const QRect& where) { painted.emplace_back(name, where); };
  };
  PageFlow flow(QRect(0, 10, 100, 100), 5);
  flow.Add(PagePiece{20, 0, 0, paint("head")});
  flow.Add(PagePiece{20, 40, 0, paint("a")});
  flow.Add(PagePiece{20, 22, 0, paint("b")});
  PageLines lines{.lineHeight = 10, .count = 21, .columns = 2, .columnGap = 10};
  lines.paintHead = paint("title");
  lines.paintLine = [&](const QRect& where, std::size_t i) { painted.emplace_back(std::to_string(i), where); };
  flow.Add(lines);
  flow.EndPage();
  flow.EndPage();
  const auto pages = flow.TakePages();
  ASSERT_EQ(pages.size(), 3u) << "25 units are not enough for three lines below a title";
  pages[0]();
  EXPECT_EQ(painted.size(), 3u);
  EXPECT_EQ(painted[1].second, QRect(0, 35, 100, 35)) << "half of what is left, rounded down, then all that b leaves";
  EXPECT_EQ(painted[2].second, QRect(0, 75, 100, 22));
  painted.clear();
  pages[1]();
  EXPECT_EQ(painted.size(), 2u + 18u);
  EXPECT_EQ(painted[10].second, QRect(55, 10, 45, 10)) << "the title of the second column";
  EXPECT_EQ(painted[19].first, "17");
  painted.clear();
  pages[2]();
  EXPECT_EQ(painted.size(), 2u + 3u) << "two lines at the left, one at the right";
  painted.clear();
  flow.Add(PagePiece{.height = 50, .paint = paint("picture")});
  flow.Add(PagePiece{.height = 20, .below = 30, .paint = paint("title of a table")});
  flow.TakePages().at(0)();
  EXPECT_EQ(painted.size(), 1u) << "a title goes with what it stands above";
}

class Report : public ::testing::Test {
protected:
  Report() : document_(Loaded(RandomSurface(6000, 3), 0.5)) {
    Application();
    Analyse(document_);
  }

  QString Path(const char* name) const { return FromPath(folder_ / name); }

  ScratchFolder folder_;
  Document document_;
  QString reason_;
};

TEST_F(Report, EveryPictureIsWellFormedAndShowsACurve) {
  for (const ReportBlockRow& row : ReportBlocks()) {
    if (!row.isPicture) continue;
    ASSERT_TRUE(WritePicture(Path("p.svg"), document_, row.kind, reason_)) << row.name;
    QXmlStreamReader xml(QByteArray::fromStdString(folder_.Read("p.svg")));
    int texts = 0;
    qsizetype longest = 0;
    std::set<QString> names, used;
    while (!xml.atEnd()) {
      if (xml.readNext() != QXmlStreamReader::StartElement) continue;
      texts += xml.name() == QLatin1String("text") ? 1 : 0;
      longest = std::max(longest, xml.attributes().value("d").size());
      if (xml.name() == QLatin1String("clipPath"))
        names.insert("url(#" + xml.attributes().value("id").toString() + ")");
      if (xml.attributes().hasAttribute("clip-path")) used.insert(xml.attributes().value("clip-path").toString());
    }
    EXPECT_FALSE(xml.hasError()) << row.name << ": " << xml.errorString().toStdString();
    EXPECT_GT(texts, 5) << row.name;
    EXPECT_GT(longest, 1000) << row.name;
    EXPECT_EQ(names, used) << row.name;
    ASSERT_TRUE(WritePicture(Path("p.png"), document_, row.kind, reason_)) << row.name;
    EXPECT_EQ(QImage(Path("p.png")).size(), QSize(1200, 600));
  }
  EXPECT_FALSE(WritePicture(Path("no.png"), MakeDocument(), ReportBlockKind::kRoughness, reason_));
  EXPECT_TRUE(reason_.contains("roughness profile")) << reason_.toStdString();
}

TEST_F(Report, FollowsItsTemplate) {
  std::ofstream(folder_ / "t.ini") << "[REPORT]\nBlock01=text\nText01=Only this\nBlock02=page\nBlock03=roughness\n";
  const auto layout = LoadReportTemplate(Path("t.ini"), reason_);
  ASSERT_TRUE(layout.has_value()) << reason_.toStdString();
  ASSERT_TRUE(WriteReport(Path("r.HTML"), document_, "now", reason_, {.layout = *layout}));
  const std::string html = folder_.Read("r.HTML");
  EXPECT_NE(html.find("Only this"), std::string::npos);
  EXPECT_NE(html.find("id=\"roughness-1\""), std::string::npos);
  EXPECT_EQ(html.find("id=\"profile-1\""), std::string::npos);
  ASSERT_TRUE(WriteReport(Path("r.pdf"), document_, "now", reason_, {.layout = *layout}));
  const QByteArray pdf = QByteArray::fromStdString(folder_.Read("r.pdf"));
  EXPECT_EQ(pdf.count("/Type /Page\n"), 2);
  EXPECT_TRUE(pdf.contains("pdfaid") && pdf.contains("/FontFile2")) << "for the archive, with its fonts";
  std::ofstream(folder_ / "bad.ini") << "[REPORT]\nBlock01=rouhgness\n";
  EXPECT_FALSE(LoadReportTemplate(Path("bad.ini"), reason_));
  EXPECT_TRUE(reason_.contains("bad.ini line 2: \"rouhgness\" is no block")) << reason_.toStdString();
  EXPECT_FALSE(LoadReportTemplate(Path("none.ini"), reason_));
  EXPECT_EQ(MissingLogo(document_, DefaultReportTemplate()), "");
  document_.settings.display.LogoFile = TextFromPath(folder_ / "bad.ini");
  EXPECT_TRUE(MissingLogo(document_, DefaultReportTemplate()).contains("bad.ini is no picture"));
  EXPECT_EQ(MissingLogo(document_, *layout), "") << "it has no head";
}

TEST_F(Report, TheLayoutIsChosenInItsDialog) {
  CReportLayoutDialog dialog({.title = "Old", .blocks = {{ReportBlockKind::kHead}, {ReportBlockKind::kSpectrum}}});
  auto& list = Child<QListWidget>(dialog);
  Child(dialog).setText("New");
  auto& kinds = Child<QComboBox>(dialog);
  kinds.setCurrentIndex(kinds.findData(static_cast<int>(ReportBlockKind::kText)));
  Press(dialog, "&Add");
  Child<QPlainTextEdit>(dialog).setPlainText("one\ntwo");
  list.setCurrentRow(0);
  EXPECT_FALSE(Child<QPlainTextEdit>(dialog).isEnabled()) << "a head has no text of its own";
  EXPECT_EQ(Child<QPlainTextEdit>(dialog).toPlainText(), "");
  Press(dialog, "&Up");
  Press(dialog, "Do&wn");
  kinds.setCurrentIndex(kinds.findData(static_cast<int>(ReportBlockKind::kNewPage)));
  list.setCurrentRow(2);
  Press(dialog, "&Add");
  list.setCurrentRow(2);
  Press(dialog, "&Remove");
  const ReportTemplate chosen = dialog.Chosen();
  const ReportTemplate wanted{
      .title = "New",
      .blocks = {{ReportBlockKind::kText, "one\ntwo"}, {ReportBlockKind::kHead}, {ReportBlockKind::kNewPage}}};
  EXPECT_EQ(chosen, wanted);
  ASSERT_TRUE(KeepUsersReportTemplate(chosen, reason_)) << reason_.toStdString();
  EXPECT_EQ(UsersReportTemplate(reason_), wanted);
  Press(dialog, "&Defaults");
  EXPECT_EQ(dialog.Chosen(), DefaultReportTemplate());
  ASSERT_TRUE(KeepUsersReportTemplate({.blocks = {{ReportBlockKind::kText, "\xE2\x89\xA4"}}}, reason_));
  EXPECT_EQ(UsersReportTemplate(reason_), DefaultReportTemplate());
  EXPECT_TRUE(reason_.contains("Report.ini")) << "told";
  ASSERT_TRUE(KeepUsersReportTemplate(dialog.Chosen(), reason_));
}

TEST(TableFit, NumbersAreWholeAndTextsGoOnInFurtherLines) {
  Application();
  const QFontMetrics letters{QApplication::font()};
  const QString number = "1.53794e+003";
  const QList<QStringList> lines = {{"Ra", "4", number, "um", ""},
                                    {"Wvoid   (Radius: 1.00 m)", "4", "0.1", "", "out of tolerance (maximum)"}};
  constexpr int kGap = 8;
  for (const int width : {900, 290}) {
    const FittedTable table = FitTable({"Parameter", "n", "Mean", "Unit", "Verdict"}, lines, std::vector<bool>(5),
                                       width, kGap, letters, letters);
    QStringList joined(2);
    for (const QStringList& line : table.lines) {
      for (qsizetype i = 0; i < line.size(); ++i) {
        const double room = table.columns[static_cast<std::size_t>(i)].width / 100.0 * width - kGap;
        EXPECT_LE(letters.horizontalAdvance(Readable(line[i])), room) << width << line[i].toStdString();
      }
      joined[0] += QString(line.front()).remove(' ');
      joined[1] += QString(line.back()).remove(' ');
    }
    EXPECT_EQ(joined, QStringList({"RaWvoid(Radius:1.00m)", "outoftolerance(maximum)"}));
    EXPECT_EQ(table.lines.size() > 2, width == 290);
  }
}

}  // namespace
}  // namespace texturon
