// SPDX-License-Identifier: Apache-2.0

// The desktop program as a process: who takes the file, what is kept.

#include "settings/working_settings.h"
#include "ui/window/single_instance.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

/// A user and a session of the test's own.
class StartUp : public WindowTest {
protected:
  StartUp() {
    std::filesystem::create_directory(folder_ / "tmp");
    const std::pair<const char*, const char*> variables[] = {
        {"HOME", "."}, {"TMPDIR", "tmp"}, {"XDG_CONFIG_HOME", "."}};
    for (const auto& [name, folder] : variables) {
      former_.emplace_back(name, qgetenv(name));
      qputenv(name, (folder_ / folder).lexically_normal().c_str());
    }
  }
  ~StartUp() override {
    for (const auto& [name, value] : former_) qputenv(name, value);
  }

  /// Runs the program; its exit status, or -1 where it did not end in time.
  int Run(const QStringList& arguments) {
    QProcess program;
    program.setWorkingDirectory(FromPath(Sample("")));
    program.start(TEXTURON_DESKTOP_PROGRAM, arguments);
    const bool ended = QTest::qWaitFor([&] { return program.state() == QProcess::NotRunning; }, kPatienceMS);
    if (!ended) program.kill();
    return ended && program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1;
  }

  static constexpr int kPatienceMS = 20'000;

  std::vector<std::pair<const char*, QByteArray>> former_;
};

TEST_F(StartUp, ASecondStartHandsItsFilesToTheFirst) {
  CSingleInstance first(CSingleInstance::UsualName());
  ASSERT_FALSE(first.HandOverOrListen({}));
  QStringList arrived;
  int times = 0;
  QObject::connect(&first, &CSingleInstance::Arrived, &first, [&](const QStringList& files) {
    arrived = files;
    ++times;
  });
  EXPECT_EQ(Run({"honed.lmt", "../samples/ground.lmt"}), 0);
  EXPECT_EQ(arrived, QStringList({FromPath(Sample("honed.lmt")), FromPath(Sample("ground.lmt"))}))
      << "as paths that hold in any folder";
  EXPECT_EQ(Run({}), 0);
  EXPECT_EQ(times, 2) << "without a file it just comes forward";
  EXPECT_EQ(Run({"honed.lmt", "ground.lmt", "arc.lmt"}), 0);
  EXPECT_EQ(times--, 3) << "three profiles are no test plan";
  EXPECT_EQ(Run({"--report", "honed.lmt", "-o", FromPath(folder_ / "a.pdf")}), 0);
  EXPECT_EQ(times, 2) << "what needs no window does not ask for one";
  EXPECT_EQ(Run({"--nonsense"}), 2);
}

TEST_F(StartUp, ACrashedProgramIsInNobodysWay) {
  QProcess program;
  program.start(TEXTURON_DESKTOP_PROGRAM, QStringList());
  // The real window takes what another start hands over.
  ASSERT_TRUE(QTest::qWaitFor(
      [&] {
        CSingleInstance other(CSingleInstance::UsualName());
        if (!QFile::exists(QDir::tempPath() + "/" + CSingleInstance::UsualName())) return false;
        return other.HandOverOrListen({FromPath(Sample("honed.lmt"))});
      },
      kPatienceMS));
  const auto remembers = [&] {
    QSettings store(FromPath(folder_ / "Texturon" / "Texturon.conf"), QSettings::IniFormat);
    return store.value("recentFiles").toStringList().contains(FromPath(Sample("honed.lmt")));
  };
  EXPECT_TRUE(QTest::qWaitFor(remembers, kPatienceMS)) << "it has opened the file";
  program.kill();
  ASSERT_TRUE(program.waitForFinished(kPatienceMS));
  CSingleInstance next(CSingleInstance::UsualName());
  EXPECT_FALSE(next.HandOverOrListen({})) << "nobody answers";
  bool handedOver = false;
  QObject::connect(&next, &CSingleInstance::Arrived, &next, [&](const QStringList&) { handedOver = true; });
  std::thread asking([&] { CSingleInstance(CSingleInstance::UsualName()).HandOverOrListen({}); });
  EXPECT_TRUE(QTest::qWaitFor([&] { return handedOver; }, kPatienceMS));
  asking.join();
}

TEST_F(StartUp, StartsFromTheWorkingSettingsAndSavesThem) {
  folder_.Write("Texturon.ini", "[ANALYSIS]\nLcCutoffMM=0.25\n");
  WorkingSettings store(folder_.path(), folder_ / "user");
  frame_->UseWorkingSettings(store);
  EXPECT_EQ(InForce().settings.analysis.LcCutoffMM, 0.25);
  Change([](AnalysisSettings& analysis) { analysis.LcCutoffMM = 2.5; });
  Choose("saveSettingsAsDefault");
  EXPECT_NE(folder_.Read("Texturon.ini").find("LcCutoffMM=2.500000"), std::string::npos);
}

TEST_F(StartUp, TheSampleOfTheFirstStartIsARealProfile) {
  QFile file(":/samples/ground.lmt");
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray bytes = file.readAll();
  ASSERT_TRUE(Doc().OpenBytes("Sample.lmt", {bytes.constData(), static_cast<std::size_t>(bytes.size())}));
  const std::vector<double> shown = InForce().profiles.raw;
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  EXPECT_EQ(InForce().profiles.raw, shown);
  EXPECT_FALSE(Doc().OpenBytes("Sample.lmt", "nothing"));
  EXPECT_EQ(InForce().profiles.raw, shown);
}

}  // namespace
}  // namespace texturon
