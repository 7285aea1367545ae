// SPDX-License-Identifier: Apache-2.0

// Other languages: complete, with every figure in its place, and in no file.

#include "ui/language.h"

#include <set>

#include "analysis/document_export.h"
#include "parameters/edition2021/edition_table.h"
#include "parameters/ratio_rows.h"
#include "presentation/cursor_measures.h"
#include "presentation/curve_readouts.h"
#include "presentation/profile_marks.h"
#include "presentation/report_template.h"
#include "settings/setting_choices.h"
#include "ui/qt_text.h"
#include "ui/report/report.h"
#include "ui/sheets/settings_sheet.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class InGerman : public WindowTest {
protected:
  InGerman() { UseLanguage("de"); }
  ~InGerman() override { UseLanguage("en"); }
};

/// The texts in tr(), translate() and QT_TRANSLATE_NOOP() of the windows' sources. Runs without a window are English.
QStringList TextsOfSources() {
  static const QRegularExpression call(
      R"(\b(?:tr\(\s*|translate\(\s*"\w+",\s*|QT_TRANSLATE_NOOP\(\s*"\w+",\s*)((?:"(?:[^"\\]|\\.)*"\s*)+))");
  static const QRegularExpression literal(R"re("((?:[^"\\]|\\.)*)")re");
  QStringList texts;
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(std::filesystem::path(TEXTURON_SOURCE_DIR) / "src/ui")) {
    if (entry.path().extension() != ".cpp" || entry.path().filename() == "headless.cpp") continue;
    QFile file(FromPath(entry.path()));
    file.open(QIODevice::ReadOnly);
    for (auto calls = call.globalMatch(QString::fromUtf8(file.readAll())); calls.hasNext();) {
      QString text;
      for (auto parts = literal.globalMatch(calls.next().captured(1)); parts.hasNext();)
        text += parts.next().captured(1);
      texts << text.replace("\\n", "\n").replace("\\u00B5", QString::fromUtf8("\u00B5"));
    }
  }
  return texts;
}

/// What a window shows of the engine's tables.
QStringList TextsOfTables() {
  QStringList texts;
  const auto add = [&texts](std::string_view text) { texts << FromText(text); };
  for (const SettingKey& key : SettingsTable()) {
    add(key.meaning);
    add(key.entry.shortTitle);
    if (key.entry.group == SettingGroup::kNone) continue;
    for (const SettingChoice& choice : ChoicesOf(key)) add(choice.name);
  }
  for (const SettingGroupTitles& group : SettingGroups()) {
    add(group.page);
    add(group.title);
  }
  for (const MasterRow& row : MasterCatalogue()) add(row.definition);
  for (const EditionRow& row : EditionTable()) {
    add(row.definition);
    add(row.difference);
    add(row.roughnessDifference);
    add(TrustText(row.trust));
  }
  for (const char* const name : {"Pmr", "RHtp"}) add(FindRatioRowKind(name)->definition);
  for (std::size_t why = 0; why <= static_cast<std::size_t>(Why::kManyValues); ++why) {
    add(ReasonPattern(static_cast<Why>(why)));
  }
  for (const ExportKind& kind : ExportKinds()) add(kind.menu);
  for (const ReportBlockRow& row : ReportBlocks()) add(row.meaning);
  return texts;
}

std::multiset<QString> PlacesOf(const QString& text) {
  static const QRegularExpression place("%[0-9n]|\\{[0-9]");
  std::multiset<QString> places;
  for (auto found = place.globalMatch(text); found.hasNext();) places.insert(found.next().captured());
  return places;
}

TEST(Language, HasEveryTextWithAllThatIsPutIn) {
  const QHash<QString, QString> german = ReadWords("de");
  const QStringList sources = TextsOfSources();
  EXPECT_GT(sources.size(), 300) << "the sources are read";
  for (const QString& text : sources + TextsOfTables()) {
    EXPECT_TRUE(text.isEmpty() || german.contains(text)) << "no German for: " << text.toStdString();
  }
  QFile file(":/translations/de.txt");
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_EQ(file.readAll().count('\t'), german.size()) << "a text has one translation";
  for (auto word = german.cbegin(); word != german.cend(); ++word) {
    const bool isCounted = word.key().contains("%n");
    for (const QString& form : isCounted ? word->split('|') : QStringList{*word}) {
      EXPECT_EQ(PlacesOf(form), PlacesOf(word.key())) << word.key().toStdString();
      EXPECT_FALSE(form.isEmpty()) << word.key().toStdString();
    }
    EXPECT_TRUE(!isCounted || word->count('|') == 1) << word.key().toStdString();
  }
}

TEST_F(InGerman, SentencesOfTheEngineKeepTheirFigures) {
  const std::pair<std::string, const char*> sentences[] = {
      {ReasonText({Why::kFewSamplingLengths, {7, 5}}, true), "braucht 7 Einzelmessstrecken; dieses Profil hat 5"},
      {ReasonText({Why::kFewElements, {1, 0}}, true), "braucht 1 Profilelement; dieses Profil hat keine"},
      {ReasonText({Why::kFewPointsBetween, {5, 95, 1}}, true),
       "braucht zwei Punkte mit Materialanteilen von 5 % bis 95 %; dieses Profil hat 1"},
      {"Not exported: there is no Primary Profile.", "Nicht exportiert: es fehlt: Primärprofil."},
      {"/tmp/Depth.lmt does not exist.", "/tmp/Depth.lmt gibt es nicht."},
      {"/tmp/a b.pdf cannot be written: no file can be created in its folder (permission denied).",
       "/tmp/a b.pdf kann nicht geschrieben werden: in seinem Ordner l\u00E4sst sich keine Datei anlegen (keine "
       "Berechtigung)."},
      {"/tmp/half.lmt is refused by the reader of the native format: line 6: Unexpected end of file.",
       "/tmp/half.lmt wird vom Leser f\u00FCr \u201Enative format\u201C abgelehnt: Zeile 6: Unerwartetes Ende der "
       "Datei."},
      {"The form asked for (free form) could not be fitted: the mean is taken out in its place.",
       "Die verlangte Form (Freiform) lie\u00DF sich nicht anpassen: Stattdessen ist der Mittelwert abgezogen."},
      {"The record has room for 4 of 5 sections of 0.8000 mm; ask for 4 sections, 3.2000 mm in all, to compute with "
       "them.",
       "Die Aufzeichnung hat Platz f\u00FCr 4 von 5 Abschnitten von 0.8000 mm; mit 4 Abschnitten, zusammen 3.2000 mm, "
       "wird "
       "gerechnet."},
      {"The robust regression filter ended after 12 passes: the limit of its weights has not settled. The last mean "
       "line is used.",
       "Das robuste Regressionsfilter endete nach 12 Durchg\u00E4ngen: die Grenze seiner Gewichte hat sich nicht "
       "eingestellt. Die letzte mittlere Linie wird verwendet."},
      {"1.8374 mm, undecided (fewer than three values)", "1.8374 mm, unentschieden (weniger als drei Werte)"},
      {"nobody has translated 7 of this", "nobody has translated 7 of this"}};
  for (const auto& [english, german] : sentences) EXPECT_EQ(EngineText(english).toStdString(), german);
  for (std::size_t why = 0; why <= static_cast<std::size_t>(Why::kParallelLines); ++why) {
    const std::string english = ReasonText({static_cast<Why>(why), {1.5, 2.5, 3.5}}, true);
    const QString german = EngineText(english);
    EXPECT_NE(german, FromText(english));
    for (const char* const figure : {"1.5", "2.5", "3.5"}) {
      EXPECT_EQ(german.contains(figure), FromText(english).contains(figure)) << english;
    }
  }
  EXPECT_EQ(QObject::tr("%n to analyse", nullptr, 2), "2 Dateien auszuwerten");
  // The library's own texts, also where the system has no translation of them.
  EXPECT_EQ(QCoreApplication::translate("QFileDialog", "Look in:"), "Suchen in:");
  EXPECT_EQ(QKeySequence("Ctrl+Shift+B").toString(QKeySequence::NativeText), "Strg+Umschalt+B");
}

TEST_F(InGerman, ReadOutsHaveNoEnglishWord) {
  ASSERT_TRUE(Doc().Open(Sample("honed.lmt")));
  Change([](AnalysisSettings& analysis) { analysis.MotifRProfile = analysis.MotifWProfile = true; });
  const Document& document = InForce();
  constexpr ProfileKind kKind = ProfileKind::kPrimary;
  frame_->show();
  Choose("splitLowerPane");
  Choose("bearingRatioCurve");
  std::vector<std::string> readouts = {BearingReadout(document, 12.0, 0.5), MotifReadout(document)};
  Choose("spectrumCurve");
  readouts.push_back(SpectrumReadout(document, 3));
  for (const bool hasY : {false, true}) {
    for (const double x2 : {1.0, 4.0}) {
      const CursorPlaces places{.xMM = {1.0, x2}, .yUM = {-1.0, 1.0}, .hasX = true, .hasY = hasY};
      readouts.push_back(CursorReadout(document, kKind, places));
    }
  }
  for (const auto& between : {std::pair(1.0, 4.0), std::pair(0.0, 6.0), std::pair(1.0, 1.01)}) {
    readouts.push_back(MeasureText(document, kKind, between));
  }
  static const QRegularExpression word("[a-z]{4,}");
  for (const std::string& readout : readouts) {
    const QString german = EngineReadout(readout);
    EXPECT_FALSE(german.isEmpty());
    for (auto words = word.globalMatch(FromText(readout)); words.hasNext();) {
      const QString english = words.next().captured();
      EXPECT_FALSE(german.contains(QRegularExpression("\\b" + english + "\\b")))
          << english.toStdString() << ": " << german.toStdString();
    }
  }
}

TEST_F(InGerman, TheWindowSpeaksItAndFilesDoNot) {
  const auto report = [this](const char* name) {
    QString reason;
    EXPECT_TRUE(WriteReport(FromPath(folder_ / name), InForce(), "now", reason)) << reason.toStdString();
    return folder_.Read(name);
  };
  ASSERT_TRUE(Doc().Open(Sample("honed.lmt")));
  CSettingsSheet sheet(Doc(), nullptr);
  EXPECT_EQ(sheet.windowTitle(), "Auswerteeinstellungen");
  const std::string german = report("de.html");
  UseLanguage("en");
  EXPECT_EQ(sheet.windowTitle(), "Auswerteeinstellungen") << "what is there stays as it is";
  EXPECT_EQ(report("en.html"), german);
}

TEST_F(InGerman, LettersOfAMenuAreUnique) {
  MakeFrame(prompts_);
  QList<QWidget*> menus{frame_->menuBar()};
  for (QMenu* const menu : frame_->menuBar()->findChildren<QMenu*>()) menus << menu;
  for (const QWidget* const menu : menus) {
    QMap<QString, QString> texts;
    for (const QAction* const action : menu->actions()) {
      const QString letter = QKeySequence::mnemonic(action->text()).toString();
      EXPECT_TRUE(letter.isEmpty() || !texts.contains(letter))
          << action->text().toStdString() << " and " << texts[letter].toStdString();
      texts[letter] = action->text();
    }
  }
  EXPECT_EQ(frame_->menuBar()->actions().first()->text(), "&Datei");
}

TEST_F(InGerman, IsTheUsersChoice) {
  EXPECT_EQ(ChosenLanguage(), "en");
  Choose("language-de");
  EXPECT_EQ(ChosenLanguage(), "de");
  ChooseLanguage("en");
}

}  // namespace
}  // namespace texturon
