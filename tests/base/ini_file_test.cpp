// SPDX-License-Identifier: Apache-2.0

#include "base/ini_file.h"

#include <chrono>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>

#include "base/number_text.h"

namespace texturon {
namespace {

std::string Found(const IniFile& file, std::string_view section, std::string_view key) {
  return std::string(file.Find(section, key).value_or("(none)"));
}

std::string AfterSet(std::string_view bytes, std::string_view section, std::string_view key, std::string_view value) {
  IniFile file{std::string(bytes)};
  file.Set(section, key, value);
  EXPECT_EQ(Found(file, section, key), value);
  return file.Bytes();
}

TEST(IniFile, Finding) {
  const std::string bytes(
      "\xEF\xBB\xBFoutside=1\n[ One ]\r\n Key = value with ; and = \r\nkey=later\r\nDouble=\" quoted \"\n"
      "Single='quoted'\rMixed='quoted\"\r\nLonely=\"\r\nEmpty=\r\nBlank=  \r\n;Comment=1\r\n[broken\r\n"
      "no sign\r\n=no key\r\n[TWO] tail\nZero=a");
  const IniFile file(bytes + '\0' + "b\n[one]\nOnlySecond=1\nLast=1");
  struct Case {
    std::string_view section, key;
    std::string expected;
  };
  const Case cases[] = {{"One", "Key", "value with ; and ="},
                        {"oNE", "KEY", "value with ; and ="},
                        {"one", "double", " quoted "},
                        {"one", "single", "quoted"},
                        {"one", "mixed", "'quoted\""},
                        {"one", "lonely", "\""},
                        {"one", "empty", ""},
                        {"one", "blank", ""},
                        {"one", "Comment", "(none)"},
                        {"one", ";Comment", "(none)"},
                        {"one", "no sign", "(none)"},
                        {"one", "", "(none)"},
                        {"", "outside", "(none)"},
                        {"two", "zero", std::string("a\0b", 3)},
                        {"one", "OnlySecond", "(none)"},
                        {"three", "Key", "(none)"}};
  for (const Case& c : cases) EXPECT_EQ(Found(file, c.section, c.key), c.expected) << c.section << "." << c.key;
  EXPECT_EQ(file.StrayLines(), (std::vector<std::size_t>{12, 13, 14}));
}

TEST(IniFile, ListsEntriesWithTheirLines) {
  const IniFile file("\n[A]\nk=1\n\n[B]\nk=2\nK=3\n[a]\nm=4\n");
  std::string listed;
  for (const IniEntry& entry : file.Entries()) {
    listed += std::string(entry.section) + "." + std::string(entry.key) + "=" + std::string(entry.value) + "@" +
              IntegerText(static_cast<std::int64_t>(entry.line)) + (entry.shadowed ? "! " : " ");
  }
  EXPECT_EQ(listed, "A.k=1@3 B.k=2@6 B.K=3@7! a.m=4@9! ");
  ASSERT_EQ(file.Sections().size(), 3U);
  EXPECT_TRUE(file.Sections()[2].shadowed);
}

TEST(IniFile, SettingTouchesNothingElse) {
  constexpr std::string_view kFile = "; head\n[A]\n Key = old \t; no comment\nOther=\n\n[B]\r\nKey=b\r\n[A]\r\nNew=1";
  struct Case {
    std::string_view section, key, value, expected;
  };
  const Case cases[] = {
      {"a", "KEY", "new", "; head\n[A]\n Key = new\nOther=\n\n[B]\r\nKey=b\r\n[A]\r\nNew=1"},
      {"A", "Other", "x", "; head\n[A]\n Key = old \t; no comment\nOther=x\n\n[B]\r\nKey=b\r\n[A]\r\nNew=1"},
      {"A", "New", "2", "; head\n[A]\n Key = old \t; no comment\nOther=\nNew=2\r\n\n[B]\r\nKey=b\r\n[A]\r\nNew=1"},
      {"B", "Two", "2", "; head\n[A]\n Key = old \t; no comment\nOther=\n\n[B]\r\nKey=b\r\nTwo=2\r\n[A]\r\nNew=1"},
      {"C", "Key", "c",
       "; head\n[A]\n Key = old \t; no comment\nOther=\n\n[B]\r\nKey=b\r\n[A]\r\nNew=1\r\n[C]\r\nKey=c\r\n"},
      {"B", "Key", "b", kFile},
  };
  for (const Case& c : cases) EXPECT_EQ(AfterSet(kFile, c.section, c.key, c.value), c.expected) << c.key;
  EXPECT_EQ(AfterSet("", "A", "k", "1"), "[A]\r\nk=1\r\n");
  EXPECT_EQ(AfterSet("[A]", "A", "k", "1"), "[A]\r\nk=1\r\n");
  EXPECT_EQ(AfterSet("\xEF\xBB\xBF[A]\n", "A", "k", "1"), "\xEF\xBB\xBF[A]\nk=1\r\n");
  EXPECT_EQ(AfterSet("\xEF\xBB\xBF", "A", "k", "1"), "\xEF\xBB\xBF[A]\r\nk=1\r\n");
}

TEST(IniFile, ValuesReadBackAsTheyWereSet) {
  for (const std::string value :
       {"", " ", " both ends ", "\"quoted\"", "'", "''", "\"a\" and \"b\"", ";x", "[x]", "a=b", "tab\t", "5 \xB5m"}) {
    IniFile file("[A]\nk=\"old\" \n");
    file.Set("A", "k", value);
    file.Set("A", "added", value);
    file.Set("A", "added", value + "!");
    file.Set("A", "added", value);
    const IniFile reread(file.Bytes());
    EXPECT_EQ(Found(reread, "a", "k"), value);
    EXPECT_EQ(Found(reread, "a", "added"), value);
  }
  IniFile file;
  file.Set("A", "k", "two\r\nlines");
  EXPECT_EQ(Found(IniFile(file.Bytes()), "A", "k"), "two  lines");
}

TEST(IniFile, RubbishIsKeptByteForByte) {
  std::mt19937 random(3);
  constexpr std::string_view kBytes = "[]=;\"'\r\n\n  ab\t\xEF\xBB\xBF";
  for (int i = 0; i < 3000; ++i) {
    std::string bytes;
    for (std::size_t n = random() % 60; n > 0; --n) bytes.push_back(kBytes[random() % kBytes.size()]);
    if (i % 5 == 0) bytes.push_back('\0');
    const IniFile file(bytes);
    ASSERT_EQ(file.Bytes(), bytes);
    for (const IniEntry& entry : file.Entries()) {
      if (entry.shadowed || entry.section.empty()) continue;
      ASSERT_EQ(Found(file, entry.section, entry.key), entry.value) << bytes;
    }
    IniFile changed(bytes);
    changed.Set("b", "a", "new");
    ASSERT_EQ(Found(IniFile(changed.Bytes()), "b", "a"), "new") << bytes;
  }
}

// Quadratic work on any of these would take minutes; the limit leaves room for a slow machine and sanitizers.
TEST(IniFile, LargeFilesTakeLinearTime) {
  const auto start = std::chrono::steady_clock::now();
  constexpr int kKeys = 300'000;
  IniFile file("[A]\n" + std::string(200'000, '\n') + std::string(1'000'000, 'x') + "\n" + std::string(200'000, '\n'));
  std::string bytes;
  for (int i = 0; i < kKeys; ++i) {
    file.Set("A", "Key" + IntegerText(i), IntegerText(i));
    bytes += "[" + IntegerText(i) + "]\n=\n\n";
  }
  const IniFile reread(file.Bytes());
  for (int i = 0; i < kKeys; ++i) ASSERT_EQ(Found(reread, "A", "KEY" + IntegerText(i)), IntegerText(i));
  EXPECT_EQ(IniFile(bytes).Sections().size(), static_cast<std::size_t>(kKeys));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

}  // namespace
}  // namespace texturon
