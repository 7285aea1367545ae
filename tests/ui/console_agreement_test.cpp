// SPDX-License-Identifier: Apache-2.0

// The window and the console program give the same figures, to the last bit.

#include "ui/window_fixture.h"

namespace texturon {
namespace {

using ConsoleAgreement = WindowTest;

TEST_F(ConsoleAgreement, OfEverySampleWithEverySettingsFile) {
  const QDir samples(FromPath(Sample("")));
  QStringList settingsFiles = {""};
  for (const QString& name : samples.entryList({"*.ini"})) settingsFiles << samples.filePath(name);
  settingsFiles << FromPath(folder_.Write("robust.ini",
                                          "[ANALYSIS]\nFormRemovalType=4\nPolynomialOrder=3\nFilterType=3\n"
                                          "LcCutoffMM=0.25\nUserDiscardType=2\nResidualType=1\n[DISPLAY]\nMetric=0\n"));
  int compared = 0;
  for (const QString& settings : settingsFiles) {
    MakeFrame(prompts_);
    ASSERT_TRUE(settings.isEmpty() || Doc().LoadSettingsFile(ToPath(settings)));
    for (const QString& name : samples.entryList({"*.lmt"})) {
      ASSERT_TRUE(frame_->OpenFile(ToPath(samples.filePath(name))));
      QStringList arguments = {"analyze", "--json", "--no-trace", samples.filePath(name)};
      if (!settings.isEmpty()) arguments << "--settings" << settings;
      QProcess console;
      console.start(TEXTURON_PROGRAM, arguments);
      ASSERT_TRUE(console.waitForFinished(30'000));
      QJsonArray theirs = QJsonDocument::fromJson(console.readAllStandardOutput()).object()["parameters"].toArray();
      for (const ParameterDef& row : InForce().catalogue.rows) {
        if (!row.selected) continue;
        ASSERT_FALSE(theirs.isEmpty()) << name.toStdString() << " " << settings.toStdString();
        const QJsonObject their = theirs.takeAt(0).toObject();
        ASSERT_EQ(their["name"].toString(), FromText(row.name));
        ASSERT_EQ(their["valid"].toBool(), row.valid) << row.name;
        if (!row.valid || !std::isfinite(row.value)) continue;
        EXPECT_EQ(their["value"].toDouble(), row.value) << row.name << " of " << name.toStdString();
        ++compared;
      }
      EXPECT_TRUE(theirs.isEmpty());
    }
  }
  EXPECT_GT(compared, 1'000);
}

}  // namespace
}  // namespace texturon
