// SPDX-License-Identifier: Apache-2.0

#include "unattended/folder_watch.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "platform/append_file.h"
#include "platform/platform.h"
#include "support/child_process.h"
#include "support/scratch_folder.h"
#include "support/small_profiles.h"
#include "unattended/watch_journal.h"

namespace texturon {
namespace {

using namespace std::chrono_literals;

class FolderWatch : public ::testing::Test {
protected:
  FolderWatch() : start_(MakeDocument()) {
    Settings settings = start_.settings;
    settings.analysis.parameters = {{.name = "Pt"}, {.name = "Ra"}};
    ApplySettings(start_, std::move(settings));
    std::filesystem::create_directory(folder_ / "in");
    environment_.localTime = [] { return std::tm{.tm_mday = 1, .tm_year = 120}; };
    environment_.workingFolder = folder_.path();
    options_.folder = folder_ / "in";
    options_.parameterFile = folder_ / "rows.csv";
    options_.holdFolder = folder_ / "hold";
    options_.deletes = true;
    options_.poll = 2ms;
    observer_.failed = [this](const std::string& sentence) { failures_.push_back(sentence); };
  }

  void Put(const std::string& name, const std::string& bytes) {
    folder_.Write(name + ".new", bytes);
    std::filesystem::rename(folder_ / (name + ".new"), folder_ / ("in/" + name));
  }

  bool HasWork() const {
    if (std::filesystem::exists(folder_ / "in/.texturon-watch-journal")) return true;
    for (const auto& entry : std::filesystem::directory_iterator(folder_ / "in")) {
      if (entry.is_regular_file() && entry.path().filename().string().front() != '.') return true;
    }
    return false;
  }

  /// Watches until `ends` or, at the latest, for a minute.
  std::string WatchUntil(const std::function<bool()>& ends) {
    const auto latest = std::chrono::steady_clock::now() + 60s;
    observer_.stops = [&ends, latest] { return ends() || std::chrono::steady_clock::now() > latest; };
    return WatchFolder(options_, {.start = start_}, environment_, observer_);
  }

  /// Watches until everything is dealt with.
  std::string WatchAll() {
    return WatchUntil([this] { return !HasWork(); });
  }

  /// How often each file has a row.
  std::map<std::string, int> Rows() const {
    std::map<std::string, int> rows;
    std::istringstream lines(folder_.Read("rows.csv"));
    for (std::string line; std::getline(lines, line);) {
      const std::size_t end = line.find(".lmt    \", \"");
      if (end == std::string::npos) continue;
      const std::size_t begin = line.find_last_of("/\\", end) + 1;
      ++rows[line.substr(begin, end - begin)];
      EXPECT_TRUE(line.starts_with('"') && line.ends_with('\r')) << line;
    }
    return rows;
  }

  ScratchFolder folder_;
  Document start_;
  Environment environment_;
  FolderWatchOptions options_;
  FolderWatchObserver observer_;
  std::vector<std::string> failures_;
};

TEST_F(FolderWatch, AnalysesHoldsAndDeletesWhatArrives) {
  Put("a.lmt", SmallProfile(400, 1.0));
  Put("b.lmt", SmallProfile(400, 2.0));
  std::filesystem::create_directory(folder_ / "hold");
  folder_.Write("hold/a.lmt", "an earlier part of the same name");
  EXPECT_EQ(WatchAll(), "");
  EXPECT_EQ(Rows(), (std::map<std::string, int>{{"a", 1}, {"b", 1}}));
  EXPECT_EQ(folder_.Read("hold/a.lmt"), "an earlier part of the same name");
  EXPECT_EQ(folder_.Read("hold/a-2.lmt"), SmallProfile(400, 1.0));
  EXPECT_EQ(folder_.Read("hold/b.lmt"), SmallProfile(400, 2.0));
  EXPECT_TRUE(failures_.empty());
}

TEST_F(FolderWatch, MovesAsideWhatCannotBeRead) {
  Put("bad.lmt", "no profile");
  EXPECT_EQ(WatchAll(), "");
  ASSERT_EQ(failures_.size(), 1u);
  EXPECT_EQ(folder_.Read("in/texturon-failed/bad.lmt"), "no profile");
  EXPECT_EQ(folder_.Read("in/texturon-failed/bad.lmt.reason.txt"), failures_[0] + "\n");
  EXPECT_TRUE(Rows().empty());
}

TEST_F(FolderWatch, LeavesAFileAloneWhileItIsWritten) {
  options_.poll = 250ms;  // longer than a busy machine keeps the writer waiting
  const std::string whole = SmallProfile(400, 1.0);
  std::thread writer([this, &whole] {
    std::ofstream file(folder_ / "in/slow.lmt", std::ios::binary);
    file << std::flush;
    std::this_thread::sleep_for(600ms);  // empty for some polls
    for (std::size_t i = 0; i < whole.size(); i += 100) {
      file << whole.substr(i, 100) << std::flush;
      std::this_thread::sleep_for(10ms);
    }
  });
  EXPECT_EQ(WatchUntil([this] { return !Rows().empty() && !HasWork(); }), "");
  writer.join();
  EXPECT_EQ(folder_.Read("hold/slow.lmt"), whole);
  EXPECT_TRUE(failures_.empty()) << failures_[0];
}

TEST_F(FolderWatch, WithoutDeletionFilesAreRememberedAcrossRuns) {
  options_.deletes = false;
  Put("a.lmt", SmallProfile(400, 1.0));
  Put("bad.lmt", "no profile");
  for (int run = 0; run < 2; ++run) {
    int polls = 0;
    EXPECT_EQ(WatchUntil([&polls] { return ++polls > 100; }), "");
  }
  EXPECT_EQ(Rows(), (std::map<std::string, int>{{"a", 1}}));
  EXPECT_EQ(failures_.size(), 1u);
  folder_.Write("in/a.lmt", SmallProfile(500, 1.5));  // measured anew
  EXPECT_EQ(WatchUntil([this] { return Rows()["a"] == 2; }), "");
  EXPECT_TRUE(std::filesystem::exists(folder_ / "in/a.lmt"));
}

TEST_F(FolderWatch, NothingIsDeletedWhileItsRowOrCopyCannotBeWritten) {
  Put("a.lmt", SmallProfile(400, 1.0));
  std::filesystem::create_directory(folder_ / "rows.csv");
  int asked = 0;
  const auto longAfterAFailure = [this, &asked] { return !failures_.empty() && ++asked > 50; };
  EXPECT_EQ(WatchUntil(longAfterAFailure), "");
  EXPECT_TRUE(std::filesystem::exists(folder_ / "in/a.lmt"));
  EXPECT_EQ(failures_.size(), 1u) << "said once, not at every poll";
  std::filesystem::remove(folder_ / "rows.csv");
  // The row goes through, the copy does not.
  observer_.analysed = [this](const std::string& /*file*/, const FileAnalysis& /*analysis*/) {
    std::filesystem::remove_all(folder_ / "hold");
  };
  EXPECT_EQ(WatchUntil([this] { return failures_.size() == 2; }), "");
  EXPECT_TRUE(std::filesystem::exists(folder_ / "in/a.lmt"));
  // The next run holds elsewhere and writes no second row.
  options_.holdFolder = folder_ / "hold elsewhere";
  EXPECT_EQ(WatchAll(), "");
  EXPECT_EQ(Rows(), (std::map<std::string, int>{{"a", 1}}));
  EXPECT_EQ(folder_.Read("hold elsewhere/a.lmt"), SmallProfile(400, 1.0));
}

TEST_F(FolderWatch, CompletesWhatWasAtHandAndKeepsWhatCameInItsPlace) {
  const std::string old = SmallProfile(400, 1.0);
  const std::string anew = SmallProfile(400, 2.0);
  ASSERT_EQ(old.size(), anew.size());
  struct Case {
    std::string inFolder;  // under the file's name
    std::string taken;     // what the run that was killed had taken from the folder
    std::string held;
    int rows;
    std::vector<std::string> heldThen;
  };
  const Case cases[] = {
      {old, "", "", 1, {old}},                        // killed after the row
      {old, "", old, 1, {old}},                       // after the copy
      {"", old, old, 1, {old}},                       // after it was taken
      {"", "", old, 1, {old}},                        // after its removal
      {anew, old, old, 2, {old, anew}},               // and another of its name came
      {anew, "", "", 2, {anew}},                      // overwritten with another of its size and time
      {"", anew, old, 2, {old, anew}},                // the same, at the very last moment
      {anew, anew, old, 3, {old, anew, anew}},        // and another of its name came
      {old, "", "another's", 1, {"another's", old}},  // the name was taken in the hold folder
  };
  for (const Case& c : cases) {
    for (const char* name : {"in", "hold", "rows.csv"}) std::filesystem::remove_all(folder_ / name);
    std::filesystem::create_directory(folder_ / "in");
    std::filesystem::create_directory(folder_ / "hold");
    const auto time = std::filesystem::file_time_type::clock::now() - 1h;
    WatchEntry entry{.file = "a.lmt",
                     .contentHash = ContentHash(old),
                     .holdFile = (folder_ / "hold/a.lmt").string(),
                     .parameterFile = (folder_ / "rows.csv").string(),
                     .rowText =
                         "\"Time\", \"Source\", \"Identification\", \"Settings\"\r\n\"t  \", \"x/a.lmt    \", \"i\", "
                         "\"s\", 1, 2\r\n"};
    const auto put = [&](const char* place, const std::string& content) {
      if (content.empty()) return;
      folder_.Write(place, content);
      std::filesystem::last_write_time(folder_ / place, time);
    };
    put("stamp", old);
    entry.stamp = *StampOf(folder_ / "stamp");
    put("in/a.lmt", c.inFolder);
    put("in/.texturon-watch-taken", c.taken);
    put("hold/a.lmt", c.held);
    folder_.Write("in/.texturon-watch-journal", WatchEntryText(entry));
    EXPECT_EQ(WatchAll(), "");
    std::vector<std::string> held;
    for (const char* name : {"hold/a.lmt", "hold/a-2.lmt", "hold/a-3.lmt", "hold/a-2-2.lmt"}) {
      if (std::filesystem::exists(folder_ / name)) held.push_back(folder_.Read(name));
    }
    int rows = 0;
    for (const auto& [name, count] : Rows()) rows += count;
    EXPECT_EQ(rows, c.rows) << "case " << &c - cases;
    EXPECT_EQ(held, c.heldThen) << "case " << &c - cases;
    EXPECT_FALSE(std::filesystem::exists(folder_ / "in/.texturon-watch-taken"));
  }
}

TEST_F(FolderWatch, NamesOfAnyBytesAreRememberedAndOurOwnFilesLeftAlone) {
  TEXTURON_NEEDS_POSIX();
  options_.deletes = false;
  options_.logsEvents = true;
  environment_.workingFolder = folder_ / "in";
  const std::vector<std::string> names = {"a\nb.lmt", "a\\nb.lmt", "tab\t.lmt", "\xFF\xFE.lmt", "%s \"q\".lmt"};
  for (const std::string& name : names) Put(name, SmallProfile(400, 1.0));
  std::size_t analysed = 0;
  observer_.analysed = [&analysed](const std::string& /*file*/, const FileAnalysis& /*analysis*/) { ++analysed; };
  EXPECT_EQ(WatchUntil([&] { return analysed == names.size(); }), "");
  int polls = 0;
  EXPECT_EQ(WatchUntil([&polls] { return ++polls > 100; }), "");
  const std::string rows = folder_.Read("rows.csv");
  EXPECT_EQ(std::count(rows.begin(), rows.end(), '\n'), 2 + static_cast<int>(names.size()));
  EXPECT_TRUE(failures_.empty()) << failures_[0];
  const std::string log = folder_.Read("in/TexturonCommandLine-Event.Log");
  EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 4 + 2 * static_cast<int>(names.size()));
}

TEST_F(FolderWatch, TheWatchedFolderIsNoHoldFolder) {
  TEXTURON_NEEDS_POSIX();
  {
    const AppendFile other(folder_ / "in/.texturon-watch-lock");
    EXPECT_NE(WatchUntil([] { return true; }).find("is watched already"), std::string::npos);
  }
  std::filesystem::create_symlink("in", folder_ / "link");
  options_.holdFolder = folder_ / "link";
  EXPECT_NE(WatchUntil([] { return true; }).find("is the watched folder"), std::string::npos);
  options_.holdFolder = folder_ / "in/held";  // inside it is another matter
  Put("a.lmt", SmallProfile(400, 1.0));
  EXPECT_EQ(WatchAll(), "");
  EXPECT_EQ(folder_.Read("in/held/a.lmt"), SmallProfile(400, 1.0));
}

TEST_F(FolderWatch, AFolderThatGoesAndComesBackIsTakenUpWhereItWasLeft) {
  TEXTURON_NEEDS_POSIX();
  Put("a.lmt", SmallProfile(400, 1.0));
  // It goes between the row of a file and its copy.
  bool isGone = false;
  observer_.analysed = [this, &isGone](const std::string& file, const FileAnalysis& /*analysis*/) {
    if (file != "a.lmt") return;
    std::filesystem::rename(folder_ / "in", folder_ / "away");
    isGone = true;
  };
  int asked = 0;
  const auto ends = [this, &isGone, &asked] {
    if (isGone && ++asked == 50) {
      std::filesystem::rename(folder_ / "away", folder_ / "in");
      Put("b.lmt", SmallProfile(400, 2.0));
    }
    return asked > 50 && !HasWork();
  };
  EXPECT_EQ(WatchUntil(ends), "");
  EXPECT_EQ(Rows(), (std::map<std::string, int>{{"a", 1}, {"b", 1}}));
  EXPECT_EQ(folder_.Read("hold/a.lmt"), SmallProfile(400, 1.0));
}

/// An entry by which the next run would write `row` into `rows`.
WatchEntry Planted(const std::filesystem::path& rows) {
  return {.file = "a.lmt", .parameterFile = rows.string(), .rowText = "planted\r\n"};
}

// Where others may write, only what is this user's own and of this run is obeyed.
TEST_F(FolderWatch, ObeysNoBooksThatSomebodyElseMayHavePutThere) {
  TEXTURON_NEEDS_POSIX();
  const std::string rows = "\"Time\", \"Source\", \"Identification\", \"Settings\"\r\n";
  for (const bool hasState : {false, true}) {
    environment_.stateFolder = hasState ? folder_ / "home/state" : std::filesystem::path();
    for (const char* how : {"link", "second name", "another's run", "a path"}) {
      SCOPED_TRACE(how);
      failures_.clear();
      for (const char* name : {"in", "rows.csv", "hold", "kept"}) std::filesystem::remove_all(folder_ / name);
      std::filesystem::create_directory(folder_ / "in");
      folder_.Write("victim.csv", rows);
      const bool isOurs = how == std::string("another's run") || how == std::string("a path");
      WatchEntry entry = Planted(folder_ / (how == std::string("another's run") ? "victim.csv" : "rows.csv"));
      if (how == std::string("a path")) entry.file = "../victim.csv";
      folder_.Write(isOurs ? "in/.texturon-watch-journal" : "kept", WatchEntryText(entry));
      if (how == std::string("link")) {
        std::filesystem::create_symlink(folder_ / "kept", folder_ / "in/.texturon-watch-journal");
      } else if (!isOurs) {
        std::filesystem::create_hard_link(folder_ / "kept", folder_ / "in/.texturon-watch-journal");
      }
      Put("b.lmt", SmallProfile(400, 1.0));
      const auto isHeld = [this] { return std::filesystem::exists(folder_ / "hold/b.lmt") && !Rows().empty(); };
      const std::string reason = WatchUntil([&] { return isHeld(); });
      EXPECT_EQ(reason.empty(), !isOurs) << reason;
      const std::string told = isOurs ? reason : failures_.empty() ? std::string() : failures_[0];
      EXPECT_NE(told.find(".texturon-watch-journal "), std::string::npos) << told;
      EXPECT_EQ(folder_.Read("victim.csv"), rows);
      EXPECT_EQ(folder_.Read("rows.csv").find("planted"), std::string::npos);
    }
  }
}

// Books of a watch without a state folder are carried on in it; then nothing of them is left where others may write.
TEST_F(FolderWatch, KeepsItsBooksInTheStateFolderAndTakesFormerOnesOver) {
  options_.deletes = false;
  Put("a.lmt", SmallProfile(400, 1.0));
  EXPECT_EQ(WatchUntil([this] { return !folder_.Read("in/.texturon-watch-done").empty(); }), "");
  WatchEntry entry{.file = "gone.lmt", .parameterFile = (folder_ / "rows.csv").string()};
  entry.rowAt = folder_.Read("rows.csv").size();
  entry.rowText = "\"t\", \"x/gone.lmt    \", \"i\", \"s\"\r\n";
  folder_.Write("in/.texturon-watch-journal", WatchEntryText(entry));
  environment_.stateFolder = folder_ / "state";
  for (int run = 0; run < 2; ++run) {
    int polls = 0;
    EXPECT_EQ(WatchUntil([&polls] { return ++polls > 100; }), "");
    EXPECT_EQ(Rows(), (std::map<std::string, int>{{"a", 1}, {"gone", 1}}));
  }
  EXPECT_TRUE(IsPrivateFolder(environment_.stateFolder));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "in/.texturon-watch-journal"));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "in/.texturon-watch-done"));
  if (std::filesystem::path::preferred_separator != '/') return;  // rights that are no file modes
  // A state folder that others can change is none.
  std::filesystem::permissions(environment_.stateFolder, std::filesystem::perms::all);
  EXPECT_EQ(WatchUntil([this] { return !failures_.empty(); }), "");
  EXPECT_NE(failures_.at(0).find("cannot be had for this user alone"), std::string::npos);
}

TEST_F(FolderWatch, KilledAtAnyInstantNothingIsLostAndNothingDoneTwice) {
  TEXTURON_NEEDS_POSIX();
  const char* const wanted = std::getenv("TEXTURON_KILLS");
  const int kills = wanted == nullptr ? 40 : std::atoi(wanted);
  std::mt19937 random(20);
  int files = 0;
  for (int kill = 0; kill < kills; ++kill) {
    for (int i = 0; i < 2; ++i) {
      Put("f" + IntegerText(files) + ".lmt", SmallProfile(400, 1.0 + 0.001 * files));
      ++files;
    }
    const auto child = StartChild([this] {
      WatchUntil([] { return false; });
      return 0;
    });
    std::this_thread::sleep_for(std::chrono::microseconds(std::uniform_int_distribution<int>(0, 120'000)(random)));
    KillChild(child);
    WaitForChild(child);
  }
  EXPECT_EQ(WatchAll(), "");
  std::map<std::string, int> once;
  for (int i = 0; i < files; ++i) {
    const std::string name = "f" + IntegerText(i);
    once[name] = 1;
    EXPECT_EQ(folder_.Read("hold/" + name + ".lmt"), SmallProfile(400, 1.0 + 0.001 * i)) << name;
  }
  EXPECT_EQ(Rows(), once);
  int held = 0;  // beside what was being copied when it was killed
  for (const auto& entry : std::filesystem::directory_iterator(folder_ / "hold")) {
    held += entry.path().extension() == ".lmt" ? 1 : 0;
  }
  EXPECT_EQ(held, files);
}

TEST(WatchJournal, RowIsCompletedWhateverOfItStands) {
  // What stood there at the time of the entry, what the next run finds, and what it leaves.
  const std::string cases[][3] = {
      {"", "", "h\r\nrow\r\n"},              // nothing written
      {"", "h\r\nro", "h\r\nrow\r\n"},       // torn
      {"", "h\r\nrow\r\n", "h\r\nrow\r\n"},  // written
      {"h\r\na\r\n", "h\r\na\r\n", "h\r\na\r\nrow\r\n"},
      {"h\r\na\r\n", "h\r\na\r\nr", "h\r\na\r\nrow\r\n"},
      {"h\r\na\r\n", "h\r\na\r\nb\r\n", "h\r\na\r\nb\r\nrow\r\n"},         // another's row, ours missing
      {"h\r\na\r\n", "h\r\na\r\nrow\r\nb\r\n", "h\r\na\r\nrow\r\nb\r\n"},  // another's row after ours
      {"h\r\na", "h\r\na\r\nro", "h\r\na\r\nrow\r\n"},                     // no line end before it
      {"h\r\na\r\n", "", "h\r\nrow\r\n"},                                  // begun anew
  };
  for (const auto& [before, after, completed] : cases) {
    const ScratchFolder folder;
    const std::string lead = before.empty() ? "h\r\n" : before.ends_with('\n') ? "" : "\r\n";
    const WatchEntry written{.file = "f\n1.lmt",
                             .stamp = {.size = 5, .time = -7},
                             .parameterFile = (folder / "rows.csv").string(),
                             .rowAt = before.size(),
                             .rowText = lead + "row\r\n",
                             .header = "h\r\n"};
    const auto entry = ParseWatchEntry(WatchEntryText(written));
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->file, written.file);
    EXPECT_EQ(entry->stamp, written.stamp);
    folder.Write("rows.csv", after);
    {
      AppendFile file(folder / "rows.csv");
      EXPECT_TRUE(EnsureRow(*entry, file).ok());
    }
    EXPECT_EQ(folder.Read("rows.csv"), completed) << after;
  }
  std::string former = WatchEntryText({});
  former[former.find('\n') - 1] = '1';
  for (const std::string& text : {former, std::string(), std::string("texturon watch 2\n99999999999999999999\nx\n")}) {
    EXPECT_FALSE(ParseWatchEntry(text)) << text;
  }
}

}  // namespace
}  // namespace texturon
