// SPDX-License-Identifier: Apache-2.0

// The desktop program as a process: who takes the file, what is kept, what needs no screen.

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
  const std::string bytes = file.readAll().toStdString();
  for (const std::string& content : {bytes, std::string("nothing")}) {
    EXPECT_EQ(Doc().OpenBytes("Sample.lmt", content), content == bytes);
    EXPECT_EQ(InForce().profiles.pointCount, 8000);
  }
}

struct Outcome {
  int status;
  std::string errors;
};

/// Runs the desktop program among the samples, where there is no display.
Outcome RunDesktop(const QStringList& arguments) {
  QProcess process;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) environment.remove(name);
  process.setProcessEnvironment(environment);
  process.setWorkingDirectory(FromPath(Sample("")));
  process.start(TEXTURON_DESKTOP_PROGRAM, arguments);
  EXPECT_TRUE(process.waitForFinished(60'000));
  return {process.exitCode(), process.readAllStandardError().toStdString()};
}

TEST(Report, IsWrittenWithoutDisplay) {
  const ScratchFolder folder;
  const QString out = FromPath(folder / "out");
  // Curves take two pages; 107 parameters two more, a production line's four one, with the settings below them.
  const std::tuple<QStringList, const char*, int> cases[] = {
      {{"--report", "ground.lmt"}, "%PDF-", 4},
      {{"--report", "arc.lmt", "--settings", "production.ini"}, "%PDF-", 3},
      {{"--screenshot", "ground.lmt"}, "\x89PNG", 0}};
  for (const auto& [arguments, start, pages] : cases) {
    const Outcome run = RunDesktop(arguments + QStringList{"-o", out});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    EXPECT_TRUE(folder.Read("out").starts_with(start));
    EXPECT_EQ(QByteArray::fromStdString(folder.Read("out")).count("/Type /Page\n"), pages);
  }
}

TEST(Report, RefusalsAreOneSentence) {
  const ScratchFolder folder;
  const QString good = "ground.lmt";
  const QString out = FromPath(folder / "out.pdf");
  const std::pair<QStringList, std::string> cases[] = {
      {{"--report", "none.lmt", "-o", out}, "none.lmt does not exist."},
      {{"--report", good, "-o", FromPath(folder / "no/out.pdf")}, "cannot be written"},
      {{"--report", good, "-o", out, "--settings", "none.ini"}, "none.ini does not exist."},
      {{"--report", good, "--screenshot", good, "-o", out}, "either"},
  };
  for (const auto& [arguments, sentence] : cases) {
    const Outcome run = RunDesktop(arguments);
    EXPECT_EQ(run.status, 1) << run.errors;
    EXPECT_TRUE(run.errors.starts_with("texturon-desktop: ")) << run.errors;
    EXPECT_NE(run.errors.find(sentence), std::string::npos) << run.errors;
    EXPECT_EQ(run.errors.find('\n'), run.errors.size() - 1) << run.errors;
  }
  EXPECT_FALSE(std::filesystem::exists(folder / "out.pdf"));
}

}  // namespace
}  // namespace texturon
