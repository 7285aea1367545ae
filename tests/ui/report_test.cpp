// SPDX-License-Identifier: Apache-2.0

// The report and the commands that need no screen, through the program itself.

#include "ui/window_fixture.h"

namespace texturon {
namespace {

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
  const QString shortRecord = FromPath(folder.Write("short.txt", "1 2\n2 3\n3 4\n4 5\n"));
  const std::pair<QStringList, std::string> cases[] = {
      {{"--report", "none.lmt", "-o", out}, "none.lmt does not exist."},
      {{"--report", shortRecord, "-o", out}, "Insufficient data for calculation."},
      {{"--report", good, "-o", FromPath(folder / "no/out.pdf")}, "cannot be written"},
      {{"--report", good, "-o", out, "--settings", "none.ini"}, "none.ini does not exist."},
      {{"--report", good}, "-o"},
      {{"--report", good, "--screenshot", good, "-o", out}, "either"},
      {{"--report", good, "--nonsense", "-o", out}, "nonsense"},
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
