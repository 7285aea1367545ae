// SPDX-License-Identifier: Apache-2.0

#include "settings/settings_changes.h"

#include <gtest/gtest.h>

namespace texturon {
namespace {

TEST(SettingsChanges, OnlyWhatHasChangedIsCarried) {
  Settings before;
  before.analysis.parameters = {{.name = "Ra"}, {.name = "Rq"}};
  Settings after = before;
  after.analysis.LcCutoffMM = 2.5;
  after.display.Metric = false;
  after.autoLoading.AutoExport = true;
  after.analysis.parameters[1].tolerance.upperLimit = 4.0;
  Settings target = before;
  target.analysis.LsCutoffMM = 0.008;
  target.analysis.parameters[0].tolerance.upperLimit = 3.0;
  Settings expected = after;
  expected.analysis.LsCutoffMM = 0.008;
  expected.analysis.parameters[0].tolerance.upperLimit = 3.0;
  RepeatChanges(before, after, target);
  EXPECT_EQ(target, expected);
}

TEST(SettingsChanges, AListOfAnotherLengthIsTakenWhole) {
  Settings before;
  Settings after;
  after.analysis.freeFormPoints = {{1.0, 2.0}, {3.0, 4.0}};
  Settings target;
  target.analysis.freeFormPoints[0].xMM = 7.0;
  RepeatChanges(before, after, target);
  EXPECT_EQ(target, after);
  // A target with fewer rows keeps them.
  before = after;
  after.analysis.freeFormPoints[1].zUM = 5.0;
  target.analysis.freeFormPoints.resize(1);
  RepeatChanges(before, after, target);
  EXPECT_EQ(target.analysis.freeFormPoints, (std::vector<FreeFormPoint>{{1.0, 2.0}}));
}

}  // namespace
}  // namespace texturon
