// SPDX-License-Identifier: Apache-2.0

// That no work is lost: what the window asks, what it keeps for the start after a crash, and other starts that come
// while it computes.

#include <QLocalSocket>
#include <atomic>
#include <thread>

#include "ui/window/autosave.h"
#include "ui/window/single_instance.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class UnsavedWork : public WindowTest {
protected:
  UnsavedWork() : WindowTest("ground.lmt") {}

  QStringList Kept() { return QDir(FromPath(folder_ / "state/windows")).entryList({"*.json"}); }
};

TEST_F(UnsavedWork, IsAskedAboutWhereItWouldBeLost) {
  using enum CMainFrame::Unsaved;
  const auto tolerate = [](AnalysisSettings& analysis) { analysis.parameters[0].tolerance.upperLimit = 3.0; };
  const std::tuple<std::function<void()>, bool, const char*> cases[] = {
      {[&] { Doc().SetIdentification("part 7"); }, true, "identification of ground.lmt"},
      {[&] { Doc().Invert(); }, true, "upside down"},
      {[&] { Change(tolerate); }, false, "limits"}};
  for (const auto& [edit, isOfRecord, sentence] : cases) {
    MakeFrame(prompts_);
    ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
    frame_->show();
    edit();
    asked_.clear();
    answer_ = kCancel;
    EXPECT_EQ(frame_->OpenFile(Sample("turned.lmt")), !isOfRecord) << "settings stay for the next profile";
    EXPECT_FALSE(frame_->close());
    Choose("batchOfAFolder");
    EXPECT_FALSE(frame_->EndSession(true));
    ASSERT_EQ(asked_.size(), isOfRecord ? 4 : 3);
    for (const QString& text : asked_) EXPECT_TRUE(text.contains(sentence)) << text.toStdString();
    answer_ = kDiscard;
    EXPECT_TRUE(frame_->close());
    EXPECT_FALSE(frame_->isVisible());
  }
}

TEST_F(UnsavedWork, IsSavedWhereItIsWanted) {
  ASSERT_TRUE(Doc().LoadSettingsFile(folder_.Write("own.ini", "[ANALYSIS]\nLcCutoffMM=0.8\n")));
  EXPECT_TRUE(frame_->SettleUnsaved(true) && asked_.isEmpty()) << "nothing has changed";
  answer_ = CMainFrame::Unsaved::kSave;
  Doc().SetIdentification("part 7");
  Change([](AnalysisSettings& analysis) { analysis.LcCutoffMM = 2.5; });
  {
    const DialogDriver driver({CloseIt});
    EXPECT_FALSE(frame_->close()) << "the name of the file was not given";
  }
  {
    const DialogDriver driver({TypeName(folder_ / "part.lmt")});
    EXPECT_TRUE(frame_->close());
  }
  EXPECT_NE(folder_.Read("part.lmt").find("part 7"), std::string::npos);
  EXPECT_NE(folder_.Read("own.ini").find("LcCutoffMM=2.500000"), std::string::npos);
}

TEST_F(UnsavedWork, OfACrashedWindowIsOfferedAndThatOfAnOpenOneIsNot) {
  frame_->KeepStateIn(folder_ / "state");
  Doc().SetIdentification("part 7");
  Doc().Invert();
  Change([](AnalysisSettings& analysis) { analysis.LcCutoffMM = 0.25; });
  Settings settings = InForce().settings;
  settings.decision.DecisionRule = kDecideGuardedFail;
  Doc().ReplaceSettings(settings);
  Doc().ComputeOver(1.0, 3.0);
  const UndoPoint work = UndoPointOf(InForce());
  ASSERT_TRUE(QTest::qWaitFor([&] { return Kept().size() == 1; }, 10'000)) << "by itself";
  auto& autosave = Child<CAutosave>(*frame_);
  autosave.SaveNow();
  // What a crash leaves: the file, without a process that holds it.
  const std::string left = folder_.Read("state/windows/" + Kept().front().toStdString());
  CAutosave other(Doc(), folder_ / "state/windows", nullptr);
  EXPECT_FALSE(other.TakeLeftOver()) << "its window is at work";
  folder_.Write("state/windows/left.json", left);
  folder_.Write("state/windows/rubbish.json", "{\"version\":1");
  const std::unique_ptr<CMainFrame> first = std::move(frame_);
  MakeFrame(prompts_);
  frame_->KeepStateIn(folder_ / "state");
  prompts_.yes = true;
  frame_->OfferLeftOver();
  ASSERT_EQ(prompts_.questions.size(), 1u);
  EXPECT_NE(prompts_.questions[0].find("ground.lmt"), std::string::npos);
  EXPECT_EQ(UndoPointOf(InForce()), work);
  EXPECT_TRUE(Doc().IsModified() && Doc().HasUnsavedSettings());
  Choose("undo");
  EXPECT_FALSE(Doc().IsModified()) << "as the file has it";
  Choose("redo");
  frame_->OfferLeftOver();
  EXPECT_EQ(prompts_.questions.size(), 1u) << "nothing is offered twice";
  frame_->close();
  first->close();
  EXPECT_TRUE(Kept().isEmpty()) << "a clean end leaves nothing";
}

TEST_F(UnsavedWork, ThatCannotBeKeptIsToldOnce) {
  folder_.Write("state", "no folder");
  frame_->KeepStateIn(folder_ / "state");
  for (const char* const name : {"part 7", "part 8"}) {
    Doc().SetIdentification(name);
    Child<CAutosave>(*frame_).SaveNow();
  }
  ASSERT_EQ(prompts_.notices.size(), 1u);
  EXPECT_TRUE(prompts_.notices[0].starts_with("What is not saved would be lost")) << prompts_.notices[0];
  Doc().SetIdentification("Ground; generated");
}

TEST_F(UnsavedWork, AnotherStartMayComeInAnyMomentOfAFit) {
  ASSERT_TRUE(QDir().mkpath(FromPath(folder_ / "run")));
  std::filesystem::permissions(folder_ / "run", std::filesystem::perms::owner_all);
  const QByteArray former = qgetenv("XDG_RUNTIME_DIR");
  qputenv("XDG_RUNTIME_DIR", (folder_ / "run").c_str());
  DialogPrompts dialogs{nullptr, std::chrono::milliseconds(0)};
  MakeFrame(dialogs);
  ASSERT_TRUE(Doc().LoadSettingsFile(Sample("asphere.ini")));
  // So that there is a progress window to answer from for long.
  Change([](AnalysisSettings& analysis) { analysis.FilterType = kFilterRobustGaussian; });
  CSingleInstance starts("fits");
  ASSERT_FALSE(starts.HandOverOrListen({}));
  int arrived = 0;
  QObject::connect(&starts, &CSingleInstance::Arrived, frame_.get(), [&](const QStringList& files) {
    ++arrived;
    frame_->OpenLater(ToPath(files.first()));
  });
  constexpr int kStarts = 50;
  std::atomic<int> ended = 0;
  std::thread others([&ended] {
    for (; ended < kStarts; ++ended) {
      QLocalSocket other;
      other.connectToServer(CSingleInstance::SocketOf("fits"));
      other.waitForConnected();
      // The words of a slow start come behind its connection.
      QThread::msleep(static_cast<unsigned long>(ended % 4 * 5));
      QDataStream stream(&other);
      stream.setVersion(QDataStream::Qt_6_0);
      stream << QStringList{FromPath(Sample("asphere.lmt"))};
      other.flush();
      other.waitForReadyRead(20'000);
    }
  });
  while (ended < kStarts) {
    // Into a fit, and into a window at rest, which begins one for it.
    if (ended % 2 == 0) Doc().ComputeAll();
    QTest::qWait(1);
  }
  others.join();
  EXPECT_TRUE(QTest::qWaitFor([&] { return arrived == kStarts && !Doc().IsBusy(); }, 60'000)) << arrived;
  EXPECT_EQ(InForce().profiles.sourceFile, Sample("asphere.lmt"));
  frame_.reset();
  qputenv("XDG_RUNTIME_DIR", former);
}

}  // namespace
}  // namespace texturon
