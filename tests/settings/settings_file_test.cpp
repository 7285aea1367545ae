// SPDX-License-Identifier: Apache-2.0

#include "settings/settings_file.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

#include "settings/working_settings.h"
#include "support/child_process.h"
#include "support/scratch_folder.h"
#include "support/scripted_prompts.h"

namespace texturon {
namespace {

namespace fs = std::filesystem;

TEST(SettingsFile, ReadsWideText) {
  const ScratchFolder folder;
  std::string wide = "\xFF\xFE";
  for (const char c : std::string_view("[TEXTURON]\r\nIniVersion=2.00\r\n[DISPLAY]\r\nCompanyName=M\xFCller\r\n")) {
    (wide += c) += '\0';
  }
  ScriptedPrompts prompts;
  Settings settings;
  EXPECT_TRUE(LoadSettings(folder.Write("wide.ini", wide), settings, prompts).understoodAll);
  EXPECT_EQ(settings.display.CompanyName, "M\xFCller");
  const std::string utf8 = "[TEXTURON]\r\nIniVersion=2.00\r\n[DISPLAY]\r\nCompanyName=J\xC3\xB6rg";
  for (const std::string mark : {"", "\xEF\xBB\xBF"}) {
    EXPECT_TRUE(LoadSettings(folder.Write("utf8.ini", mark + utf8), settings, prompts).understoodAll);
    EXPECT_EQ(settings.display.CompanyName, "J\xF6rg");
    settings.display.CompanyName.clear();
  }
  // A letter without a byte is not made a question mark that a saved file would keep.
  LoadSettings(folder.Write("lossy.ini", utf8 + "\xD0\xB6"), settings, prompts);
  EXPECT_EQ(settings.display.CompanyName, "J\xC3\xB6rg\xD0\xB6");
}

TEST(SettingsFile, WhatCannotBeReadOrWritten) {
  const ScratchFolder folder;
  ScriptedPrompts prompts;
  Settings settings;
  const SettingsFileResult missing = LoadSettings(folder / "none.ini", settings, prompts);
  EXPECT_TRUE(missing.ok());
  EXPECT_FALSE(missing.found);
  EXPECT_EQ(LoadSettings(folder.path(), settings, prompts).reason, "is a directory");
  EXPECT_EQ(SaveSettings(folder.path(), settings).reason, "is a directory");
  EXPECT_FALSE(SaveSettings(folder / "no folder" / "a.ini", settings).ok());
  EXPECT_EQ(folder.FileCount(), 0U);
  EXPECT_EQ(settings, Settings());
}

constexpr std::string_view kOldFile =
    "[TEXTURON]\r\nIniVersion=1.5\r\n; SelectionRef= of a comment\n[PARAMETERS]\r\nAvailableParameters=2\r\n"
    "Name00=Ra\r\nSelectionRef=5\r\nName01=Rq\r\nSelectionRef=6 SelectionRef=\r\n[ANALYSIS]\r\nLcCutoffMM=2.5";
constexpr std::string_view kUpgradedFile =
    "[TEXTURON]\r\nIniVersion=2.00\r\n; SelectionRef00= of a comment\n[PARAMETERS]\r\nAvailableParameters=2\r\n"
    "Name00=Ra\r\nSelectionRef01=5\r\nName01=Rq\r\nSelectionRef02=6 SelectionRef=\r\n[ANALYSIS]\r\nLcCutoffMM=2.5";

TEST(SettingsFile, AnOldFileIsUpgradedOnTheDisk) {
  const ScratchFolder folder;
  const fs::path path = folder.Write("old.ini", kOldFile);
  ScriptedPrompts prompts;
  Settings settings;
  ASSERT_TRUE(LoadSettings(path, settings, prompts).ok());
  EXPECT_EQ(folder.Read("old.ini"), kUpgradedFile);
  ASSERT_EQ(settings.analysis.parameters.size(), 2U);
  EXPECT_EQ(settings.analysis.parameters[1].selectionRef, 5);
  EXPECT_EQ(settings.analysis.LcCutoffMM, 2.5);
}

TEST(SettingsFile, AnUpgradeKeepsEveryLineWhateverEndsIt) {
  EXPECT_EQ(UpgradeSettingsText("[TEXTURON]\rIniVersion=1.5\r[ANALYSIS]\rLcCutoffMM=2.5\r"),
            "[TEXTURON]\rIniVersion=2.00\r[ANALYSIS]\rLcCutoffMM=2.5\r");
  EXPECT_EQ(UpgradeSettingsText("IniVersion\n\r\nSelectionRef=7\rSelectionRef=8"),
            "IniVersion=2.00\n\r\nSelectionRef00=7\rSelectionRef01=8");
  EXPECT_EQ(UpgradeSettingsText(""), "");
}

TEST(SettingsFile, NothingIsWrittenWhereTheTextStays) {
  const ScratchFolder folder;
  ScriptedPrompts prompts;
  Settings settings;
  for (const std::string_view text : {"[ANALYSIS]\nLcCutoffMM=2.5", "[TEXTURON]\nIniVersion=1.999\nSelectionRef=1\n"}) {
    const fs::path path = folder.Write("a.ini", text);
    const fs::file_time_type past = fs::last_write_time(path) - std::chrono::hours(1);
    fs::last_write_time(path, past);
    ASSERT_TRUE(LoadSettings(path, settings, prompts).ok());
    EXPECT_EQ(fs::last_write_time(path), past) << text;
  }
}

// The folder's path is so long that the file in it can be opened but no file with a longer name can be made beside it.
TEST(SettingsFile, AnOldFileThatCannotBeWrittenIsUpgradedInMemory) {
  TEXTURON_NEEDS_POSIX();
  const ScratchFolder folder;
  constexpr std::size_t kLongestPath = 4095;
  fs::path deep = folder.path();
  while (deep.native().size() + 210 < kLongestPath) {
    deep /= std::string(200, 'd');
    fs::create_directory(deep);
  }
  deep /= std::string(kLongestPath - deep.native().size() - 4, 'e');
  fs::create_directory(deep);
  const fs::path path = deep / "a";
  ASSERT_TRUE(std::ofstream(path) << kOldFile);

  ScriptedPrompts prompts;
  Settings settings;
  ASSERT_TRUE(LoadSettings(path, settings, prompts).ok());
  EXPECT_EQ(settings.analysis.parameters[1].selectionRef, 5);
  ASSERT_EQ(prompts.notices.size(), 1U);
  EXPECT_NE(prompts.notices[0].find("the name is too long"), std::string::npos) << prompts.notices[0];
}

class WorkingSettingsTest : public ::testing::Test {
protected:
  WorkingSettingsTest() { fs::create_directory(folder_ / "program"); }
  WorkingSettings Start() { return {folder_ / "program", folder_ / "user" / "config"}; }
  fs::path UserFile() { return folder_ / "user" / "config" / "Texturon.ini"; }

  ScratchFolder folder_;
  std::string reason_;
};

TEST_F(WorkingSettingsTest, TheSitesFileThenTheUsers) {
  folder_.Write("program/Texturon.ini", "[ANALYSIS]\nLcCutoffMM=2.5\nLsCutoffMM=0.008\n[DISPLAY]\nMetric=0\n");
  fs::create_directories(UserFile().parent_path());
  folder_.Write("user/config/Texturon.ini", "[ANALYSIS]\nLcCutoffMM=8.0\n");
  Settings settings;
  WorkingSettings start = Start();
  EXPECT_EQ(start.Load(settings), "");
  EXPECT_EQ(start.Loaded(), UserFile());
  EXPECT_EQ(settings.analysis.LcCutoffMM, 8.0);
  EXPECT_EQ(settings.analysis.LsCutoffMM, 0.008);
  EXPECT_FALSE(settings.display.Metric);
}

TEST_F(WorkingSettingsTest, WhatIsSavedIsThereAtTheNextStart) {
  Settings settings;
  WorkingSettings first = Start();
  EXPECT_EQ(first.Load(settings), "");
  EXPECT_EQ(first.KeepDisplay(settings.display), "") << "nothing changed writes nothing";
  settings.analysis.LcCutoffMM = 2.5;
  EXPECT_EQ(first.Save(settings, reason_), folder_ / "program" / "Texturon.ini");
  EXPECT_FALSE(fs::exists(UserFile()));
  // The window's look goes to the user alone.
  const std::string site = folder_.Read("program/Texturon.ini");
  settings.display.UpperIsSplit = true;
  settings.display.Identification = "not kept";
  EXPECT_EQ(first.KeepDisplay(settings.display), "");
  EXPECT_EQ(folder_.Read("program/Texturon.ini"), site);
  EXPECT_EQ(folder_.Read("user/config/Texturon.ini").find("[ANALYSIS]"), std::string::npos);
  Settings second;
  EXPECT_EQ(Start().Load(second), "");
  EXPECT_EQ(second.analysis.LcCutoffMM, 2.5);
  EXPECT_TRUE(second.display.UpperIsSplit);
  EXPECT_EQ(second.display.Identification, "");
  // With a file of the user's own there, a saved choice holds too.
  second.analysis.LcCutoffMM = 0.25;
  second.display.UpperIsSplit = false;
  WorkingSettings again = Start();
  again.Save(second, reason_);
  Settings third;
  EXPECT_EQ(Start().Load(third), "");
  EXPECT_EQ(third.analysis.LcCutoffMM, 0.25);
  EXPECT_FALSE(third.display.UpperIsSplit);
}

TEST_F(WorkingSettingsTest, AFolderThatMayNotBeWritten) {
  // A folder in the file's place cannot be written by anybody, the superuser included.
  fs::create_directories(folder_ / "program" / "Texturon.ini");
  Settings settings;
  WorkingSettings start = Start();
  EXPECT_NE(start.Load(settings).find("is a directory."), std::string::npos);
  settings.analysis.LcCutoffMM = 2.5;
  EXPECT_EQ(start.Save(settings, reason_), UserFile());
  Settings next;
  Start().Load(next);
  EXPECT_EQ(next.analysis.LcCutoffMM, 2.5);
  fs::remove(UserFile());
  fs::create_directories(UserFile());
  EXPECT_EQ(start.Save(settings, reason_), fs::path());
  EXPECT_NE(reason_.find("is a directory."), std::string::npos);
  settings.display.UpperIsSplit = true;
  EXPECT_NE(start.KeepDisplay(settings.display), "");
}

}  // namespace
}  // namespace texturon
