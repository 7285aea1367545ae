// SPDX-License-Identifier: Apache-2.0

// The report and the commands that need no screen, through the program itself.

#include <QProcess>
#include <QProcessEnvironment>
#include <gtest/gtest.h>
#include <string>

#include "support/scratch_folder.h"

namespace texturon {
namespace {

const std::string kSamples = std::string(TEXTURON_SOURCE_DIR) + "/samples/";

struct Outcome {
  int status = -1;
  std::string errors;
};

/// Runs the desktop program where there is no display.
Outcome RunDesktop(const QStringList& arguments) {
  QProcess process;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) environment.remove(name);
  process.setProcessEnvironment(environment);
  process.start(TEXTURON_DESKTOP_PROGRAM, arguments);
  EXPECT_TRUE(process.waitForFinished(60'000));
  return {process.exitCode(), process.readAllStandardError().toStdString()};
}

QString Text(const std::filesystem::path& path) {
  return QString::fromStdString(path.string());
}

std::size_t PagesOf(const std::string& pdf) {
  std::size_t pages = 0;
  for (std::size_t at = 0; (at = pdf.find("/Type /Page\n", at)) != std::string::npos; ++at) ++pages;
  return pages;
}

TEST(Report, IsWrittenWithoutDisplay) {
  const ScratchFolder folder;
  struct Case {
    const char* sample;
    const char* settings;
    std::size_t pages;
  };
  // Curves take two pages; 107 parameters two more, a production line's four one, with the settings below them.
  for (const Case& c : {Case{"ground.lmt", nullptr, 4}, Case{"arc.lmt", "production.ini", 3}}) {
    QStringList arguments = {"--report", QString::fromStdString(kSamples + c.sample), "-o", Text(folder / "out.pdf")};
    if (c.settings != nullptr) arguments << "--settings" << QString::fromStdString(kSamples + c.settings);
    const Outcome run = RunDesktop(arguments);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    const std::string pdf = folder.Read("out.pdf");
    EXPECT_TRUE(pdf.starts_with("%PDF-"));
    EXPECT_EQ(PagesOf(pdf), c.pages) << c.sample;
  }
}

TEST(Report, TheWindowIsPicturedWithoutDisplay) {
  const ScratchFolder folder;
  const Outcome run =
      RunDesktop({"--screenshot", QString::fromStdString(kSamples + "ground.lmt"), "-o", Text(folder / "w.png")});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.errors, "");
  EXPECT_TRUE(folder.Read("w.png").starts_with("\x89PNG"));
}

TEST(Report, RefusalsAreOneSentence) {
  const ScratchFolder folder;
  const QString good = QString::fromStdString(kSamples + "ground.lmt");
  const QString out = Text(folder / "out.pdf");
  const QString shortRecord = Text(folder.Write("short.txt", "1 2\n2 3\n3 4\n4 5\n"));
  const std::pair<QStringList, std::string> cases[] = {
      {{"--report", Text(folder / "none.lmt"), "-o", out}, "none.lmt does not exist."},
      {{"--report", Text(folder.Write("bad.lmt", "")), "-o", out}, "bad.lmt"},
      {{"--report", shortRecord, "-o", out}, "Insufficient data for calculation."},
      {{"--report", good, "-o", Text(folder / "no" / "out.pdf")}, "cannot be written"},
      {{"--report", good, "-o", out, "--settings", Text(folder / "none.ini")}, "none.ini does not exist."},
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
