// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "analysis/document.h"
#include "platform/environment.h"
#include "platform/prompts.h"

namespace texturon {

/// How a run ended.
enum class ComputeOutcome {
  kDone,
  kNoProfile,     ///< nothing loaded, nothing done
  kRefused,       ///< too few points to compute over; a message said so, the former results stand
  kTooShort,      ///< no room for the sections asked for; a message said so, there are profiles but no rows
  kEmptyPrimary,  ///< no primary profile was left; the run ended after the filters
};

/// Whether a run writes the environment's trace file, if a row asks for profile elements.
bool WritesTraceFile(const Document& document, const Environment& environment);

/// Turns the measured record into every derived profile, curve and parameter: chooses the compute range, takes the form
/// out, filters, makes the spectrum and the height curves and computes the selected rows of the working list. Reads the
/// document's settings and writes its profiles, ranges and results; the end discards of fixed kind are written back
/// into the settings. The environment names the folder of the trace file.
ComputeOutcome Compute(Document& document, Prompts& prompts, const Environment& environment);

}  // namespace texturon
