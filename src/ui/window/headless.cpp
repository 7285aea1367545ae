// SPDX-License-Identifier: Apache-2.0

#include "ui/window/headless.h"

#include <QApplication>
#include <QBuffer>
#include <QCommandLineParser>
#include <QPdfWriter>
#include <QTextDocument>
#include <algorithm>
#include <iostream>
#include <string_view>

#include "analysis/file_clash.h"
#include "base/charset.h"
#include "base/date_text.h"
#include "formats/companion_file.h"
#include "platform/platform.h"
#include "ui/qt_text.h"
#include "ui/report/report.h"
#include "ui/report/report_pictures.h"
#include "ui/window/main_frame.h"
#include "verification/verification_report.h"

namespace texturon {
namespace {

constexpr std::string_view kOptions[] = {"--report", "--screenshot", "--verify", "--help", "-h", "--version", "-v"};

int Refuse(const QString& sentence, int status = 1) {
  std::cerr << "texturon-desktop: " << EscapedControls(sentence.toStdString()) << '\n';
  return status;
}

int Print(const QString& text) {
  std::cout << text.toStdString() << std::flush;
  return std::cout ? 0 : Refuse(QObject::tr("Standard output cannot be written."));
}

/// Why the output would destroy an input, the first of which is the profile: a sentence; empty: it would not.
std::string ClashOf(std::vector<std::filesystem::path> inputs, const std::filesystem::path& output) {
  const auto companion = CompanionOf(inputs.front());
  RunFiles files{.reads = std::move(inputs), .writes = {output}};
  if (companion) files.reads.push_back(*companion);
  return FileClash(files);
}

/// Writes a picture of the window; the sentence that says why not, or nothing.
QString WriteScreenshot(CMainFrame& frame, const QString& file) {
  // Whatever size the screen in memory has.
  if (QGuiApplication::platformName() != "offscreen") frame.setAttribute(Qt::WA_DontShowOnScreen);
  frame.resize(1200, 800);
  frame.show();
  // What is laid out once may ask for another round.
  constexpr int kRounds = 5;
  for (int i = 0; i < kRounds; ++i) QApplication::processEvents();
  QBuffer bytes;
  bytes.open(QIODevice::WriteOnly);
  if (!frame.grab().save(&bytes, "PNG")) return QObject::tr("The picture cannot be made.");
  const FileOutcome outcome = ReplaceFile(
      ToPath(file), std::string_view(bytes.data().constData(), static_cast<std::size_t>(bytes.data().size())));
  return outcome.ok() ? QString() : FromText(FileSentence(ToPath(file), outcome.reason));
}

/// The verification as pages; status 1 also where a standard is missed.
int WriteVerification(const QString& file) {
  const Environment environment = SystemEnvironment();
  const StandardsRead standards = ReadStandards(VerificationFiles());
  const VerificationFolder folder(environment.temporaryFolder);
  if (!standards.reason.empty()) return Refuse(FromText(standards.reason));
  if (folder.Path().empty()) {
    return Refuse(FromText(FileSentence(environment.temporaryFolder, "holds no folder of ours")));
  }
  const std::vector<VerifiedStandard> verified = VerifyStandards(standards.standards, folder.Path());
  QBuffer bytes;
  bytes.open(QIODevice::WriteOnly);
  {
    QPdfWriter writer(&bytes);
    writer.setTitle("Verification");
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageOrientation(QPageLayout::Landscape);
    QTextDocument pages;
    // Nine columns in the width of a page.
    pages.setHtml(QString::fromStdString(VerificationHtml(VerificationOrigin(environment), verified))
                      .replace("font: 10pt", "font: 7pt"));
    pages.print(&writer);
  }
  const FileOutcome outcome = ReplaceFile(
      ToPath(file), std::string_view(bytes.data().constData(), static_cast<std::size_t>(bytes.data().size())));
  if (!outcome.ok()) return Refuse(FromText(FileSentence(ToPath(file), outcome.reason)));
  const VerificationCount count = CountOf(verified);
  return count.missed == 0 ? 0 : Refuse(QString::fromStdString(VerificationSentence(count)));
}

}  // namespace

bool IsHeadless(const std::vector<std::string>& arguments) {
  return std::any_of(arguments.begin(), arguments.end(), [](std::string_view argument) {
    argument = argument.substr(0, argument.find('='));
    return std::find(std::begin(kOptions), std::end(kOptions), argument) != std::end(kOptions);
  });
}

int RunHeadless(const QStringList& arguments) {
  QCommandLineParser parser;
  parser.setApplicationDescription(QObject::tr("Surface texture analysis of profiles."));
  const QCommandLineOption help = parser.addHelpOption();
  const QCommandLineOption version = parser.addVersionOption();
  const QCommandLineOption report("report", QObject::tr("Writes the report of a profile, PDF or .html."), "FILE");
  const QCommandLineOption layout("template", QObject::tr("Template that names the blocks of the report."), "FILE");
  const QCommandLineOption picture(
      "picture", QObject::tr("Writes one picture of the report, .svg or PNG: %1.").arg(PictureNames()), "NAME");
  const QCommandLineOption screenshot("screenshot", QObject::tr("Writes a PNG of the main window."), "FILE");
  const QCommandLineOption verify("verify", QObject::tr("Writes what the built-in standards come to, PDF."));
  const QCommandLineOption output("o", QObject::tr("Where to."), "OUT");
  const QCommandLineOption settingsFile("settings", QObject::tr("Settings file to analyse with, also in a window."),
                                        "INI");
  const QCommandLineOption another("new", QObject::tr("Opens a window beside the one that is open already."));
  parser.addOptions({report, layout, picture, screenshot, verify, output, settingsFile, another});
  parser.addPositionalArgument("profile", QObject::tr("Profile to open in the window."), "[PROFILE]");
  if (!parser.parse(arguments)) return Refuse(parser.errorText() + ".");
  if (parser.isSet(help)) return Print(parser.helpText());
  if (parser.isSet(version)) return Print("texturon-desktop " + QApplication::applicationVersion() + '\n');
  if (parser.isSet(verify)) {
    const bool isAlone = !parser.isSet(report) && !parser.isSet(screenshot) && parser.positionalArguments().isEmpty();
    if (!isAlone) return Refuse(QObject::tr("--verify stands alone, with -o OUT.pdf."), 2);
    if (!parser.isSet(output)) return Refuse(QObject::tr("Say with -o where the result goes."));
    return WriteVerification(parser.value(output));
  }
  if (parser.isSet(report) == parser.isSet(screenshot) || !parser.positionalArguments().isEmpty()) {
    return Refuse(QObject::tr("Give either --report FILE or --screenshot FILE, and nothing else to open."));
  }
  if (!parser.isSet(report) && (parser.isSet(layout) || parser.isSet(picture))) {
    return Refuse(QObject::tr("--template and --picture belong to --report FILE."), 2);
  }
  if (!parser.isSet(output)) return Refuse(QObject::tr("Say with -o where the result goes."));
  const QString profile = parser.value(parser.isSet(report) ? report : screenshot);
  const std::string clash = ClashOf({ToPath(profile), ToPath(parser.value(settingsFile)), ToPath(parser.value(layout))},
                                    ToPath(parser.value(output)));
  if (!clash.empty()) return Refuse(FromText(clash), 2);
  QString reason;
  ReportChoice choice;
  const ReportBlockRow* const wanted = FindReportBlock(ToText(parser.value(picture)));
  if (parser.isSet(picture) && (wanted == nullptr || !wanted->isPicture)) {
    return Refuse(QObject::tr("%1 is no picture; pictures are %2.").arg(parser.value(picture), PictureNames()), 2);
  }
  if (parser.isSet(layout)) {
    auto read = LoadReportTemplate(parser.value(layout), reason);
    if (!read) return Refuse(reason);
    choice.layout = std::move(*read);
  }
  CollectingPrompts prompts;
  Environment environment = SystemEnvironment();
  environment.traceFile.clear();
  CMainFrame frame(environment, &prompts);
  CTexturonDoc& doc = frame.Doc();
  const auto lastMessage = [&] { return FromText(prompts.messages().back()); };
  if (parser.isSet(settingsFile) && !doc.LoadSettingsFile(ToPath(parser.value(settingsFile)))) {
    return Refuse(lastMessage());
  }
  QObject reader;  // makes the curves of the report with the analysis
  if (parser.isSet(picture)) choice.layout.blocks = {{wanted->kind}};
  if (parser.isSet(report)) doc.SetWanted(&reader, ResultsFor(choice.layout));
  if (!doc.Open(ToPath(profile))) return Refuse(lastMessage());
  if (parser.isSet(screenshot)) {
    reason = WriteScreenshot(frame, parser.value(output));
  } else if (!doc.document().profiles.primaryRange) {
    // The analysis itself has said why.
    reason = prompts.messages().empty() ? QObject::tr("The profile cannot be analysed.") : lastMessage();
  } else if (parser.isSet(picture)) {
    WritePicture(parser.value(output), doc.document(), wanted->kind, reason);
  } else {
    WriteReport(parser.value(output), doc.document(), DateText(environment.localTime()), reason, choice);
  }
  return reason.isEmpty() ? 0 : Refuse(reason);
}

}  // namespace texturon
