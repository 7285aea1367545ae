// SPDX-License-Identifier: Apache-2.0

// What a user waits for at the screen: from start to a drawn sample, from opening to a drawn file, and a pan or zoom
// over a record of 750 000 points. On a screen in memory unless QT_QPA_PLATFORM names another.

#include <QApplication>
#include <benchmark/benchmark.h>
#include <cmath>
#include <numbers>

#include "analysis/pipeline.h"
#include "platform/platform.h"
#include "ui/plots/profile_plot.h"
#include "ui/window/main_frame.h"

namespace texturon {
namespace {

class WindowFixture : public benchmark::Fixture {
public:
  void SetUp(const benchmark::State&) override {
    Environment environment = SystemEnvironment();
    environment.traceFile.clear();
    frame_ = std::make_unique<CMainFrame>(environment, &nobody_);
    frame_->show();
  }
  void TearDown(const benchmark::State&) override { frame_.reset(); }

  SilentPrompts nobody_;
  std::unique_ptr<CMainFrame> frame_;
};

BENCHMARK_DEFINE_F(WindowFixture, OpenSample)(benchmark::State& state) {
  for (auto _ : state) {
    if (!frame_->OpenFile(std::filesystem::path(TEXTURON_SOURCE_DIR) / "samples" / "ground.lmt")) {
      state.SkipWithError("the sample cannot be opened");
    }
    QApplication::processEvents();
  }
}
BENCHMARK_REGISTER_F(WindowFixture, OpenSample)->Unit(benchmark::kMillisecond);

/// All but the start of the process itself.
BENCHMARK_DEFINE_F(WindowFixture, StartWithSample)(benchmark::State& state) {
  for (auto _ : state) {
    Environment environment = SystemEnvironment();
    environment.traceFile.clear();
    CMainFrame frame(environment, &nobody_);
    frame.OpenFile(std::filesystem::path(TEXTURON_SOURCE_DIR) / "samples" / "ground.lmt");
    frame.show();
    QApplication::processEvents();
    benchmark::DoNotOptimize(frame.grab());
  }
}
BENCHMARK_REGISTER_F(WindowFixture, StartWithSample)->Unit(benchmark::kMillisecond);

/// Pans back and forth and zooms a little over primary and waviness of the longest record, up to the painted window;
/// the share of it in view is 1 / range.
BENCHMARK_DEFINE_F(WindowFixture, PanLongestRecord)(benchmark::State& state) {
  std::vector<double> heights(kPointCapacity);
  for (std::size_t i = 0; i < heights.size(); ++i) {
    const double x = static_cast<double>(i);
    heights[i] = std::sin(x * 0.01) + 0.3 * std::sin(x * 1.7) + 0.2 * std::sin(x * x);
  }
  Document document = MakeDocument();
  document.settings.analysis.parameters.clear();
  ApplySettings(document, document.settings);
  SetProfile(document, MakeProfileSet(std::move(heights), 0.1));
  document.writesTraceFile = false;
  Compute(document, nobody_, {});
  CClickableProfileGraph graph;
  graph.resize(1200, 500);
  graph.show();
  DrawProfiles(graph, document, ShownProfilesOf(document.settings.display), ViewAfter::kWhole);
  QApplication::processEvents();
  const double length = graph.xAxis->range().size();
  graph.ShowX({0.0, length / static_cast<double>(state.range(0))});
  double step = length * 0.001;
  double zoom = 1.01;
  for (auto _ : state) {
    graph.xAxis->moveRange(step);
    graph.xAxis->scaleRange(zoom);
    graph.replot();
    graph.repaint();
    step = -step;
    zoom = 1.0 / zoom;
  }
}
BENCHMARK_REGISTER_F(WindowFixture, PanLongestRecord)->Arg(1)->Arg(10)->Arg(1000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace texturon

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setOrganizationName("window_bench");
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
