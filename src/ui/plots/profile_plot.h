// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "analysis/document.h"
#include "presentation/shown_profiles.h"
#include "ui/plots/clickable_profile_graph.h"

namespace texturon {

/// Draws profiles of a document over each other, with their axes; the profile view and the report use it. The stretch
/// in view stays unless `showsAll`.
void DrawProfiles(CClickableProfileGraph& graph, const Document& document, const ShownProfiles& shown, bool showsAll);

}  // namespace texturon
