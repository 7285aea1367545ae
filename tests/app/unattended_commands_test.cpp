// SPDX-License-Identifier: Apache-2.0

// The commands export, batch and watch, and the rows that analyze adds, from the command line on.

#include <chrono>
#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <iostream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "app/largest_block.h"
#include "platform/platform.h"
#include "support/child_process.h"
#include "support/program_run.h"
#include "support/scratch_folder.h"
#include "support/small_profiles.h"

namespace texturon {
namespace {

// A failures file is made anew by each run; what is no file is not taken away for that.
TEST(BatchCommand, LeavesAPipeWhereItIs) {
  TEXTURON_NEEDS_POSIX();
  const ScratchFolder folder;
  folder.Write("list.txt", "\xEF\xBB\xBF" + folder.Write("a.lmt", SmallProfile(400, 1.0)).string() + "\r\n\n");
  const std::string pipe = (folder / "pipe").string();
  ASSERT_TRUE(MakePipe(pipe));
  const std::string list = (folder / "list.txt").string(), rows = (folder / "rows.csv").string();
  const Outcome run = Texturon({"batch", "--files-from", list, "--parameter-file", rows, "--failures", pipe});
  EXPECT_TRUE(run.out.starts_with("1 analysed, 0 failed\n")) << run.error;
  EXPECT_TRUE(std::filesystem::is_fifo(pipe));
}

// Every command, where a file-size limit stands for a full disk: whole rows or none, no leavings, and a sentence.
TEST(Commands, SayThatTheDiskIsFull) {
  TEXTURON_NEEDS_POSIX();
  const ScratchFolder folder;
  std::filesystem::create_directory(folder / "in");
  for (const char* name : {"in/a.lmt", "in/b.lmt", "in/c.lmt"}) folder.Write(name, SmallProfile(400, 1.0));
  folder.Write("p.ini", "[a]\nParameters=Ra\n");
  const std::string in = (folder / "in").string();
  const std::string file = (folder / "in/a.lmt").string();
  const auto at = [&folder](const char* name) { return (folder / name).string(); };
  struct Case {
    std::vector<std::string> call;
    std::size_t limit;
    std::string complaint;
  };
  const Case cases[] = {
      {{"batch", in, "--parameter-file", at("r1.csv"), "--jobs", "1"}, 1024, "--resume goes on from there"},
      {{"batch", in, "--parameter-file", at("r2.csv"), "--summary", in, "--jobs", "1"}, 1024, "r2.csv cannot be"},
      {{"analyze", "--no-trace", "--quiet", "--append-to", at("r3.csv"), file}, 500, "r3.csv cannot be written"},
      {{"export", "--no-trace", file, "raw", "-o", at("raw.csv")}, 1024, "raw.csv cannot be written"},
      {{"convert", file, at("b.prf")}, 1024, "b.prf"},
      {{at("p.ini"), file, at("out")}, 1024, "PRIMARY.aa cannot be written"},
  };
  for (const Case& c : cases) {
    const auto child = StartChild([&folder, &c] {
      std::filesystem::current_path(folder.path());
      LimitFileSizes(c.limit);
      const Outcome run = Texturon(c.call);
      if (run.error.find(c.complaint) == std::string::npos) std::cerr << run.error;
      return run.status == 1 && run.error.find(c.complaint) != std::string::npos ? 0 : 1;
    });
    EXPECT_EQ(WaitForChild(child), 0) << c.complaint;
  }
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
    if (!entry.is_regular_file()) continue;
    const std::string bytes = ReadWholeFile(entry.path()).bytes;
    EXPECT_FALSE(entry.path().filename().string().starts_with(".texturon-")) << entry.path();
    if (entry.path().extension() == ".csv" && !bytes.empty()) {
      EXPECT_TRUE(bytes.ends_with("\r\n")) << entry.path();
    }
  }
}

// One file too large for the memory does not take the others with it, wherever that is found out: its bytes, its
// heights or what is computed of them.
TEST(Commands, SayWhichFileDoesNotFitIntoTheMemory) {
  const ScratchFolder folder;
  constexpr int kPoints = 300'000;
  const std::string profile = SmallProfile(kPoints, 1.0);
  const std::string large = folder.Write("large.lmt", profile).string();
  const std::string small = folder.Write("small.lmt", SmallProfile(400, 1.0)).string();
  ASSERT_LT(profile.size(), sizeof(double) * kPoints);
  for (const std::size_t bytes : {profile.size(), sizeof(double) * kPoints - 1, sizeof(double) * kPoints + 1000}) {
    const LargestBlock limit(bytes);
    const Outcome run = Texturon({"analyze", "--no-trace", "--csv", large, small});
    EXPECT_EQ(std::pair(run.status, run.error), std::pair(1, "texturon: " + large + " does not fit into the memory.\n"))
        << bytes;
    EXPECT_NE(run.out.find(small), std::string::npos);
  }
}

// One file at a time before it is given up, and the others go through.
TEST(BatchCommand, TriesWithFewerAtATimeWhatDoesNotFitIntoTheMemory) {
  const ScratchFolder folder;
  std::filesystem::create_directory(folder / "in");
  constexpr int kPoints = 100'000;
  for (const char* name : {"in/a.lmt", "in/c.lmt"}) folder.Write(name, SmallProfile(400, 1.0));
  const std::string large = folder.Write("in/b.lmt", SmallProfile(kPoints, 1.0)).make_preferred().string();
  const LargestBlock limit(sizeof(double) * kPoints - 1);
  const Outcome run = Texturon({"batch", (folder / "in").string(), "--parameter-file", (folder / "rows.csv").string(),
                                "--jobs", "4", "--failures", (folder / "failed.txt").string()});
  const std::string said = "texturon: " + large + " does not fit into the memory";
  EXPECT_EQ(run.error, said + " beside others and is tried again, with at most 2 at a time.\n" + said +
                           " beside others and is tried again, with at most 1 at a time.\n" + said + ".\n");
  EXPECT_TRUE(run.out.starts_with("2 analysed, 1 failed\n")) << run.out;
}

// The file for statistics programs grows by a line a file, and is no measurement of the next run.
TEST(BatchCommand, AddsValuesForStatisticsPrograms) {
  const ScratchFolder folder;
  for (const char* name : {"a.lmt", "b.lmt"}) folder.Write(name, SmallProfile(400, 1.0));
  const std::string in = folder.path().string(), values = (folder / "r.dfq").string();
  const std::string settings = std::string(TEXTURON_SOURCE_DIR) + "/samples/production.ini";
  const std::string rows = (folder / "rows.csv").string();
  for (int run = 0; run < 2; ++run) {
    EXPECT_EQ(Texturon({"batch", in, "--parameter-file", rows, "--qdas", values, "--settings", settings}).status, 0);
  }
  const std::string text = folder.Read("r.dfq");
  std::string parts;
  for (std::size_t at = 0; (at = text.find("K0014/0 ", at)) != std::string::npos; ++at) parts += text.substr(at + 8, 5);
  EXPECT_EQ(parts, "a.lmtb.lmta.lmtb.lmt");
  EXPECT_EQ(Texturon({"batch", in, "--parameter-file", rows, "--qdas", values}).status, 1);
  const Outcome later = Texturon({"batch", in, "--mask", "*.*", "--parameter-file", rows});
  EXPECT_TRUE(later.out.starts_with("2 analysed, 0 failed\n")) << later.out << later.error;
}

// What needs several settings is one line a file, too, with all columns in it.
TEST(AnalyzeCommand, AddsALineAFileForRequirementsOfSeveralClasses) {
  const ScratchFolder folder;
  const std::string samples = std::string(TEXTURON_SOURCE_DIR) + "/samples/";
  const Outcome run = Texturon({"analyze", samples + "honed.lmt", samples + "ground.lmt", "--quiet", "--no-trace",
                                "--sections", "4", "--indication", "Rz 8 Sc3 | Ra 1 Sc2 | Rt 9 Sc3", "--qdas",
                                (folder / "r.dfq").string(), "--append-to", (folder / "r.csv").string()});
  EXPECT_EQ(run.status, 0) << run.error;
  const std::string values = folder.Read("r.dfq"), rows = folder.Read("r.csv");
  EXPECT_TRUE(values.starts_with("K0100 3\r\n")) << values;
  EXPECT_EQ(std::count(values.begin(), values.end(), '\x0F'), 4) << "two between three values of two files";
  EXPECT_NE(rows.find(R"("Rz Sc3/2021", "Rt Sc3/2021", "Ra Sc2/2021")"), std::string::npos) << rows;
  EXPECT_EQ(std::count(rows.begin(), rows.end(), '\n'), 4);
}

TEST(WatchCommand, EndsInOrderOnASignal) {
  TEXTURON_NEEDS_POSIX();
  const ScratchFolder folder;
  std::filesystem::create_directory(folder / "in");
  const auto child = StartChild([&folder] {
    return Texturon({"watch", (folder / "in").string(), "--hold", (folder / "hold").string(), "--parameter-file",
                     (folder / "rows.csv").string()})
        .status;
  });
  for (int i = 0; i < 500 && !std::filesystem::exists(folder / "in/.texturon-watch-lock"); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  AskChildToEnd(child);
  EXPECT_EQ(WaitForChild(child), 0);
}

}  // namespace
}  // namespace texturon
