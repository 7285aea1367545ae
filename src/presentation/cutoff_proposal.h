// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>

#include "analysis/document.h"

namespace texturon {

/// What a cut-off is chosen by: Ra where the profile is not periodic, RSm where it is.
enum class CutoffBasis { kRa, kRsm };

/// The cut-off (mm) for a value (Ra in um, RSm in mm) by ISO 4288:1996, tables 1 and 3. Nothing outside the tables.
std::optional<double> CutoffFor(CutoffBasis basis, double value);

/// What the tables propose for the present results, and why, as sentences in the units shown (Windows-1252).
struct CutoffProposal {
  std::optional<double> cutoffMM;  ///< nothing where there is no value or it lies outside the table
  std::string reason;
};

/// Goes by the row of the table of parameters, measured with the cut-off in force: a proposal that differs from that is
/// to be measured again, until it agrees.
CutoffProposal ProposeCutoff(const Document& document, CutoffBasis basis);

}  // namespace texturon
