// SPDX-License-Identifier: Apache-2.0

#include "settings/settings_check.h"

#include <gtest/gtest.h>
#include <string>

#include "base/number_text.h"
#include "settings/settings_text.h"

namespace texturon {
namespace {

TEST(SettingsCheck, WhatIsWrittenHasNoProblem) {
  Settings settings;
  settings.analysis.parameters.resize(2);
  IniFile file("; a comment\r\n\r\n");
  SaveSettingsText(file, settings);
  EXPECT_TRUE(CheckSettings(IniFile(file.Bytes())).empty());
}

TEST(SettingsCheck, NamesLineAndProblem) {
  const IniFile file(
      "early=1\n"
      "[ANALYSIS]\n"
      "LcCutoffMM=0,8\n"
      "lccutoffmm=0.8\n"
      "Filter=1\n"
      "FilterType=abc\n"
      "LsCutoffMM=\n"
      "stray\n"
      "[PARAMETERS]\n"
      "AvailableParameters=2\n"
      "Name01=Ra\n"
      "Name02=Rq\n"
      "[Notes]\n"
      "anything=1\n"
      "[analysis]\n"
      "UserDiscardType=1\n"
      "[DISPLAY]\n"
      "CompanyName=0123456789012345678901234567890123456789012345678901234567890123\n");
  std::string report;
  for (const SettingsProblem& problem : CheckSettings(file)) {
    report += IntegerText(static_cast<std::int64_t>(problem.line)) + ": " + problem.text + "\n";
  }
  EXPECT_EQ(report,
            "1: \"early\" stands before any section\n"
            "3: ANALYSIS.LcCutoffMM: \"0,8\" has a decimal comma, where numbers are written with a point\n"
            "4: ANALYSIS.lccutoffmm occurs again; only the first one is read\n"
            "5: ANALYSIS.Filter is no setting\n"
            "6: ANALYSIS.FilterType: \"abc\" is no number\n"
            "8: the line is neither a section nor KEY=VALUE\n"
            "12: PARAMETERS.Name02 lies beyond the list's 2 rows\n"
            "13: there is no section \"Notes\" in the settings\n"
            "15: the section \"analysis\" occurs again; only the first is read\n"
            "16: analysis.UserDiscardType occurs again; only the first one is read\n"
            "18: DISPLAY.CompanyName is longer than 63 characters and will be cut\n");
}

}  // namespace
}  // namespace texturon
