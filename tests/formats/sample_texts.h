// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <vector>

namespace texturon {

/// A short valid file: the extension under which it comes, the reader that takes it, and what that makes of it.
struct SampleText {
  std::string extension;
  std::string reader;
  std::string bytes;
  double spacingUM;
  std::vector<double> heightsUM;
};

/// One for every layout that is read.
const std::vector<SampleText>& SampleTexts();

/// A grid of 2 profiles with 3 points, 1000 to 6000 nm, as text with the second point of the second one bad, and
/// binary.
std::string SdfGridText();
std::string SdfGridBinary();

/// `lines` joined with CR LF, each ended.
std::string Lines(const std::vector<std::string>& lines);

}  // namespace texturon
