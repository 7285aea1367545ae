// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "analysis/document.h"
#include "presentation/shown_profiles.h"
#include "ui/plots/clickable_profile_graph.h"

namespace texturon {

/// What is in view after curves were drawn.
enum class ViewAfter {
  kSame,          ///< what was
  kSameWithRest,  ///< along X what was, with all heights of the record
  kWhole,
};

/// Draws profiles of a document over each other, with their axes; the profile view and the report use it.
void DrawProfiles(CClickableProfileGraph& graph, const Document& document, const ShownProfiles& shown, ViewAfter view);

}  // namespace texturon
