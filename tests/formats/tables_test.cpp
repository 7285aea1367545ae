// SPDX-License-Identifier: Apache-2.0

// Headings and layouts of tables, each with what a person reads off it: tests/golden/formats/tables.txt.

#include <algorithm>
#include <gtest/gtest.h>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "formats/import.h"
#include "formats/sample_texts.h"
#include "support/golden.h"
#include "support/scripted_prompts.h"

namespace texturon {
namespace {

std::string Rows(std::string form) {
  if (form[0] == 'H') {
    std::string lines;
    for (int i = 0; i < std::stoi(form.substr(1)); ++i) lines += "Key " + std::to_string(i) + "\tvalue of it\n";
    return lines;
  }
  std::string rows;
  if (form[0] == 'W') {
    for (const char* x : {"0", "0.5", "1"}) {
      rows += x;
      for (int i = 1; i < std::stoi(form.substr(1)); ++i) rows += "," + std::to_string(i * i);
      rows += "\n";
    }
    return rows;
  }
  const std::string columns[][5] = {{"0", "0.5", "1", "1.5", "2"},  {"1", "3", "2", "4", "3"},
                                    {"10", "30", "20", "40", "35"}, {"1", "2", "3", "4", "5"},
                                    {"7", "7", "7", "7", "7"},      {"0", "1", "2", "3", "4"}};
  std::vector<int> order = {0, 1};
  const std::vector<std::pair<char, std::vector<int>>> orders = {
      {'3', {0, 2, 1}}, {'i', {3, 0, 1}}, {'y', {0, 4, 1}}, {'w', {0, 5, 1}}, {'1', {1}}};
  for (const auto& [letter, columnsOf] : orders) {
    if (form[0] == letter) order = columnsOf;
  }
  const std::string separator(1, form.back() == 't' ? '\t' : form.back());
  for (int row = 0; row < 5; ++row) {
    for (std::size_t i = 0; i < order.size(); ++i) rows += (i > 0 ? separator : "") + columns[order[i]][row];
    rows += "\n";
  }
  return rows;
}

std::string Expanded(const std::string& text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t close = text.find('}', i);
    if (text[i] == '\\' && text[i + 1] == 'x') {
      bytes += static_cast<char>(std::stoi(text.substr(i + 2, 2), nullptr, 16));
      i += 3;
    } else if (text[i] == '\\') {
      const char c = text[++i];
      bytes += c == 'n' ? '\n' : c == 'r' ? '\r' : '\t';
    } else if (text[i] == '{' && close != std::string::npos && close < i + 6 && text.substr(i, close - i) != "{mm") {
      bytes += Rows(text.substr(i + 1, close - i - 1));
      i = close;
    } else {
      bytes += text[i];
    }
  }
  return bytes;
}

TEST(Tables, AreReadAsAPersonReadsThemOrRefused) {
  std::istringstream list(BytesOf(GoldenFolder() / "formats/tables.txt"));
  int right = 0, refused = 0, wrong = 0;
  for (std::string line; std::getline(list, line);) {
    if (line.empty() || line[0] == '#') continue;
    const std::size_t arrow = line.rfind(" => ");
    const std::size_t colon = line.find(": ");
    const std::string expected = line.substr(arrow + 4);
    ScriptedPrompts prompts;
    prompts.textAnswer = expected[0] == '2' ? "2" : "1";  // for a spacing that is asked for, or the column
    const ImportOutcome outcome = LoadProfileBytes("a." + line.substr(0, colon),
                                                   Expanded(line.substr(colon + 2, arrow - colon - 2)), {}, prompts);
    std::string remarks;
    for (const std::string& notice : prompts.notices) remarks += notice + "\n";
    if (expected[0] == '!') {
      const bool isRight = !outcome.loaded && outcome.reason.find(expected.substr(2)) != std::string::npos;
      ++(isRight ? refused : wrong);
      EXPECT_TRUE(isRight) << line << "\n  " << outcome.reason << remarks;
      continue;
    }
    std::istringstream fields(expected);
    double spacing = 0.0, first = 0.0;
    std::size_t count = 0;
    fields >> spacing >> first >> count;
    const std::size_t remark = expected.find("~ ");
    const ImportedProfile& profile = outcome.profile;
    bool isRight = outcome.loaded && profile.heightsUM.size() == count &&
                   std::abs(profile.spacingUM - spacing) <= 1e-9 * spacing &&
                   std::abs(profile.heightsUM[0] - first) <= 1e-12 * std::abs(first);
    isRight = isRight && (remark == std::string::npos ? remarks.find("not stated") == std::string::npos
                                                      : remarks.find(expected.substr(remark + 2)) != std::string::npos);
    ++(isRight ? right : wrong);
    EXPECT_TRUE(isRight) << line << "\n  " << outcome.reason << " " << profile.spacingUM << " "
                         << (profile.heightsUM.empty() ? 0.0 : profile.heightsUM[0]) << " x "
                         << profile.heightsUM.size() << "\n  " << remarks;
  }
  std::cout << right << " tables right, " << refused << " refused, " << wrong << " wrong\n";
  EXPECT_GE(right + refused, 120);
}

}  // namespace
}  // namespace texturon
