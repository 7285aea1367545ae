// SPDX-License-Identifier: Apache-2.0

// The main window's commands that act at once.

#include "ui/window/main_frame.h"

#include "ui/plots/texturon_view.h"
#include "ui/tables/texturon_param_view.h"
#include "ui/window_fixture.h"

/// What the font and message-bus libraries and the C library's locale keep to the end of the process is not ours to
/// free.
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig\nleak:libdbus-1\nleak:argz_add_sep";
}

namespace texturon {
namespace {

using MainFrame = WindowTest;

TEST_F(MainFrame, CommandsChangeTheDocument) {
  EXPECT_FALSE(Child<QAction>(*frame_, "invert").isEnabled()) << "there is nothing to invert yet";
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  const double first = InForce().profiles.raw.front();
  Choose("invert");
  EXPECT_EQ(InForce().profiles.raw.front(), -first);
  Choose("metric");
  EXPECT_FALSE(InForce().settings.display.Metric);
  EXPECT_EQ(frame_->ParamView().Grid().item(1, 2)->text(), FromText("\xB5in"));
  Choose("metric");
  frame_->View().Graph().xAxis->setRange(1.0, 3.0);
  Choose("computeOnZoom");
  EXPECT_EQ(InForce().profiles.computeRange, IndexRange::FromEnds(2000, 6000));
  Choose("computeAll");
  EXPECT_EQ(InForce().profiles.computeRange->count, 8000);
  Choose("useAllDataForFormRemoval");
  EXPECT_TRUE(InForce().scope.allDataForForm);
}

TEST_F(MainFrame, ShowsHidesFetchesAndCloses) {
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  frame_->show();
  const CClickableProfileGraph& graph = frame_->View().Graph();
  EXPECT_EQ(graph.graphCount(), 2);
  Choose("show5");
  EXPECT_EQ(graph.graphCount(), 3);
  EXPECT_EQ(graph.graph(2)->name(), "Roughness Profile");
  Choose("show3");
  EXPECT_EQ(graph.graphCount(), 2);
  frame_->View().Graph().SetUprightCursors(-7.0, 70.0);
  Choose("fetchCursors");
  const auto [first, second] = graph.UprightCursors();
  EXPECT_TRUE(graph.VisibleX().contains(first) && graph.VisibleX().contains(second));
  Choose("about", {[](QWidget& dialog) {
           const QString text = dynamic_cast<QMessageBox&>(dialog).text();
           EXPECT_TRUE(text.contains("Apache-2.0") && text.contains("GNU GPL version 3"));
           dialog.close();
         }});
  Choose("keysAndMouse", {CloseIt});
  Choose("exit");
  EXPECT_FALSE(frame_->isVisible());
}

}  // namespace
}  // namespace texturon
