// SPDX-License-Identifier: Apache-2.0

#include "presentation/report_template.h"

#include <gtest/gtest.h>

#include "presentation/report_html.h"
#include "support/golden.h"
#include "support/loaded_document.h"

namespace texturon {
namespace {

TEST(ReportTemplate, ComesBackAsItWasWritten) {
  ReportTemplate all{.title =
                         "Pr\xFC"
                         "fbericht"};
  for (const ReportBlockRow& row : ReportBlocks()) {
    all.blocks.push_back({row.kind});
    EXPECT_EQ(&ReportBlockOf(row.kind), &row);
  }
  all.blocks.insert(all.blocks.begin(), {ReportBlockKind::kText, " two\nlines of C:\\new \"x\" "});
  for (const ReportTemplate& report : {all, DefaultReportTemplate()}) {
    const std::string text = ReportTemplateText(report);
    const ReportTemplateRead read = ReadReportTemplate(text);
    ASSERT_TRUE(read.report.has_value()) << read.reason;
    EXPECT_EQ(*read.report, report);
  }
  const auto utf8 = ReadReportTemplate(
      "[report]\nTITLE=Pr\xC3\xBC"
      "fbericht\n; a remark\nblock7=Profile\nBlock02=HEAD\n");
  ASSERT_TRUE(utf8.report.has_value()) << utf8.reason;
  EXPECT_EQ(utf8.report->title, all.title);
  EXPECT_EQ(utf8.report->blocks, (std::vector<ReportBlock>{{ReportBlockKind::kHead}, {ReportBlockKind::kProfile}}));
}

TEST(ReportTemplate, IsRefusedWithTheFirstLineThatIsNotUnderstood) {
  constexpr std::string_view kKeys = "is no key of a template; they are Title, Block01 to Block99 and Text01 to Text99";
  const std::pair<std::string, std::string> cases[] = {
      {"", "holds no block of a report"},
      {"[REPORT]\nTitle=x\n", "holds no block of a report"},
      {"[REPORT]\nBlock01=head\nBlock02=profil\n",
       "line 3: \"profil\" is no block of a report; blocks are head, verdict, parameters, profile, roughness, record, "
       "curves, probability, spectrum, motifs, statistics, instrument, settings, text, page"},
      {"[REPORT]\nBlock1=head\n\nBlock01=verdict\n", "line 4: Block01 occurs again"},
      {"[REPORT]\nBlock01=head\nBlock01=head\n", "line 3: \"Block01\" occurs again"},
      {"[REPORT]\nBlock100=head\n", "line 2: \"Block100\" " + std::string(kKeys)},
      {"[REPORT]\nBlock=head\nhead\n", "line 2: \"Block\" " + std::string(kKeys)},
      {"[REPORT]\nhead\nBlock=head\n", "line 2: is neither a section nor KEY=VALUE"},
      {"[REPORT]\nBlock01=head\nText01=x\n", "line 3: Text01 belongs to no block of free text"},
      {"[REPORT]\nBlock01=text\nText01=Ra? \xE2\x89\xA4 3\n",
       "line 3: holds a character that a report cannot have, none of Windows-1252"},
      {"Block01=head\n", "line 1: \"Block01\" stands before [REPORT]"},
      {"[ANALYSIS]\nFilterType=1\n", "line 1: \"ANALYSIS\" is no section of a template; the only one is [REPORT]"},
  };
  for (const auto& [text, reason] : cases) {
    const ReportTemplateRead read = ReadReportTemplate(text);
    EXPECT_FALSE(read.report.has_value());
    EXPECT_EQ(read.reason, reason);
  }
}

// Every block, with texts that would end an element.
TEST(ReportHtml, IsThisFile) {
  std::vector<double> heights(2000);
  for (std::size_t i = 0; i < heights.size(); ++i) heights[i] = 0.1 * static_cast<double>(i % 11) - 0.5;
  Document document = Loaded(heights, 1.0, [](Settings& settings) {
    settings.analysis.FormRemovalType = kFormNone;
    settings.display.CompanyName = "M\xFCller & <S\xF6hne>";
    settings.analysis.parameters = {
        {.name = "Pt", .tolerance = {.toleranced = true, .bilateral = true, .upperLimit = 0.9, .lowerLimit = 0.5}},
        {.name = "Ra7", .tolerance = {.toleranced = true, .upperLimit = 1.0}},
        {.name = "Pa"},
        {.name = "Pq"},
        {.name = "Ra7l"},
        {.name = "Rm0"}};
  });
  document.profiles.identification = "\"a\" < b\n& c";
  document.profiles.instrumentValues = {{"Pa", 0.25, "\xB5m"}};
  Analyse(document);
  SeveralResults several;
  several.Add(document);
  several.AddFailed();
  ReportTemplate layout = DefaultReportTemplate();
  layout.blocks.push_back({ReportBlockKind::kText, "one <\n& two"});
  const ReportParts parts{.pictures = {{ReportBlockKind::kRoughness, "Roughness", "<svg>r</svg>\n"},
                                       {ReportBlockKind::kMotifs, "M", "<svg/>"}},
                          .several = {several.Rows(AcceptanceRule::kMaximum)},
                          .logo = "data:image/png;base64,AA=="};
  const std::string html = ReportHtml(layout, MakeReportTexts(document, "now"), parts);
  EXPECT_TRUE(MatchesGolden("presentation/report.html", html));
  const ReportTemplate noVerdict{.blocks = {{ReportBlockKind::kParameters}}};
  EXPECT_NE(ReportHtml(noVerdict, MakeReportTexts(document, "now"), {}).find("Upper limit"), std::string::npos);
}

}  // namespace
}  // namespace texturon
