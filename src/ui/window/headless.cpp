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
#include <thread>

#include "analysis/acceptance.h"
#include "analysis/analysis_run.h"
#include "analysis/file_clash.h"
#include "analysis/uncertainty_trials.h"
#include "analysis/verdict_trials.h"
#include "base/charset.h"
#include "base/date_text.h"
#include "base/number_text.h"
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

/// How the command line asks for a rule over several profiles; the settings' own where it does not. Empty: by no name
/// of a rule.
std::optional<AcceptanceRule> RuleOf(const QString& name, const Settings& settings) {
  if (name.isEmpty()) return AcceptanceRuleOf(settings.decision.AcceptanceRule);
  for (const AcceptanceRuleName& row : AcceptanceRules()) {
    if (name.toStdString() == row.name) return row.rule;
  }
  return std::nullopt;
}

unsigned AllCores() {
  return std::max(1U, std::thread::hardware_concurrency());
}

/// The profile of the report and further ones, by its settings and in this order. Empty, with a sentence, where one of
/// them gives no result.
std::optional<SeveralReport> WithFurther(const CTexturonDoc& doc, const QStringList& files, AcceptanceRule rule,
                                         const UncertaintyRequest* uncertainty, QString& reason) {
  SeveralResults results;
  SeveralReport report;
  const auto add = [&](const Document& document) {
    results.Add(document);
    report.profiles.emplace_back(IntegerText(static_cast<std::int64_t>(results.Count())), document.profiles.sourcePath);
  };
  add(doc.document());
  for (const QString& file : files) {
    SilentPrompts prompts;
    Document document = MakeDocument();
    document.writesTraceFile = false;
    ApplySettings(document, doc.document().settings);
    const RunStep step = RunAnalysis(document, {.path = ToPath(file)}, prompts, doc.environment());
    if (!step.ok()) {
      reason = FromText(FileSentence(ToPath(file), step.Reason()));
      return std::nullopt;
    }
    if (const std::string open = TryForVerdicts(document, uncertainty, AllCores());
        uncertainty != nullptr && !open.empty()) {
      reason = FromText(FileSentence(ToPath(file), "has no uncertainty: " + open));
      return std::nullopt;
    }
    add(document);
  }
  report.requirements = results.Requirements();
  report.rows = results.Rows(rule, doc.document().settings.decision.DecisionRule);
  return report;
}

int Print(const QString& text) {
  std::cout << text.toStdString() << std::flush;
  return std::cout ? 0 : Refuse(QObject::tr("Standard output cannot be written."));
}

/// Why the output would destroy an input: a sentence; empty: it would not.
std::string ClashOf(const std::vector<std::filesystem::path>& inputs, const std::filesystem::path& output) {
  RunFiles files{.reads = inputs, .writes = {output}};
  for (const std::filesystem::path& input : inputs) {
    if (const auto companion = CompanionOf(input)) files.reads.push_back(*companion);
  }
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

/// Tries the profile with a budget: its values and verdicts then go by what was found. Why not, a sentence.
QString TryBudget(CTexturonDoc& doc, const UncertaintyBudget& budget) {
  TrialOutcome trials = RunTrials(doc.document(), budget, {.jobs = AllCores()});
  if (!trials.reason.empty()) return FromText("No uncertainty: " + trials.reason + ".");
  doc.ShowUncertainties(doc.document(), std::move(trials.rows));
  return {};
}

/// What a run without a window is to make.
struct HeadlessRequest {
  QString profile;
  QStringList further;
  QString output;
  QString settingsFile;
  QString layout;
  QString picture;
  QString acceptance;
  QString budget;
  bool isScreenshot = false;
};

/// A screenshot, a picture or a report. Returns the exit status.
int Make(const HeadlessRequest& wanted) {
  std::vector<std::filesystem::path> inputs = {ToPath(wanted.profile), ToPath(wanted.settingsFile),
                                               ToPath(wanted.layout)};
  for (auto& file : FilesOfBudget(ToPath(wanted.budget))) inputs.push_back(std::move(file));
  for (const QString& file : wanted.further) inputs.push_back(ToPath(file));
  const std::string clash = ClashOf(inputs, ToPath(wanted.output));
  if (!clash.empty()) return Refuse(FromText(clash), 2);
  QString reason;
  ReportChoice choice;
  const ReportBlockRow* const block = FindReportBlock(ToText(wanted.picture));
  if (!wanted.picture.isEmpty() && (block == nullptr || !block->isPicture)) {
    return Refuse(QObject::tr("%1 is no picture; pictures are %2.").arg(wanted.picture, PictureNames()), 2);
  }
  if (!wanted.layout.isEmpty()) {
    auto read = LoadReportTemplate(wanted.layout, reason);
    if (!read) return Refuse(reason);
    choice.layout = std::move(*read);
  }
  if (!wanted.further.isEmpty() && !choice.layout.Has(ReportBlockKind::kStatistics)) {
    return Refuse(QObject::tr("The template has no block \"statistics\" for several profiles."));
  }
  CollectingPrompts prompts;
  Environment environment = SystemEnvironment();
  environment.traceFile.clear();
  CMainFrame frame(environment, &prompts);
  CTexturonDoc& doc = frame.Doc();
  const auto lastMessage = [&] { return FromText(prompts.messages().back()); };
  if (!wanted.settingsFile.isEmpty() && !doc.LoadSettingsFile(ToPath(wanted.settingsFile))) {
    return Refuse(lastMessage());
  }
  QObject reader;  // makes the curves of the report with the analysis
  if (!wanted.picture.isEmpty()) choice.layout.blocks = {{block->kind}};
  if (!wanted.isScreenshot) doc.SetWanted(&reader, ResultsFor(choice.layout));
  if (!doc.Open(ToPath(wanted.profile))) return Refuse(lastMessage());
  std::optional<UncertaintyRequest> uncertainty;
  if (!wanted.budget.isEmpty()) {
    BudgetRead read = ReadBudget(ToPath(wanted.budget));
    if (!read.budget) return Refuse(FromText(FileSentence(ToPath(wanted.budget), read.reason)));
    uncertainty.emplace(UncertaintyRequest{.budget = std::move(*read.budget)});
    reason = TryBudget(doc, uncertainty->budget);
    if (!reason.isEmpty()) return Refuse(reason);
  }
  if (wanted.isScreenshot) {
    reason = WriteScreenshot(frame, wanted.output);
  } else if (!doc.document().profiles.primaryRange) {
    // The analysis itself has said why.
    reason = prompts.messages().empty() ? QObject::tr("The profile cannot be analysed.") : lastMessage();
  } else if (!wanted.picture.isEmpty()) {
    WritePicture(wanted.output, doc.document(), block->kind, reason);
  } else {
    if (!wanted.further.isEmpty()) {
      const auto rule = RuleOf(wanted.acceptance, doc.document().settings);
      if (!rule) return Refuse(QObject::tr("%1 is no rule; rules are max, 16% and median.").arg(wanted.acceptance), 2);
      auto several = WithFurther(doc, wanted.further, *rule, uncertainty ? &*uncertainty : nullptr, reason);
      if (!several) return Refuse(reason);
      choice.several = std::move(*several);
    }
    const bool isWritten =
        WriteReport(wanted.output, doc.document(), DateText(environment.localTime()), reason, choice);
    const QString fault = MissingLogo(doc.document(), choice.layout);
    if (isWritten && !fault.isEmpty()) Refuse(fault, 0);
  }
  return reason.isEmpty() ? 0 : Refuse(reason);
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
  const QCommandLineOption report(
      "report",
      QObject::tr("Writes the report of a profile, PDF or .html; with further profiles their statistics, too."),
      "PROFILE");
  const QCommandLineOption acceptance(
      "acceptance",
      QObject::tr("Rule of the verdict over several profiles: max, 16% or median (or as the settings say)."), "RULE");
  const QCommandLineOption layout("template", QObject::tr("Template that names the blocks of the report."), "FILE");
  const QCommandLineOption picture(
      "picture", QObject::tr("Writes one picture of the report, .svg or PNG: %1.").arg(PictureNames()), "NAME");
  const QCommandLineOption screenshot("screenshot", QObject::tr("Writes a PNG of the main window with a profile."),
                                      "PROFILE");
  const QCommandLineOption verify("verify", QObject::tr("Writes what the built-in standards come to, PDF."));
  const QCommandLineOption output("o", QObject::tr("Where to."), "OUT");
  const QCommandLineOption settingsFile("settings", QObject::tr("Settings file to analyse with, also in a window."),
                                        "INI");
  const QCommandLineOption budget("budget", QObject::tr("Budget of the instrument, for uncertainties and verdicts."),
                                  "INI");
  const QCommandLineOption another("new", QObject::tr("Opens a window beside the one that is open already."));
  parser.addOptions({report, acceptance, layout, picture, screenshot, verify, output, settingsFile, budget, another});
  parser.addPositionalArgument("profile", QObject::tr("Profiles to open in the window, or further ones of a report."),
                               "[PROFILE...]");
  if (!parser.parse(arguments)) return Refuse(parser.errorText() + ".");
  if (parser.isSet(help)) return Print(parser.helpText());
  if (parser.isSet(version)) return Print("texturon-desktop " + QApplication::applicationVersion() + '\n');
  if (parser.isSet(verify)) {
    const bool isAlone = !parser.isSet(report) && !parser.isSet(screenshot) && parser.positionalArguments().isEmpty();
    if (!isAlone) return Refuse(QObject::tr("--verify stands alone, with -o OUT.pdf."), 2);
    if (!parser.isSet(output)) return Refuse(QObject::tr("Say with -o where the result goes."));
    return WriteVerification(parser.value(output));
  }
  for (const QCommandLineOption& option : {acceptance, budget, layout, picture, settingsFile}) {
    if (parser.isSet(option) && parser.value(option).isEmpty()) {
      return Refuse(QObject::tr("--%1 names nothing.").arg(option.names().first()), 2);
    }
  }
  const QStringList further = parser.positionalArguments();
  const bool takesFurther = parser.isSet(report) && !parser.isSet(picture);
  if (parser.isSet(report) == parser.isSet(screenshot) || (!further.isEmpty() && !takesFurther)) {
    return Refuse(QObject::tr(
        "Give either --report PROFILE, with further profiles or not, or --screenshot PROFILE; a picture is of one. "
        "-o says where the result goes."));
  }
  if (parser.isSet(acceptance) && further.isEmpty()) {
    return Refuse(QObject::tr("--acceptance judges several profiles; give more than one."), 2);
  }
  if (!parser.isSet(report) && (parser.isSet(layout) || parser.isSet(picture))) {
    return Refuse(QObject::tr("--template and --picture belong to --report PROFILE."), 2);
  }
  if (!parser.isSet(output)) return Refuse(QObject::tr("Say with -o where the result goes."));
  return Make({.profile = parser.value(parser.isSet(report) ? report : screenshot),
               .further = further,
               .output = parser.value(output),
               .settingsFile = parser.value(settingsFile),
               .layout = parser.value(layout),
               .picture = parser.value(picture),
               .acceptance = parser.value(acceptance),
               .budget = parser.value(budget),
               .isScreenshot = parser.isSet(screenshot)});
}

}  // namespace texturon
