// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>

#include "analysis/document.h"
#include "base/index_range.h"
#include "platform/prompts.h"

namespace texturon {

/// The system's one minimum of data: the last point must lie at least this far behind the first.
inline constexpr std::int32_t kLeastSteps = 50;

/// What a run computes over, and what its form fit leaves out.
struct ComputeRange {
  IndexRange range;
  std::optional<IndexRange> exclusion;  ///< absolute indices
};

/// A range, or the message that refuses it.
using RangeOrMessage = std::variant<ComputeRange, std::string_view>;

/// What the end discard in force takes off either end, in mm.
double DiscardLengthMM(const AnalysisSettings& settings);

/// So many long-wave cutoffs and the two discarded ends, from the start of the record on.
RegionChoice RegionOfCutoffs(double cutoffs, const AnalysisSettings& settings);

/// Makes the evaluation length a whole number of long-wave cutoffs, when the document asks for it: sets the region
/// (as many cutoffs as the record holds between two discarded ends) and the end discard in force. A cutoff of 0 or
/// less: no region.
void ApplyWholeCutoffs(Document& document);

/// Resolves clear aperture, region or whole record into indices. The whole record forgets the document's exclusion, the
/// clear aperture sets it to its middle zone.
///
/// The clear aperture lies about the apex: first about the centre of the least-squares arc over the whole record (the
/// middle of the record when that fails or leaves too little of the aperture within the record), then about the apex of
/// an asphere that is fitted there; when that fit fails the first stands.
RangeOrMessage ResolveComputeRange(Document& document, Prompts& prompts);

/// The stretch that a clear aperture takes about the apex of the asphere that was fitted last. Nothing where the form
/// removed is none.
std::optional<RangeOrMessage> PreviewAperture(const Document& document, const AnalysisSettings& aperture);

/// Step between the points that a form fit uses, by the document's data reduction; 0 for all.
std::int32_t FormThinningStep(const AnalysisSettings& settings, std::int32_t count, double spacingUM);

}  // namespace texturon
