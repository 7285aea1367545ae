// SPDX-License-Identifier: Apache-2.0

// The window and the console program give the same figures, to the last bit.

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <cmath>

#include "ui/qt_text.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class ConsoleAgreement : public WindowTest {
protected:
  /// What `texturon analyze --json` says of the parameters.
  static QJsonArray Ask(const QString& profile, const QString& settings) {
    QStringList arguments = {"analyze", "--json", "--no-trace", profile};
    if (!settings.isEmpty()) arguments << "--settings" << settings;
    QProcess console;
    console.start(TEXTURON_PROGRAM, arguments);
    EXPECT_TRUE(console.waitForFinished(30'000));
    return QJsonDocument::fromJson(console.readAllStandardOutput()).object()["parameters"].toArray();
  }
};

TEST_F(ConsoleAgreement, OfEverySampleWithEverySettingsFile) {
  const QDir samples(FromPath(Sample("")));
  const ScratchFolder folder;
  QStringList settingsFiles = {""};
  for (const QString& name : samples.entryList({"*.ini"})) settingsFiles << samples.filePath(name);
  settingsFiles << FromPath(folder.Write("robust.ini",
                                         "[ANALYSIS]\nFormRemovalType=4\nPolynomialOrder=3\nFilterType=3\n"
                                         "LcCutoffMM=0.25\nUserDiscardType=2\nResidualType=1\n[DISPLAY]\nMetric=0\n"));
  int compared = 0;
  for (const QString& settings : settingsFiles) {
    frame_ = nullptr;
    MakeFrame();
    if (!settings.isEmpty()) {
      ASSERT_TRUE(frame_->Doc().LoadSettingsFile(ToPath(settings)));
    }
    for (const QString& name : samples.entryList({"*.lmt"})) {
      ASSERT_TRUE(frame_->OpenFile(Sample(name.toStdString().c_str())));
      const QJsonArray console = Ask(samples.filePath(name), settings);
      const std::vector<ParameterDef>& rows = frame_->Doc().document().catalogue.rows;
      ASSERT_FALSE(console.isEmpty()) << name.toStdString() << " " << settings.toStdString();
      qsizetype shown = 0;
      for (const ParameterDef& row : rows) {
        if (!row.selected) continue;
        ASSERT_LT(shown, console.size());
        const QJsonObject theirs = console[shown++].toObject();
        ASSERT_EQ(theirs["name"].toString(), FromText(row.name));
        ASSERT_EQ(theirs["valid"].toBool(), row.valid) << row.name;
        if (!row.valid || !std::isfinite(row.value)) continue;
        EXPECT_EQ(theirs["value"].toDouble(), row.value) << row.name << " of " << name.toStdString();
        ++compared;
      }
      EXPECT_EQ(shown, console.size());
    }
  }
  EXPECT_GT(compared, 1'000);
}

}  // namespace
}  // namespace texturon
