// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <vector>

#include "analysis/document.h"

namespace texturon {

/// What a motif drawing consists of over a stretch of the record, X in mm from the first sample and heights in um, each
/// line with its neighbours just outside. No line has more than 2 `columns` + 2 points: of more, the lowest and the
/// highest of each column stay, so that no peak is lost.
struct MotifPlot {
  struct Point {
    double xMM = 0.0;
    double zUM = 0.0;
  };
  using Line = std::vector<Point>;

  Line profile;            ///< the primary profile
  Line roughness;          ///< from peak to dale to peak
  Line envelope;           ///< through the peaks of the roughness motifs
  Line waviness;           ///< from peak to dale to peak; the dales lie on the envelope
  bool isThinned = false;  ///< some motifs are left out
};

MotifPlot MotifPlotOf(const Document& document, double fromMM, double toMM, std::size_t columns);

}  // namespace texturon
