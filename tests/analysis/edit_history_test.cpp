// SPDX-License-Identifier: Apache-2.0

#include "analysis/edit_history.h"

#include <gtest/gtest.h>

namespace texturon {
namespace {

EditState Named(int number) {
  EditState state;
  state.region.excludeFirst = number;
  return state;
}

TEST(EditHistory, GoesBackAndForthAndForgetsTheFarPast) {
  EditHistory history;
  const int last = static_cast<int>(EditHistory::kMostStates) + 10;
  for (int i = 0; i < last; ++i) history.Note(Named(i));
  EditState present = Named(last);
  for (int i = last - 1; i >= 10; --i) {
    ASSERT_TRUE(history.CanGoBack());
    present = history.GoBack(present);
    EXPECT_EQ(present.region.excludeFirst, i);
  }
  EXPECT_FALSE(history.CanGoBack());
  present = history.GoForward(present);
  EXPECT_EQ(present.region.excludeFirst, 11);
  history.Note(present);
  EXPECT_FALSE(history.CanGoForward()) << "a new edit ends what could be made again";
  EXPECT_EQ(history.GoBack(Named(99)).region.excludeFirst, 11);
}

TEST(EditHistory, LargeFreeFormsTakeNoMoreMemoryThanAgreed) {
  EditHistory history;
  EditState large;
  large.analysis.freeFormPoints.resize(EditHistory::kMostFreeFormPoints / 4);
  for (int i = 0; i < 10; ++i) history.Note(large);
  int kept = 0;
  for (; history.CanGoBack(); ++kept) history.GoBack({});
  EXPECT_EQ(kept, 4);
  large.analysis.freeFormPoints.resize(EditHistory::kMostFreeFormPoints + 1);
  history.Note(large);
  EXPECT_TRUE(history.CanGoBack()) << "the last edit can always be taken back";
}

TEST(EditHistory, RestoresEveryFieldOfAState) {
  Document document = MakeDocument();
  document.profiles = MakeProfileSet({1.0, -2.0, 3.0}, 10.0);
  const EditState state{.analysis =
                            [&] {
                              AnalysisSettings analysis = document.settings.analysis;
                              analysis.LcCutoffMM = 2.5;
                              return analysis;
                            }(),
                        .identification = "part",
                        .inverted = true,
                        .region = {.regionSet = true,
                                   .regionMode = 1,
                                   .regionStartMM = 1.0,
                                   .regionEndOffsetMM = 2.0,
                                   .regionLengthMM = 3.0,
                                   .wholeCutoffLength = true,
                                   .discardWithoutWholeCutoffs = {kDiscardCutoff, 0.5},
                                   .useAllDataForForm = true,
                                   .excludeSet = true,
                                   .excludeFirst = 4,
                                   .excludeLast = 5}};
  document.settings.display.Metric = false;
  RestoreEditState(document, state);
  EXPECT_EQ(EditStateOf(document), state);
  EXPECT_EQ(document.profiles.raw, (std::vector<double>{-1.0, 2.0, -3.0}));
  EXPECT_FALSE(document.settings.display.Metric) << "how results are shown is no edit";
}

}  // namespace
}  // namespace texturon
