// SPDX-License-Identifier: Apache-2.0

#include "settings/working_settings.h"

#include <gtest/gtest.h>
#include <string>

#include "support/scratch_folder.h"

namespace texturon {
namespace {

namespace fs = std::filesystem;

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
