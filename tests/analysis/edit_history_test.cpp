// SPDX-License-Identifier: Apache-2.0

#include "analysis/edit_history.h"

#include <gtest/gtest.h>

namespace texturon {
namespace {

UndoPoint Named(int number) {
  return {.identification = std::to_string(number)};
}

TEST(EditHistory, GoesBackAndForthAndForgetsTheFarPast) {
  EditHistory history;
  const int last = static_cast<int>(EditHistory::kMostUndoPoints) + 10;
  for (int i = 0; i < last; ++i) history.Note(Named(i));
  UndoPoint present = Named(last);
  for (int i = last - 1; i >= 10; --i) {
    ASSERT_TRUE(history.CanGoBack());
    present = history.GoBack(present);
    EXPECT_EQ(present, Named(i));
  }
  EXPECT_FALSE(history.CanGoBack());
  present = history.GoForward(present);
  EXPECT_EQ(present, Named(11));
  history.Note(present);
  EXPECT_FALSE(history.CanGoForward()) << "a new edit ends what could be made again";
  EXPECT_EQ(history.GoBack(Named(99)), Named(11));
}

TEST(EditHistory, LargeFreeFormsTakeNoMoreMemoryThanAgreed) {
  EditHistory history;
  UndoPoint large;
  large.request.settings.freeFormPoints.resize(EditHistory::kMostFreeFormPoints / 4);
  for (int i = 0; i < 10; ++i) history.Note(large);
  int kept = 0;
  for (; history.CanGoBack(); ++kept) history.GoBack({});
  EXPECT_EQ(kept, 4);
  large.request.settings.freeFormPoints.resize(EditHistory::kMostFreeFormPoints + 1);
  history.Note(large);
  EXPECT_TRUE(history.CanGoBack()) << "the last edit can always be taken back";
}

TEST(EditHistory, RestoresEveryFieldOfAState) {
  Document document = MakeDocument();
  document.profiles = MakeProfileSet({1.0, -2.0, 3.0}, 10.0);
  UndoPoint point{.request = document.Request(), .identification = "part", .inverted = true};
  point.request.settings.LcCutoffMM = 2.5;
  point.request.scope = {.region = RegionChoice{kStartAndLength, 1.0, 2.0, 3.0},
                         .exclusion = IndexRange::FromEnds(4, 5),
                         .wholeCutoffs = DiscardSetting{kDiscardCutoff, 0.5},
                         .allDataForForm = true};
  document.settings.display.Metric = false;
  RestoreUndoPoint(document, point);
  EXPECT_EQ(UndoPointOf(document), point);
  EXPECT_EQ(document.profiles.raw, (std::vector<double>{-1.0, 2.0, -3.0}));
  EXPECT_FALSE(document.settings.display.Metric) << "how results are shown is no edit";
}

}  // namespace
}  // namespace texturon
