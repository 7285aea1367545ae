// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <random>
#include <string_view>
#include <vector>

#include "parameters/suffix_table.h"

namespace texturon {

/// A profile with what a row is computed from besides.
struct RowCase {
  std::vector<double> heights;
  char letter = 'R';
  double spacingMM = 0.001;
  double samplingLengthMM = 0.8;
  AnalysisSettings settings = {};
};

inline RowResult RowValue(std::string_view suffix, const RowCase& row) {
  const ParameterProfile profile(row.letter, row.heights,
                                 {row.spacingMM * 1000.0, row.samplingLengthMM, row.samplingLengthMM});
  return FindSuffix(suffix)->routine({profile, row.settings});
}

/// Grain that neighbouring points share, about 0.
inline std::vector<double> RandomSurface(std::size_t n, unsigned seed) {
  std::mt19937_64 random(seed);
  std::normal_distribution<double> noise;
  std::vector<double> z(n);
  double grain = 0.0;
  for (double& height : z) height = grain = 0.9 * grain + 0.5 * noise(random);
  return z;
}

}  // namespace texturon
