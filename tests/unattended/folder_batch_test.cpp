// SPDX-License-Identifier: Apache-2.0

#include "unattended/folder_batch.h"

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <numeric>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "platform/platform.h"
#include "support/child_process.h"
#include "support/near.h"
#include "support/scratch_folder.h"
#include "support/small_profiles.h"
#include "unattended/batch_outputs.h"
#include "unattended/folder_files.h"
#include "unattended/row_list.h"

namespace texturon {
namespace {

/// A folder with files 000.lmt to 039.lmt, of which 007 is damaged and 013 too short.
class FolderBatch : public ::testing::Test {
protected:
  static constexpr int kFiles = 40;

  FolderBatch() : start_(MakeDocument()) {
    std::filesystem::create_directory(folder_ / "in");
    for (int i = 0; i < kFiles; ++i) {
      const std::string name = "in/" + IntegerText(i, 3, '0') + ".lmt";
      folder_.Write(name, i == 7 ? "damaged" : SmallProfile(i == 13 ? 20 : 400, 1.0 + 0.01 * i));
    }
    Settings settings = start_.settings;
    settings.analysis.parameters = {{.name = "Pt", .tolerance = {.toleranced = true, .upperLimit = 1.2}},
                                    {.name = "Ra"}};
    settings.analysis.LsCutoffMM = 0.0;
    settings.analysis.FormRemovalType = 0;
    ApplySettings(start_, std::move(settings));
    environment_.localTime = [] { return std::tm{.tm_mday = 1, .tm_year = 120}; };
    options_.files = ListFolder(folder_ / "in", "*.lmt").files;
    options_.parameterFile = folder_ / "rows.csv";
    options_.failuresFile = folder_ / "failures.txt";
  }

  FolderBatchOutcome Run() { return RunFolderBatch(options_, {.start = start_}, environment_, observer_); }

  /// Base names of the rows' sources, in order.
  std::vector<std::string> Rows() const {
    std::vector<std::string> names;
    std::istringstream lines(folder_.Read("rows.csv"));
    for (std::string line; std::getline(lines, line);) {
      const std::size_t at = line.find(".lmt");
      if (at != std::string::npos) names.push_back(line.substr(at - 3, 3));
      EXPECT_TRUE(line.ends_with('\r'));
    }
    return names;
  }

  static std::vector<std::string> FirstRows(std::size_t count = kFiles - 2) {
    std::vector<std::string> names;
    for (int i = 0; names.size() < count; ++i) {
      if (i != 7 && i != 13) names.push_back(IntegerText(i, 3, '0'));
    }
    return names;
  }

  ScratchFolder folder_;
  Document start_;
  Environment environment_;
  FolderBatchOptions options_;
  FolderBatchObserver observer_;
};

TEST_F(FolderBatch, RowsStandInTheOrderOfTheFilesWhateverTheThreads) {
  std::string former;
  for (const int jobs : {1, 3, 8}) {
    std::filesystem::remove(folder_ / "rows.csv");
    std::filesystem::remove(folder_ / "failures.txt");
    options_.jobs = jobs;
    const FolderBatchOutcome outcome = Run();
    EXPECT_TRUE(outcome.complete()) << outcome.reason;
    EXPECT_EQ(Rows(), FirstRows());
    EXPECT_EQ(outcome.summary.analysed, kFiles - 2u);
    EXPECT_EQ(outcome.summary.failed, 2u);
    const std::string failures = folder_.Read("failures.txt");
    EXPECT_LT(failures.find("007.lmt\t"), failures.find("013.lmt\t"));
    EXPECT_EQ(std::count(failures.begin(), failures.end(), '\n'), 2);
    const std::string rows = folder_.Read("rows.csv");
    EXPECT_TRUE(former.empty() || rows == former);
    former = rows;
  }
}

TEST_F(FolderBatch, SummaryIsThatOfTheValues) {
  const FolderBatchOutcome outcome = Run();
  ASSERT_EQ(outcome.summary.columns.size(), 2u);
  const ColumnSummary& pt = outcome.summary.columns[0];
  // Heights 1.00, 1.01 ... 1.39 without 1.07 and 1.13; those above 1.2 are 1.21 to 1.39.
  std::vector<double> values;
  for (int i = 0; i < kFiles; ++i) {
    if (i != 7 && i != 13) values.push_back(1.0 + 0.01 * i);
  }
  const double mean = std::accumulate(values.begin(), values.end(), 0.0) / 38.0;
  double squares = 0.0;
  for (const double value : values) squares += (value - mean) * (value - mean);
  EXPECT_EQ(pt.count, 38u);
  EXPECT_TRUE(Near(pt.mean, mean, 1e-12));
  EXPECT_TRUE(Near(pt.StandardDeviation(), std::sqrt(squares / 37.0), 1e-9));
  EXPECT_TRUE(Near(pt.minimum, 1.0, 1e-12));
  EXPECT_TRUE(Near(pt.maximum, 1.39, 1e-12));
  EXPECT_EQ(pt.outOfTolerance, 19u);
  EXPECT_TRUE(
      SummaryCsv(outcome.summary).starts_with("\"Files\", 38\r\n\"Failed\", 2\r\n\r\n\"Parameter\", \"Count\", "));
}

TEST_F(FolderBatch, TellsWhatAReaderGuessed) {
  std::string table;
  for (int i = 0; i < 100; ++i) table += IntegerText(10 * i) + ";" + IntegerText(i % 7) + "\n";
  options_.files = {folder_ / "in" / "000.lmt", folder_.Write("in/guessed.txt", table)};
  std::vector<std::string> remarks;
  observer_.fileRemarked = [&remarks](const std::string& sentence) { remarks.push_back(sentence); };
  const FolderBatchOutcome outcome = Run();
  ASSERT_EQ(remarks.size(), 1u);
  EXPECT_TRUE(remarks[0].ends_with("guessed.txt: units are not stated; positions are taken as um, heights as um"));
  EXPECT_TRUE(SummaryCsv(outcome.summary).starts_with("\"Files\", 2\r\n\"Failed\", 0\r\n\"With remarks\", 1\r\n"));
}

TEST_F(FolderBatch, StoppedRunLeavesAWholeBeginningThatResumeCompletes) {
  std::atomic<int> asked = 0;
  observer_.stops = [&asked] { return ++asked > 30; };
  options_.jobs = 3;
  const FolderBatchOutcome stopped = Run();
  ASSERT_FALSE(stopped.complete());
  const std::vector<std::string> rows = Rows();
  ASSERT_LT(rows.size(), kFiles - 2u);
  EXPECT_EQ(rows, FirstRows(rows.size()));
  // A torn last row, as a killed run may leave, is no row.
  const std::string whole = folder_.Read("rows.csv");
  folder_.Write("rows.csv",
                whole + "\"01 Jan 2020 - 00:00:00  \", \"" + (folder_ / "in/039.lmt").string() + "    \", \"sm");
  observer_.stops = {};
  options_.resume = true;
  const FolderBatchOutcome resumed = Run();
  EXPECT_TRUE(resumed.complete()) << resumed.reason;
  EXPECT_EQ(resumed.skipped, rows.size());
  EXPECT_EQ(Rows(), FirstRows());
}

TEST_F(FolderBatch, ResumeBeginsAnewWhereNotEvenTheHeaderIsWhole) {
  EXPECT_TRUE(Run().complete());
  const std::string whole = folder_.Read("rows.csv");
  options_.resume = true;
  for (const std::size_t left : {whole.find("Source"), whole.find("\r\n") + 8}) {
    folder_.Write("rows.csv", whole.substr(0, left));
    EXPECT_TRUE(Run().complete());
    EXPECT_EQ(folder_.Read("rows.csv"), whole);
  }
  options_.files.push_back(options_.files.front());
  EXPECT_EQ(Run().summary.analysed, 1u) << "one row is no two files";
}

TEST_F(FolderBatch, AFailureIsOneLineWhateverTheName) {
  TEXTURON_NEEDS_POSIX();
  options_.files = {folder_ / "in/lost\r\nand\tfound.lmt"};
  EXPECT_EQ(Run().summary.failed, 1U);
  const std::string failures = folder_.Read("failures.txt");
  EXPECT_EQ(std::count(failures.begin(), failures.end(), '\n'), 1) << failures;
  for (const char* name : {"in/007.lmt", "in/\u8868 7.lmt", "in/tab\t7.lmt", "in/line\n.lmt"}) {
    folder_.Write(name, "damaged");
    options_.files = {folder_ / name};
    std::filesystem::remove(options_.failuresFile);
    Run();
    EXPECT_TRUE(IsFailuresFile(options_.failuresFile)) << folder_.Read("failures.txt");
  }
  folder_.Write("of a profile", "./in/2.lmt\t/p/2.lmt.primary.csv cannot be written (the disk is full).\n");
  folder_.Write("columns", "12\t12.\n");
  EXPECT_TRUE(IsFailuresFile(folder_ / "of a profile"));
  EXPECT_FALSE(IsFailuresFile(folder_ / "columns"));
  EXPECT_TRUE(failures.find("lost\\r\\nand\\tfound.lmt\t") != std::string::npos) << "where the name ends is clear";
}

TEST_F(FolderBatch, TwoRunsAtOnceIntoOneFileLoseAndTearNothing) {
  TEXTURON_NEEDS_POSIX();
  const auto work = [this] { return Run().complete() ? 0 : 1; };
  options_.failuresFile.clear();
  const auto first = StartChild(work);
  const auto second = StartChild(work);
  EXPECT_EQ(WaitForChild(first), 0);
  EXPECT_EQ(WaitForChild(second), 0);
  std::vector<std::string> rows = Rows();
  std::sort(rows.begin(), rows.end());
  std::vector<std::string> twice;
  for (const std::string& row : FirstRows()) twice.insert(twice.end(), {row, row});
  EXPECT_EQ(rows, twice);
  const std::string text = folder_.Read("rows.csv");
  EXPECT_EQ(text.find("\"Time\""), text.rfind("\"Time\""));
}

// The source column says "????.lmt" of both names, and nothing of one that a spreadsheet has saved.
TEST_F(FolderBatch, ResumeGoesByTheFilesThemselves) {
  TEXTURON_NEEDS_POSIX();
  const std::string first = "in/\u8868\u9762.lmt";
  const std::string second = "in/\u7C97\u3055.lmt";
  folder_.Write(first, SmallProfile(400, 1.0));
  folder_.Write("in/a,b.lmt", SmallProfile(400, 1.1));
  options_.files = {folder_ / first, folder_ / "in/a,b.lmt"};
  EXPECT_EQ(Run().summary.analysed, 2U);
  const std::string rows = folder_.Read("rows.csv");
  folder_.Write(second, SmallProfile(400, 1.2));
  folder_.Write("in/a;b.lmt", SmallProfile(400, 1.3));
  const std::filesystem::path former = folder_ / "in/a,b.lmt";
  options_.files = {folder_ / second, folder_ / first, folder_ / "in/./a;b.lmt", folder_ / "in/../in/a,b.lmt"};
  options_.resume = true;
  std::string saved = rows;  // with other separators and quotes, without the last line's end
  for (std::size_t at = 0; (at = saved.find("\", \"", at)) != std::string::npos;) saved.replace(at, 4, "\t");
  std::erase(saved, '"');
  saved.resize(saved.size() - 2);
  const auto left = [this] {
    std::vector<std::string> names;
    for (const auto& file : FilesWithoutRow(options_.files, options_.parameterFile).files) {
      names.push_back(file.filename().string());
    }
    return names;
  };
  const std::vector<std::string> fresh = {second.substr(3), "a;b.lmt"};
  EXPECT_EQ(left(), fresh);
  folder_.Write("rows.csv", saved);
  EXPECT_EQ(left(), fresh);
  EXPECT_EQ(folder_.Read("rows.csv"), saved) << "a whole row is not cut";
  // A line whose row was never written says nothing and is dropped; a file measured anew has no row.
  folder_.Write("rows.csv", rows.substr(0, rows.rfind("\r\n", rows.size() - 3) + 2));
  EXPECT_EQ(left(), (std::vector<std::string>{second.substr(3), "a;b.lmt", "a,b.lmt"}));
  EXPECT_EQ(folder_.Read(".rows.csv.texturon-done").find("a,b.lmt"), std::string::npos);
  folder_.Write(first, SmallProfile(400, 1.4));
  EXPECT_EQ(left().size(), 4U);
  // Without a list the source decides, and what it cannot tell is said.
  std::filesystem::remove(folder_ / ".rows.csv.texturon-done");
  std::vector<std::string> remarks;
  observer_.remarked = [&remarks](const std::string& sentence) { remarks.push_back(sentence); };
  EXPECT_EQ(Run().skipped, 1U);
  ASSERT_EQ(remarks.size(), 1U);
  EXPECT_NE(remarks[0].find("??.lmt, which stands for 2 files"), std::string::npos) << remarks[0];
}

// Killed between the line and the row, or anywhere else.
TEST_F(FolderBatch, KilledAtAnyInstantEveryFileHasOneRow) {
  TEXTURON_NEEDS_POSIX();
  const char* const wanted = std::getenv("TEXTURON_KILLS");
  const int kills = wanted == nullptr ? 12 : std::atoi(wanted);
  std::erase_if(options_.files, [](const auto& file) { return file.stem() == "007" || file.stem() == "013"; });
  options_.resume = true;
  options_.jobs = 2;
  std::mt19937 random(7);
  for (int kill = 0; kill < kills; ++kill) {
    const auto child = StartChild([this] { return Run().complete() ? 0 : 1; });
    std::this_thread::sleep_for(std::chrono::microseconds(std::uniform_int_distribution<int>(0, 30'000)(random)));
    KillChild(child);
    WaitForChild(child);
    if (Rows().size() < kFiles - 2u) continue;
    EXPECT_EQ(Rows(), FirstRows());
    std::filesystem::remove(folder_ / "rows.csv");
  }
  EXPECT_TRUE(Run().complete());
  EXPECT_EQ(Rows(), FirstRows());
}

TEST_F(FolderBatch, DoesNotTakeWhatABatchWroteForMeasurements) {
  options_.files.resize(2);
  options_.parameterFile = folder_ / "in/rows.csv";
  options_.failuresFile = folder_ / "in/failed.txt";
  const auto listed = [this] { return FilesToAnalyse(folder_ / "in", "*.*", {}).files.size(); };
  const std::size_t measurements = listed();
  for (int run = 0; run < 2; ++run) {
    RunFolderBatch(options_, {.start = start_, .profilesTo = folder_ / "in"}, environment_, observer_);
    EXPECT_TRUE(std::filesystem::exists(folder_ / "in/000.lmt.primary.csv"));
    EXPECT_EQ(listed(), measurements);
  }
  // Under such a name another content is a measurement; under another name such a content is what somebody made of it.
  folder_.Write("in/000.lmt.primary.csv", SmallProfile(400, 1.0));
  folder_.Write("in/rows.csv", SmallProfile(400, 1.0));
  std::filesystem::copy_file(folder_ / "in/001.lmt.primary.csv", folder_ / "in/copy.csv");
  EXPECT_EQ(listed(), measurements + 3);
}

TEST_F(FolderBatch, WritesTheProfilesOfEachFile) {
  options_.files.resize(2);
  RunFolderBatch(options_, {.start = start_, .profilesTo = folder_.path()}, environment_, observer_);
  for (const char* name : {"000.lmt.primary.csv", "000.lmt.waviness.csv", "001.lmt.roughness.csv"}) {
    EXPECT_NE(folder_.Read(name).find("\"Number of Points\", "), std::string::npos) << name;
  }
}

TEST(FolderFiles, MasksMatchAsUsersExpect) {
  using Pair = std::pair<const char*, const char*>;
  for (const auto& [name, mask] :
       {Pair{"a.prf", "*.PRF"}, {"a", "*.*"}, {"a1b.prf", "a?b.*"}, {"aXbXc", "a*b*c"}, {"mississippi", "*iss*pi"}}) {
    EXPECT_TRUE(MatchesMask(name, mask)) << mask;
  }
  for (const auto& [name, mask] :
       {Pair{"a.prf.tmp", "*.prf"}, {"ab.prf", "a?b.*"}, {"aXbX", "a*b*c"}, {"a", ""}, {"ab", "a"}}) {
    EXPECT_FALSE(MatchesMask(name, mask)) << mask;
  }
}

// A ratio without a finite value is out of tolerance all the same, and no part of a mean.
TEST(BatchSummary, CountsWhatIsOutOfToleranceWithoutAFigure) {
  BatchSummary summary;
  for (const std::optional<double> value : {std::optional(1.0), std::optional<double>(), std::optional(3.0)}) {
    summary.Add(std::vector<ColumnValue>{{.name = "Rpk/k", .value = value, .outOfTolerance = !value}});
  }
  EXPECT_EQ(SummaryCsv(summary).substr(SummaryCsv(summary).find("\"Rpk/k")),
            "\"Rpk/k\", 2, 2, 1.4142135623730951, 1, 3, 1\r\n");
}

}  // namespace
}  // namespace texturon
