// SPDX-License-Identifier: Apache-2.0

#include "analysis/analysis_run.h"

#include <gtest/gtest.h>

#include "support/scratch_folder.h"
#include "support/small_profiles.h"

namespace texturon {
namespace {

TEST(AnalysisRun, TellsWhyNotAndWhichFilesItTouches) {
  const ScratchFolder folder;
  std::string table;
  for (int i = 0; i < 60; ++i) table += IntegerText(i % 7) + "\t1\n";
  folder.Write("table.LMTd", table);
  const std::string header = "Lumetrace_Data 1.0\nIDENTIFICATION: t\nDATE: d\nSPACING_UM: 10\nNUMBER_OF_POINTS: 60\n\n";
  const struct {
    std::filesystem::path file;
    std::string reason;
    std::size_t reads;
  } cases[] = {{folder.Write("short.lmt", SmallProfile(20, 1.0)),
                "is not analysed: there are too few points to compute over", 1},
               {folder.Write("empty.lmt", ""), "is empty", 1},
               {folder.Write("table.LMTH", header), "", 2},
               {folder.Write("long.lmt", SmallProfile(60, 1.0)), "", 1}};
  Environment environment;
  environment.traceFile = folder / "Xc.csv";
  for (const auto& c : cases) {
    Document document = MakeDocument();
    SilentPrompts nobody;
    const RunStep run = RunAnalysis(document, {.path = c.file, .invert = true}, nobody, environment);
    EXPECT_EQ(run.Reason(), c.reason);
    EXPECT_EQ(document.profiles.inverted, run.loaded);
    EXPECT_EQ(document.results.request.has_value(), run.ok());
    EXPECT_EQ(run.files.reads.size(), c.reads) << c.file;
    EXPECT_EQ(run.files.reads.front(), c.file);
    EXPECT_EQ(run.files.writes, std::vector{environment.traceFile});
  }
  EXPECT_TRUE(std::filesystem::exists(environment.traceFile));
}

}  // namespace
}  // namespace texturon
