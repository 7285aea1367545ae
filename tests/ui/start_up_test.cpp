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
    std::filesystem::permissions(folder_ / "tmp", std::filesystem::perms::owner_all);
    const std::pair<const char*, const char*> variables[] = {
        {"HOME", "."}, {"TMPDIR", "tmp"}, {"XDG_CONFIG_HOME", "."}, {"XDG_RUNTIME_DIR", "tmp"}};
    for (const auto& [name, folder] : variables) {
      former_.emplace_back(name, qgetenv(name));
      qputenv(name, (folder_ / folder).lexically_normal().c_str());
    }
  }
  ~StartUp() override {
    for (const auto& [name, value] : former_) qputenv(name, value);
  }

  /// Runs the program among the samples.
  void Run(const QStringList& arguments,
           const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment()) {
    QProcess program;
    program.setProcessEnvironment(environment);
    program.setWorkingDirectory(FromPath(Sample("")));
    program.start(TEXTURON_DESKTOP_PROGRAM, arguments);
    // Not waitForFinished: it may talk to this one.
    EXPECT_TRUE(QTest::qWaitFor([&] { return program.state() == QProcess::NotRunning; }, kPatienceMS));
    status_ = program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1;
    errors_ = program.readAllStandardError().toStdString();
  }
  void RunWithoutDisplay(const QStringList& arguments) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) environment.remove(name);
    Run(arguments, environment);
  }

  static constexpr int kPatienceMS = 90'000;

  int status_ = -1;
  std::string errors_;
  std::vector<std::pair<const char*, QByteArray>> former_;
};

TEST_F(StartUp, AReportIsOfFurtherFilesToo) {
  const QString output = FromPath(folder_ / "r.html");
  const auto run = [&](const QStringList& further) {
    RunWithoutDisplay(QStringList{"--report", "ground.lmt", "-o", output} + further);
    return status_;
  };
  EXPECT_EQ(run({"turned.lmt", "honed.lmt", "--acceptance", "16%"}), 0) << errors_;
  const std::string report = folder_.Read("r.html");
  EXPECT_NE(report.find("honed.lmt"), std::string::npos);
  std::filesystem::remove(folder_ / "r.html");
  EXPECT_EQ(run({"turned.lmt", "--acceptance", "best"}), 2);
  EXPECT_EQ(run({"--acceptance", "max"}), 2) << "one profile alone";
  EXPECT_EQ(run({"nothing.lmt"}), 1);
  EXPECT_NE(errors_.find("nothing.lmt"), std::string::npos) << errors_;
  EXPECT_FALSE(std::filesystem::exists(folder_ / "r.html"));
}

TEST_F(StartUp, ASecondStartHandsItsFilesToTheFirst) {
  CSingleInstance first(CSingleInstance::UsualName());
  ASSERT_FALSE(first.HandOverOrListen({}));
  QStringList arrived;
  int times = 0;
  QObject::connect(&first, &CSingleInstance::Arrived, &first, [&](const QStringList& files) {
    arrived = files;
    ++times;
    QTest::qWait(50);  // as a progress window does: the other start is gone when this returns
  });
  Run({"honed.lmt", "../samples/ground.lmt"});
  EXPECT_EQ(arrived, QStringList({FromPath(Sample("honed.lmt")), FromPath(Sample("ground.lmt"))}))
      << "as paths that hold in any folder";
  Run({});
  EXPECT_EQ(times, 2) << "without a file it just comes forward";
  Run({"honed.lmt", "ground.lmt", "arc.lmt"});
  EXPECT_EQ(times, 3) << "three profiles are no test plan";
  Run({"--report", "honed.lmt", "-o", FromPath(folder_ / "a.pdf")});
  EXPECT_EQ(times, 3) << "what needs no window does not ask for one";
  EXPECT_EQ(status_, 0);
}

TEST_F(StartUp, SettingsOfTheCallHoldInAWindowOfItsOwn) {
  CSingleInstance first(CSingleInstance::UsualName());
  ASSERT_FALSE(first.HandOverOrListen({}));
  const auto settings = folder_.Write(
      "mine.ini", "[AUTO_LOADING]\nAutoExport=1\n[DISPLAY]\nParameterFile=" + (folder_ / "rows.csv").string() + "\n");
  QProcess program;
  program.start(TEXTURON_DESKTOP_PROGRAM, {FromPath(Sample("honed.lmt")), "--settings", FromPath(settings)});
  EXPECT_TRUE(QTest::qWaitFor([&] { return QFile::exists(FromPath(folder_ / "rows.csv")); }, kPatienceMS))
      << "Auto Export of that file adds a row after the load";
  program.kill();
  program.waitForFinished(kPatienceMS);
}

TEST_F(StartUp, ACrashedProgramIsInNobodysWay) {
  QProcess program;
  program.start(TEXTURON_DESKTOP_PROGRAM, QStringList());
  // The real window takes what another start hands over.
  ASSERT_TRUE(QTest::qWaitFor(
      [&] {
        CSingleInstance other(CSingleInstance::UsualName());
        if (!QFile::exists(CSingleInstance::SocketOf(CSingleInstance::UsualName()))) return false;
        return other.HandOverOrListen({FromPath(Sample("honed.lmt"))});
      },
      kPatienceMS));
  const QString store = FromPath(folder_ / "Texturon/Texturon.conf");
  const auto recent = [&] { return QSettings(store, QSettings::IniFormat).value("recentFiles").toStringList(); };
  EXPECT_TRUE(QTest::qWaitFor([&] { return recent().contains(FromPath(Sample("honed.lmt"))); }, kPatienceMS));
  program.kill();
  ASSERT_TRUE(program.waitForFinished(kPatienceMS));
  CSingleInstance next(CSingleInstance::UsualName());
  EXPECT_FALSE(next.HandOverOrListen({})) << "nobody answers";
}

TEST_F(StartUp, MeetsNobodyWhereOthersCanLookIn) {
  const QString name = CSingleInstance::UsualName();
  EXPECT_TRUE(CSingleInstance::SocketOf(name).startsWith(FromPath(folder_ / "tmp")));
  std::filesystem::create_directory_symlink(folder_ / "tmp", folder_ / "link");
  qputenv("XDG_RUNTIME_DIR", (folder_ / "link").c_str());
  EXPECT_FALSE(CSingleInstance::SocketOf(name).startsWith(FromPath(folder_ / "link")));
}

TEST_F(StartUp, APlanWithTooFewArgumentsIsRefusedLikeOnTheConsole) {
  for (const QStringList& arguments : {QStringList{"p.ini"}, QStringList{"p.INI", "ground.lmt"}}) {
    RunWithoutDisplay(arguments);
    EXPECT_EQ(std::pair(status_, errors_),
              std::pair(1, std::string("texturon-desktop: Not enough command line arguements\n")));
  }
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

TEST_F(StartUp, ReportAndPictureNeedNoDisplay) {
  // Verdict and profiles take a page, 107 parameters another, the curves the last; a production line's four parameters
  // stand with the curves.
  const std::tuple<QStringList, const char*, int> cases[] = {
      {{"--report", "ground.lmt"}, "%PDF-", 3},
      {{"--report", "arc.lmt", "--settings", "production.ini"}, "%PDF-", 2},
      {{"--report", "arc.lmt", "--picture", "motifs"}, "\x89PNG", 0},
      {{"--screenshot", "ground.lmt"}, "\x89PNG", 0}};
  for (const auto& [arguments, start, pages] : cases) {
    const std::string name = pages > 0 ? "out.pdf" : "out.png";
    RunWithoutDisplay(arguments + QStringList{"-o", FromPath(folder_ / name)});
    EXPECT_EQ(std::pair(status_, errors_), std::pair(0, std::string()));
    EXPECT_TRUE(folder_.Read(name).starts_with(start));
    EXPECT_EQ(QByteArray::fromStdString(folder_.Read(name)).count("/Type /Page\n"), pages);
  }
}

TEST_F(StartUp, TheVerificationComesAsPages) {
  RunWithoutDisplay({"--verify", "-o", FromPath(folder_ / "v.pdf")});
  EXPECT_EQ(std::pair(status_, errors_), std::pair(0, std::string()));
  EXPECT_TRUE(folder_.Read("v.pdf").starts_with("%PDF-"));
  EXPECT_GT(QByteArray::fromStdString(folder_.Read("v.pdf")).count("/Type /Page\n"), 5);
}

TEST_F(StartUp, RefusalsAreOneSentence) {
  const QString good = "ground.lmt";
  const QString out = FromPath(folder_ / "out.pdf");
  const std::pair<QStringList, std::string> cases[] = {
      {{"--report", "none.lmt", "-o", out}, "none.lmt does not exist."},
      {{"--report", good, "-o", FromPath(folder_ / "no/out.pdf")}, "cannot be written"},
      {{"--report", good, "-o", out, "--settings", "none.ini"}, "none.ini does not exist."},
      {{"--report", good, "--screenshot", good, "-o", out}, "either"},
      {{"--report", good, "-o", out, "--template", "production.ini"},
       "production.ini line 3: \"TEXTURON\" is no section"},
      {{"--report", good, "--picture", "motifs", "-o", out}, ".svg or .png"},
      {{"--screenshot", good, "-o", "./ground.lmt"}, "are one file."},
  };
  for (const auto& [arguments, sentence] : cases) {
    RunWithoutDisplay(arguments);
    EXPECT_EQ(status_, sentence == "are one file." ? 2 : 1) << errors_;
    EXPECT_TRUE(errors_.starts_with("texturon-desktop: ") && errors_.find(sentence) != errors_.npos) << errors_;
    EXPECT_EQ(errors_.find('\n'), errors_.size() - 1) << errors_;
  }
  EXPECT_FALSE(std::filesystem::exists(folder_ / "out.pdf"));
}

}  // namespace
}  // namespace texturon
