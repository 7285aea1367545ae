// SPDX-License-Identifier: Apache-2.0

#include "platform/platform.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

#include "platform/append_file.h"
#include "platform/file_identity.h"
#include "support/child_process.h"
#include "support/scratch_folder.h"

namespace texturon {
namespace {

namespace fs = std::filesystem;

TEST(Platform, ReadsAFileWholeAndSaysWhyNot) {
  const ScratchFolder folder;
  const std::string bytes(200'000, '\0');
  EXPECT_EQ(ReadWholeFile(folder.Write("zeros", bytes)).bytes, bytes);
  EXPECT_TRUE(ReadWholeFile(folder.Write("empty", "")).ok());

  const FileBytes missing = ReadWholeFile(folder / "none" / "deeper");
  EXPECT_TRUE(missing.missing);
  EXPECT_EQ(FileSentence("none", missing.reason), "none does not exist.");
  const FileBytes directory = ReadWholeFile(folder.path());
  EXPECT_FALSE(directory.missing);
  EXPECT_EQ(directory.reason, "is a directory");
}

TEST(Platform, ReplacesAFileAndLeavesNothingBeside) {
  const ScratchFolder folder;
  const fs::path file = folder.Write("a.ini", "a long old content");
  constexpr fs::perms kMode = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
  fs::permissions(file, kMode);
  const fs::perms mode = fs::status(file).permissions();  // some systems know fewer rights
  ASSERT_TRUE(ReplaceFile(file, "new").ok());
  EXPECT_EQ(folder.Read("a.ini"), "new");
  EXPECT_EQ(fs::status(file).permissions(), mode);
  ASSERT_TRUE(ReplaceFile(folder / "b.ini", "created").ok());
  EXPECT_EQ(folder.Read("b.ini"), "created");
  EXPECT_EQ(folder.FileCount(), 2U);
}

TEST(Platform, ReplacesTheTargetOfALink) {
  TEXTURON_NEEDS_POSIX();
  const ScratchFolder folder;
  folder.Write("target", "old");
  fs::create_symlink("target", folder / "middle");
  fs::create_symlink(folder / "middle", folder / "link");
  ASSERT_TRUE(ReplaceFile(folder / "link", "new").ok());
  EXPECT_TRUE(fs::is_symlink(folder / "link"));
  EXPECT_TRUE(fs::is_symlink(folder / "middle"));
  EXPECT_EQ(folder.Read("target"), "new");
}

TEST(Platform, RefusedReplacementsLeaveEverything) {
  TEXTURON_NEEDS_POSIX();
  const ScratchFolder folder;
  EXPECT_EQ(ReplaceFile(folder.path(), "x").reason, "is a directory");
  EXPECT_FALSE(ReplaceFile(folder / "none" / "a.ini", "x").ok());
  fs::create_symlink("loop", folder / "loop");
  EXPECT_FALSE(ReplaceFile(folder / "loop", "x").ok());
  EXPECT_EQ(folder.FileCount(), 1U);
}

TEST(Platform, SideFilesFollowNoLink) {
  TEXTURON_NEEDS_POSIX();
  const ScratchFolder folder;
  const fs::path target = folder.Write("target", "precious");
  fs::create_symlink(target, folder / "link");
  EXPECT_FALSE(WriteSideFile(folder / "link", "x").ok());
  fs::create_hard_link(target, folder / "second name");
  EXPECT_FALSE(WriteSideFile(folder / "second name", "x").ok());
  EXPECT_FALSE(WriteSideFile(folder.path(), "x").ok());
  EXPECT_EQ(folder.Read("target"), "precious");

  ASSERT_TRUE(WriteSideFile(folder / "side", "a longer text").ok());
  ASSERT_TRUE(WriteSideFile(folder / "side", "short").ok());
  EXPECT_EQ(folder.Read("side"), "short");
}

// Names that others may have put something under: a link, a second name of a file of ours, a folder.
TEST(Platform, NamesOfOurOwnNeverLeadElsewhere) {
  TEXTURON_NEEDS_POSIX();
  const ScratchFolder folder;
  const fs::path target = folder.Write("target", "precious");
  const auto plant = [&] {
    for (const char* name : {"link", "second"}) fs::remove(folder / name);
    fs::create_symlink(target, folder / "link");
    fs::create_hard_link(target, folder / "second");
  };
  plant();
  for (const char* name : {"link", "second"}) {
    EXPECT_FALSE(OverwriteInPlace(folder / name, "x").ok()) << name;
    EXPECT_EQ(AppendFile(folder / name, AppendFile::Name::kOwn).state(), AppendFile::State::kFailed) << name;
    EXPECT_TRUE(ReplaceSideFile(folder / name, "x").ok()) << name;
    EXPECT_EQ(folder.Read(name), "x");
  }
  EXPECT_EQ(folder.Read("target"), "precious");
  EXPECT_FALSE(ReplaceSideFile(folder.path(), "x").ok());
  EXPECT_FALSE(OverwriteInPlace(folder / "none", "x").ok());

  folder.Write("plain", "a longer text");
  ASSERT_TRUE(OverwriteInPlace(folder / "plain", "short").ok());
  EXPECT_EQ(folder.Read("plain"), "short");
  EXPECT_EQ(AppendFile(folder / "plain", AppendFile::Name::kOwn).state(), AppendFile::State::kHeld);

  EXPECT_FALSE(IsPrivateFolder(folder.path())) << "others may look in";
  fs::permissions(folder.path(), fs::perms::owner_all);
  EXPECT_TRUE(IsPrivateFolder(folder.path()));
  EXPECT_FALSE(IsPrivateFolder(target));
}

TEST(Platform, ReadsNoPipeOrDeviceWhereAFileIsMeant) {
  TEXTURON_NEEDS_POSIX();
  const ScratchFolder folder;
  ASSERT_TRUE(MakePipe(folder / "pipe"));
  fs::create_symlink("/dev/zero", folder / "zero");
  for (const char* name : {"pipe", "zero"}) EXPECT_EQ(ReadRegularFile(folder / name).reason, "is no regular file");
  // A few megabytes behind the last line that is wanted.
  const std::string lines(50'000'000, '\n');
  EXPECT_EQ(ReadRegularFile(folder.Write("lines", lines)).bytes.size(), lines.size());
  EXPECT_LT(ReadRegularFile(folder / "lines", 1000).bytes.size(), lines.size() / 2);
}

TEST(Platform, AFileIsTheSameByEveryName) {
  TEXTURON_NEEDS_POSIX();
  const ScratchFolder folder;
  folder.Write("a", "");
  folder.Write("b", "");
  fs::create_directory(folder / "sub");
  fs::create_symlink("a", folder / "link");
  fs::create_symlink("new", folder / "link to new");
  fs::create_directory_symlink(".", folder / "here");
  fs::create_hard_link(folder / "a", folder / "second");
  ASSERT_TRUE(MakePipe(folder / "pipe"));
  const auto identity = [&folder](const char* name) { return IdentityOf(folder / name); };
  for (const char* name : {"sub/../a", "link", "second", "here/here/a"}) EXPECT_EQ(identity(name), identity("a"));
  for (const char* name : {"here/new", "sub/../new", "link to new"}) EXPECT_EQ(identity(name), identity("new"));
  EXPECT_EQ(identity("none/x/y"), identity("here/none/x/y"));
  for (const char* name : {"b", "new", "none/x/y", "sub"}) EXPECT_NE(identity(name), identity("a")) << name;
  EXPECT_NE(identity("sub/new"), identity("new"));
  for (const char* name : {"pipe", "a/below"}) EXPECT_FALSE(identity(name)) << name;
}

TEST(Platform, PathsAndTextsKeepTheirLetters) {
  EXPECT_EQ(TextFromPath(PathFromText("Me\xDFwerte/5 \xB5m.lmt")), "Me\xDFwerte/5 \xB5m.lmt");
  EXPECT_EQ(PathFromSystemText("\xC2\xB5.lmt"), PathFromText("\xB5.lmt"));
}

TEST(Platform, EnvironmentKnowsWhereTheProgramLies) {
  const Environment environment = SystemEnvironment();
  EXPECT_TRUE(fs::exists(environment.programFolder / "platform_test") ||
              fs::exists(environment.programFolder / "platform_test.exe"));
  EXPECT_TRUE(fs::is_directory(environment.temporaryFolder));
  EXPECT_EQ(environment.workingFolder, fs::current_path());
  EXPECT_GE(environment.localTime().tm_year, 124);
}

}  // namespace
}  // namespace texturon
